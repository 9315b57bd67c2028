// Where an engine's exceptions end.
#include "adapter/engine_main.h"

#include <exception>
#include <string>

#include "adapter/engine_output.h"

namespace {

std::uint32_t Run(const std::vector<WideText>& arguments, EngineWork* work) {
    std::uint32_t failure_code = CHECK_EXIT_CODE;
    try {
        return work(arguments, failure_code);
    } catch (const std::exception& error) {
        PrintErrorLine(std::string("Erreur : ") + error.what());
        return failure_code;
    }
}

}  // namespace

void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work) {
    // Not returned: that would cut the code off on Linux.
    ExitProcess(Run(argc > 1 ? std::vector<WideText>(argv + 1, argv + argc) : std::vector<WideText>(), work));
}
