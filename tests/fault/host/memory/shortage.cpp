// The program's operator new, in its own file so that the compiler cannot inline it.
#include "fault/host/memory/shortage.h"

#include <cstdlib>
#include <new>

thread_local Shortage shortage;

namespace {

bool MustFail() {
    if (!shortage.is_on || (shortage.has_failed && !shortage.lasts))
        return false;
    shortage.left -= shortage.left > 0 ? 1 : 0;
    shortage.has_failed = shortage.left == 0;
    return shortage.has_failed;
}

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = MustFail() ? nullptr : std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
