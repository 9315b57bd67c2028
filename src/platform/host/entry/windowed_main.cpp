// The entry point of a windowed program: Linux calls main, the program defines wWinMain.
#include "platform/host/api/kernel32.h"

int main() {
    constexpr int SHOW_NORMAL = 1;
    WCHAR no_arguments[] = u"";
    return wWinMain(GetModuleHandleW(nullptr), nullptr, no_arguments, SHOW_NORMAL);
}
