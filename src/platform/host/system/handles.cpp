// Handles, the descriptors of their files, and the standard streams.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/hooks/test_hooks.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

// The number of a closed handle is never used again, so that every use of a closed handle fails.
struct HandleTable {
    std::map<std::uintptr_t, KernelObject> open;
    std::uintptr_t next = 0x100;
    std::array<KernelObject, 3> standard;  // made at the first GetStdHandle
};

HandleTable handles;

constexpr std::uintptr_t HANDLE_STEP = 4;
constexpr std::uintptr_t FIRST_STANDARD = 0x10;

// The index of a standard stream in `standard`; the size of `standard` for any other handle.
std::size_t StandardIndex(HANDLE handle) {
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    const std::size_t count = handles.standard.size();
    if (number < FIRST_STANDARD || number % HANDLE_STEP != 0)
        return count;
    return std::min<std::size_t>((number - FIRST_STANDARD) / HANDLE_STEP, count);
}

KernelObject StandardObject(int number) {
    const bool is_input = number == STDIN_FILENO;
    return {std::make_shared<OpenFile>(OpenFile{Descriptor(number), is_input, !is_input, true, nullptr}),
            nullptr};
}

}  // namespace

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
    const std::uintptr_t number = handles.next;
    handles.next += HANDLE_STEP;
    handles.open.emplace(number, std::move(object));
    return reinterpret_cast<HANDLE>(number);
}

const KernelObject* FindObject(HANDLE handle) {
    const std::size_t standard = StandardIndex(handle);
    if (standard < handles.standard.size() && handles.standard[standard].file != nullptr)
        return &handles.standard[standard];
    const auto found = handles.open.find(reinterpret_cast<std::uintptr_t>(handle));
    if (found == handles.open.end()) {
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
    for (const auto& [number, object] : handles.open)
        if (object.file != nullptr && object.file->is_inheritable)
            descriptors.push_back(object.file->descriptor.number);
    std::sort(descriptors.begin(), descriptors.end());
    return descriptors;
}

std::size_t OpenHandles() {
    return handles.open.size();
}

void ResetHandles() {
    handles = {};
}

}  // namespace host

BOOL WINAPI CloseHandle(HANDLE handle) {
    const bool must_fail = host::CallFails("CloseHandle");
    const DWORD injected_error = GetLastError();
    if (host::FindObject(handle) == nullptr)
        host::NotImplemented("CloseHandle", "a handle that is not open");
    host::handles.open.erase(reinterpret_cast<std::uintptr_t>(handle));
    host::ReapChildren();
    return must_fail ? host::Fail(injected_error) : TRUE;
}

HANDLE WINAPI GetStdHandle(DWORD which) {
    if (host::CallFails("GetStdHandle"))
        return INVALID_HANDLE_VALUE;
    const DWORD index = STD_INPUT_HANDLE - which;
    if (index >= host::handles.standard.size()) {
        host::Fail(ERROR_INVALID_HANDLE);
        return INVALID_HANDLE_VALUE;
    }
    const int number = static_cast<int>(index);
    if (fcntl(number, F_GETFD) == -1)
        return nullptr;
    host::KernelObject& object = host::handles.standard[index];
    if (object.file == nullptr)
        object = host::StandardObject(number);
    return reinterpret_cast<HANDLE>(host::FIRST_STANDARD + host::HANDLE_STEP * index);
}
