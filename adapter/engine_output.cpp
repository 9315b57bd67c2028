// The standard output of an engine, written unbuffered so that a log shows it at once.
#include "adapter/engine_output.h"

#include <stdexcept>
#include <string>

#include "platform/win32.h"

namespace {

bool WriteAll(DWORD stream, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        if (WriteFile(GetStdHandle(stream), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                      nullptr) == FALSE ||
            written == 0)
            return false;
        bytes.remove_prefix(written);
    }
    return true;
}

}  // namespace

void Print(std::string_view bytes) {
    if (!WriteAll(STD_OUTPUT_HANDLE, bytes))
        throw std::runtime_error("Écriture sur la sortie standard impossible.");
}

void PrintLine(std::string_view text) {
    Print(std::string(text) + "\n");
}

void PrintErrorLine(std::string_view text) {
    WriteAll(STD_ERROR_HANDLE, std::string(text) + "\n");
}
