// The paths of the program are those of the machine.
#include "scratch.h"

std::filesystem::path NativePath(WideView path) {
    return path;
}

WideText WindowsPath(const std::filesystem::path& native) {
    return std::filesystem::absolute(native).make_preferred().native();
}
