// Files for tests, by the standard library.
#include "scratch.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

fs::path NewFolder() {
    static unsigned count = 0;
    const std::string number = std::to_string(GetCurrentProcessId()) + "-" + std::to_string(count++);
    return fs::temp_directory_path() / ("veldrane-tests-" + number);
}

}  // namespace

ScratchFolder::ScratchFolder() {
    const fs::path outer = NewFolder();
    fs::remove_all(outer);
    fs::create_directories(outer / fs::path(u8"été 1"));
    path = WindowsPath(outer / fs::path(u8"été 1"));
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(NativePath(path).parent_path(), ignored);
}

WideText ScratchFolder::Of(WideView name) const {
    return path + TEXT("\\") + WideText(name);
}

WideText BuildFile(WideView name) {
    WideText program(32768, WCHAR{});
    program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    return program.substr(0, program.rfind(TEXT('\\')) + 1) + WideText(name);
}

void WriteBytes(WideView path, std::string_view bytes) {
    std::ofstream file(NativePath(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush())
        throw std::runtime_error("cannot write " + Narrow(path));
}

std::string ReadBytes(WideView path) {
    std::ifstream file(NativePath(path), std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + Narrow(path));
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool Exists(WideView path) {
    return fs::exists(fs::symlink_status(NativePath(path)));
}

std::vector<WideText> ListFolder(WideView path) {
    std::vector<WideText> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(NativePath(path))) {
        const WideText full = WindowsPath(entry.path());
        names.push_back(full.substr(full.rfind(TEXT('\\')) + 1));
    }
    std::sort(names.begin(), names.end());
    return names;
}

void MakeFolder(WideView path) {
    fs::create_directories(NativePath(path));
}

void Remove(WideView path) {
    fs::remove_all(NativePath(path));
}

bool MakeLink(WideView path, WideView target) {
    std::error_code error;
    fs::create_symlink(NativePath(target), NativePath(path), error);
    return !error;
}

std::string Narrow(WideView text) {
    const std::u8string utf8 = fs::path(std::u16string(text.begin(), text.end())).u8string();
    return {utf8.begin(), utf8.end()};
}

WideText Wide(std::string_view utf8) {
    const std::u16string text = fs::path(std::u8string(utf8.begin(), utf8.end())).u16string();
    return WideText(text.begin(), text.end());
}
