// The configuration file: read whole or refused, replaced in one step or left as it was.
#pragma once

#include "config/vm_config.h"
#include "platform/win32.h"

// The validated record of the file, its relative paths made full against the file's own folder. Throws with
// one precise message and no other effect.
VmConfig ReadConfigFile(const WideText& path);

// Replaces the file at `path`, or makes it: the text goes to a temporary file beside it, which is forced to
// disk and moved over it. At every moment the file is the complete old or the complete new one. Throws when
// the record is not valid or a step fails; the old file is then untouched and the temporary one removed.
void WriteConfigFile(const WideText& path, const VmConfig& config);
