// The two settings of the platform. Where it refuses one, nothing better can be had.
#include "shell/dll_search.h"

#include "platform/win32.h"

void LimitDllSearch() {
    SetDllDirectoryW(TEXT(""));
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS);
}
