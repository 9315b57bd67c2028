// The identifiers of the controls: commands 1xx, fields of the two groups 2xx, tabs and module page 3xx, disk
// page 4xx, text lines 5xx.
#pragma once

#include "platform/win32.h"

inline constexpr UINT IDC_LOAD = 101;
inline constexpr UINT IDC_SAVE = 102;
inline constexpr UINT IDC_SAVE_AS = 103;
inline constexpr UINT IDC_RESET = 104;
inline constexpr UINT IDC_LAUNCH = 105;
inline constexpr UINT IDC_VERIFY = 106;
inline constexpr UINT IDC_SHOW_LOG = 107;
inline constexpr UINT IDC_KERNEL_PATH = 201;
inline constexpr UINT IDC_KERNEL_BROWSE = 202;
inline constexpr UINT IDC_KERNEL_COMMAND = 203;
inline constexpr UINT IDC_RAM_MIB = 204;
inline constexpr UINT IDC_TIMEOUT_MS = 205;
inline constexpr UINT IDC_FORCE_NO_HEADER = 206;
inline constexpr UINT IDC_EXPLICIT_VIDEO = 207;
inline constexpr UINT IDC_WIDTH = 208;
inline constexpr UINT IDC_HEIGHT = 209;
inline constexpr UINT IDC_ZOOM = 210;
inline constexpr UINT IDC_HEADLESS = 211;
inline constexpr UINT IDC_DUMP_PATH = 212;
inline constexpr UINT IDC_DUMP_BROWSE = 213;
inline constexpr UINT IDC_PAGE_TABS = 301;
inline constexpr UINT IDC_MODULE_LIST = 302;
inline constexpr UINT IDC_MODULE_ADD = 303;
inline constexpr UINT IDC_MODULE_REMOVE = 304;
inline constexpr UINT IDC_MODULE_UP = 305;
inline constexpr UINT IDC_MODULE_DOWN = 306;
inline constexpr UINT IDC_MODULE_ARGS = 307;
inline constexpr UINT IDC_IDE_PRIMARY_MASTER = 401;
inline constexpr UINT IDC_IDE_PRIMARY_SLAVE = 402;
inline constexpr UINT IDC_IDE_SECONDARY_MASTER = 403;
inline constexpr UINT IDC_IDE_SECONDARY_SLAVE = 404;
inline constexpr UINT IDC_IDE_PRIMARY_MASTER_BROWSE = 411;
inline constexpr UINT IDC_IDE_PRIMARY_SLAVE_BROWSE = 412;
inline constexpr UINT IDC_IDE_SECONDARY_MASTER_BROWSE = 413;
inline constexpr UINT IDC_IDE_SECONDARY_SLAVE_BROWSE = 414;
inline constexpr UINT IDC_CONFIG_LINE = 501;
inline constexpr UINT IDC_STATUS = 502;
