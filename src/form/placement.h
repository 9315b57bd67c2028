// The place of a control in a client area of any size, calculated from its first rectangle. No platform call.
#pragma once

#include <cstdint>

#include "platform/win32.h"
#include "state/launcher.h"

// The smallest client area, in pixels. The rectangles of the control table are meant for it.
inline constexpr std::int32_t BASE_CLIENT_WIDTH = 920;
inline constexpr std::int32_t BASE_CLIENT_HEIGHT = 676;

struct Placement {
    std::int32_t x;
    std::int32_t y;
    std::int32_t width;
    std::int32_t height;
};

// The rectangle of a control when the client area is `dx` by `dy` pixels larger than its base size (smaller
// when negative). Width and height are at least 1.
Placement PlaceControl(const LayoutItem& item, UINT id, std::int32_t dx, std::int32_t dy);

struct ColumnWidths {
    std::int32_t file;
    std::int32_t arguments;
};

// The widths in pixels of the module list's two columns, for the same `dx`.
ColumnWidths ModuleColumnWidths(std::int32_t dx);
