// Simulates the stand-in engine's machine.
#include "demo/tessarun_machine.h"

#include <string>

#include "adapter/engine_process.h"
#include "base/file_system.h"
#include "base/text_convert.h"

namespace {

constexpr std::size_t FILLER_LINE_BYTES = 64;

void PrintFiller(std::size_t bytes) {
    const std::string line = std::string(FILLER_LINE_BYTES - 1, '.') + "\n";
    std::string filler;
    filler.reserve(bytes);
    while (filler.size() < bytes)
        filler.append(line, 0, bytes - filler.size());
    Print(filler);
}

void SleepUntil(std::uint64_t moment_ms) {
    for (std::uint64_t now_ms = GetTickCount64(); now_ms < moment_ms; now_ms = GetTickCount64())
        Sleep(static_cast<DWORD>(moment_ms - now_ms));
}

// Waits until the file exists; an empty path means no wait.
void AwaitFile(const WideText& path) {
    constexpr DWORD POLL_MS = 10;
    while (!path.empty() && QueryFileType(path, "status") == FileType::Missing)
        Sleep(POLL_MS);
}

}  // namespace

std::uint32_t PlayMachine(const MachineScript& script, std::uint32_t limit_ms) {
    const std::uint64_t start_ms = GetTickCount64();
    const bool is_cut = limit_ms != 0 && limit_ms < script.duration_ms;
    PrintLine("Machine démarrée.");
    for (const std::string& text : script.texts)
        PrintLine(text);
    PrintFiller(script.filler_bytes);
    if (script.writes_bad_utf8)
        Print("\xFF\n");
    for (std::uint64_t line = 1; line <= script.lines; ++line) {
        const std::uint64_t due_ms = script.duration_ms * line / script.lines;
        if (is_cut && due_ms > limit_ms)
            break;
        SleepUntil(start_ms + due_ms);
        PrintLine("Ligne " + NumberText(line) + " sur " + NumberText(script.lines) + ".");
    }
    SleepUntil(start_ms + (is_cut ? limit_ms : script.duration_ms));
    AwaitFile(script.awaited_file);
    if (is_cut) {
        PrintLine("Délai de " + NumberText(limit_ms) + " ms écoulé : machine arrêtée.");
        return TIME_LIMIT_EXIT_CODE;
    }
    PrintLine("Machine arrêtée, code " + NumberText(script.exit_code) + ".");
    return script.exit_code;
}
