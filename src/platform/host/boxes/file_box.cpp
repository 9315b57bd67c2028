// GetOpenFileNameW and GetSaveFileNameW: a box with a field for the name of the file and two buttons. It has
// no list of files.
#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "platform/host/api/comdlg32.h"
#include "platform/host/boxes/box.h"
#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/hooks/test_hooks.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

using Text = std::u16string;
using View = std::u16string_view;

constexpr int NAME_ID = 0x47C;
constexpr int NAME_LABEL_ID = 0x442;
constexpr int BOX_WIDTH = 520;
constexpr int BOX_HEIGHT = 130;

enum class Purpose { Open, Save };
enum class FileKind { Missing, File, Folder };

struct FileBox {
    Purpose purpose;
    const OPENFILENAMEW& request;
    Text folder;     // the base of relative names
    Text extension;  // added to a name without one; may be empty
    Box box;
    HWND name_field = nullptr;
    Text chosen;  // the full path after IDOK
};

struct LastBox {
    DWORD error = 0;  // for CommDlgExtendedError
    FileBoxRequest request;
};

LastBox last_box;

Text TextOrEmpty(LPCWSTR text) {
    return text == nullptr ? Text() : Text(text);
}

FileBoxRequest RecordOf(const OPENFILENAMEW& request) {
    Text filter;
    for (const WCHAR* text = request.lpstrFilter; *text != 0; text += View(text).size() + 1)
        filter += Text(text) + u'|';
    return {request.hwndOwner,
            request.Flags,
            request.nMaxFile,
            filter,
            TextOrEmpty(request.lpstrDefExt),
            TextOrEmpty(request.lpstrInitialDir),
            request.lpstrFile};
}

// --- names ---

FileKind KindOf(const Text& path) {
    const std::optional<std::string> native = ToNativePath(path.c_str());
    struct stat status = {};
    if (!native || stat(native->c_str(), &status) != 0)
        return FileKind::Missing;
    return S_ISDIR(status.st_mode) ? FileKind::Folder : FileKind::File;
}

// Whether the path starts with neither a drive nor a root.
bool IsRelative(View path) {
    return path.find(u':') == View::npos && !path.starts_with(u'\\');
}

// The full path; empty, with the last error set, if no file can have this name.
Text FullPathOf(const Text& path) {
    const std::optional<std::string> native = ToNativePath(path.c_str());
    return native ? FromNativePath(*native) : Text();
}

Text ResolveName(const FileBox& file_box, const Text& name) {
    return FullPathOf(IsRelative(name) ? file_box.folder + u'\\' + name : name);
}

View LastElement(View path) {
    const std::size_t separator = path.rfind(u'\\');
    return separator == View::npos ? path : path.substr(separator + 1);
}

Text ParentOf(View path) {
    const std::size_t separator = path.rfind(u'\\');
    // A root folder keeps its separator.
    return Text(path.substr(0, separator == 2 ? 3 : separator));
}

// The extension for names without one: that of the first filter. None if the request has no default
// extension.
Text ExtensionOf(const OPENFILENAMEW& request) {
    if (request.lpstrDefExt == nullptr)
        return {};
    const View description = request.lpstrFilter;
    const View pattern = request.lpstrFilter + description.size() + 1;
    if (!pattern.starts_with(u"*.") || pattern.find_first_of(u"*?;", 1) != View::npos)
        NotImplemented("GetOpenFileNameW, GetSaveFileNameW",
                       "a default extension with several patterns in the filter");
    return Text(pattern.substr(1));
}

bool HasExtension(View path) {
    return LastElement(path).find(u'.') != View::npos;
}

// --- the answer of the user ---

int Ask(const FileBox& file_box, const WCHAR* text, UINT flags) {
    return MessageBoxW(file_box.box.window, text, u"Fichier", flags);
}

