// Writes to the standard streams without a buffer.
#include "adapter/engine_output.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace {

constexpr std::size_t PIECE_BYTES = 1 << 20;

}  // namespace

bool WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(bytes.size(), PIECE_BYTES));
        if (WriteFile(file, bytes.data(), count, &written, nullptr) == FALSE || written == 0)
            return false;
        bytes.remove_prefix(written);
    }
    return true;
}

void Print(std::string_view bytes) {
    if (!WriteAll(GetStdHandle(STD_OUTPUT_HANDLE), bytes))
        throw std::runtime_error("Écriture sur la sortie standard impossible.");
}

void PrintLine(std::string_view text) {
    Print(std::string(text) + "\n");
}

void PrintErrorLine(std::string_view text) {
    static_cast<void>(WriteAll(GetStdHandle(STD_ERROR_HANDLE), std::string(text) + "\n"));
}
