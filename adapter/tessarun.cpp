// The engine on a general emulator: runs the kernel of a command line. LISEZMOI.txt lists its exit codes.
#include <algorithm>
#include <stdexcept>

#include "adapter/control.h"
#include "adapter/emulator.h"
#include "adapter/engine_checks.h"
#include "adapter/engine_process.h"
#include "adapter/files.h"
#include "base/text_convert.h"

namespace {

constexpr std::uint64_t KERNEL_BYTES_MAX = 1024 * MIB;  // the file is read as a whole
constexpr unsigned POLL_MS = 50;
constexpr std::uint64_t ANSWER_LIMIT_MS = 15000;
constexpr std::uint64_t DRY_RUN_LIMIT_MS = 300000;  // a large image on a busy machine takes minutes
constexpr std::uint64_t QUIT_LIMIT_MS = 5000;
constexpr std::uint64_t NEVER_MS = UINT64_MAX;
constexpr const char* LIST_REGISTERS = "human-monitor-command";
constexpr const char* READ_EXIT_PORT = "ringbuf-read";

class Machine {
public:
    // Starts the emulator. `control` is the channel whose port the setup contains.
    Machine(const VmConfig& config, const EmulatorSetup& setup, Channel& control)
        : config_(config),
          control_(control),
          limit_ms_(config.timeout_ms == 0 ? NEVER_MS : GetTickCount64() + config.timeout_ms),
          emulator_(setup.program, EmulatorArguments(config, setup), config.zoom) {}

    // Waits until the emulator answers a command: then the machine exists. Returns false when the emulator
    // ends, or at the time limit; in a dry run this limit is at most DRY_RUN_LIMIT_MS.
    bool AwaitStart(bool dry_run) {
        const std::uint64_t until_ms =
            std::min(limit_ms_, dry_run ? GetTickCount64() + DRY_RUN_LIMIT_MS : NEVER_MS);
        return AwaitLine("QMP", "", until_ms) && Ask("qmp_capabilities", "", until_ms);
    }

    // The end of a machine that has not ended by itself: the time limit, or the end of the emulator.
    MachineEnd Interrupted() const {
        if (GetTickCount64() < limit_ms_)
            return {EMULATOR_GONE_EXIT_CODE, "", false};
        return {TIME_LIMIT_EXIT_CODE,
                "Délai de " + NumberText(config_.timeout_ms) + " ms écoulé : machine arrêtée."};
    }

