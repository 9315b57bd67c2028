// A disk that forgets: what of the files would survive a loss of power.
#include <unistd.h>

#include <array>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>

#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

using Content = std::optional<std::string>;  // none: no file

struct Disk {
    bool forgets = false;
    std::map<std::string, Content> kept;  // by path, for each file that was touched
};

Disk& TheDisk() {
    return Lasting<Disk>();
}

Content ContentOf(const std::string& native) {
    std::ifstream file(native, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

void BeforeChange(const std::string& native) {
    if (TheDisk().forgets && !TheDisk().kept.contains(native))
        TheDisk().kept[native] = ContentOf(native);
}

void AfterFlush(int descriptor) {
    std::array<char, PATH_MAX> native{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    if (TheDisk().forgets && readlink(link.c_str(), native.data(), native.size() - 1) > 0)
        TheDisk().kept[native.data()] = ContentOf(native.data());
}

void AfterMove(const std::string& source, const std::string& target) {
    if (!TheDisk().forgets)
        return;
    TheDisk().kept[target] = TheDisk().kept[source];
    TheDisk().kept[source].reset();
}

void MakeDiskForgetful() {
    TheDisk() = {true, {}};
}

void LosePower() {
    for (const auto& [native, content] : TheDisk().kept)
        if (content)
            std::ofstream(native, std::ios::binary) << *content;
        else
            std::filesystem::remove(native);
    TheDisk() = {};
}

}  // namespace host
