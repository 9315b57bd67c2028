// GetOpenFileNameW and GetSaveFileNameW: a box with the name of the file, typed or filled in, and two
// buttons. There is no list of files to choose from.
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/host/api/comdlg32.h"
#include "platform/host/boxes/box.h"
#include "platform/host/boxes/inspect.h"
#include "platform/host/controls/control.h"
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"
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

// One showing of a file box.
struct Showing {
    Purpose purpose;
    const OPENFILENAMEW& request;
    Text folder;     // where relative names start
    Text extension;  // what a name without one gets; empty for nothing
    Box box;
    HWND name_field = nullptr;
    Text chosen;  // the full path, once there is one
};

struct LastBox {
    DWORD error = 0;  // why it gave FALSE
    FileBoxRequest request;
};

LastBox& Last() {
    return Lasting<LastBox>();
}

Text TextOrNone(LPCWSTR text) {
    return text == nullptr ? Text() : Text(text);
}

FileBoxRequest Recorded(const OPENFILENAMEW& request) {
    Text filter;
    for (const WCHAR* text = request.lpstrFilter; *text != 0; text += View(text).size() + 1)
        filter += Text(text) + u'|';
    return {request.hwndOwner,
            request.Flags,
            request.nMaxFile,
            filter,
            TextOrNone(request.lpstrDefExt),
            TextOrNone(request.lpstrInitialDir),
            request.lpstrFile};
}

// --- names ---

FileKind KindOf(const Text& path) {
    std::string native;
    struct stat status {};
    if (!FindNative(path.c_str(), native) || stat(native.c_str(), &status) != 0)
        return FileKind::Missing;
    return S_ISDIR(status.st_mode) ? FileKind::Folder : FileKind::File;
}

// Without a drive or a root at its start.
bool IsRelative(View path) {
    return path.find(u':') == View::npos && !path.starts_with(u'\\');
}

// The full path by the rules of Windows; empty when no file can have this name.
Text FullPathOf(const Text& path) {
    std::string native;
    return FindNative(path.c_str(), native) ? WidePath(native) : Text();
}

Text ResolveName(const Showing& showing, const Text& name) {
    return FullPathOf(IsRelative(name) ? showing.folder + u'\\' + name : name);
}

View LastElement(View path) {
    const std::size_t separator = path.rfind(u'\\');
    return separator == View::npos ? path : path.substr(separator + 1);
}

Text ParentOf(View path) {
    const std::size_t separator = path.rfind(u'\\');
    // The root keeps its separator.
    return Text(path.substr(0, separator == 2 ? 3 : separator));
}

// What stands for the default extension: that of the first filter.
Text ExtensionOf(const OPENFILENAMEW& request) {
    if (request.lpstrDefExt == nullptr)
        return {};
    const View description = request.lpstrFilter;
    const View pattern = request.lpstrFilter + description.size() + 1;
    if (!pattern.starts_with(u"*.") || pattern.find_first_of(u"*?;", 1) != View::npos)
        NotImplemented("GetOpenFileNameW, GetSaveFileNameW", "a default extension beside several patterns");
    return Text(pattern.substr(1));
}

bool HasExtension(View path) {
    return LastElement(path).find(u'.') != View::npos;
}

// --- what the user confirms ---

int Ask(const Showing& showing, const WCHAR* text, UINT flags) {
    return MessageBoxW(showing.box.window, text, u"Fichier", flags);
}

void Complain(const Showing& showing, const WCHAR* text) {
    Ask(showing, text, MB_OK | MB_ICONWARNING);
}

// A name without an extension stands for the file of just that name first.
Text WithExtension(const Showing& showing, const Text& path) {
    const bool is_there = showing.purpose == Purpose::Open && KindOf(path) == FileKind::File;
    return HasExtension(path) || is_there ? path : path + showing.extension;
}

bool MayTake(const Showing& showing, const Text& path) {
    const FileKind kind = KindOf(path);
    if (KindOf(ParentOf(path)) != FileKind::Folder) {
        Complain(showing, u"Ce dossier n'existe pas.");
        return false;
    }
    if (showing.purpose == Purpose::Open) {
        if (kind == FileKind::Missing)
            Complain(showing, u"Ce fichier n'existe pas.");
        return kind != FileKind::Missing;
    }
    return kind != FileKind::File || Ask(showing, u"Ce fichier existe déjà.\nVoulez-vous le remplacer ?",
                                         MB_YESNO | MB_ICONWARNING) == IDYES;
}

Text TypedName(const Showing& showing) {
    const OwnCalls own;
    Text name(static_cast<std::size_t>(GetWindowTextLengthW(showing.name_field)) + 1, u'\0');
    GetWindowTextW(showing.name_field, name.data(), static_cast<int>(name.size()));
    name.pop_back();
    if (name.size() >= 2 && name.starts_with(u'"') && name.ends_with(u'"'))
        name = name.substr(1, name.size() - 2);
    return name;
}

