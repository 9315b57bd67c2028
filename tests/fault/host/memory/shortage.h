// A shortage of memory for the program only.
#pragma once

struct Shortage {
    bool is_on = false;
    bool lasts = false;  // all allocations after the first failed one fail too
    unsigned left = 0;   // allocations up to the first one that fails
    bool has_failed = false;
};

// Each thread has its own, so that no other thread runs out of memory.
extern thread_local Shortage shortage;
