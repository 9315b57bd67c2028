// Memory that runs short for the program alone.
#pragma once

struct Shortage {
    bool is_on = false;
    bool lasts = false;  // every allocation fails, not just one
    unsigned left = 0;   // the how manieth fails
    bool came = false;
};

// Each thread has its own: the user's never runs short.
extern thread_local Shortage shortage;