    // Waits for the end of the machine.
    MachineEnd AwaitEnd() {
        std::uint64_t next_look_ms = 0;
        std::optional<std::string> halted_at;
        while (true) {
            std::optional<MachineEnd> end;
            for (std::optional<ControlLine> line; !end && (line = NextLine());) {
                end = EndOfEvent(*line);
                if (end) {
                    Look();
                    AwaitLine("id", READ_EXIT_PORT, GetTickCount64() + ANSWER_LIMIT_MS);
                } else if ((*line)["id"] == LIST_REGISTERS) {
                    // The machine can run while the emulator lists the registers. So two listings must show
                    // the same address.
                    const std::optional<std::string> address = HaltedAt((*line)["return"]);
                    if (address && address == halted_at)
                        end = {SUCCESS_EXIT_CODE,
                               "Processeur à l'arrêt, interruptions coupées : fin de la machine."};
                    halted_at = address;
                    next_look_ms = GetTickCount64() + POLL_MS;
                }
            }
            if (exit_byte_)
                return {*exit_byte_, "Machine arrêtée par le noyau, code " + NumberText(*exit_byte_) + "."};
            if (end || control_.State() == ChannelState::Ended || GetTickCount64() >= limit_ms_)
                return end.value_or(Interrupted());
            if (GetTickCount64() >= next_look_ms) {
                Look();
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
        Ask("stop", "", until_ms);
        std::optional<ControlLine> answer =
            Ask("screendump", "\"filename\": \"" + picture.Name() + "\"", until_ms);
        if (!answer || answer->contains("error"))
            throw std::runtime_error("Image de l'écran impossible : " +
                                     (answer ? (*answer)["desc"] : std::string("pas de réponse.")));
        picture.CopyTo(config_.dump);
    }

    // Asks the emulator to end and waits for at most QUIT_LIMIT_MS. Returns how the emulator ended, or that
    // it does not answer, for a log in which the machine itself gave no reason.
    std::string Quit() {
        control_.Send(WriteControlLine("quit", ""));
        const std::uint64_t until_ms = GetTickCount64() + QUIT_LIMIT_MS;
        while (!emulator_.End() && control_.State() != ChannelState::Listening && GetTickCount64() < until_ms)
            control_.Receive(POLL_MS / 5);
        const std::optional<std::int64_t> end = emulator_.End();
        if (!end)
            return "L'émulateur ne répond pas.";
        return *end < 0 ? "L'émulateur a été arrêté par le signal " + std::to_string(-*end) + "."
                        : "L'émulateur s'est arrêté de lui-même, code " + std::to_string(*end) + ".";
    }

private:
    // Asks for the byte on the exit port, which NextLine stores, and for the registers.
    void Look() {
        control_.Send(
            WriteControlLine(READ_EXIT_PORT, R"("device": "exit", "size": 65536, "format": "base64")") +
            WriteControlLine(LIST_REGISTERS, R"("command-line": "info registers")"));
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
            if (control_.State() == ChannelState::Ended || emulator_.End() || GetTickCount64() >= until_ms)
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
    Channel& control_;
    std::string control_text_;
    std::optional<unsigned char> exit_byte_;  // the first one
    std::uint64_t limit_ms_;                  // when the user's limit ends, as a tick count
    Emulator emulator_;
};

BootImage ImageOf(const VmConfig& config, const std::vector<std::uint64_t>& module_bytes) {
    const InputFile kernel = OpenInput(config.kernel);
    try {
        if (kernel.bytes > KERNEL_BYTES_MAX)
            throw std::runtime_error("le fichier du noyau dépasse 1 Gio.");
        return ComposeBootImage(ReadInput(kernel, 0, kernel.bytes), config, module_bytes);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(Utf8FromWide(config.kernel) + " : " + error.what());
    }
}

std::string ModeText(const DisplayMode& mode) {
    return NumberText(mode.width) + " x " + NumberText(mode.height) + " en " + NumberText(mode.bits) +
           " bits.";
}

// Fills all but the image, the port and the stop of the setup, and prints what was chosen.
EmulatorSetup ComposeSetup(const BootImage& image) {
    EmulatorSetup setup;
    setup.program = FindEmulator();
    setup.user_options = Setting("TESSARUN_QEMU_OPTIONS");
    setup.mode = image.mode;
    PrintLine("Émulateur : " + Utf8FromWide(setup.program) + ", processeur " + ProcessorOf(setup.program) +
              ".");
    if (!setup.user_options.empty())
        PrintLine("Options de TESSARUN_QEMU_OPTIONS en vigueur : " + setup.user_options);
    if (image.mode)
        PrintLine("Écran : " + ModeText(*image.mode) +
                  (image.mode == image.asked_mode ? "" : " Demandé : " + ModeText(*image.asked_mode)));
    return setup;
}

void Run(const std::vector<WideText>& arguments, std::uint32_t& exit_code) {
    exit_code = USAGE_EXIT_CODE;
    const EngineRequest request = ParseEngineArguments(arguments);
    const VmConfig& config = request.config;
    exit_code = FAILURE_EXIT_CODE;
    const std::vector<std::uint64_t> module_bytes = CheckFiles(config);
    CheckWrittenFiles(config);
    const BootImage image = ImageOf(config, module_bytes);
    EmulatorSetup setup = ComposeSetup(image);
    DeleteAbandonedFiles();
    TemporaryFile file(TemporaryFolder(), ".elf");
    file.Write(image, config.modules, module_bytes);
    setup.image = file.Name();
    setup.is_stopped = request.dry_run;
    Channel control;
    setup.control_port = control.Port();
    Machine machine(config, setup, control);
    const bool has_started = machine.AwaitStart(request.dry_run);
    file.Delete();  // the emulator has already read the file
    MachineEnd end = !has_started      ? machine.Interrupted()
                     : request.dry_run ? MachineEnd{SUCCESS_EXIT_CODE, "Vérification réussie."}
                                       : machine.AwaitEnd();
    exit_code = end.exit_code;
    const bool wants_picture = !config.dump.empty() && !request.dry_run;
    const bool has_screen = has_started && end.has_screen;
    std::string failure;
    try {
        if (wants_picture && has_screen)
            machine.WritePicture();
    } catch (const std::runtime_error& error) {
        failure = error.what();
    }
    const std::string emulator_end = machine.Quit();
    if (has_started && !request.dry_run)
        Print("\n");  // the kernel's last line can be incomplete
    PrintLine(end.text.empty() ? emulator_end : end.text);
    if (wants_picture && !has_screen)
        PrintLine("Aucune image de l'écran n'est écrite : la machine n'existe plus.");
    if (!has_started && !config.headless)
        PrintLine("Si la fenêtre de la machine ne peut pas s'ouvrir ici, cochez « Sans fenêtres ».");
    if (!failure.empty())
        throw std::runtime_error(failure);
}

}  // namespace

extern "C" int wmain(int argc, WCHAR** argv) {
    RunEngineProcess(argc, argv, Run);
}
