// Handles, the descriptors of files beneath them, and the standard streams.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"
#include "platform/host/system/native.h"

namespace {

// Handles are numbers of the layer's own that never come back, so that a stale one is always noticed.
struct HandleTable {
    std::map<std::uintptr_t, host::KernelObject> open;
    std::uintptr_t next = 0x100;
    std::array<host::KernelObject, 3> standard;
};

HandleTable& Table() {
    return host::Lasting<HandleTable>();
}

constexpr std::uintptr_t HANDLE_STEP = 4;
constexpr std::uintptr_t FIRST_STANDARD = 0x10;

// The stream's place in the table, or its size for another handle.
std::size_t StandardIndex(HANDLE handle) {
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    const std::size_t count = Table().standard.size();
    if (number < FIRST_STANDARD || number % HANDLE_STEP != 0)
        return count;
    return std::min<std::size_t>((number - FIRST_STANDARD) / HANDLE_STEP, count);
}

host::KernelObject StandardObject(int number) {
    auto file = std::make_shared<host::OpenFile>();
    file->descriptor = host::Descriptor(number);
    file->can_read = number == STDIN_FILENO;
    file->can_write = number != STDIN_FILENO;
    file->is_inheritable = true;
    return {file, nullptr};
}

}  // namespace

namespace host {

Descriptor::~Descriptor() {
    // The three standard streams belong to the process and stay open.
    if (number > STDERR_FILENO)
        close(number);
}

Descriptor::Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    std::swap(number, other.number);
    return *this;
}

HANDLE AddHandle(KernelObject object) {
    HandleTable& table = Table();
    const std::uintptr_t number = table.next;
    table.next += HANDLE_STEP;
    table.open.emplace(number, std::move(object));
    return reinterpret_cast<HANDLE>(number);
}

const KernelObject* FindObject(HANDLE handle) {
    HandleTable& table = Table();
    const std::size_t standard = StandardIndex(handle);
    if (standard < table.standard.size() && table.standard[standard].file != nullptr)
        return &table.standard[standard];
    const auto found = table.open.find(reinterpret_cast<std::uintptr_t>(handle));
    if (found == table.open.end()) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    return &found->second;
}

OpenFile* FindFile(HANDLE handle) {
    const KernelObject* const object = FindObject(handle);
    if (object != nullptr && object->file == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    return object == nullptr ? nullptr : object->file.get();
}

std::vector<int> InheritableDescriptors() {
    std::vector<int> descriptors;
    for (const auto& [number, object] : Table().open)
        if (object.file != nullptr && object.file->is_inheritable)
            descriptors.push_back(object.file->descriptor.number);
    std::sort(descriptors.begin(), descriptors.end());
    return descriptors;
}

std::size_t OpenHandles() {
    return Table().open.size();
}

}  // namespace host

BOOL WINAPI CloseHandle(HANDLE handle) {
    const bool must_fail = host::CallFails("CloseHandle");
    const DWORD injected_error = GetLastError();
    if (host::FindObject(handle) == nullptr)
        return FALSE;
    Table().open.erase(reinterpret_cast<std::uintptr_t>(handle));
    host::ReapChildren();
    return must_fail ? host::Fail(injected_error) : TRUE;
}

HANDLE WINAPI GetStdHandle(DWORD which) {
    if (host::CallFails("GetStdHandle"))
        return INVALID_HANDLE_VALUE;
    const DWORD index = STD_INPUT_HANDLE - which;
    if (index >= Table().standard.size()) {
        host::Fail(ERROR_INVALID_HANDLE);
        return INVALID_HANDLE_VALUE;
    }
    const int number = static_cast<int>(index);
    if (fcntl(number, F_GETFD) == -1)
        return nullptr;
    host::KernelObject& object = Table().standard[index];
    if (object.file == nullptr)
        object = StandardObject(number);
    return reinterpret_cast<HANDLE>(FIRST_STANDARD + HANDLE_STEP * index);
}
