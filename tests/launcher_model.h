// A model of the launcher: the same actions change it and the program, and after each of them the program
// must show what the model expects. The model includes the user's files. All texts are UTF-8.
#pragma once

#include <algorithm>
#include <iterator>
#include <utility>

#include "demo/user/random_user.h"
#include "scratch.h"

namespace model {

using user::Action;
using user::Kind;

// A key of the configuration file and the control that shows its value.
struct Line {
    const char* key;
    UINT id;
    enum { Path, Text, Number, Choice } kind;
    const char* default_value;
    std::uint64_t lowest = 0, highest = 0;
    const char* label = "";
};
inline const Line LINES[] = {
    {"kernel", 201, Line::Path, ""},
    {"command", 203, Line::Text, ""},
    {"dump", 212, Line::Path, ""},
    {"ram_mib", 204, Line::Number, "128", 16, 2048, "RAM (16..2048 Mio)"},
    {"width", 208, Line::Number, "800", 1, 8192, "largeur (1..8192)"},
    {"height", 209, Line::Number, "600", 1, 8192, "hauteur (1..8192)"},
    {"zoom", 210, Line::Choice, "2"},
    {"timeout_ms", 205, Line::Number, "0", 0, 3600000, "délai (0..3600000 ms)"},
    {"explicit_video", 207, Line::Choice, "0"},
    {"headless", 211, Line::Choice, "0"},
    {"force_no_header", 206, Line::Choice, "0"},
    {"ide_primary_master", 401, Line::Path, ""},
    {"ide_primary_slave", 402, Line::Path, ""},
    {"ide_secondary_master", 403, Line::Path, ""},
    {"ide_secondary_slave", 404, Line::Path, ""},
};
inline const Line& LineOf(UINT id) {
    return *std::find_if(
        std::begin(LINES), std::end(LINES), [id](const Line& line) { return line.id == id; });
}

struct Record {
    std::map<std::string, std::string> values;
    std::vector<std::pair<std::string, std::string>> modules;  // path and arguments

    explicit Record(std::map<std::string, std::string> set = {}) : values(std::move(set)) {
        for (const Line& line : LINES)
            values.try_emplace(line.key, line.default_value);
    }
};

// The text of the file that a save writes.
inline std::string FileText(const Record& record) {
    std::string text = "# Veldrane VM - configuration UTF-8\nversion=1\n";
    for (const Line& line : LINES)
        text += line.key + ("=" + record.values.at(line.key)) + "\n";
    text += "module_count=" + std::to_string(record.modules.size()) + "\n";
    for (std::size_t at = 0; at < record.modules.size(); ++at) {
        const std::string name = "module." + std::to_string(at);
        text += name + ".path=" + record.modules[at].first + "\n";
        text += name + ".command=" + record.modules[at].second + "\n";
    }
    return text;
}

// --- paths ---

inline bool IsSeparator(char character) {
    return character == '\\' || character == '/';
}
inline bool HasDrive(const std::string& path) {
    return path.size() > 2 && path[1] == ':' && IsSeparator(path[2]);
}
inline std::string Parent(const std::string& path) {
    return path.substr(0, path.rfind('\\'));
}
inline std::string LastElement(const std::string& path) {
    return path.substr(path.find_last_of("\\/") + 1);
}

// The full path for the text of a path field: without dots and double separators.
inline std::string Resolved(const std::string& folder, const std::string& text) {
    if (text.empty())
        return {};
    std::string rest = folder.substr(2) + "\\" + text;
    if (HasDrive(text) || IsSeparator(text[0]))
        rest = HasDrive(text) ? text.substr(2) : text;
    std::vector<std::string> elements;
    for (std::size_t at = 0, end = 0; at < rest.size(); at = end + 1) {
        end = std::min(rest.find_first_of("\\/", at), rest.size());
        const std::string element = rest.substr(at, end - at);
        if (element == ".." && !elements.empty())
            elements.pop_back();
        else if (!element.empty() && element != "." && element != "..")
            elements.push_back(element);
    }
    std::string path = (HasDrive(text) ? text : folder).substr(0, 2);
    for (const std::string& element : elements)
        path += "\\" + element;
    return path + (elements.empty() || IsSeparator(rest.back()) ? "\\" : "");
}

// --- the launcher ---

struct File {
    std::string bytes;
    std::string load_error = {};  // the message when the file is no configuration
    Record record = Record();     // the result of a load otherwise
    bool exists = true;
};

struct Launcher {
    std::string home;
    std::map<std::string, File> files;
    bool default_is_folder = false;  // veldranevm.config is a folder, so a save fails

