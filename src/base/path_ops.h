// Operations on the text of Windows paths. They are the same on every system, access no disk and throw
// only std::bad_alloc. Both `\` and `/` are separators. A path consists of a root name (such as `C:` or
// `\\server`), the separators after the root name (the root directory) and a relative part. Each of the
// three can be empty.
#pragma once

#include "platform/win32.h"

// Returns whether the path is absolute: `C:\a` and `\\server\a` are; `C:a`, `\a` and `a` are not.
bool IsAbsolutePath(WideView path);

// Returns the path without its last element and the separators before that element. From a path that ends
// in separators, only these are removed. The root is never removed. The parent of a relative path of one
// element is empty.
WideText ParentPath(WideView path);

// Returns `path` joined to the folder `base`. Returns `path` unchanged if it is absolute or has another
// root name than `base`; case matters. A path that starts with a separator is joined to the root name of
// `base` only.
WideText JoinPath(WideView base, WideView path);

// Returns the normal form: single backslashes as separators, no `.`, and `..` only at the start of a
// relative path. The result is `.` if neither a root nor an element is left, and empty for an empty path.
// Case is kept. A separator at the end is kept, except after `..`; a `.` at the end is removed, but not the
// separator before it.
WideText NormalPath(WideView path);

// Replaces a relative path by the normal form of the path joined to the folder `base`. An empty or
// absolute path is left unchanged.
void AnchorPath(WideView base, WideText& path);
