// A model of the launcher without an engine: the same actions change it and the program, and after each of
// them the program must show what the model expects. The model includes the user's files. All texts are
// UTF-8.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/snapshot.h"

namespace model {

// A configuration: its values by their keys in the file, and the modules with path and arguments.
struct Record {
    std::map<std::string, std::string> values;
    std::vector<std::pair<std::string, std::string>> modules;

    // The defaults, with other values for some keys.
    explicit Record(std::map<std::string, std::string> others = {});
};

// The text of the file that a save writes.
std::string FileText(const Record& record);

struct Launcher {
    enum class Box { None, Error, Question, File };
    enum class Purpose { Load, Reset, SaveAs, AddModule, Browse };

    std::string home;                     // the folder of all files
    std::map<std::string, Record> files;  // the configurations, by their paths
    std::map<UINT, std::string> form;
    Record config;
    bool dirty = false;
    std::string config_path, run_directory;
    std::string status = "Choisissez un noyau ELF, puis lancez la VM.";
    int selected = -1;

    Box box = Box::None;
    Purpose purpose = Purpose::Load;  // of the question or the file box
    UINT browsed = 0;                 // the field that the file box fills
    Record to_save;

    Launcher(std::string folder, std::map<std::string, Record> configurations);

    // The actions. The user clicks only enabled buttons, and answers only the box that is shown.
    void Edit(UINT id, const std::string& text);
    void Click(UINT id);
    void SelectRow(int row);  // -1 for none
    void AnswerQuestion(int button);
    void CloseErrorOrCancelFile();
    void ChooseFile(const std::string& path);

    bool IsEnabled(UINT id) const;
    // What the program must show.
    Snapshot Expected() const;

private:
    void Fail(const std::string& message);
    void Ask(Purpose wanted);
    void Proceed();
    void OpenFileBox(Purpose wanted);
    bool ReadForm(Record& record);  // false after an error, which is then shown
    bool SaveToCurrent();
    void Save(const std::string& path, const Record& record);
    void Use(const Record& record, const std::string& path, const char* message);
    void UseModules(const Record& record, int row);
    void FillForm();
    void EditModules(UINT id);
};

}  // namespace model
