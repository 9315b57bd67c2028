// ResetLayer: resets every record of the layer that outlives a call.
#include "platform/host/boxes/box.h"
#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/hooks/test_hooks.h"
#include "platform/host/system/native.h"
#include "platform/host/windows/window.h"

namespace host {

void ResetLayer() {
    ResetHooks();
    ResetHandles();
    ResetChildren();
    ResetProcessCalls();
    ResetDisk();
    ResetWindows();
    ResetClasses();
    ResetMessages();
    ResetTimers();
    ResetActivation();
    ResetMoves();
    ResetInput();
    ResetClipboard();
    ResetLastFileBox();
}

}  // namespace host
