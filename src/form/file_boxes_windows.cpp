// The library of the file boxes is loaded at the first box, by the linker's own helper, which raises an
// exception of the platform where that fails: the program would be gone, with all that is not saved. Here the
// boxes fail instead, in words: none opens, with an error that is no cancel.
#include <cstring>

#include "platform/win32.h"

#include <cderr.h>
#include <delayimp.h>

namespace {

// Of the type that all calls have here; on 64 bits nobody minds arguments that are not looked at.
INT_PTR WINAPI OpenNoBox() {
    return FALSE;
}

INT_PTR WINAPI TellLoadFailure() {
    return CDERR_LOADRESFAILURE;
}

// Asked for a module in place of the library, then for each call that this one does not have.
FARPROC WINAPI ReplaceMissing(unsigned what, DelayLoadInfo* missing) {
    if (what == dliFailLoadLib)
        return reinterpret_cast<FARPROC>(GetModuleHandleW(nullptr));
    return std::strcmp(missing->dlp.szProcName, "CommDlgExtendedError") == 0 ? TellLoadFailure : OpenNoBox;
}

}  // namespace

// Takes the place of the helper's own, which does nothing; the link asks for it by name.
PfnDliHook __pfnDliFailureHook2 = ReplaceMissing;
