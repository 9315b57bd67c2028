// The program's operator new. Apart from all that uses it: the compiler must not see what it rests on.
#include "host/memory/shortage.h"

#include <cstdlib>
#include <new>

thread_local Shortage shortage;

namespace {

bool MustFail() {
    if (!shortage.is_on || (shortage.came && !shortage.lasts))
        return false;
    shortage.left -= shortage.left > 0 ? 1 : 0;
    shortage.came = shortage.left == 0;
    return shortage.came;
}

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = MustFail() ? nullptr : std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
