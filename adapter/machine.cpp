// Starts the emulator, reads its control channel and ends it.
#include "adapter/machine.h"

#include <algorithm>
#include <stdexcept>

#include "adapter/control.h"
#include "adapter/engine_process.h"
#include "adapter/files.h"
#include "base/text_convert.h"

namespace {

constexpr unsigned POLL_MS = 50;
constexpr std::uint64_t ANSWER_LIMIT_MS = 15000;
constexpr std::uint64_t DRY_RUN_LIMIT_MS = 300000;  // a large image on a busy machine takes minutes
constexpr std::uint64_t QUIT_LIMIT_MS = 5000;
constexpr std::uint64_t NEVER_MS = UINT64_MAX;
constexpr const char* LIST_REGISTERS = "human-monitor-command";
constexpr const char* READ_EXIT_PORT = "ringbuf-read";

class Machine {
public:
    // Starts the emulator.
    Machine(const WideText& program, const VmConfig& config, EmulatorSetup& setup)
        : config_(config),
          limit_ms_(config.timeout_ms == 0 ? NEVER_MS : GetTickCount64() + config.timeout_ms),
          emulator_(program, Arguments(setup), config.zoom) {}

    // Waits until the machine exists, which only the answer to a command proves. Returns the machine's end
    // when it does not exist in time, in a dry run after DRY_RUN_LIMIT_MS at the latest.
    std::optional<MachineEnd> AwaitStart(bool dry_run) {
        const std::uint64_t until_ms =
            std::min(limit_ms_, dry_run ? GetTickCount64() + DRY_RUN_LIMIT_MS : NEVER_MS);
        if (AwaitLine("QMP", "", until_ms) && Ask("qmp_capabilities", "", until_ms))
            return std::nullopt;
        MachineEnd end = TimeIsUp() ? TimeLimitEnd() : EmulatorEnd();
        end.has_screen = false;
        return end;
    }

    // Waits for the end of the machine.
    MachineEnd AwaitEnd() {
        std::uint64_t next_look_ms = 0;
        while (true) {
            while (std::optional<ControlLine> line = NextLine()) {
                if (const std::optional<MachineEnd> end = EndOfEvent(*line)) {
                    LookAtExitPort();
                    AwaitLine("id", READ_EXIT_PORT, GetTickCount64() + ANSWER_LIMIT_MS);
                    return exit_byte_ ? ExitByteEnd() : *end;
                }
                if ((*line)["id"] != LIST_REGISTERS)
                    continue;
                if (IsHaltedAgain((*line)["return"]))
                    return {SUCCESS_EXIT_CODE,
                            "Processeur à l'arrêt, interruptions coupées : fin de la machine."};
                next_look_ms = GetTickCount64() + POLL_MS;
            }
            if (exit_byte_)
                return ExitByteEnd();
            if (control_.HasEnded())
                return EmulatorEnd();
            if (TimeIsUp())
                return TimeLimitEnd();
            if (GetTickCount64() >= next_look_ms) {
                LookAtExitPort();
                control_.Send(WriteControlLine(LIST_REGISTERS, R"("command-line": "info registers")"));
                // No other look before the answer: Send would block when the emulator hangs.
                next_look_ms = NEVER_MS;
            }
            control_text_ += control_.Receive(POLL_MS);
        }
    }

    // Stops the machine and writes the picture of its screen. Throws when that fails.
    void WritePicture() {
        const TemporaryFile picture(TemporaryFolder(), ".ppm");
        const std::uint64_t until_ms = GetTickCount64() + ANSWER_LIMIT_MS;
        std::optional<ControlLine> answer = Ask("stop", "", until_ms);
        if (answer)
            answer = Ask("screendump", "\"filename\": \"" + picture.Name() + "\"", until_ms);
        if (!answer || answer->contains("error"))
            throw std::runtime_error("Image de l'écran impossible : " +
                                     (answer ? (*answer)["desc"] : std::string("pas de réponse.")));
        picture.CopyTo(config_.dump);
    }

    // Asks the emulator to end and waits for that. Returns the text about an emulator that has ended by
    // itself.
    std::string Quit() {
        control_.Send(WriteControlLine("quit", ""));
        const std::uint64_t until_ms = GetTickCount64() + QUIT_LIMIT_MS;
        while (!emulator_.End() && control_.HasBegun() && GetTickCount64() < until_ms)
            control_.Receive(POLL_MS / 5);
        const std::optional<std::int64_t> end = emulator_.End();
        if (!end)
            return "L'émulateur ne répond pas.";
        return *end < 0 ? "L'émulateur a été arrêté par le signal " + std::to_string(-*end) + "."
                        : "L'émulateur s'est arrêté de lui-même, code " + std::to_string(*end) + ".";
    }

private:
    std::vector<std::string> Arguments(EmulatorSetup& setup) const {
        setup.control_port = control_.Port();
        return EmulatorArguments(config_, setup);
    }

