// Where controls stand in a client area of any size.
#include "form/placement.h"

#include <gtest/gtest.h>

#include "form/control_table.h"

namespace {

const ControlRow& RowOf(UINT id) {
    for (const ControlRow& row : CONTROL_TABLE)
        if (row.id == id)
            return row;
    throw std::runtime_error("no such control");
}

Placement PlaceRow(const ControlRow& row, std::int32_t dx, std::int32_t dy) {
    return PlaceControl({nullptr, row.x, row.y, row.width, row.height, row.stretch}, row.id, dx, dy);
}

TEST(Placement, KeepsEveryControlAtLeastOnePixelWideAndHigh) {
    for (const ControlRow& row : CONTROL_TABLE) {
        const Placement placed = PlaceRow(row, -920, -676);
        EXPECT_GE(placed.width, 1) << row.x << "," << row.y;
        EXPECT_GE(placed.height, 1) << row.x << "," << row.y;
    }
    EXPECT_EQ(PlaceRow(RowOf(IDC_KERNEL_BROWSE), -920, -676).x, 794 - 920) << "x has no lower limit";
}

TEST(Placement, DividesTheModuleListIntoItsColumns) {
    const struct {
        std::int32_t dx, file, arguments;
    } cases[] = {{0, 436, 267}, {280, 604, 379}, {-920, 220, 160}, {-361, 220, 160}};
    for (const auto& c : cases) {
        const ColumnWidths widths = ModuleColumnWidths(c.dx);
        EXPECT_EQ(widths.file, c.file) << c.dx;
        EXPECT_EQ(widths.arguments, c.arguments) << c.dx;
    }
}

}  // namespace
