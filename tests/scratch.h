// Files for tests: a folder of the test's own and plain operations on files, which go past the program's
// platform calls. Paths are Windows paths in full; whatever fails here throws.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win32.h"

// A fresh folder below the system's folder for temporary files, with a blank and accents in its name. It goes
// with everything in it when the record goes.
struct ScratchFolder {
    WideText path;  // without a separator at its end

    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    // The path of a file or folder in this one.
    WideText Of(WideView name) const;
};

// The path as the machine's own libraries take it.
std::filesystem::path NativePath(WideView path);
// The way back, in full.
WideText WindowsPath(const std::filesystem::path& native);

// What this process holds: handles and windows, each kind by itself, and memory (0 where nothing tells).
struct Held {
    std::vector<std::size_t> counts;
    std::size_t bytes = 0;
};
Held WhatIsHeld();

// The text on the clipboard.
WideText ClipboardText();

void WriteBytes(WideView path, std::string_view bytes);
std::string ReadBytes(WideView path);
// True for files, folders and links, even a link that leads nowhere.
bool Exists(WideView path);
// The names in the folder, sorted.
std::vector<WideText> ListFolder(WideView path);
void MakeFolder(WideView path);
// Removes a file, a link or a whole folder.
void Remove(WideView path);
// Makes a symbolic link at the path; false where the machine does not let the user do so.
bool MakeLink(WideView path, WideView target);

// Well-formed text there and back.
std::string Narrow(WideView text);
WideText Wide(std::string_view utf8);
