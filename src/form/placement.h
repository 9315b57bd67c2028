// Where a control stands in a client area of any size: one fixed rule from its first rectangle. Plain
// calculation.
#pragma once

#include <cstdint>

#include "platform/win32.h"
#include "state/launcher.h"

// The client area, in pixels, for which the rectangles of the control table hold; the smallest there is.
inline constexpr std::int32_t BASE_CLIENT_WIDTH = 920;
inline constexpr std::int32_t BASE_CLIENT_HEIGHT = 676;

struct Placement {
    std::int32_t x;
    std::int32_t y;
    std::int32_t width;
    std::int32_t height;
};

// The rectangle of a control when the client area is `dx` by `dy` pixels larger than its base size (smaller
// when negative). Width and height come out as 1 at least.
Placement PlaceControl(const LayoutItem& item, UINT id, std::int32_t dx, std::int32_t dy);

struct ColumnWidths {
    std::int32_t file;
    std::int32_t arguments;
};

// The widths in pixels of the module list's two columns, for the same `dx`.
ColumnWidths ModuleColumnWidths(std::int32_t dx);

enum class TabPage { Disks, Modules };

// The page of the tab with this index; anything but the first tab is the module page.
TabPage PageOfTab(std::intptr_t tab_index);
