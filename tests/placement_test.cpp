// The layout in a client area of size zero, as a minimised window has it.
#include "form/placement.h"

#include <gtest/gtest.h>

#include "form/control_table.h"

TEST(Placement, KeepsControlsAndColumnsAtTheirMinimumSizes) {
    for (const ControlRow& row : CONTROL_TABLE) {
        const LayoutItem item{nullptr, row.x, row.y, row.width, row.height, row.stretch};
        const Placement placed = PlaceControl(item, row.id, -920, -676);
        EXPECT_TRUE(placed.width >= 1 && placed.height >= 1) << row.x << "," << row.y;
        if (row.id == IDC_KERNEL_BROWSE)
            EXPECT_EQ(placed.x, 794 - 920) << "x has no lower limit";
    }
    const struct {
        std::int32_t dx, file, arguments;
    } cases[] = {{0, 436, 267}, {-920, 220, 160}, {-361, 220, 160}};
    for (const auto& c : cases) {
        EXPECT_EQ(ModuleColumnWidths(c.dx).file, c.file) << c.dx;
        EXPECT_EQ(ModuleColumnWidths(c.dx).arguments, c.arguments) << c.dx;
    }
}