void Confirm(Showing& showing) {
    const Text name = TypedName(showing);
    if (name.empty())
        return;
    const Text path = name.find(u'/') == Text::npos ? ResolveName(showing, name) : Text();
    if (path.empty()) {
        Complain(showing, u"Ce nom de fichier n'est pas valide.");
        return;
    }
    if (KindOf(path) == FileKind::Folder) {
        showing.folder = path;
        SetWindowTextW(showing.name_field, u"");
        return;
    }
    const Text completed = WithExtension(showing, path);
    if (MayTake(showing, completed)) {
        showing.chosen = completed;
        CloseBox(showing.box, IDOK);
    }
}

// --- the box ---

// The folder of the first file where it has one, then the one asked for, then the current one.
void StartFolder(Showing& showing, Text& name) {
    const OPENFILENAMEW& request = showing.request;
    showing.folder = FullPathOf(u".");
    if (KindOf(request.lpstrInitialDir) == FileKind::Folder)
        showing.folder = FullPathOf(request.lpstrInitialDir);
    if (name.find(u'\\') != Text::npos) {
        const Text folder = ParentOf(ResolveName(showing, name));
        if (KindOf(folder) == FileKind::Folder) {
            showing.folder = folder;
            name = LastElement(name);
        }
    }
}

void FillBox(Showing& showing, const Text& name) {
    const WCHAR* const confirm = showing.purpose == Purpose::Save ? u"&Enregistrer" : u"&Ouvrir";
    Box& box = showing.box;
    AddToBox(box, {u"Static", u"Nom du fichier :", NAME_LABEL_ID, 0, {12, 14, 100, 20}});
    showing.name_field =
        AddToBox(box, {u"Edit", u"", NAME_ID, WS_TABSTOP | ES_AUTOHSCROLL, {116, 12, 380, 22}});
    AddToBox(box, {u"Button", confirm, IDOK, WS_TABSTOP | BS_DEFPUSHBUTTON, {300, 48, 94, 26}});
    AddToBox(box, {u"Button", u"Annuler", IDCANCEL, WS_TABSTOP, {402, 48, 94, 26}});
    box.focus = showing.name_field;
    const OwnCalls own;
    SetWindowTextW(showing.name_field, name.c_str());
    SendMessageW(showing.name_field, EM_SETSEL, 0, -1);
}

// Of the answer, just the path is written.
BOOL Deliver(const Text& path, const OPENFILENAMEW& request) {
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
        NotImplemented("GetOpenFileNameW, GetSaveFileNameW", "a first name without its end");
    if (request.lStructSize != sizeof(OPENFILENAMEW) || request.Flags != flags || has_hook || has_more ||
        has_less || request.nFilterIndex > 1)
        NotImplemented("GetOpenFileNameW, GetSaveFileNameW", "these flags or fields");
}

BOOL ShowFileBox(const char* call, Purpose purpose, OPENFILENAMEW& request) {
    CheckRequest(purpose, request);
    const bool fails = CallFails(call);
    Last().error = fails ? GetLastError() : 0;
    Last().request = Recorded(request);
    if (fails)
        return FALSE;
    Showing showing{purpose, request, {}, ExtensionOf(request), {}, nullptr, {}};
    showing.box.on_command = [&showing](int id) {
        if (id == IDOK)
            Confirm(showing);
        else if (id == IDCANCEL)
            CloseBox(showing.box, IDCANCEL);
    };
    Text name = request.lpstrFile;
    const bool is_absent = !name.empty() && FullPathOf(name).empty();
    if (is_absent && (GetLastError() == ERROR_INVALID_NAME || name.size() >= MAX_PATH)) {
        Last().error = FNERR_INVALIDFILENAME;
        return FALSE;
    }
    StartFolder(showing, name);
    const WCHAR* const title = purpose == Purpose::Save ? u"Enregistrer sous" : u"Ouvrir";
    MakeBox(showing.box, request.hwndOwner, title, BOX_WIDTH, BOX_HEIGHT);
    FillBox(showing, name);
    if (RunBox(showing.box) != IDOK)
        return FALSE;
    // The box for opening may leave its folder as the current one, whatever its flags say.
    if (purpose == Purpose::Open)
        SetCurrentDirectoryW(ParentOf(showing.chosen).c_str());
    return Deliver(showing.chosen, request);
}

}  // namespace

const FileBoxRequest& LastFileBox() {
    return Last().request;
}

}  // namespace host

BOOL WINAPI GetOpenFileNameW(OPENFILENAMEW* request) {
    return host::ShowFileBox("GetOpenFileNameW", host::Purpose::Open, *request);
}

BOOL WINAPI GetSaveFileNameW(OPENFILENAMEW* request) {
    return host::ShowFileBox("GetSaveFileNameW", host::Purpose::Save, *request);
}

DWORD WINAPI CommDlgExtendedError() {
    return host::Last().error;
}
