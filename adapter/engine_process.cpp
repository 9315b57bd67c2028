// Runs an engine, reports its exceptions and writes its output.
#include "adapter/engine_process.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <string>

namespace {

constexpr std::size_t PIECE_BYTES = 1 << 20;

}  // namespace

void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work) {
    std::uint32_t exit_code = SUCCESS_EXIT_CODE;
    try {
        work(std::vector<WideText>(argv + std::min(argc, 1), argv + argc), exit_code);
    } catch (const std::exception& error) {
        exit_code = std::max(exit_code, FAILURE_EXIT_CODE);
        const std::string line = std::string("Erreur : ") + error.what() + "\n";
        static_cast<void>(WriteAll(GetStdHandle(STD_ERROR_HANDLE), line));
    }
    ExitProcess(exit_code);  // a code returned from main would be cut to 8 bits on Linux
}

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
