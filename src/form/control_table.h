// The 56 controls of the main window, in the order of their creation, which is also the order of the Tab key.
// Rectangles are in pixels, for a client area of BASE_CLIENT_WIDTH by BASE_CLIENT_HEIGHT.
#pragma once

#include <array>

#include "form/form_ids.h"
#include "platform/win32.h"

// The tab page on which a control is shown; None for a control that is always shown.
enum class Page { None, Disks, Modules };

struct ControlRow {
    const WCHAR* class_name;
    const WCHAR* text;
    UINT id;  // 0 for a control that is never looked up
    int x;
    int y;
    int width;
    int height;
    DWORD style;   // besides WS_CHILD and WS_VISIBLE
    bool stretch;  // the width grows with the window
    Page page;
};

// clang-format off
inline constexpr std::array<ControlRow, 56> CONTROL_TABLE{{
    {TEXT("BUTTON"), TEXT("Charger..."), IDC_LOAD, 12, 12, 112, 28, WS_TABSTOP | BS_PUSHBUTTON, false, Page::None},
    {TEXT("BUTTON"), TEXT("Enregistrer"), IDC_SAVE, 132, 12, 112, 28, WS_TABSTOP | BS_PUSHBUTTON, false, Page::None},
    {TEXT("BUTTON"), TEXT("Enregistrer sous..."), IDC_SAVE_AS, 252, 12, 156, 28, WS_TABSTOP | BS_PUSHBUTTON, false, Page::None},
    {TEXT("BUTTON"), TEXT("Réinitialiser"), IDC_RESET, 416, 12, 112, 28, WS_TABSTOP | BS_PUSHBUTTON, false, Page::None},
    {TEXT("STATIC"), TEXT(""), IDC_CONFIG_LINE, 12, 47, 896, 20, SS_PATHELLIPSIS, true, Page::None},
    {TEXT("BUTTON"), TEXT("Machine"), 0, 12, 74, 896, 150, BS_GROUPBOX, true, Page::None},
    {TEXT("STATIC"), TEXT("Noyau ELF"), 0, 24, 103, 108, 20, SS_LEFT, false, Page::None},
    {TEXT("EDIT"), TEXT(""), IDC_KERNEL_PATH, 138, 98, 646, 25, WS_TABSTOP | ES_AUTOHSCROLL, true, Page::None},
    {TEXT("BUTTON"), TEXT("Parcourir..."), IDC_KERNEL_BROWSE, 794, 98, 102, 25, WS_TABSTOP | BS_PUSHBUTTON, false, Page::None},
    {TEXT("STATIC"), TEXT("Arguments"), 0, 24, 136, 108, 20, SS_LEFT, false, Page::None},
    {TEXT("EDIT"), TEXT(""), IDC_KERNEL_COMMAND, 138, 131, 758, 25, WS_TABSTOP | ES_AUTOHSCROLL, true, Page::None},
    {TEXT("STATIC"), TEXT("RAM (Mio)"), 0, 24, 172, 108, 20, SS_LEFT, false, Page::None},
    {TEXT("EDIT"), TEXT("128"), IDC_RAM_MIB, 138, 166, 82, 25, WS_TABSTOP | ES_NUMBER, false, Page::None},
    {TEXT("STATIC"), TEXT("Délai (ms, 0 = illimité)"), 0, 240, 172, 156, 20, SS_LEFT, false, Page::None},
    {TEXT("EDIT"), TEXT("0"), IDC_TIMEOUT_MS, 400, 166, 104, 25, WS_TABSTOP | ES_NUMBER, false, Page::None},
    {TEXT("BUTTON"), TEXT("Autoriser un ELF sans en-tête Multiboot"), IDC_FORCE_NO_HEADER, 528, 166, 364, 26, WS_TABSTOP | BS_AUTOCHECKBOX, false, Page::None},
    {TEXT("STATIC"), TEXT("RAM : 16 à 2048 Mio. Le délai s'applique à la durée totale de la VM."), 0, 138, 200, 750, 20, SS_LEFT, false, Page::None},
    {TEXT("BUTTON"), TEXT("Affichage"), 0, 12, 233, 896, 129, BS_GROUPBOX, true, Page::None},
    {TEXT("BUTTON"), TEXT("Résolution personnalisée"), IDC_EXPLICIT_VIDEO, 24, 259, 204, 25, WS_TABSTOP | BS_AUTOCHECKBOX, false, Page::None},
    {TEXT("STATIC"), TEXT("Largeur"), 0, 240, 265, 54, 20, SS_LEFT, false, Page::None},
    {TEXT("EDIT"), TEXT("800"), IDC_WIDTH, 300, 259, 70, 25, WS_TABSTOP | ES_NUMBER, false, Page::None},
    {TEXT("STATIC"), TEXT("Hauteur"), 0, 380, 265, 54, 20, SS_LEFT, false, Page::None},
    {TEXT("EDIT"), TEXT("600"), IDC_HEIGHT, 440, 259, 70, 25, WS_TABSTOP | ES_NUMBER, false, Page::None},
    {TEXT("STATIC"), TEXT("Zoom"), 0, 526, 265, 44, 20, SS_LEFT, false, Page::None},
    {TEXT("COMBOBOX"), TEXT(""), IDC_ZOOM, 572, 259, 100, 160, WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWNLIST, false, Page::None},
    {TEXT("BUTTON"), TEXT("Sans fenêtres"), IDC_HEADLESS, 694, 259, 202, 25, WS_TABSTOP | BS_AUTOCHECKBOX, false, Page::None},
    {TEXT("STATIC"), TEXT("Export PPM"), 0, 24, 298, 108, 20, SS_LEFT, false, Page::None},
    {TEXT("EDIT"), TEXT(""), IDC_DUMP_PATH, 138, 293, 646, 25, WS_TABSTOP | ES_AUTOHSCROLL, true, Page::None},
    {TEXT("BUTTON"), TEXT("Parcourir..."), IDC_DUMP_BROWSE, 794, 293, 102, 25, WS_TABSTOP | BS_PUSHBUTTON, false, Page::None},
    {TEXT("STATIC"), TEXT("Sans résolution personnalisée : respecter la demande du noyau. Export PPM facultatif."), 0, 24, 331, 865, 20, SS_LEFT, false, Page::None},
    {TEXT("SysTabControl32"), TEXT(""), IDC_PAGE_TABS, 12, 374, 896, 240, WS_TABSTOP, true, Page::None},
    {TEXT("STATIC"), TEXT("Primaire · master"), 0, 26, 416, 132, 20, SS_LEFT, false, Page::Disks},
    {TEXT("EDIT"), TEXT(""), IDC_IDE_PRIMARY_MASTER, 164, 413, 620, 25, WS_TABSTOP | ES_AUTOHSCROLL, true, Page::Disks},
    {TEXT("BUTTON"), TEXT("Parcourir..."), IDC_IDE_PRIMARY_MASTER_BROWSE, 794, 413, 102, 25, WS_TABSTOP | BS_PUSHBUTTON, false, Page::Disks},
    {TEXT("STATIC"), TEXT("Primaire · slave"), 0, 26, 449, 132, 20, SS_LEFT, false, Page::Disks},
    {TEXT("EDIT"), TEXT(""), IDC_IDE_PRIMARY_SLAVE, 164, 446, 620, 25, WS_TABSTOP | ES_AUTOHSCROLL, true, Page::Disks},
    {TEXT("BUTTON"), TEXT("Parcourir..."), IDC_IDE_PRIMARY_SLAVE_BROWSE, 794, 446, 102, 25, WS_TABSTOP | BS_PUSHBUTTON, false, Page::Disks},
    {TEXT("STATIC"), TEXT("Secondaire · master"), 0, 26, 482, 132, 20, SS_LEFT, false, Page::Disks},
    {TEXT("EDIT"), TEXT(""), IDC_IDE_SECONDARY_MASTER, 164, 479, 620, 25, WS_TABSTOP | ES_AUTOHSCROLL, true, Page::Disks},
    {TEXT("BUTTON"), TEXT("Parcourir..."), IDC_IDE_SECONDARY_MASTER_BROWSE, 794, 479, 102, 25, WS_TABSTOP | BS_PUSHBUTTON, false, Page::Disks},
    {TEXT("STATIC"), TEXT("Secondaire · slave"), 0, 26, 515, 132, 20, SS_LEFT, false, Page::Disks},
    {TEXT("EDIT"), TEXT(""), IDC_IDE_SECONDARY_SLAVE, 164, 512, 620, 25, WS_TABSTOP | ES_AUTOHSCROLL, true, Page::Disks},
    {TEXT("BUTTON"), TEXT("Parcourir..."), IDC_IDE_SECONDARY_SLAVE_BROWSE, 794, 512, 102, 25, WS_TABSTOP | BS_PUSHBUTTON, false, Page::Disks},
    {TEXT("STATIC"), TEXT("Laisser vide pour aucun disque. Les écritures du guest modifient directement les images."), 0, 26, 556, 865, 20, SS_LEFT, false, Page::Disks},
    {TEXT("STATIC"), TEXT("Images brutes existantes, secteurs de 512 octets, ATA PIO, capacité maximale 128 Gio par disque."), 0, 26, 581, 865, 20, SS_LEFT, false, Page::Disks},
    {TEXT("SysListView32"), TEXT(""), IDC_MODULE_LIST, 26, 408, 728, 132, WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS, true, Page::Modules},
    {TEXT("BUTTON"), TEXT("Ajouter..."), IDC_MODULE_ADD, 770, 408, 126, 26, WS_TABSTOP | BS_PUSHBUTTON, false, Page::Modules},
    {TEXT("BUTTON"), TEXT("Retirer"), IDC_MODULE_REMOVE, 770, 441, 126, 26, WS_TABSTOP | BS_PUSHBUTTON, false, Page::Modules},
    {TEXT("BUTTON"), TEXT("Monter"), IDC_MODULE_UP, 770, 474, 126, 26, WS_TABSTOP | BS_PUSHBUTTON, false, Page::Modules},
    {TEXT("BUTTON"), TEXT("Descendre"), IDC_MODULE_DOWN, 770, 507, 126, 26, WS_TABSTOP | BS_PUSHBUTTON, false, Page::Modules},
    {TEXT("STATIC"), TEXT("Arguments du module sélectionné (modification immédiate)"), 0, 26, 555, 810, 20, SS_LEFT, false, Page::Modules},
    {TEXT("EDIT"), TEXT(""), IDC_MODULE_ARGS, 26, 578, 870, 25, WS_TABSTOP | ES_AUTOHSCROLL, true, Page::Modules},
    {TEXT("BUTTON"), TEXT("Lancer la VM"), IDC_LAUNCH, 12, 629, 152, 32, WS_TABSTOP | BS_DEFPUSHBUTTON, false, Page::None},
    {TEXT("BUTTON"), TEXT("Vérifier"), IDC_VERIFY, 174, 629, 106, 32, WS_TABSTOP | BS_PUSHBUTTON, false, Page::None},
    {TEXT("BUTTON"), TEXT("Voir le journal"), IDC_SHOW_LOG, 290, 629, 134, 32, WS_TABSTOP | BS_PUSHBUTTON, false, Page::None},
    {TEXT("STATIC"), TEXT("Choisissez un noyau ELF, puis lancez la VM."), IDC_STATUS, 442, 635, 466, 38, SS_LEFT, true, Page::None},
}};
// clang-format on
