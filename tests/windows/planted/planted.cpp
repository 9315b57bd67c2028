// A DLL that somebody has planted. Nothing in it matters but that it can be loaded.
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}
