// Calculates the place of a control in a client area of any size from the control's first rectangle. No
// platform call.
#pragma once

#include <cstdint>

#include "platform/win32.h"
#include "state/launcher.h"

// The smallest client area, in pixels. The rectangles of the control table are the places in this area.
inline constexpr std::int32_t BASE_CLIENT_WIDTH = 920;
inline constexpr std::int32_t BASE_CLIENT_HEIGHT = 676;

struct Placement {
    std::int32_t x;
    std::int32_t y;
    std::int32_t width;
    std::int32_t height;
};

// Returns the rectangle, in pixels, of a control in a client area that is `dx` pixels wider and `dy`
// pixels higher than the base size (less wide or high if negative). Width and height of the rectangle are
// at least 1.
Placement PlaceControl(const LayoutItem& item, UINT id, std::int32_t dx, std::int32_t dy);

struct ColumnWidths {
    std::int32_t file;
    std::int32_t arguments;
};

// Returns the widths in pixels of the module list's two columns in a client area that is `dx` pixels wider
// than the base size.
ColumnWidths ModuleColumnWidths(std::int32_t dx);
