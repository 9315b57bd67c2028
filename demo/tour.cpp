// The steps of the demonstration, with the expected texts of each.
#include "demo/tour.h"

#include <cstdio>
#include <string>
#include <vector>

#include "base/file_system.h"
#include "base/path_ops.h"
#include "base/text_convert.h"
#include "config/config_file.h"
#include "demo/user/user.h"
#include "form/control_table.h"
#include "launch/engine_command.h"

namespace {

bool all_correct = true;
WideText last_status;

void Say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void Check(bool correct, const std::string& expectation) {
    if (correct)
        return;
    all_correct = false;
    Say("   FAUX : " + expectation);
}

std::string FieldText(const ControlRow& row) {
    if (WideView(row.class_name) != TEXT("BUTTON"))
        return "« " + Utf8FromWide(user::ControlText(row.id)) + " »";
    if ((row.style & 0xF) == BS_AUTOCHECKBOX)
        return std::string(user::IsChecked(row.id) ? "[x] " : "[ ] ") + Utf8FromWide(row.text);
    return "[" + Utf8FromWide(row.text) + "]";
}

// Prints the title and every visible control that has an identifier and a text.
void PrintWindow(const std::string& moment) {
    Say("── " + moment + " : " + Utf8FromWide(user::Title()));
    for (const ControlRow& row : CONTROL_TABLE) {
        const bool has_text = row.id != IDC_PAGE_TABS && row.id != IDC_MODULE_LIST;
        if (row.id != 0 && has_text && user::IsVisible(row.id)) {
            Say("   " + std::to_string(row.id) + "  " + FieldText(row) +
                (user::IsEnabled(row.id) ? "" : "  (grisé)"));
        }
    }
}

// Waits for a text in the status line and prints each one that appears until then.
void WaitForStatus(const WideText& text) {
    const bool appeared = user::WaitUntil([&] {
        const WideText now = user::Status();
        if (now != last_status)
            Say("   état : " + Utf8FromWide(now));
        last_status = now;
        return now == text;
    });
    Check(appeared, "l'état attendu était « " + Utf8FromWide(text) + " »");
}

void Press(const std::string& label, UINT id) {
    Say("── clic : " + label);
    user::Click(id);
}

// Waits for a message box, prints and checks its text, takes a picture and answers the box.
void AnswerBox(const std::string& text, int button_id, const std::string& picture,
               const std::string& caption) {
    Check(user::WaitForBox(), "une boîte devait s'ouvrir : " + text);
    const std::string shown = user::BoxText();
    Say("   boîte : " + shown);
    Check(shown.find(text) != std::string::npos, "la boîte devait dire : " + text);
    ShowPicture(user::MainWindow(), picture, caption);
    user::AnswerBox(button_id);
    Check(user::WaitForNoBox(), "la boîte devait se fermer");
}

void AddModule(const WideText& path) {
    Press("Ajouter...", IDC_MODULE_ADD);
    user::ChooseFile(path);
    Check(user::WaitForNoBox(), "la boîte de fichier devait se fermer");
}

std::string ReadWholeFile(const WideText& path) {
    const OwnedHandle file = OpenForReading(path);
    std::string content(static_cast<std::size_t>(FileSize(file.Get()).value_or(0)), '\0');
    content.resize(ReadAt(file.Get(), 0, content.data(), content.size()));
    return content;
}

// The log must contain all arguments in order; the engine prints one on each line.
void CheckArguments(const std::string& log, const std::vector<WideText>& arguments) {
    std::size_t from = 0;
    for (const WideText& argument : arguments) {
        const std::string text = Utf8FromWide(argument);
        const std::size_t place = log.find(text, from);
        Check(place != std::string::npos, "argument absent du journal : " + text);
        from = place == std::string::npos ? from : place + text.size();
    }
}

void EditForm(const WideText& folder) {
    Say("── saisie : arguments du noyau, un second module");
    user::Fill(IDC_KERNEL_COMMAND, TEXT("demo.duree=900 demo.lignes=4 mode=\"démonstration\""));
    Check(user::Title() == TEXT("Veldrane VM — Configuration *"), "une saisie marque le titre");
    user::ChooseTab(1);
    AddModule(JoinPath(folder, TEXT("symboles.txt")));
    user::Fill(IDC_MODULE_ARGS, TEXT("table complète"));
    for (int step = 0; step < 4; ++step)
        user::PressWith(VK_SHIFT, VK_TAB);  // the focus returns to the list, which then highlights its row
    ShowPicture(user::MainWindow(), "2-modules", "la page des modules, le second choisi");
}

void CancelLoad() {
    Press("Charger...", IDC_LOAD);
    AnswerBox("Enregistrer les modifications de la configuration ?", IDCANCEL, "3-question",
              "la question sur les modifications");
    Check(user::Title() == TEXT("Veldrane VM — Configuration *"), "« Annuler » ne change rien");
}

void EnterInvalidRam() {
    Say("── saisie : 9 Mio de RAM");
    user::Fill(IDC_RAM_MIB, TEXT("9"));
    Press("Vérifier", IDC_VERIFY);
    AnswerBox("Valeur hors limites : RAM (16..2048 Mio)", IDOK, "4-erreur", "une erreur, dite et montrée");
    user::Fill(IDC_RAM_MIB, TEXT("64"));
}

void SaveAndLoad(const WideText& config_path) {
    Press("Enregistrer", IDC_SAVE);
    WaitForStatus(TEXT("Configuration enregistrée."));
    Check(user::Title() == TEXT("Veldrane VM — Configuration"), "un enregistrement efface la marque");
    Press("Charger...", IDC_LOAD);
    user::ChooseFile(config_path);
    WaitForStatus(TEXT("Configuration chargée."));
}

void VerifyAndLaunch() {
    Press("Vérifier", IDC_VERIFY);
    WaitForStatus(TEXT("Configuration vérifiée. Vous pouvez lancer la VM."));
    Press("Lancer la VM", IDC_LAUNCH);
    WaitForStatus(TEXT("VM démarrée. Les réglages s'appliquent au prochain lancement."));
    Check(!user::IsEnabled(IDC_LAUNCH), "pas de second lancement pendant une exécution");
    WaitForStatus(TEXT("VM terminée."));
    Check(user::IsEnabled(IDC_LAUNCH), "le lancement redevient possible à la fin");
}

void ShowLog(const std::string& picture) {
    Press("Voir le journal", IDC_SHOW_LOG);
    const auto is_shown = [] { return IsWindowVisible(user::LogWindow()) != FALSE; };
    Check(user::WaitUntil(is_shown), "le journal devait s'ouvrir");
    ShowPicture(user::LogWindow(), picture, "le journal");
    user::OnProgramThread([] { PostMessageW(user::LogWindow(), WM_CLOSE, 0, 0); });
    Check(user::WaitUntil([&] { return !is_shown(); }), "le journal devait se fermer");
}

void Enlarge() {
    Say("── fenêtre agrandie");
    user::ResizeClient(1100, 790);
    Check(user::Status() == TEXT("VM terminée."), "une fenêtre agrandie garde ses textes");
    ShowPicture(user::MainWindow(), "6-agrandie", "la fenêtre agrandie");
}

void CheckRun(const WideText& folder, const WideText& config_path) {
    const VmConfig config = ReadConfigFile(config_path);
    Check(config.modules.size() == 2 && config.modules[1].command == TEXT("table complète"),
          "le fichier doit contenir les deux modules");
    Say("── ligne de commande du moteur");
    Say(Utf8FromWide(BuildEngineCommandLine(JoinPath(folder, TEXT("tessarun.exe")), config, false)));
    const std::string log = ReadWholeFile(JoinPath(folder, TEXT("veldranevm.log")));
    Say("── journal");
    Say(log);
    CheckArguments(log, BuildEngineArguments(config, false));
}

void CheckMachine(const WideText& folder) {
    const std::string log = ReadWholeFile(JoinPath(folder, TEXT("veldranevm.log")));
    Say("── journal");
    Say(log);
    for (const char* const words :
         {"\nArguments : [console=série mode=\"démonstration\"]\nMémoire : 63 Mio\n",
          "\nModule 0 : 20 octets, somme 1989, arguments [racine=/dev/hda]\n",
          "\nModule 1 : 18 octets, somme 1196, arguments []\n", "\nDisque, secteur 0 : [premier secteur]\n",
          "\nÉcran : 640 x 400 x 32\nFin.\n\nMachine arrêtée par le noyau, code 0.\n"})
        Check(log.find(words) != std::string::npos, std::string("absent du journal : ") + words);
    const std::string picture = ReadWholeFile(JoinPath(folder, TEXT("écran.ppm")));
    Check(picture.starts_with("P6\n640 400\n255\n"), "l'image de l'écran doit être là");
    Say("── image de l'écran : écran.ppm, " + std::to_string(picture.size()) + " octets");
}

void WaitForStart() {
    Check(user::WaitUntil([] { return IsWindowVisible(user::MainWindow()) != FALSE; }, 60000),
          "la fenêtre doit s'ouvrir");
    WaitForStatus(TEXT("Configuration chargée."));
}

bool CloseProgram() {
    user::CloseMainWindow();
    Check(user::WaitForEnd(), "la fenêtre doit se fermer sans question");
    Say(all_correct ? "── tout est juste" : "── des textes étaient faux");
    return all_correct;
}

}  // namespace

bool MachineTour(const WideText& folder) {
    WaitForStart();
    PrintWindow("au départ");
    ShowPicture(user::MainWindow(), "machine-1-fenetre", "la configuration d'une vraie machine");
    VerifyAndLaunch();
    CheckMachine(folder);
    ShowLog("machine-2-journal");
    return CloseProgram();
}

bool Tour(const WideText& folder) {
    const WideText config_path = JoinPath(folder, TEXT("veldranevm.config"));
    WaitForStart();
    PrintWindow("au départ");
    ShowPicture(user::MainWindow(), "1-disques", "la page des disques");
    EditForm(folder);
    CancelLoad();
    EnterInvalidRam();
    SaveAndLoad(config_path);
    VerifyAndLaunch();
    CheckRun(folder, config_path);
    ShowLog("5-journal");
    Enlarge();
    PrintWindow("à la fin");
    return CloseProgram();
}
