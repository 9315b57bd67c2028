// The boxes in which the user chooses a file.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// The file types that a box offers: pairs of a description and its patterns. Each string ends with a NUL,
// and one more NUL ends the list.
inline constexpr WCHAR FILTER_CONFIG[] =
    TEXT("Configurations Veldrane VM (*.config)\0*.config\0Tous les fichiers\0*.*\0");
inline constexpr WCHAR FILTER_KERNEL[] = TEXT("Noyaux ELF (*.elf)\0*.elf\0Tous les fichiers\0*.*\0");
inline constexpr WCHAR FILTER_DISK[] =
    TEXT("Images disque (*.img;*.raw;*.bin)\0*.img;*.raw;*.bin\0Tous les fichiers\0*.*\0");
inline constexpr WCHAR FILTER_PPM[] = TEXT("Image PPM (*.ppm)\0*.ppm\0Tous les fichiers\0*.*\0");
inline constexpr WCHAR FILTER_ANY[] = TEXT("Tous les fichiers\0*.*\0");

// Shows the system's box for opening or, with `save`, for saving a file. The box is modal to the main
// window. It starts in the folder of `first_file` or, if that has none, in `run_directory`.
// `default_extension` has no dot and may be null. `first_file` is the name that the box proposes; a name of
// 32,768 characters or more is not proposed. Returns the chosen path, or an empty text when the user cancels.
// Throws std::runtime_error when the platform reports an error of the box.
WideText PickFile(Launcher& launcher, bool save, const WCHAR* filter, const WCHAR* default_extension,
                  WideView first_file);

// The command of a browse button: shows the box and writes the chosen path into the button's field. The
// change counts as an edit by the user. Throws as PickFile does, and std::bad_alloc when the field does
// not return its text or refuses the path.
void BrowseForField(Launcher& launcher, UINT button_id);