    std::map<UINT, std::string> form;
    Record config;
    bool dirty = false;
    std::string config_path, run_directory = home, log_path, log, log_text;
    std::string status = "Choisissez un noyau ELF, puis lancez la VM.";
    int selected = -1, page = 0;
    bool is_minimised = false, is_log_in_front = false;

    enum class Box { None, Error, Prompt, File, FileError, Overwrite } box = Box::None;
    enum class BoxPurpose { Load, Reset, Close, SaveAs, AddModule, Browse } box_purpose = BoxPurpose::Load;
    std::string box_text, box_folder, chosen;      // box_folder is empty when it is not known
    UINT browsed = 0, error_field = 0, focus = 0;  // focus is 0 when it is not known
    Record to_save;

    struct {
        bool runs = false, has_ended = false, is_dry = false;
        unsigned long code = 0;
        std::string folder;
    } engine;
    std::uint64_t now_ms = 0, tick_ms = 250;

    Launcher(std::string folder, std::map<std::string, File> user_files)
        : home(std::move(folder)), files(std::move(user_files)) {
        FillForm();
        if (const std::string path = home + "\\veldranevm.config"; IsFile(path))
            Load(path);
    }

    // --- time ---

    bool TickComesWithin(unsigned ms) const {
        return tick_ms < now_ms + ms;
    }

    void PassTime(unsigned ms) {
        now_ms += ms;
        if (tick_ms >= now_ms)
            return;
        Tick();
        tick_ms += ((now_ms - tick_ms) / 250 + 1) * 250;
    }

    void Tick() {
        if (engine.runs && engine.has_ended) {
            engine.runs = false;
            status = engine.is_dry ? "Configuration vérifiée. Vous pouvez lancer la VM." : "VM terminée.";
            if (engine.code != 0) {
                status = "Échec (code " + std::to_string(engine.code) + "). Consultez le journal.";
                ShowLog();
            }
        }
        RefreshLog();
    }

    // --- the log ---

    bool HasLog() const {
        return !log_path.empty() && Exists(Wide(log_path));
    }

    void ShowLog() {
        is_log_in_front = HasLog();
        if (HasLog())
            log = "visible";
        else
            status = "Aucun journal. Lancez une vérification ou la VM.";
        RefreshLog();
    }

    void RefreshLog() {
        if (log.empty() || !HasLog())
            return;
        log_text.clear();
        for (const char byte : ReadBytes(Wide(log_path))) {
            const bool is_bare = byte == '\n' && !log_text.ends_with('\r');
            log_text += is_bare ? "\r\n" : byte == '\0' ? "·" : std::string(1, byte);
        }
    }

    // --- actions ---

    // The controls that are enabled in some states only.
    std::map<UINT, bool> Enabling() const {
        const bool has_size = form.at(207) == "1", is_selected = selected >= 0;
        const bool is_above_another = is_selected && selected + 1 < static_cast<int>(config.modules.size());
        return {{208, has_size},    {209, has_size},     {210, form.at(211) == "0"},
                {304, is_selected}, {305, selected > 0}, {306, is_above_another},
                {307, is_selected}, {105, !engine.runs}, {106, !engine.runs}};
    }

    bool IsEnabled(UINT id) const {
        const auto enabling = Enabling();
        return enabling.count(id) == 0 || enabling.at(id);
    }

