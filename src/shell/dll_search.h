// Limits the folders in which DLLs are searched.
#pragma once

// Call this before anything else. From then on the current folder, which may be a download, is not searched
// for DLLs, neither here nor in programs started from here. DLLs that are loaded after the start come from
// the system's folder or from a folder that the code in this process has added itself, as extensions of the
// file boxes do; not from the folder of this program.
void LimitDllSearch();
