// GetOpenFileNameW and GetSaveFileNameW: a box with the name of the file, typed or filled in, and two
// buttons. There is no list of files to choose from.
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/host/api/comdlg32.h"
#include "platform/host/boxes/box.h"
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
    OPENFILENAMEW* request;
    Text folder;     // where relative names start
    Text extension;  // what a name without one gets; empty for nothing
    Box box;
    HWND name_field = nullptr;
    Text chosen;  // the full path, once there is one
};

// Why the last box gave FALSE.
DWORD& ExtendedError() {
    static DWORD error = 0;
    return error;
}

BOOL Refuse(DWORD error) {
    ExtendedError() = error;
    return FALSE;
}

// --- names ---

FileKind KindOf(const Text& path) {
    std::string native;
    struct stat status {};
    if (!FindNative(path.c_str(), native) || stat(native.c_str(), &status) != 0)
        return FileKind::Missing;
    return S_ISDIR(status.st_mode) ? FileKind::Folder : FileKind::File;
}

// Without a drive or a root in front.
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

// What stands for the default extension: that of the first filter where it names just one, otherwise the one
// given.
Text ExtensionOf(const OPENFILENAMEW& request) {
    if (request.lpstrDefExt == nullptr)
        return {};
    if (request.lpstrFilter != nullptr) {
        const View description = request.lpstrFilter;
        const View pattern = request.lpstrFilter + description.size() + 1;
        if (pattern.starts_with(u"*.") && pattern.find_first_of(u"*?;", 1) == View::npos)
            return Text(pattern.substr(1));
    }
    return Text(u".") + request.lpstrDefExt;
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

bool HasFlag(const Showing& showing, DWORD flag) {
    return (showing.request->Flags & flag) != 0;
}

// A name without an extension stands for the file of just that name first.
Text WithExtension(const Showing& showing, const Text& path) {
    const bool is_there = showing.purpose == Purpose::Open && KindOf(path) == FileKind::File;
    return HasExtension(path) || is_there ? path : path + showing.extension;
}

bool MayTake(const Showing& showing, const Text& path) {
    const FileKind kind = KindOf(path);
    if (HasFlag(showing, OFN_PATHMUSTEXIST) && KindOf(ParentOf(path)) != FileKind::Folder) {
        Complain(showing, u"Ce dossier n'existe pas.");
        return false;
    }
    if (kind == FileKind::Missing && HasFlag(showing, OFN_FILEMUSTEXIST)) {
        Complain(showing, u"Ce fichier n'existe pas.");
        return false;
    }
    if (kind == FileKind::File && HasFlag(showing, OFN_OVERWRITEPROMPT)) {
        return Ask(showing, u"Ce fichier existe déjà.\nVoulez-vous le remplacer ?",
                   MB_YESNO | MB_ICONWARNING) == IDYES;
    }
    return true;
}

Text TypedName(const Showing& showing) {
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
    const OPENFILENAMEW& request = *showing.request;
    showing.folder = FullPathOf(u".");
    if (request.lpstrInitialDir != nullptr && KindOf(request.lpstrInitialDir) == FileKind::Folder)
        showing.folder = FullPathOf(request.lpstrInitialDir);
    if (name.find(u'\\') != Text::npos) {
        const Text folder = ParentOf(name);
        if (!IsRelative(name) && KindOf(folder) == FileKind::Folder) {
            showing.folder = FullPathOf(folder);
            name = LastElement(name);
        }
    }
}

bool FillBox(Showing& showing, const Text& name) {
    const bool saves = showing.purpose == Purpose::Save;
    const Box& box = showing.box;
    const bool is_labelled =
        AddToBox(box, {u"Static", u"Nom du fichier :", NAME_LABEL_ID, 0, {12, 14, 100, 20}}) != nullptr;
    showing.name_field =
        AddToBox(box, {u"Edit", u"", NAME_ID, WS_TABSTOP | ES_AUTOHSCROLL, {116, 12, 380, 22}});
    const HWND confirm = AddToBox(box, {u"Button",
                                        saves ? u"&Enregistrer" : u"&Ouvrir",
                                        IDOK,
                                        WS_TABSTOP | BS_DEFPUSHBUTTON,
                                        {300, 48, 94, 26}});
    const HWND cancel = AddToBox(box, {u"Button", u"Annuler", IDCANCEL, WS_TABSTOP, {402, 48, 94, 26}});
    if (!is_labelled || showing.name_field == nullptr || confirm == nullptr || cancel == nullptr)
        return false;
    showing.box.focus = showing.name_field;
    SetWindowTextW(showing.name_field, name.c_str());
    SendMessageW(showing.name_field, EM_SETSEL, 0, -1);
    return true;
}

// Writes the answer where the caller wants it; the first character tells the size needed when there is no
// room.
BOOL Deliver(const Text& path, OPENFILENAMEW& request) {
    if (path.size() + 1 > request.nMaxFile) {
        if (request.nMaxFile > 0)
            request.lpstrFile[0] = static_cast<WCHAR>(path.size() + 1);
        return Refuse(FNERR_BUFFERTOOSMALL);
    }
    *std::copy(path.begin(), path.end(), request.lpstrFile) = u'\0';
    const View name = LastElement(path);
    const std::size_t dot = name.rfind(u'.');
    const std::size_t name_start = path.size() - name.size();
    request.nFileOffset = static_cast<WORD>(name_start);
    request.nFileExtension = static_cast<WORD>(dot == View::npos ? 0 : name_start + dot + 1);
    request.nFilterIndex = 1;
    return TRUE;
}

void CheckRequest(const OPENFILENAMEW& request) {
    constexpr DWORD KNOWN_FLAGS = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR |
                                  OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST | OFN_EXPLORER;
    constexpr DWORD NEEDED_FLAGS = OFN_NOCHANGEDIR | OFN_EXPLORER;
    const bool has_hook = request.lpfnHook != nullptr || request.lpTemplateName != nullptr;
    const bool has_more = request.lpstrCustomFilter != nullptr || request.lpstrFileTitle != nullptr;
    if ((request.Flags & ~KNOWN_FLAGS) != 0 || (request.Flags & NEEDED_FLAGS) != NEEDED_FLAGS || has_hook ||
        has_more || request.nFilterIndex > 1)
        NotImplemented("GetOpenFileNameW, GetSaveFileNameW", "these flags or fields");
}

BOOL ShowFileBox(const char* call, Purpose purpose, OPENFILENAMEW* request) {
    if (CallFails(call))
        return Refuse(GetLastError());
    if (request == nullptr || request->lStructSize != sizeof(OPENFILENAMEW))
        return Refuse(CDERR_STRUCTSIZE);
    CheckRequest(*request);
    ExtendedError() = 0;
    Showing showing{purpose, request, {}, ExtensionOf(*request), {}, nullptr, {}};
    showing.box.on_command = [&showing](int id) {
        if (id == IDOK)
            Confirm(showing);
        else if (id == IDCANCEL)
            CloseBox(showing.box, IDCANCEL);
    };
    Text name = request->lpstrFile;
    if (!name.empty() && FullPathOf(name).empty())
        return Refuse(FNERR_INVALIDFILENAME);
    StartFolder(showing, name);
    const WCHAR* const usual_title = purpose == Purpose::Save ? u"Enregistrer sous" : u"Ouvrir";
    const WCHAR* const title = request->lpstrTitle == nullptr ? usual_title : request->lpstrTitle;
    if (!MakeBox(showing.box, request->hwndOwner, title, BOX_WIDTH, BOX_HEIGHT))
        return Refuse(CDERR_DIALOGFAILURE);
    if (!FillBox(showing, name)) {
        DestroyWindow(showing.box.window);
        return Refuse(CDERR_DIALOGFAILURE);
    }
    if (RunBox(showing.box) != IDOK)
        return FALSE;
    // The box for opening may leave its folder as the current one, whatever its flags say.
    if (purpose == Purpose::Open)
        SetCurrentDirectoryW(ParentOf(showing.chosen).c_str());
    return Deliver(showing.chosen, *request);
}

}  // namespace
}  // namespace host

BOOL WINAPI GetOpenFileNameW(OPENFILENAMEW* request) {
    return host::ShowFileBox("GetOpenFileNameW", host::Purpose::Open, request);
}

BOOL WINAPI GetSaveFileNameW(OPENFILENAMEW* request) {
    return host::ShowFileBox("GetSaveFileNameW", host::Purpose::Save, request);
}

DWORD WINAPI CommDlgExtendedError() {
    return host::ExtendedError();
}
