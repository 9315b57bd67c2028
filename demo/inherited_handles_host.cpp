// Reads the system's list of the process's descriptors.
#include <dirent.h>
#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "demo/inherited_handles.h"

namespace {

std::string Target(int descriptor) {
    std::array<char, PATH_MAX> target{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = readlink(link.c_str(), target.data(), target.size());
    return length < 0 ? "?" : std::string(target.data(), static_cast<std::size_t>(length));
}

}  // namespace

std::vector<std::string> InheritedHandles() {
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir("/proc/self/fd"), closedir);
    if (listing == nullptr)
        throw std::runtime_error("Liste des descripteurs impossible.");
    std::vector<int> descriptors;
    while (const dirent* const entry = readdir(listing.get()))
        if (entry->d_name[0] != '.' && std::atoi(entry->d_name) != dirfd(listing.get()))
            descriptors.push_back(std::atoi(entry->d_name));
    std::sort(descriptors.begin(), descriptors.end());
    std::vector<std::string> texts;
    texts.reserve(descriptors.size());
    for (const int descriptor : descriptors)
        texts.push_back(std::to_string(descriptor) + " " + Target(descriptor));
    return texts;
}
