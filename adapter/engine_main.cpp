// Runs an engine and reports its exceptions.
#include "adapter/engine_main.h"

#include <algorithm>
#include <exception>
#include <string>

#include "adapter/engine_output.h"

void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work) {
    std::uint32_t exit_code = FAILURE_EXIT_CODE;
    try {
        work(std::vector<WideText>(argv + std::min(argc, 1), argv + argc), exit_code);
    } catch (const std::exception& error) {
        PrintErrorLine(std::string("Erreur : ") + error.what());
    }
    ExitProcess(exit_code);  // a code returned from main would be cut to 8 bits on Linux
}