    bool IsFree() const {
        return box == Box::None && !is_minimised;
    }

    bool CanUse(UINT id) const {
        const bool is_shown = id < 302 || (page == 0) == (id >= 401);
        return IsFree() && is_shown && IsEnabled(id);
    }

    bool Launches(const Action& action) const {
        const bool by_key = action.kind == Kind::Key && action.number == VK_RETURN;
        return by_key || (action.kind == Kind::Click && (action.id == 105 || action.id == 106));
    }

    // Changes the model as the action changes the program. False, without a change, when the user cannot do
    // it.
    bool Apply(const Action& action) {
        focus = 0;
        is_log_in_front = false;
        switch (action.kind) {
            case Kind::Type:
                return CanUse(action.id) && Type(action.id, action.text);
            case Kind::Paste:
                return IsFree() && Edit(action.id, action.text);
            case Kind::Click:
                return CanUse(action.id) && Click(action.id);
            case Kind::Zoom: {
                const int zoom = form[210][0] - '0' + (action.number == VK_DOWN ? 1 : -1);
                return CanUse(210) && Edit(210, std::to_string(std::clamp(zoom, 1, 4)));
            }
            case Kind::Page:
                page = IsFree() ? action.number : page;
                return IsFree();
            case Kind::Row:
                if (!IsFree() || action.number >= static_cast<int>(config.modules.size()))
                    return false;
                return action.number == selected || SelectRow(action.number);
            case Kind::Key:
                if (action.id == 302)
                    return selected >= 0 && CanUse(302) && SelectNext(action.number == VK_DOWN ? 1 : -1);
                return CanUse(action.id) && (action.number != VK_RETURN || (IsEnabled(105) && Click(105)));
            case Kind::Answer:
                return AnswerBox(action.number);
            case Kind::Choose:
                return box == Box::File && ChooseFile(action.text);
            case Kind::EndEngine:
                return engine.runs && !std::exchange(engine.has_ended, true);
            case Kind::Toggle:
                return ToggleFile(home + "\\" + action.text);
            case Kind::Grow:
                return !engine.runs && HasLog();
            case Kind::CloseLog:
                return !is_minimised && log == "visible" && !(log = "hidden").empty();
            case Kind::Resize:
                return IsFree();
            case Kind::Show:
                if (box != Box::None || is_minimised == (action.number == SW_MINIMIZE))
                    return false;
                is_minimised = !is_minimised;
                return true;
            case Kind::Wait:
                return true;
            case Kind::Close:
                return IsFree() && dirty && Ask(BoxPurpose::Close);
        }
        return false;
    }

    bool Edit(UINT id, const std::string& text) {
        form[id] = text;
        if (id == 307 && selected >= 0)
            config.modules[static_cast<std::size_t>(selected)].second = text;
        dirty = dirty || id != 307 || selected >= 0;
        return true;
    }

    bool Type(UINT id, std::string text) {
        if (id != 307 && LineOf(id).kind == Line::Number)
            std::erase_if(text, [](char character) { return character < '0' || character > '9'; });
        if (form[id].size() > 7 && text.size() < 2)
            return false;  // the field may be too narrow for another digit
        return text.empty() || Edit(id, form[id] + text);
    }

    bool Click(UINT id) {
        switch (id) {
            case 101:
                return Ask(BoxPurpose::Load);
            case 102:
                SaveToCurrent();
                return true;
            case 103:
                if (ReadForm(to_save))
                    OpenFileBox(BoxPurpose::SaveAs, config_path);
                return true;
            case 104:
                return Ask(BoxPurpose::Reset);
            case 105:
            case 106:
                return Launch(id == 106);
            case 107:
                ShowLog();
                return true;
            case 206:
            case 207:
            case 211:
                return Edit(id, form[id] == "0" ? "1" : "0");
            case 303:
                return OpenFileBox(BoxPurpose::AddModule, "");
            case 304:
            case 305:
            case 306:
                return EditModules(id);
            default:  // a "Parcourir..." button
                browsed = id < 400 ? id - 1 : id - 10;
                return form[browsed].find('/') == std::string::npos &&
                       OpenFileBox(BoxPurpose::Browse, form[browsed]);
        }
    }

