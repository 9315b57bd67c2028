// A setting that the platform refuses is ignored: there is no alternative.
#include "shell/dll_search.h"

#include "platform/win32.h"

void LimitDllSearch() {
    SetDllDirectoryW(TEXT(""));
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS);
}
