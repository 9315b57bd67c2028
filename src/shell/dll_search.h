// Where the process and its engine look for DLLs.
#pragma once

// To be called before anything else. The current folder, which may be a download, is no longer searched, here
// and in the programs that are started from here; what this program loads late comes from the system's folder
// alone, not from beside its own file.
void LimitDllSearch();
