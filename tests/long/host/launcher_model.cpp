// The rules of the launcher as a user knows them.
#include "long/host/launcher_model.h"

#include <algorithm>
#include <iterator>

#include "controls.h"

namespace model {

namespace {

using namespace control;

// A key of the configuration file and the control that shows its value.
struct Line {
    const char* key;
    UINT id;
    enum { Path, Text, Number, Choice } kind;
    const char* default_value;
    std::uint64_t lowest = 0, highest = 0;
    const char* label = "";
};
const Line LINES[] = {
    {"kernel", KERNEL, Line::Path, ""},
    {"command", ARGUMENTS, Line::Text, ""},
    {"dump", PICTURE, Line::Path, ""},
    {"ram_mib", RAM, Line::Number, "128", 16, 2048, "RAM (16..2048 Mio)"},
    {"width", WIDTH, Line::Number, "800", 1, 8192, "largeur (1..8192)"},
    {"height", HEIGHT, Line::Number, "600", 1, 8192, "hauteur (1..8192)"},
    {"zoom", ZOOM, Line::Choice, "2"},
    {"timeout_ms", TIME_LIMIT, Line::Number, "0", 0, 3600000, "délai (0..3600000 ms)"},
    {"explicit_video", OWN_SIZE, Line::Choice, "0"},
    {"headless", WITHOUT_WINDOWS, Line::Choice, "0"},
    {"force_no_header", WITHOUT_HEADER, Line::Choice, "0"},
    {"ide_primary_master", DISK_0, Line::Path, ""},
    {"ide_primary_slave", DISK_1, Line::Path, ""},
    {"ide_secondary_master", DISK_2, Line::Path, ""},
    {"ide_secondary_slave", DISK_3, Line::Path, ""},
};

const Line& LineOf(UINT id) {
    return *std::find_if(
        std::begin(LINES), std::end(LINES), [id](const Line& line) { return line.id == id; });
}

std::string Parent(const std::string& path) {
    return path.substr(0, path.rfind('\\'));
}

// The full path for the text of a path field: the user types full paths and names.
std::string FullPath(const std::string& folder, const std::string& text) {
    const bool is_name = !text.empty() && text.find(':') == std::string::npos;
    return is_name ? folder + "\\" + text : text;
}

bool IsNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

Record::Record(std::map<std::string, std::string> others) : values(std::move(others)) {
    for (const Line& line : LINES)
        values.try_emplace(line.key, line.default_value);
}

std::string FileText(const Record& record) {
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

Launcher::Launcher(std::string folder, std::map<std::string, Record> configurations)
    : home(std::move(folder)), files(std::move(configurations)), run_directory(home) {
    FillForm();
}

// --- editing ---

bool Launcher::IsEnabled(UINT id) const {
    switch (id) {
        case WIDTH:
        case HEIGHT:
            return form.at(OWN_SIZE) == "1";
        case ZOOM:
            return form.at(WITHOUT_WINDOWS) == "0";
        case REMOVE:
        case MODULE_ARGUMENTS:
            return selected >= 0;
        case UP:
            return selected > 0;
        case DOWN:
            return selected >= 0 && selected + 1 < static_cast<int>(config.modules.size());
        default:
            return true;
    }
}

void Launcher::Edit(UINT id, const std::string& text) {
    form[id] = text;
    if (id == MODULE_ARGUMENTS && selected < 0)
        return;
    if (id == MODULE_ARGUMENTS)
        config.modules[static_cast<std::size_t>(selected)].second = text;
    dirty = true;
}

void Launcher::SelectRow(int row) {
    const bool exists = row >= 0 && row < static_cast<int>(config.modules.size());
    selected = exists ? row : -1;
    form[MODULE_ARGUMENTS] = exists ? config.modules[static_cast<std::size_t>(row)].second : "";
}

void Launcher::Click(UINT id) {
    switch (id) {
        case LOAD:
            return Ask(Purpose::Load);
        case SAVE:
            SaveToCurrent();
            return;
        case SAVE_AS:
            if (ReadForm(to_save))
                OpenFileBox(Purpose::SaveAs);
            return;
        case RESET:
            return Ask(Purpose::Reset);
        case WITHOUT_HEADER:
        case OWN_SIZE:
        case WITHOUT_WINDOWS:
            return Edit(id, form[id] == "0" ? "1" : "0");
        case ADD:
            return OpenFileBox(Purpose::AddModule);
        case REMOVE:
        case UP:
        case DOWN:
            return EditModules(id);
        default:  // a "Parcourir..." button
            browsed = id >= BROWSE_DISK_0 ? id - 10 : id - 1;
            return OpenFileBox(Purpose::Browse);
    }
}

void Launcher::EditModules(UINT id) {
    Record record;
    if (!ReadForm(record))
        return;
    const auto row = record.modules.begin() + selected;
    if (id == REMOVE) {
        record.modules.erase(row);
        return UseModules(record, selected);
    }
    const int target = selected + (id == UP ? -1 : 1);
    std::iter_swap(row, record.modules.begin() + target);
    UseModules(record, target);
}

// --- boxes ---

void Launcher::Fail(const std::string& message) {
    status = message;
    box = Box::Error;
}

void Launcher::Ask(Purpose wanted) {
    purpose = wanted;
    if (dirty)
        box = Box::Question;
    else
        Proceed();
}

void Launcher::Proceed() {
    if (purpose == Purpose::Load)
        OpenFileBox(Purpose::Load);
    else
        Use(Record(), "", "Réglages par défaut. Choisissez un noyau ELF.");
}

void Launcher::AnswerQuestion(int button) {
    box = Box::None;
    if (button == IDNO || (button == IDYES && SaveToCurrent()))
        Proceed();
}

void Launcher::OpenFileBox(Purpose wanted) {
    box = Box::File;
    purpose = wanted;
}

void Launcher::CloseErrorOrCancelFile() {
    box = Box::None;
}

void Launcher::ChooseFile(const std::string& path) {
    box = Box::None;
    if (purpose == Purpose::SaveAs)
        return Save(path, to_save);
    if (purpose == Purpose::Browse)
        return Edit(browsed, path);
    if (purpose == Purpose::AddModule) {
        Record record;
        if (config.modules.size() >= 128)
            return Fail("Maximum : 128 modules.");
        if (!ReadForm(record))
            return;
        record.modules.emplace_back(path, path.substr(path.rfind('\\') + 1));
        return UseModules(record, static_cast<int>(record.modules.size()) - 1);
    }
    if (files.count(path) == 0)
        return Fail("Ligne de configuration invalide.");
    Use(files.at(path), path, "Configuration chargée.");
}

// --- the form, the record and the file ---

bool Launcher::ReadForm(Record& record) {
    record = config;
    for (const UINT id : {RAM, TIME_LIMIT, WIDTH, HEIGHT}) {
        const Line& line = LineOf(id);
        const bool is_number = IsNumber(form[id]);
        if (!is_number || std::stoull(form[id]) < line.lowest || std::stoull(form[id]) > line.highest) {
            Fail((is_number ? "Valeur hors limites : " : "Nombre invalide : ") + std::string(line.label));
            return false;
        }
        record.values[line.key] = std::to_string(std::stoull(form[id]));
    }
    for (const Line& line : LINES)
        if (line.kind == Line::Path)
            record.values[line.key] = FullPath(run_directory, form[line.id]);
        else if (line.kind != Line::Number)
            record.values[line.key] = form[line.id];
    return true;
}

void Launcher::FillForm() {
    for (const Line& line : LINES)
        form[line.id] = config.values[line.key];
    SelectRow(selected);
}

void Launcher::Use(const Record& record, const std::string& path, const char* message) {
    config = record;
    config_path = path;
    run_directory = path.empty() ? home : Parent(path);
    dirty = false;
    FillForm();
    status = message;
}

void Launcher::UseModules(const Record& record, int row) {
    config = record;
    dirty = true;
    FillForm();
    SelectRow(row);
}

void Launcher::Save(const std::string& path, const Record& record) {
    files[path] = record;
    Use(record, path, "Configuration enregistrée.");
}

bool Launcher::SaveToCurrent() {
    Record record;
    if (!ReadForm(record))
        return false;
    Save(config_path.empty() ? home + "\\veldranevm.config" : config_path, record);
    return true;
}

// --- what the program must show ---

Snapshot Launcher::Expected() const {
    Snapshot snapshot = {config.values.begin(), config.values.end()};
    snapshot["title"] = std::string("Veldrane VM — Configuration") + (dirty ? " *" : "");
    snapshot["line"] = config_path.empty() ? "Nouvelle configuration — non enregistrée" : config_path;
    snapshot["line"] += dirty ? "  (modifiée)" : "";
    snapshot["status"] = status;
    snapshot["dirty"] = dirty ? "yes" : "no";
    snapshot["config_path"] = config_path;
    snapshot["run_directory"] = run_directory;
    snapshot["selected_module"] = snapshot["selected row"] = std::to_string(selected);
    snapshot["engine runs"] = "no";
    for (const auto& [id, text] : form)
        snapshot[FieldName(id)] = text;
    for (const UINT id : {LAUNCH, VERIFY, WIDTH, HEIGHT, ZOOM, REMOVE, UP, DOWN, MODULE_ARGUMENTS})
        snapshot[EnabledName(id)] = IsEnabled(id) ? "yes" : "no";
    for (const auto& [path, arguments] : config.modules)
        snapshot["modules"] += path + " : " + arguments + "\n";
    snapshot["rows"] = snapshot["modules"];
    if (box == Box::Error)
        snapshot["box"] = "Veldrane VM\n" + status;
    if (box == Box::Question)
        snapshot["box"] = "Configuration modifiée\nEnregistrer les modifications de la configuration ?";
    if (box == Box::File)
        snapshot["box"] = "a file box";
    for (const auto& [path, record] : files)
        snapshot["file " + path] = FileText(record);
    return snapshot;
}

}  // namespace model
