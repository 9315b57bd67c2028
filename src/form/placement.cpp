#include "form/placement.h"

#include <algorithm>
#include <array>

#include "form/form_ids.h"

namespace {

constexpr std::int32_t BOTTOM_ZONE = 552;  // controls at this y or below move with the bottom edge
constexpr std::int32_t LIST_BASE_WIDTH = 728;
constexpr std::int32_t FILE_COLUMN_MIN = 220;
constexpr std::int32_t ARGUMENTS_COLUMN_MIN = 160;
constexpr std::int32_t SCROLL_BAR_ROOM = 24;  // kept free beside the columns
constexpr std::array RIGHT_ANCHORED{IDC_KERNEL_BROWSE,
                                    IDC_DUMP_BROWSE,
                                    IDC_MODULE_ADD,
                                    IDC_MODULE_REMOVE,
                                    IDC_MODULE_UP,
                                    IDC_MODULE_DOWN,
                                    IDC_IDE_PRIMARY_MASTER_BROWSE,
                                    IDC_IDE_PRIMARY_SLAVE_BROWSE,
                                    IDC_IDE_SECONDARY_MASTER_BROWSE,
                                    IDC_IDE_SECONDARY_SLAVE_BROWSE};

bool FollowsRightEdge(UINT id) {
    return std::find(RIGHT_ANCHORED.begin(), RIGHT_ANCHORED.end(), id) != RIGHT_ANCHORED.end();
}

bool FollowsHeight(UINT id) {
    return id == IDC_PAGE_TABS || id == IDC_MODULE_LIST;
}

}  // namespace

Placement PlaceControl(const LayoutItem& item, UINT id, std::int32_t dx, std::int32_t dy) {
    return {
        item.x + (FollowsRightEdge(id) ? dx : 0),
        item.y + (item.y >= BOTTOM_ZONE ? dy : 0),
        std::max(item.width + (item.stretch ? dx : 0), 1),
        std::max(item.height + (FollowsHeight(id) ? dy : 0), 1),
    };
}

ColumnWidths ModuleColumnWidths(std::int32_t dx) {
    const std::int32_t list_width = dx + LIST_BASE_WIDTH;
    return {std::max(3 * list_width / 5, FILE_COLUMN_MIN),
            std::max(2 * list_width / 5 - SCROLL_BAR_ROOM, ARGUMENTS_COLUMN_MIN)};
}
