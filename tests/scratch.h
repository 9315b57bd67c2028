// A temporary folder for a test, and operations on files by the standard library instead of the platform
// calls of the program. Paths are full Windows paths. All functions throw when they fail.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win32.h"

// A new folder in the system's folder for temporary files, with a space and accents in its name. The
// destructor deletes it with its contents.
struct ScratchFolder {
    WideText path;  // without a separator at the end

    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    // The path of a file or folder in this folder.
    WideText Of(WideView name) const;
};

// Conversions between Windows paths and paths of the machine. WindowsPath returns a full path.
std::filesystem::path NativePath(WideView path);
WideText WindowsPath(const std::filesystem::path& native);

// The path of a file in the folder of the test program.
WideText BuildFile(WideView name);

// The resources that this process uses.
struct Resources {
    std::vector<std::size_t> counts;  // of handles and windows, by kind
    std::size_t bytes = 0;            // of memory; 0 when not known
};
Resources UsedResources();

WideText ClipboardText();

void WriteBytes(WideView path, std::string_view bytes);
std::string ReadBytes(WideView path);
// True for files, folders and links, also for a link without a target.
bool Exists(WideView path);
// The names in the folder, sorted.
std::vector<WideText> ListFolder(WideView path);
void MakeFolder(WideView path);
// Removes a file, a link, or a folder with its contents.
void Remove(WideView path);
// Creates a symbolic link at the path; false when the user has no permission.
bool MakeLink(WideView path, WideView target);

// Conversions of well-formed text between UTF-16 and UTF-8.
std::string Narrow(WideView text);
WideText Wide(std::string_view utf8);
