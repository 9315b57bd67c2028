// Reading and writing configuration files.
#pragma once

#include "config/vm_config.h"
#include "platform/win32.h"

// Reads the file at `path` and returns its validated record. Relative paths in the file are joined to
// the file's folder, as AnchorPath does. Throws if the file cannot be read, is larger than
// MAX_CONFIG_BYTES or is not valid.
VmConfig ReadConfigFile(const WideText& path);

// Creates or replaces the file at `path`: writes the text to a temporary file in the same folder, flushes
// the temporary file to disk and moves it over the file at `path`. At every moment that file is the
// complete old or the complete new one. Throws when the record is not valid or a step fails; the old file
// is then unchanged and the temporary file is deleted.
void WriteConfigFile(const WideText& path, const VmConfig& config);
