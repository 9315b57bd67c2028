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

TEST(Placement, FollowsALargerClientArea) {
    const struct {
        UINT id;
        Placement at_1200_by_800;
    } cases[] = {
        {201, {138, 98, 926, 25}},   {202, {1074, 98, 102, 25}},  {301, {12, 374, 1176, 364}},
        {302, {26, 408, 1008, 256}}, {303, {1050, 408, 126, 26}}, {306, {1050, 507, 126, 26}},
        {307, {26, 702, 1150, 25}},  {105, {12, 753, 152, 32}},   {502, {442, 759, 746, 38}},
        {404, {164, 512, 900, 25}},  {414, {1074, 512, 102, 25}}, {204, {138, 166, 82, 25}},
        {501, {12, 47, 1176, 20}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        const Placement placed = PlaceRow(RowOf(c.id), 280, 124);
        EXPECT_EQ(placed.x, c.at_1200_by_800.x);
        EXPECT_EQ(placed.y, c.at_1200_by_800.y);
        EXPECT_EQ(placed.width, c.at_1200_by_800.width);
        EXPECT_EQ(placed.height, c.at_1200_by_800.height);
    }
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

TEST(Placement, ShowsTheDisksBehindTheFirstTabOnly) {
    EXPECT_EQ(PageOfTab(0), TabPage::Disks);
    EXPECT_EQ(PageOfTab(1), TabPage::Modules);
    EXPECT_EQ(PageOfTab(-1), TabPage::Modules);
}

}  // namespace
