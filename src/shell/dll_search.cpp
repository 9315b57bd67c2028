// Errors of the two calls are ignored: without these settings the program can still run.
#include "shell/dll_search.h"

#include "platform/win32.h"

void LimitDllSearch() {
    SetDllDirectoryW(TEXT(""));
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS);
}
