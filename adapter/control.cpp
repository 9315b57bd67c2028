// Reading and writing the control channel's lines, and judging what they say.
#include "adapter/control.h"

#include <algorithm>
#include <cstdlib>

#include "adapter/engine_main.h"
#include "base/text_convert.h"

namespace {

constexpr std::uint32_t RESET_CODE = 3;
constexpr std::uint32_t EMULATOR_GONE_CODE = 4;
constexpr unsigned long INTERRUPT_FLAG = 0x200;

// The text that starts at the line's first sign, a quotation mark, and goes from the line. The escaped forms
// of characters outside ASCII do not occur in what is looked at.
std::string TakeText(std::string_view& line) {
    constexpr std::string_view WRITTEN = "nrt";
    constexpr std::string_view MEANT = "\n\r\t";
    std::string text;
    for (line.remove_prefix(1); !line.empty() && line.front() != '"'; line.remove_prefix(1)) {
        char character = line.front();
        if (character == '\\' && line.size() > 1) {
            line.remove_prefix(1);
            const std::size_t at = WRITTEN.find(line.front());
            character = at == std::string_view::npos ? line.front() : MEANT[at];
        }
        text += character;
    }
    line.remove_prefix(std::min<std::size_t>(1, line.size()));
    return text;
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\')
            quoted += '\\';
        quoted += character;
    }
    return quoted + '"';
}

std::string_view FieldBehind(std::string_view text, std::string_view name) {
    const std::size_t at = text.find(name);
    if (at == std::string_view::npos)
        return {};
    text.remove_prefix(at + name.size());
    return text.substr(0, text.find_first_of(" \r\n"));
}

}  // namespace

std::uint32_t ExitCodeOf(MachineEnd end, unsigned char written) {
    switch (end) {
        case MachineEnd::ExitCode:
            return written;
        case MachineEnd::Reset:
            return RESET_CODE;
        case MachineEnd::EmulatorGone:
            return EMULATOR_GONE_CODE;
        case MachineEnd::TimeLimit:
            return TIME_LIMIT_EXIT_CODE;
        default:
            return 0;
    }
}

std::string EndText(MachineEnd end, unsigned char written, std::uint32_t limit_ms) {
    switch (end) {
        case MachineEnd::ExitCode:
            return "Machine arrêtée par le noyau, code " + NumberText(written) + ".";
        case MachineEnd::PoweredOff:
            return "Machine éteinte par le noyau.";
        case MachineEnd::Reset:
            return "Machine réinitialisée par le noyau, ou triple faute.";
        case MachineEnd::Halted:
            return "Processeur à l'arrêt, interruptions coupées : fin de la machine.";
        case MachineEnd::WindowClosed:
            return "Fenêtre fermée : machine arrêtée.";
        case MachineEnd::TimeLimit:
            return "Délai de " + NumberText(limit_ms) + " ms écoulé : machine arrêtée.";
        case MachineEnd::EmulatorGone:
            break;
    }
    return "L'émulateur s'est arrêté de lui-même, ou ne répond pas.";
}

ControlLine ReadControlLine(std::string_view line) {
    ControlLine found;
    std::string name;
    while (!line.empty()) {
        if (line.front() != '"') {
            line.remove_prefix(1);
            continue;
        }
        const std::string text = TakeText(line);
        if (line.starts_with(':'))
            found.try_emplace(name = text);
        else
            found[name] = text;
    }
    return found;
}

std::string WriteControlLine(const ControlCommand& command, std::string_view id) {
    std::string line = "{\"execute\": " + Quoted(command.name) + ", \"id\": " + Quoted(id);
    if (!command.argument_name.empty())
        line += ", \"arguments\": {" + Quoted(command.argument_name) + ": " + Quoted(command.argument) + "}";
    return line + "}\n";
}

std::optional<MachineEnd> EndOfEvent(const ControlLine& line) {
    const auto event = line.find("event");
    const auto reason = line.find("reason");
    if (event == line.end() || event->second != "SHUTDOWN" || reason == line.end())
        return std::nullopt;
    if (reason->second == "guest-reset" || reason->second == "host-qmp-system-reset")
        return MachineEnd::Reset;
    // Nobody but the user has said so before the end is known: a window's menu and its frame say it in this
    // way.
    if (reason->second == "host-ui" || reason->second == "host-qmp-quit")
        return MachineEnd::WindowClosed;
    return reason->second == "guest-shutdown" ? MachineEnd::PoweredOff : MachineEnd::EmulatorGone;
}

std::optional<std::string> HaltedAt(std::string_view registers) {
    const std::string flags(FieldBehind(registers, "EFL="));
    if (FieldBehind(registers, "HLT=") != "1" || flags.empty() ||
        (std::strtoul(flags.c_str(), nullptr, 16) & INTERRUPT_FLAG) != 0)
        return std::nullopt;
    return std::string(FieldBehind(registers, "EIP="));
}
