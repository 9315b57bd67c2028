// Limits the folders in which DLLs are searched.
#pragma once

// Call this before anything else. After the call, this process and the programs that it starts do not
// search the current folder for DLLs: that folder may contain downloaded files. A DLL that this process
// loads later is searched only in the system folder and in folders that code in this process has added
// (shell extensions in the file boxes add some). The folder of this program is not searched.
void LimitDllSearch();
