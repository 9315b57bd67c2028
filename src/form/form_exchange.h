// The exchange between the form and the record: fills the controls from `config`, and reads a new record from
// them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "config/vm_config.h"
#include "platform/win32.h"
#include "state/launcher.h"

// The whole text of a control, not trimmed. Throws std::bad_alloc when the control does not return all of it.
WideText GetControlText(HWND control);
// The same into `text`, whose memory is used again.
void ReadControlText(HWND control, WideText& text);

// Replaces the text of a control. Throws std::bad_alloc when the control refuses it.
void SetControlText(HWND control, const WideText& text);

// For the answer of a control to a message, which it refuses only when memory is short. Throws std::bad_alloc
// unless `accepted`.
void RequireAccepted(bool accepted);

// The number in an edit field. Throws with `label` when the text is empty or is not made of ASCII digits, and
// when the number is below `lowest` or above `highest`; in the latter case the field gets the focus and its
// text is selected.
std::uint32_t ReadNumberField(HWND control, std::uint32_t lowest, std::uint32_t highest, const char* label);

// Replaces `path`, as typed, by its full path in normal form. A relative path starts at `run_directory`; an
// empty path stays empty. Throws a file-system error when the platform cannot make the path full.
void ResolveFormPath(const Launcher& launcher, WideText& path);

// A new, validated record with the values of the form and the module list of `config`. Changes neither
// `config` nor `dirty`. Throws at the first value that is wrong.
VmConfig ReadForm(Launcher& launcher);

// Writes `config` into all controls, selects the module row that was selected before if its index still
// exists, and refreshes enabling and title. The caller sets `dirty`. Throws std::bad_alloc at the first
// control that refuses its value; the form is then filled in part.
void FillForm(Launcher& launcher);

// The contents of the controls outside the module list, valid or not.
struct FormContent {
    std::vector<WideText> texts;
    LRESULT zoom = 0;
    std::vector<bool> checks;
};
FormContent ReadContent(const Launcher& launcher);

// A configuration with its place: the values of the fields of the same names in the Launcher.
struct CurrentConfig {
    VmConfig config;
    WideText config_path;
    WideText run_directory;
    bool dirty = false;
};

// Makes `next` the current configuration and fills the form from it. Throws std::bad_alloc when a control
// refuses its value; the Launcher is then unchanged, and the form has the contents `shown` again.
void AdoptConfig(Launcher& launcher, CurrentConfig next, const FormContent& shown);

// Rebuilds the rows of the module list from `config.modules`, with no row selected. Call it only while
// `filling` is set. Throws std::bad_alloc when the list refuses a row.
void RebuildModuleList(Launcher& launcher);

// Selects one row of the module list. The notification of the list updates `selected_module` and the
// arguments field before this returns. Call it only while `filling` is not set.
void SelectModuleRow(Launcher& launcher, std::int32_t index);

// Writes the second column of a row of the module list. Throws std::bad_alloc when the list refuses it.
void SetModuleRowArguments(HWND list, std::size_t index, const WideText& arguments);