    // --- boxes ---

    bool Fail(const std::string& message, UINT field = 0) {
        error_field = IsEnabled(field) ? field : 0;
        status = message;
        box_text = "Veldrane VM\n" + message;
        box = Box::Error;
        return false;
    }

    bool Ask(BoxPurpose purpose) {
        box_purpose = purpose;
        box = dirty ? Box::Prompt : Box::None;
        box_text = "Configuration modifiée\nEnregistrer les modifications de la configuration ?";
        return dirty || Proceed();
    }

    bool Proceed() {
        if (box_purpose == BoxPurpose::Load)
            return OpenFileBox(box_purpose, "");
        return UseConfig(Record(), "", "Réglages par défaut. Choisissez un noyau ELF.");
    }

    bool AnswerBox(int button) {
        const Box answered = box;
        if (answered == Box::File && button == IDCANCEL) {
            box = Box::None;
            return true;
        }
        if (answered == Box::Error || answered == Box::FileError) {
            box = button != IDOK ? answered : answered == Box::Error ? Box::None : Box::File;
            box_folder.clear();
            focus = answered == Box::Error && button == IDOK ? error_field : 0;
            return button == IDOK;
        }
        const bool has_button = button == IDYES || button == IDNO || button == IDCANCEL;
        if (answered == Box::Overwrite && has_button && button != IDCANCEL) {
            box = Box::File;
            return button == IDNO || UseFile(chosen);
        }
        if (answered != Box::Prompt || !has_button ||
            (box_purpose == BoxPurpose::Close && button != IDCANCEL && !SaveFails(button)))
            return false;
        box = Box::None;
        if (button == IDNO || (button == IDYES && SaveToCurrent()))
            Proceed();
        return true;
    }

    // After a close and the answer Yes, the program continues only when the save fails.
    bool SaveFails(int button) const {
        return button == IDYES && !Launcher(*this).SaveToCurrent();
    }

    bool OpenFileBox(BoxPurpose purpose, const std::string& first_file) {
        box = Box::File;
        box_purpose = purpose;
        box_folder = run_directory;
        if (first_file.find('\\') != std::string::npos)
            box_folder = Parent(Resolved(run_directory, first_file));
        if (!IsFolder(box_folder))
            box_folder.clear();
        return true;
    }

    bool IsFile(const std::string& path) const {
        const auto file = files.find(path);
        return file != files.end() && file->second.exists;
    }

    bool IsFolder(const std::string& path) const {
        return path == home || path == Parent(home) || path == home + "\\deux" ||
               (default_is_folder && path == home + "\\veldranevm.config");
    }

    bool ChooseFile(const std::string& name) {
        const bool browses_for_dump = box_purpose == BoxPurpose::Browse && browsed == 212;
        const bool saves = box_purpose == BoxPurpose::SaveAs || browses_for_dump;
        chosen = Resolved(box_folder.empty() ? home : box_folder, name);
        if (IsFolder(chosen) || chosen.ends_with(".exe") || (box_folder.empty() && !HasDrive(name)))
            return false;  // a file box would open the folder
        const bool is_bare = LastElement(chosen).find('.') == std::string::npos;
        if (is_bare && !saves && IsFile(chosen + ".config"))
            return false;  // the two builds add the extension in different cases
        if (is_bare)
            chosen += box_purpose == BoxPurpose::Load || box_purpose == BoxPurpose::SaveAs ? ".config"
                      : browses_for_dump                                                   ? ".ppm"
                                                                                           : "";
        if (!IsFolder(Parent(chosen)) || (!saves && !IsFile(chosen)))
            box = Box::FileError;
        else if (saves && IsFile(chosen))
            box = Box::Overwrite;
        else
            UseFile(chosen);
        return true;
    }

