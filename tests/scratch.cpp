// Files for tests, by the language's own library.
#include "scratch.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

void AppendUtf8(std::string& text, char32_t point) {
    if (point < 0x80) {
        text += static_cast<char>(point);
        return;
    }
    const int tail = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned, 4> LEADS = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(LEADS[static_cast<std::size_t>(tail)] | (point >> (6 * tail)));
    for (int left = tail - 1; left >= 0; left--)
        text += static_cast<char>(0x80 | ((point >> (6 * left)) & 0x3F));
}

fs::path FreshFolder() {
    static unsigned made = 0;
    const std::string run = std::to_string(GetCurrentProcessId()) + "-" + std::to_string(made++);
    return fs::temp_directory_path() / ("veldrane-tests-" + run);
}

}  // namespace

ScratchFolder::ScratchFolder() {
    const fs::path outer = FreshFolder();
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
    std::string narrow;
    for (std::size_t at = 0; at < text.size(); at++) {
        const char32_t unit = text[at];
        const bool starts_pair = unit >= 0xD800 && unit < 0xDC00 && at + 1 < text.size();
        const char32_t next = starts_pair ? text[at + 1] : 0;
        if (next >= 0xDC00 && next < 0xE000) {
            AppendUtf8(narrow, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            at++;
        } else if (unit >= 0xD800 && unit < 0xE000) {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "<%04X>", static_cast<unsigned>(unit));
            narrow += code.data();
        } else {
            AppendUtf8(narrow, unit);
        }
    }
    return narrow;
}

WideText Wide(std::string_view utf8) {
    const std::u16string text = fs::path(std::u8string(utf8.begin(), utf8.end())).u16string();
    return WideText(text.begin(), text.end());
}
