// Simulates a loss of power: records the contents of files that would survive it.
#include <unistd.h>

#include <array>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>

#include "platform/host/hooks/test_hooks.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

using Content = std::optional<std::string>;  // none: the file does not exist

struct Disk {
    bool forgets = false;
    std::map<std::string, Content> kept;  // by path, for each file that was changed
};

Disk disk;

Content ContentOf(const std::string& native) {
    std::ifstream file(native, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

void BeforeChange(const std::string& native) {
    if (disk.forgets && !disk.kept.contains(native))
        disk.kept[native] = ContentOf(native);
}

void AfterFlush(int descriptor) {
    std::array<char, PATH_MAX> native{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    if (disk.forgets && readlink(link.c_str(), native.data(), native.size() - 1) > 0)
        disk.kept[native.data()] = ContentOf(native.data());
}

void AfterMove(const std::string& source, const std::string& target) {
    if (!disk.forgets)
        return;
    disk.kept[target] = disk.kept[source];
    disk.kept[source].reset();
}

void MakeDiskForgetful() {
    disk = {true, {}};
}

void LosePower() {
    for (const auto& [native, content] : disk.kept)
        if (content)
            std::ofstream(native, std::ios::binary) << *content;
        else
            std::filesystem::remove(native);
    disk = {};
}

void ResetDisk() {
    disk = {};
}

}  // namespace host
