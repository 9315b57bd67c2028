#include "form/file_picker.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

#include "form/form_exchange.h"
#include "form/form_ids.h"

namespace {

constexpr DWORD FILE_BUFFER_CHARACTERS = 32768;
constexpr DWORD COMMON_FLAGS = OFN_EXPLORER | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;

struct Browse {
    UINT button_id;
    UINT field_id;
    bool save;
    const WCHAR* filter;
    const WCHAR* default_extension;
};

constexpr std::array<Browse, 6> BROWSES{{
    {IDC_KERNEL_BROWSE, IDC_KERNEL_PATH, false, FILTER_KERNEL, nullptr},
    {IDC_DUMP_BROWSE, IDC_DUMP_PATH, true, FILTER_PPM, TEXT("ppm")},
    {IDC_IDE_PRIMARY_MASTER_BROWSE, IDC_IDE_PRIMARY_MASTER, false, FILTER_DISK, nullptr},
    {IDC_IDE_PRIMARY_SLAVE_BROWSE, IDC_IDE_PRIMARY_SLAVE, false, FILTER_DISK, nullptr},
    {IDC_IDE_SECONDARY_MASTER_BROWSE, IDC_IDE_SECONDARY_MASTER, false, FILTER_DISK, nullptr},
    {IDC_IDE_SECONDARY_SLAVE_BROWSE, IDC_IDE_SECONDARY_SLAVE, false, FILTER_DISK, nullptr},
}};

}  // namespace

WideText PickFile(Launcher& launcher, bool save, const WCHAR* filter, const WCHAR* default_extension,
                  WideView first_file) {
    std::vector<WCHAR> file(FILE_BUFFER_CHARACTERS);
    if (first_file.size() < file.size())
        first_file.copy(file.data(), first_file.size());
    const WideText first_folder = launcher.run_directory;
    OPENFILENAMEW box{};
    box.lStructSize = sizeof box;
    box.hwndOwner = launcher.main_window;
    box.lpstrFilter = filter;
    box.lpstrFile = file.data();
    box.nMaxFile = FILE_BUFFER_CHARACTERS;
    box.lpstrInitialDir = first_folder.c_str();
    box.lpstrDefExt = default_extension;
    box.Flags = COMMON_FLAGS | (save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
    if ((save ? GetSaveFileNameW(&box) : GetOpenFileNameW(&box)) != FALSE)
        return file.data();
    if (CommDlgExtendedError() != 0)
        throw std::runtime_error("Boîte de sélection de fichier indisponible.");
    return {};
}

void BrowseForField(Launcher& launcher, UINT button_id) {
    const auto browse = std::find_if(BROWSES.begin(), BROWSES.end(),
                                     [&](const Browse& row) { return row.button_id == button_id; });
    if (browse == BROWSES.end())
        return;
    const HWND field = GetDlgItem(launcher.main_window, static_cast<int>(browse->field_id));
    const WideText chosen =
        PickFile(launcher, browse->save, browse->filter, browse->default_extension, GetControlText(field));
    if (!chosen.empty())
        SetControlText(field, chosen);
}
