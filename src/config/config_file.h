// Reading and writing configuration files.
#pragma once

#include "config/vm_config.h"
#include "platform/win32.h"

// The validated record of the file; relative paths become absolute, seen from the file's own folder. Throws
// if the file cannot be read or its text is not valid.
VmConfig ReadConfigFile(const WideText& path);

// Creates or replaces the file at `path`: the text is written to a temporary file beside it, which is flushed
// to disk and moved over it. At every moment the file is the complete old or the complete new one. Throws
// when the record is not valid or a step fails; then the old file is unchanged and the temporary file
// deleted.
void WriteConfigFile(const WideText& path, const VmConfig& config);
