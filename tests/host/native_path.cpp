// The paths of the layer as the machine knows them.
#include <stdexcept>

#include "platform/host/system/inspect.h"
#include "scratch.h"

std::filesystem::path NativePath(WideView path) {
    const std::string native = host::NativePath(path);
    if (native.empty())
        throw std::runtime_error("no full path on drive C: " + Narrow(path));
    return native;
}

WideText WindowsPath(const std::filesystem::path& native) {
    return host::WidePath(std::filesystem::absolute(native).native());
}
