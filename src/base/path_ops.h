// Operations on the text of Windows paths, the same on every system. They access no disk and cannot fail.
// Both `\` and
// `/` are separators. A path consists of a root name, the separators behind it (the root directory) and a
// relative part.
#pragma once

#include "platform/win32.h"

// `C:\a` and `\\server\a` are absolute; `C:a`, `\a` and `a` are not.
bool IsAbsolutePath(WideView path);

// The path without its last element and the separators in front of it. A path without elements is its own
// parent; the parent of a single element is empty.
WideText ParentPath(WideView path);

// `path`, if relative, as seen from `base`.
WideText JoinPath(WideView base, WideView path);

// The normal form: single backslashes as separators, no `.`, and `..` only at the start of a relative path.
// `.` if nothing is left. Case and a separator at the end are kept.
WideText NormalPath(WideView path);

// Makes a relative path absolute: joins it to the folder `base` and normalises it. An empty or absolute path
// is left unchanged.
void AnchorPath(WideView base, WideText& field);
