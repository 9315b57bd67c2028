// Reads and writes the lines of the control channel.
#include "adapter/control.h"

#include <algorithm>
#include <cstdlib>

#include "adapter/engine_main.h"
#include "base/text_convert.h"

namespace {

constexpr unsigned long INTERRUPT_FLAG = 0x200;

// Removes the JSON text at the start of the line, quotation marks included, and returns it. Escapes of the
// form \uXXXX are not decoded: no text that this program uses contains one.
std::string TakeText(std::string_view& line) {
    constexpr std::string_view ESCAPED = "nrt";
    constexpr std::string_view DECODED = "\n\r\t";
    std::string text;
    for (line.remove_prefix(1); !line.empty() && line.front() != '"'; line.remove_prefix(1)) {
        char character = line.front();
        if (character == '\\' && line.size() > 1) {
            line.remove_prefix(1);
            const std::size_t at = ESCAPED.find(line.front());
            character = at == std::string_view::npos ? line.front() : DECODED[at];
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

std::uint32_t ExitCodeOf(MachineEnd end, unsigned char exit_byte) {
    switch (end) {
        case MachineEnd::ExitCode:
            return exit_byte;
        case MachineEnd::Reset:
            return RESET_EXIT_CODE;
        case MachineEnd::EmulatorGone:
            return EMULATOR_GONE_EXIT_CODE;
        case MachineEnd::TimeLimit:
            return TIME_LIMIT_EXIT_CODE;
        default:
            return SUCCESS_EXIT_CODE;
    }
}

std::string EndText(MachineEnd end, unsigned char exit_byte, std::uint32_t limit_ms) {
    switch (end) {
        case MachineEnd::ExitCode:
            return "Machine arrêtée par le noyau, code " + NumberText(exit_byte) + ".";
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
        if (line.starts_with(':')) {
            name = text;
            found.try_emplace(name);
        } else {
            found[name] = text;
        }
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
    // The engine sends "quit" only after it knows the end. Until then, only the window causes these reasons:
    // its frame and its menu.
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
