// Operations on the text of Windows paths, on whatever machine they run. They touch no disk and cannot fail.
// Both slashes separate. A path is a root name, the separators after it (its root directory), and a relative
// part.
#pragma once

#include "platform/win32.h"

// `C:\a` and `\\server\a` are absolute; `C:a`, `\a` and `a` are not.
bool IsAbsolutePath(WideView path);

// The path without its last element and the separators in front of that; a path of nothing but its root is
// its own parent, and a single element has an empty one.
WideText ParentPath(WideView path);

// The second path seen from the first.
WideText JoinPath(WideView base, WideView path);

// The normal form: backslashes only, one at a time, no `.`, no `..` but at the start of a relative path; `.`
// where nothing is left. Case and a separator at the end stay. One pass.
WideText NormalPath(WideView path);

// Makes a path field of a record full: an empty or absolute one stays as it is, any other is joined to `base`
// and brought into normal form.
void AnchorPath(WideView base, WideText& field);