void Complain(const FileBox& file_box, const WCHAR* text) {
    Ask(file_box, text, MB_OK | MB_ICONWARNING);
}

// Adds the default extension to a path without one. When opening, an existing file without extension has
// precedence.
Text WithExtension(const FileBox& file_box, const Text& path) {
    const bool is_there = file_box.purpose == Purpose::Open && KindOf(path) == FileKind::File;
    return HasExtension(path) || is_there ? path : path + file_box.extension;
}

bool Accepts(const FileBox& file_box, const Text& path) {
    const FileKind kind = KindOf(path);
    if (KindOf(ParentOf(path)) != FileKind::Folder) {
        Complain(file_box, u"Ce dossier n'existe pas.");
        return false;
    }
    if (file_box.purpose == Purpose::Open) {
        if (kind == FileKind::Missing)
            Complain(file_box, u"Ce fichier n'existe pas.");
        return kind != FileKind::Missing;
    }
    return kind != FileKind::File || Ask(file_box, u"Ce fichier existe déjà.\nVoulez-vous le remplacer ?",
                                         MB_YESNO | MB_ICONWARNING) == IDYES;
}

Text TypedName(const FileBox& file_box) {
    const SuspendHooks suspended;
    Text name(static_cast<std::size_t>(GetWindowTextLengthW(file_box.name_field)) + 1, u'\0');
    GetWindowTextW(file_box.name_field, name.data(), static_cast<int>(name.size()));
    name.pop_back();
    if (name.size() >= 2 && name.starts_with(u'"') && name.ends_with(u'"'))
        name = name.substr(1, name.size() - 2);
    return name;
}

void Confirm(FileBox& file_box) {
    const Text name = TypedName(file_box);
    if (name.empty())
        return;
    const Text path = name.find(u'/') == Text::npos ? ResolveName(file_box, name) : Text();
    if (path.empty()) {
        Complain(file_box, u"Ce nom de fichier n'est pas valide.");
        return;
    }
    if (KindOf(path) == FileKind::Folder) {
        file_box.folder = path;
        SetWindowTextW(file_box.name_field, u"");
        return;
    }
    const Text completed = WithExtension(file_box, path);
    if (Accepts(file_box, completed)) {
        file_box.chosen = completed;
        CloseBox(file_box.box, IDOK);
    }
}

// --- the box ---

// Sets the folder of the box to the first of these that exists: the folder of the proposed name,
// lpstrInitialDir, the current folder. In the first case removes the folder from the name.
void SetFolder(FileBox& file_box, Text& name) {
    const OPENFILENAMEW& request = file_box.request;
    file_box.folder = FullPathOf(u".");
    if (KindOf(request.lpstrInitialDir) == FileKind::Folder)
        file_box.folder = FullPathOf(request.lpstrInitialDir);
    if (name.find(u'\\') != Text::npos) {
        const Text folder = ParentOf(ResolveName(file_box, name));
        if (KindOf(folder) == FileKind::Folder) {
            file_box.folder = folder;
            name = LastElement(name);
        }
    }
}

void FillBox(FileBox& file_box, const Text& name) {
    const WCHAR* const confirm = file_box.purpose == Purpose::Save ? u"&Enregistrer" : u"&Ouvrir";
    Box& box = file_box.box;
    AddToBox(box, {u"Static", u"Nom du fichier :", NAME_LABEL_ID, 0, {12, 14, 100, 20}});
    file_box.name_field =
        AddToBox(box, {u"Edit", u"", NAME_ID, WS_TABSTOP | ES_AUTOHSCROLL, {116, 12, 380, 22}});
    AddToBox(box, {u"Button", confirm, IDOK, WS_TABSTOP | BS_DEFPUSHBUTTON, {300, 48, 94, 26}});
    AddToBox(box, {u"Button", u"Annuler", IDCANCEL, WS_TABSTOP, {402, 48, 94, 26}});
    box.focus = file_box.name_field;
    const SuspendHooks suspended;
    SetWindowTextW(file_box.name_field, name.c_str());
    SendMessageW(file_box.name_field, EM_SETSEL, 0, -1);
}