    bool TimeIsUp() const {
        return GetTickCount64() >= limit_ms_;
    }

    MachineEnd ExitByteEnd() const {
        return {*exit_byte_, "Machine arrêtée par le noyau, code " + NumberText(*exit_byte_) + "."};
    }

    MachineEnd TimeLimitEnd() const {
        return {TIME_LIMIT_EXIT_CODE,
                "Délai de " + NumberText(config_.timeout_ms) + " ms écoulé : machine arrêtée."};
    }

    static MachineEnd EmulatorEnd() {
        return {EMULATOR_GONE_EXIT_CODE, "", false};
    }

    // Stores the answer's byte in exit_byte_ when NextLine reads the answer.
    void LookAtExitPort() {
        control_.Send(
            WriteControlLine(READ_EXIT_PORT, R"("device": "exit", "size": 65536, "format": "base64")"));
    }

    // The machine can run while the emulator lists the registers. So two listings must show the same address.
    bool IsHaltedAgain(const std::string& registers) {
        const std::optional<std::string> address = HaltedAt(registers);
        const bool is_halted = address && *address == halted_at_;
        halted_at_ = address.value_or("");
        return is_halted;
    }

    // Removes the next line from the received text.
    std::optional<ControlLine> NextLine() {
        const std::size_t end = control_text_.find('\n');
        if (end == std::string::npos)
            return std::nullopt;
        ControlLine line = ReadControlLine(std::string_view(control_text_).substr(0, end));
        control_text_.erase(0, end + 1);
        if (!exit_byte_ && line["id"] == READ_EXIT_PORT)
            exit_byte_ = FirstByte(line["return"]);
        return line;
    }

    // Returns the next line in which the member `name` has this text, or any text when `text` is empty; none
    // when the emulator has ended or no such line arrives until `until_ms`. Drops the lines before it.
    std::optional<ControlLine> AwaitLine(const std::string& name, const std::string& text,
                                         std::uint64_t until_ms) {
        while (true) {
            while (std::optional<ControlLine> line = NextLine())
                if (line->contains(name) && (text.empty() || line->at(name) == text))
                    return line;
            if (control_.HasEnded() || emulator_.End() || GetTickCount64() >= until_ms)
                return std::nullopt;
            control_text_ += control_.Receive(POLL_MS);
        }
    }

    // Sends a command and returns its answer; none as in AwaitLine.
    std::optional<ControlLine> Ask(const char* command, const std::string& arguments,
                                   std::uint64_t until_ms) {
        control_.Send(WriteControlLine(command, arguments));
        return AwaitLine("id", command, until_ms);
    }

    const VmConfig& config_;
    Channel control_;
    std::string control_text_;
    std::optional<unsigned char> exit_byte_;  // the first one
    std::string halted_at_;
    std::uint64_t limit_ms_;  // when the user's limit ends, as a tick count
    Emulator emulator_;
};

}  // namespace

void RunMachine(const WideText& program, const EngineRequest& request, const BootImage& image,
                const std::vector<std::uint64_t>& module_bytes, EmulatorSetup setup,
                std::uint32_t& exit_code) {
    const VmConfig& config = request.config;
    DeleteAbandonedFiles();
    TemporaryFile file(TemporaryFolder(), ".elf");
    file.Write(image, config.modules, module_bytes);
    setup.image = file.Name();
    setup.mode = image.mode;
    setup.output_device = OutputDevice(program);
    setup.is_stopped = request.dry_run;
    for (std::size_t at = 0; at < setup.disks.size(); ++at)
        if (!config.ide[at].empty())
            setup.disks[at] = EmulatorPath(program, config.ide[at]);
    Machine machine(program, config, setup);
    std::optional<MachineEnd> end = machine.AwaitStart(request.dry_run);
    file.Delete();  // the emulator has already read the file
    const bool has_started = !end;
    if (has_started)
        end = request.dry_run ? MachineEnd{SUCCESS_EXIT_CODE, "Vérification réussie."} : machine.AwaitEnd();
    exit_code = end->exit_code;
    const bool wants_picture = !config.dump.empty() && !request.dry_run;
    std::string failure;
    try {
        if (wants_picture && end->has_screen)
            machine.WritePicture();
    } catch (const std::runtime_error& error) {
        failure = error.what();
    }
    const std::string emulator_end = machine.Quit();
    if (has_started && !request.dry_run)
        Print("\n");  // the kernel's last line can be incomplete
    PrintLine(end->text.empty() ? emulator_end : end->text);
    if (wants_picture && !end->has_screen)
        PrintLine("Aucune image de l'écran n'est écrite : la machine n'existe plus.");
    if (!has_started && !config.headless)
        PrintLine("Si la fenêtre de la machine ne peut pas s'ouvrir ici, cochez « Sans fenêtres ».");
    if (!failure.empty())
        throw std::runtime_error(failure);
}
