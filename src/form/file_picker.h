// The file boxes: the one way in which the user chooses a file.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// Pairs of a description and its patterns, each ended by a zero, all closed by an empty text.
inline constexpr WCHAR FILTER_CONFIG[] =
    TEXT("Configurations Veldrane VM (*.config)\0*.config\0Tous les fichiers\0*.*\0");
inline constexpr WCHAR FILTER_KERNEL[] = TEXT("Noyaux ELF (*.elf)\0*.elf\0Tous les fichiers\0*.*\0");
inline constexpr WCHAR FILTER_DISK[] =
    TEXT("Images disque (*.img;*.raw;*.bin)\0*.img;*.raw;*.bin\0Tous les fichiers\0*.*\0");
inline constexpr WCHAR FILTER_PPM[] = TEXT("Image PPM (*.ppm)\0*.ppm\0Tous les fichiers\0*.*\0");
inline constexpr WCHAR FILTER_ANY[] = TEXT("Tous les fichiers\0*.*\0");

// Runs the system's box for opening or, with `save`, for saving, modal to the main window and starting in
// `run_directory`. `default_extension` has no dot and may be null; `first_file` is the name that the box
// shows first. Gives the chosen path, or an empty text when the user cancelled. Throws when the box cannot
// run.
WideText PickFile(Launcher& launcher, bool save, const WCHAR* filter, const WCHAR* default_extension,
                  WideView first_file);

// The command of a browse button: the chosen file goes into the button's field, which counts as an edit by
// the user.
void BrowseForField(Launcher& launcher, UINT button_id);