// Stores the path in lpstrFile; changes no other field of the request.
BOOL StorePath(const Text& path, const OPENFILENAMEW& request) {
    if (path.size() >= request.nMaxFile)
        NotImplemented("GetOpenFileNameW, GetSaveFileNameW", "a path that is longer than the buffer");
    *std::copy(path.begin(), path.end(), request.lpstrFile) = u'\0';
    return TRUE;
}

void CheckRequest(Purpose purpose, const OPENFILENAMEW& request) {
    const DWORD flags = OFN_EXPLORER | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR |
                        (purpose == Purpose::Save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
    const bool has_hook = request.lpfnHook != nullptr || request.lpTemplateName != nullptr;
    const bool has_more = request.lpstrCustomFilter != nullptr || request.lpstrFileTitle != nullptr ||
                          request.lpstrTitle != nullptr;
    const bool has_less = request.lpstrFilter == nullptr || request.lpstrInitialDir == nullptr;
    const WCHAR* const first = request.lpstrFile;
    const WCHAR* const last = first + request.nMaxFile;
    if (std::find(first, last, u'\0') == last)
        NotImplemented("GetOpenFileNameW, GetSaveFileNameW", "a proposed name without a terminating zero");
    if (request.lStructSize != sizeof(OPENFILENAMEW) || request.Flags != flags || has_hook || has_more ||
        has_less || request.nFilterIndex > 1)
        NotImplemented("GetOpenFileNameW, GetSaveFileNameW", "these flags or fields");
}

BOOL ShowFileBox(const char* call, Purpose purpose, OPENFILENAMEW& request) {
    CheckRequest(purpose, request);
    const bool fails = CallFails(call);
    last_box.error = fails ? GetLastError() : 0;
    last_box.request = RecordOf(request);
    if (fails)
        return FALSE;
    FileBox file_box{purpose, request, {}, ExtensionOf(request), {}, nullptr, {}};
    file_box.box.on_command = [&file_box](int id) {
        if (id == IDOK)
            Confirm(file_box);
        else if (id == IDCANCEL)
            CloseBox(file_box.box, IDCANCEL);
    };
    Text name = request.lpstrFile;
    const bool has_no_path = !name.empty() && FullPathOf(name).empty();
    if (has_no_path && (GetLastError() == ERROR_INVALID_NAME || name.size() >= MAX_PATH)) {
        last_box.error = FNERR_INVALIDFILENAME;
        return FALSE;
    }
    SetFolder(file_box, name);
    const WCHAR* const title = purpose == Purpose::Save ? u"Enregistrer sous" : u"Ouvrir";
    MakeBox(file_box.box, request.hwndOwner, title, BOX_WIDTH, BOX_HEIGHT);
    FillBox(file_box, name);
    if (RunBox(file_box.box) != IDOK)
        return FALSE;
    // The box for opening changes the current folder even with OFN_NOCHANGEDIR.
    if (purpose == Purpose::Open)
        SetCurrentDirectoryW(ParentOf(file_box.chosen).c_str());
    return StorePath(file_box.chosen, request);
}

}  // namespace

const FileBoxRequest& LastFileBox() {
    return last_box.request;
}

void ResetLastFileBox() {
    last_box = {};
}

}  // namespace host

BOOL WINAPI GetOpenFileNameW(OPENFILENAMEW* request) {
    return host::ShowFileBox("GetOpenFileNameW", host::Purpose::Open, *request);
}

BOOL WINAPI GetSaveFileNameW(OPENFILENAMEW* request) {
    return host::ShowFileBox("GetSaveFileNameW", host::Purpose::Save, *request);
}

DWORD WINAPI CommDlgExtendedError() {
    return host::last_box.error;
}
