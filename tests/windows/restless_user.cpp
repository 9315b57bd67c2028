// Sessions on the platform itself, in real time.
#include "restless_user.h"

#include "platform/win32.h"

void BeginSession() {
    for (const WCHAR* name : {L"VeldraneVmLauncher", L"VeldraneVmLog"})
        UnregisterClassW(name, GetModuleHandleW(nullptr));
}

bool TimeIsOurs() {
    return false;
}

void PassTime(unsigned) {}

std::size_t ActionsOf(bool is_long) {
    return is_long ? 5000 : 300;
}
