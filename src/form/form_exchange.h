// The exchange between the form and the record: the controls filled from `config`, a new record read from
// them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "config/vm_config.h"
#include "platform/win32.h"
#include "state/launcher.h"

// The whole text of a control, nothing trimmed. Throws std::bad_alloc when the control does not give it.
WideText GetControlText(HWND control);
// The same into a text that is there already, whose memory is used again.
void ReadControlText(HWND control, WideText& text);

// Replaces the text of a control. Throws std::bad_alloc when the control does not take it.
void SetControlText(HWND control, const WideText& text);

// For what a control answers to a message: memory is what it lacks when it refuses. Throws std::bad_alloc
// unless `taken`.
void RequireTaken(bool taken);

// The number in an edit field, from `lowest` to `highest`. Anything but ASCII digits throws with `label`; a
// number out of bounds throws too, and the field then has the focus with its text selected.
std::uint32_t ReadNumberField(HWND control, std::uint32_t lowest, std::uint32_t highest, const char* label);

// Makes `path`, as typed, full and normal, seen from `run_directory`; an empty path stays empty. Throws the
// file-system error of the platform.
void ResolveFormPath(const Launcher& launcher, WideText& path);

// A new, validated record of what the form holds; the module list is that of `config`. Changes neither
// `config` nor `dirty`. Throws with the first thing that is wrong.
VmConfig ReadForm(Launcher& launcher);

// Writes `config` into all controls, keeps the selected module row by its index where there is still such a
// row, and refreshes enabling and title. Marks nothing as modified and leaves `dirty` to the caller. Throws
// std::bad_alloc at the first control that refuses its text; the form is then filled in part.
void FillForm(Launcher& launcher);

// What the form shows outside the module list, valid or not.
struct FormContent {
    std::vector<WideText> texts;
    LRESULT zoom = 0;
    std::vector<bool> checks;
};
FormContent ReadContent(const Launcher& launcher);

// The current configuration: the record, its file, its folder, and whether the form differs from the file.
struct CurrentConfig {
    VmConfig config;
    WideText config_path;
    WideText run_directory;
    bool dirty = false;
};

// Makes `next` current and fills the form from it. Where a control refuses its text, the launcher is as
// before, the form has `shown` again, and std::bad_alloc is thrown.
void AdoptConfig(Launcher& launcher, CurrentConfig next, const FormContent& shown);

// Makes the module list the mirror of `config.modules`, with no row selected. Only while `filling` is set.
// Throws std::bad_alloc when the list refuses a row.
void RebuildModuleList(Launcher& launcher);

// Selects one row of the module list; `selected_module` and the arguments field have followed when it
// returns. Only while `filling` is not set.
void SelectModuleRow(Launcher& launcher, std::int32_t index);

// Writes the second column of one row of the module list. Throws std::bad_alloc when the list refuses it.
void SetModuleRowArguments(HWND list, std::size_t index, const WideText& arguments);
