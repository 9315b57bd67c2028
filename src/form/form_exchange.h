// The exchange between the form and the record: fills the controls from `config`, and reads a new record
// from the controls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "config/vm_config.h"
#include "platform/win32.h"
#include "state/launcher.h"

// Returns the whole text of a control, not trimmed. Throws std::bad_alloc when the control does not return
// the whole text.
WideText GetControlText(HWND control);
// As GetControlText, but reads into `text` and reuses its memory.
void ReadControlText(HWND control, WideText& text);

// Replaces the text of a control. Throws std::bad_alloc when the control refuses the new text or stores
// only a part.
void SetControlText(HWND control, const WideText& text);

// Throws std::bad_alloc unless `accepted`. For messages that a control refuses only when memory is short.
void RequireAccepted(bool accepted);

// Returns the number in an edit field. Throws, with `label` in the message, when the text is empty or
// contains anything but ASCII digits, and when the number is below `lowest` or above `highest`. A number
// outside the limits also gets the focus and is selected.
std::uint32_t ReadNumberField(HWND control, std::uint32_t lowest, std::uint32_t highest, const char* label);

// Replaces `path`, as typed by the user, by the full path in normal form. A relative path is relative to
// `run_directory`; an empty path is left empty. Throws as AbsolutePath does.
void ResolveFormPath(const Launcher& launcher, WideText& path);

// Returns a new, validated record: the values of the form and the module list of the Launcher's `config`.
// Each path is empty or a full path in normal form. Changes neither `config` nor `dirty`. Throws at the first
// wrong value.
VmConfig ReadForm(Launcher& launcher);

// Writes `config` into all controls, selects the module row that was selected before if its index still
// exists, and refreshes the enabled states and the title. The caller sets `dirty` before the call. Throws
// std::bad_alloc at the first control that refuses its value; the other controls may already be changed.
void FillForm(Launcher& launcher);

// The contents of the controls other than the module list and its arguments field, as the user typed them:
// they need not be valid.
struct FormContent {
    std::vector<std::pair<HWND, WideText>> texts;
    LRESULT zoom = 0;
    std::vector<bool> checks;
};

// Returns the contents of these controls. Throws std::bad_alloc when a control does not return its text.
FormContent ReadContent(const Launcher& launcher);

// A configuration, its file, its folder and whether it has unsaved changes: values for the fields of the
// same names in the Launcher.
struct CurrentConfig {
    VmConfig config;
    WideText config_path;
    WideText run_directory;
    bool dirty = false;
};

// Makes `next` the current configuration and fills the form from it. Throws std::bad_alloc when a control
// refuses its value. The old configuration is then current again, the module list is filled from it, and
// `shown` is written back into the other controls; a control that refuses its old value too keeps the
// value that it shows.
void AdoptConfig(Launcher& launcher, CurrentConfig next, const FormContent& shown);

// Rebuilds the rows of the module list from `config.modules`, selects no row and clears the arguments
// field. Call it only while `filling` is set. Throws std::bad_alloc when a control refuses the change.
void RebuildModuleList(Launcher& launcher);

// Selects one row of the module list. The list sends a notification, whose handler updates
// `selected_module` and the arguments field before this function returns. Call it only while `filling` is
// not set.
void SelectModuleRow(Launcher& launcher, std::int32_t index);

// Writes the arguments into the second column of a row of the module list. Throws std::bad_alloc when the
// list refuses the text.
void SetModuleRowArguments(HWND list, std::size_t index, const WideText& arguments);
