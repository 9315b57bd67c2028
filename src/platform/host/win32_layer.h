// The layer: the platform calls that the program makes, in memory, for machines without Windows.
// Names, types and values are the platform's own; what each call promises is what the program relies on.
#pragma once

#include "platform/host/base.h"
#include "platform/host/comctl32.h"
#include "platform/host/comdlg32.h"
#include "platform/host/kernel32.h"
#include "platform/host/user32.h"
