// Reads the words of the kernel command line that control the stand-in engine.
#include "demo/tessarun_script.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

#include "adapter/engine_process.h"
#include "base/text_convert.h"

namespace {

constexpr std::uint32_t DURATION_MS_MAX = 3600000;
constexpr std::uint32_t LINES_MAX = 100000;
constexpr std::uint32_t FILLER_BYTES_MAX = 64 * 1024 * 1024;
constexpr WideView DEMO_PREFIX = TEXT("demo.");

[[noreturn]] void Refuse(const char* word, WideView value) {
    throw std::runtime_error(std::string("Mot inconnu : ") + word + Utf8FromWide(value));
}

struct ScriptWord {
    WideView key;
    void (*take)(MachineScript& script, WideView value);
};

constexpr std::array<ScriptWord, 7> SCRIPT_WORDS{{
    {TEXT("demo.duree="),
     [](MachineScript& script, WideView value) { script.duration_ms = ParseNumber(value, DURATION_MS_MAX); }},
    {TEXT("demo.lignes="),
     [](MachineScript& script, WideView value) { script.lines = ParseNumber(value, LINES_MAX); }},
    {TEXT("demo.code="),
     [](MachineScript& script, WideView value) { script.exit_code = ParseNumber(value); }},
    {TEXT("demo.octets="),
     [](MachineScript& script, WideView value) {
         script.filler_bytes = ParseNumber(value, FILLER_BYTES_MAX);
     }},
    {TEXT("demo.attend="), [](MachineScript& script, WideView value) { script.awaited_file = value; }},
    {TEXT("demo.texte="),
     [](MachineScript& script, WideView value) { script.texts.push_back(Utf8FromWide(value)); }},
    {TEXT("demo.invalide"),
     [](MachineScript& script, WideView value) {
         if (!value.empty())
             Refuse("demo.invalide", value);
         script.writes_bad_utf8 = true;
     }},
}};

void TakeWord(MachineScript& script, WideView word) {
    if (!word.starts_with(DEMO_PREFIX))
        return;
    for (const ScriptWord& row : SCRIPT_WORDS)
        if (word.starts_with(row.key))
            return row.take(script, word.substr(row.key.size()));
    Refuse("", word);
}

}  // namespace

MachineScript ParseMachineScript(WideView kernel_command) {
    MachineScript script;
    while (!kernel_command.empty()) {
        const std::size_t length = std::min(kernel_command.find(TEXT(' ')), kernel_command.size());
        TakeWord(script, kernel_command.substr(0, length));
        kernel_command.remove_prefix(std::min(length + 1, kernel_command.size()));
    }
    return script;
}