    bool UseFile(const std::string& path) {
        box = Box::None;
        if (box_purpose == BoxPurpose::Load)
            Load(path);
        else if (box_purpose == BoxPurpose::SaveAs)
            Save(path, to_save);
        else if (box_purpose == BoxPurpose::Browse)
            Edit(browsed, path);
        else
            AddModule(path);
        return true;
    }

    // --- the form, the record and the file ---

    bool ReadForm(Record& record) {
        record = config;
        for (const UINT id : {204U, 205U, 208U, 209U}) {
            const std::string& text = form[id];
            const Line& line = LineOf(id);
            if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos)
                return Fail("Nombre invalide : " + std::string(line.label));
            const std::string digits = text.substr(std::min(text.find_first_not_of('0'), text.size() - 1));
            if (digits.size() > 10 || std::stoull(digits) < line.lowest || std::stoull(digits) > line.highest)
                return Fail("Valeur hors limites : " + std::string(line.label), id);
            record.values[line.key] = digits;
        }
        for (const Line& line : LINES)
            if (line.kind != Line::Number)
                record.values[line.key] =
                    line.kind == Line::Path ? Resolved(run_directory, form[line.id]) : form[line.id];
        for (auto& [path, arguments] : record.modules)
            path = Resolved(run_directory, path);
        return true;
    }

    void FillForm() {
        for (const Line& line : LINES)
            form[line.id] = config.values[line.key];
        SelectRow(selected < static_cast<int>(config.modules.size()) ? selected : -1);
    }

    bool SelectRow(int row) {
        selected = row;
        form[307] = row < 0 ? "" : config.modules[static_cast<std::size_t>(row)].second;
        return true;
    }

    bool SelectNext(int step) {
        const int row = selected + step;
        return row < 0 || row >= static_cast<int>(config.modules.size()) || SelectRow(row);
    }

    bool UseConfig(Record record, const std::string& path, const char* message) {
        config = std::move(record);
        config_path = path;
        run_directory = path.empty() ? home : Parent(path);
        dirty = false;
        FillForm();
        status = message;
        return true;
    }

    bool Load(const std::string& path) {
        const File& file = files.at(path);
        return file.load_error.empty() ? UseConfig(file.record, path, "Configuration chargée.")
                                       : Fail(file.load_error);
    }

    bool Save(const std::string& target, const Record& record) {
        if (IsFolder(target))
            return Fail("Enregistrement impossible ; l'ancienne configuration est conservée.");
        files[target] = {FileText(record), "", record};
        return UseConfig(record, target, "Configuration enregistrée.");
    }

    bool SaveToCurrent() {
        Record record;
        return ReadForm(record) &&
               Save(config_path.empty() ? home + "\\veldranevm.config" : config_path, record);
    }

    void UseModules(Record record, int row) {
        config = std::move(record);
        dirty = true;
        FillForm();
        SelectRow(row < static_cast<int>(config.modules.size()) ? row : -1);
    }

    bool AddModule(const std::string& path) {
        Record record;
        if (config.modules.size() >= 128)
            return Fail("Maximum : 128 modules.");
        if (!ReadForm(record))
            return false;
        record.modules.emplace_back(path, LastElement(path));
        UseModules(record, static_cast<int>(record.modules.size()) - 1);
        return true;
    }

    bool EditModules(UINT id) {
        Record record;
        if (!ReadForm(record))
            return true;
        const int target = selected + (id == 305 ? -1 : id == 306 ? 1 : 0);
        const auto row = record.modules.begin() + selected;
        if (id == 304)
            record.modules.erase(row);
        else
            std::iter_swap(row, record.modules.begin() + target);
        UseModules(record, target);
        return true;
    }

    // --- the run ---

