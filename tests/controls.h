// The identifiers of the controls, as numbers of the tests' own.
#pragma once

namespace control {

enum Id : unsigned {
    // The buttons of the top and the bottom row.
    LOAD = 101,
    SAVE,
    SAVE_AS,
    RESET,
    LAUNCH,
    VERIFY,
    SHOW_LOG,
    // The group « Machine ».
    KERNEL = 201,
    BROWSE_KERNEL,
    ARGUMENTS,
    RAM,
    TIME_LIMIT,
    WITHOUT_HEADER,
    // The group « Affichage ».
    OWN_SIZE,
    WIDTH,
    HEIGHT,
    ZOOM,
    WITHOUT_WINDOWS,
    PICTURE,
    BROWSE_PICTURE,
    // The page « Modules Multiboot ».
    TABS = 301,
    MODULES,
    ADD,
    REMOVE,
    UP,
    DOWN,
    MODULE_ARGUMENTS,
    // The page « Disques IDE ».
    DISK_0 = 401,
    DISK_1,
    DISK_2,
    DISK_3,
    BROWSE_DISK_0 = 411,
    BROWSE_DISK_1,
    BROWSE_DISK_2,
    BROWSE_DISK_3,
    CONFIG_LINE = 501,
    STATUS,
};

}  // namespace control
