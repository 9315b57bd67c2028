// What a test can see of the boxes that they do not show.
#pragma once

#include <string>

#include "platform/host/api/comdlg32.h"

namespace host {

// What the last file box was asked, with its texts as they stood then.
struct FileBoxRequest {
    HWND owner = nullptr;
    DWORD flags = 0;
    DWORD capacity = 0;     // characters
    std::u16string filter;  // all texts of the list, a bar after each
    std::u16string extension;
    std::u16string folder;
    std::u16string name;
};
const FileBoxRequest& LastFileBox();

}  // namespace host