    // The error of a launch; empty when the engine can start, with its exit code in `code`.
    std::string LaunchFailure(Record& record, unsigned long& code) {
        std::vector<std::string> needed{record.values["kernel"]};
        if (needed[0].empty())
            return "Choisissez un noyau ELF.";
        code = IsFile(needed[0]) && files[needed[0]].bytes.starts_with("\177ELF") ? 0 : 1;
        for (const UINT id : {401U, 402U, 403U, 404U})
            if (const std::string& image = record.values[LineOf(id).key]; !image.empty()) {
                needed.push_back(image);
                code = IsFile(image) && files[image].bytes.size() % 512 == 0 ? code : 1;
            }
        for (const auto& [path, arguments] : record.modules)
            needed.push_back(path);
        for (const std::string& path : needed)
            if (!IsFile(path))
                return "Fichier introuvable : " + path;
        return IsFile(home + "\\tessarun.exe") ? "" : "tessarun.exe doit être placé à côté du lanceur.";
    }

    bool Launch(bool is_dry) {
        Record record;
        unsigned long code = 0;
        if (!ReadForm(record))
            return true;
        if (const std::string failure = LaunchFailure(record, code); !failure.empty())
            return Fail(failure, record.values["kernel"].empty() ? 201 : 0) || true;
        const std::string& words = record.values["command"];
        if (!words.starts_with("demo.duree=0 demo.lignes=0"))
            return false;  // this engine would run for a while
        const std::size_t named = words.find("demo.code=");
        const bool waits = code == 0 && !is_dry && words.find("demo.attend=") != std::string::npos;
        if (code == 0 && !is_dry && named != std::string::npos)
            code = std::stoul(words.substr(named + 10));
        engine = {true, !waits, is_dry, code, run_directory};
        log_path = run_directory + "\\veldranevm.log";
        status = is_dry ? "Vérification en cours..."
                        : "VM démarrée. Les réglages s'appliquent au prochain lancement.";
        return true;
    }

    // --- files ---

    bool ToggleFile(const std::string& path) {
        if (path == home + "\\dossier") {
            default_is_folder = !default_is_folder && !IsFile(home + "\\veldranevm.config");
            return true;
        }
        if (files.count(path) == 0 || IsFolder(path))
            return false;
        files[path].exists = !files[path].exists;
        return true;
    }

    // --- what the program must show ---

    user::Snapshot Expected() const {
        user::Snapshot snapshot = {config.values.begin(), config.values.end()};
        snapshot["title"] = std::string("Veldrane VM — Configuration") + (dirty ? " *" : "");
        snapshot["line"] = config_path.empty() ? "Nouvelle configuration — non enregistrée" : config_path;
        snapshot["line"] += dirty ? "  (modifiée)" : "";
        snapshot["status"] = status;
        snapshot["dirty"] = dirty ? "yes" : "no";
        snapshot["config_path"] = config_path;
        snapshot["run_directory"] = run_directory;
        snapshot["selected_module"] = snapshot["selected row"] = std::to_string(selected);
        snapshot["engine"] = engine.runs ? "runs" : "";
        snapshot["log_path"] = log_path;
        snapshot["log"] = log;
        snapshot["log text"] = log_text;
        for (const auto& [id, text] : form)
            snapshot["field " + std::to_string(id)] = text;
        for (const auto& [id, is_enabled] : Enabling())
            snapshot["enabled " + std::to_string(id)] = is_enabled ? "yes" : "no";
        for (std::size_t at = 0; at < config.modules.size(); ++at) {
            const std::string row = config.modules[at].first + " : " + config.modules[at].second + "\n";
            snapshot["modules"] += row;
            snapshot["rows"] += at < 8 || at + 1 == config.modules.size() ? row : "";
        }
        if (box == Box::Error || box == Box::Prompt)
            snapshot["box"] = box_text;
        else if (box != Box::None)
            snapshot["box"] = box == Box::File ? "a file box" : "a question of the file box";
        if (is_log_in_front)
            snapshot["focus"] = "in the log";
        else if (focus != 0)
            snapshot["focus"] = std::to_string(focus) + (form.at(focus).empty() ? "" : ", all selected");
        if (IsFile(config_path))
            snapshot["file"] = files.at(config_path).bytes;
        return snapshot;
    }
};

}  // namespace model
