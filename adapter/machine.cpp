// Starts the emulator, reads its channels and ends it.
#include "adapter/machine.h"

#include <optional>
#include <stdexcept>

#include "adapter/channel.h"
#include "adapter/control.h"
#include "adapter/emulator.h"
#include "adapter/emulator_arguments.h"
#include "adapter/engine_output.h"
#include "adapter/files.h"
#include "base/text_convert.h"

namespace {

constexpr unsigned POLL_MS = 50;
constexpr std::uint64_t ANSWER_LIMIT_MS = 15000;
constexpr std::uint64_t QUIT_LIMIT_MS = 5000;
constexpr ControlCommand LIST_REGISTERS{"human-monitor-command", "command-line", "info registers"};

class Machine {
public:
    Machine(const WideText& program, const VmConfig& config, const BootImage& image,
            const std::string& image_name)
        : start_ms_(GetTickCount64()),
          emulator_(program, Arguments(program, config, image, image_name), config.zoom) {}

    // Waits until the machine exists, which only the emulator's first answer proves. False when no answer
    // arrives in time.
    [[nodiscard]] bool AwaitStart() {
        return AwaitLine("QMP", "") && Ask({"qmp_capabilities", "", ""});
    }

    // Waits for the end of the machine. A limit of 0 means no limit.
    MachineEnd AwaitEnd(std::uint32_t limit_ms) {
        while (true) {
            ReadChannels(POLL_MS);
            if (HasExitByte())
                return MachineEnd::ExitCode;
            while (const std::optional<ControlLine> line = NextLine())
                if (const std::optional<MachineEnd> end = ReportedEnd(*line))
                    return *end;
            if (control_.HasEnded())
                return MachineEnd::EmulatorGone;
            const std::uint64_t now_ms = GetTickCount64();
            if (limit_ms != 0 && now_ms - start_ms_ >= limit_ms)
                return MachineEnd::TimeLimit;
            if (now_ms >= next_listing_ms_) {
                control_.Send(WriteControlLine(LIST_REGISTERS, ""));
                // No other listing before the answer: Send would block when the emulator hangs.
                next_listing_ms_ = UINT64_MAX;
            }
        }
    }

    // Stops the machine and writes the picture of its screen. Throws when that fails.
    void WritePicture(const WideText& path) {
        const TemporaryFile picture(".ppm");
        std::optional<ControlLine> answer = Ask({"stop", "", ""});
        if (answer)
            answer = Ask({"screendump", "filename", picture.Name()});
        if (!answer || answer->contains("error"))
            throw std::runtime_error(answer ? (*answer)["desc"] : std::string("pas de réponse."));
        ReplaceByCopy(picture.Path(), path);
    }

    // Asks the emulator to end, and prints the rest of the serial output.
    void Quit() {
        control_.Send(WriteControlLine({"quit", "", ""}, ""));
        const std::uint64_t limit_ms = GetTickCount64() + QUIT_LIMIT_MS;
        while (!(control_.HasEnded() && serial_.HasEnded()) && GetTickCount64() < limit_ms &&
               !(emulator_.HasEnded() && !serial_.IsConnected()))
            ReadChannels(POLL_MS);
        if (!line_is_complete_)
            PrintLine("");
    }

    // The first byte on the exit port; 0 when there is none.
    unsigned char ExitByte() const {
        return HasExitByte() ? static_cast<unsigned char>(exit_bytes_.front()) : 0;
    }

private:
    std::vector<std::string> Arguments(const WideText& program, const VmConfig& config,
                                       const BootImage& image, const std::string& image_name) const {
        DiskPaths disks;
        for (std::size_t at = 0; at < disks.size(); ++at)
            if (!config.ide[at].empty())
                disks[at] = EmulatorPath(program, config.ide[at]);
        return EmulatorArguments(config, image_name, disks, image.mode,
                                 {control_.Port(), serial_.Port(), exit_port_.Port()});
    }

    // Waits for bytes on the channels, prints those of the serial port and stores the others.
    void ReadChannels(unsigned limit_ms) {
        Channel* const channels[] = {&control_, &serial_, &exit_port_};
        AwaitChannels(channels, limit_ms);
        const std::string output = serial_.TakeReceived();
        if (!output.empty()) {
            Print(output);
            line_is_complete_ = output.ends_with('\n');
        }
        control_text_ += control_.TakeReceived();
        exit_bytes_ += exit_port_.TakeReceived();
    }

    bool HasExitByte() const {
        return !exit_bytes_.empty();
    }

    // The end of the machine that a line of the control channel reports; none for all other lines.
    std::optional<MachineEnd> ReportedEnd(const ControlLine& line) {
        if (const std::optional<MachineEnd> end = EndOfEvent(line)) {
            ReadChannels(0);  // the emulator sends a byte on the exit port before the event
            return HasExitByte() ? MachineEnd::ExitCode : *end;
        }
        const auto answer = line.find("return");
        if (answer == line.end())
            return std::nullopt;
        const std::optional<std::string> address = HaltedAt(answer->second);
        // The machine can run while the emulator lists the registers. So two listings must show the same
        // address.
        const bool is_halted = address && *address == halted_at_;
        halted_at_ = address.value_or("");
        next_listing_ms_ = GetTickCount64() + POLL_MS;
        return is_halted ? std::optional(MachineEnd::Halted) : std::nullopt;
    }

    std::optional<ControlLine> NextLine() {
        const std::size_t end = control_text_.find('\n');
        if (end == std::string::npos)
            return std::nullopt;
        ControlLine line = ReadControlLine(std::string_view(control_text_).substr(0, end));
        control_text_.erase(0, end + 1);
        return line;
    }

    // Returns the next line in which the member `name` has this text, or any text when `text` is empty; none
    // when the emulator has ended or no such line arrives in time. Drops the lines before it.
    std::optional<ControlLine> AwaitLine(const std::string& name, const std::string& text) {
        const std::uint64_t limit_ms = GetTickCount64() + ANSWER_LIMIT_MS;
        while (!control_.HasEnded() && !emulator_.HasEnded() && GetTickCount64() < limit_ms) {
            while (std::optional<ControlLine> line = NextLine())
                if (const auto found = line->find(name);
                    found != line->end() && (text.empty() || found->second == text))
                    return line;
            ReadChannels(POLL_MS);
        }
        return std::nullopt;
    }

    // Sends a command and returns its answer; none as in AwaitLine.
    std::optional<ControlLine> Ask(const ControlCommand& command) {
        const std::string id = NumberText(++last_id_);
        control_.Send(WriteControlLine(command, id));
        return AwaitLine("id", id);
    }

    Channel control_;
    Channel serial_;
    Channel exit_port_;
    std::string control_text_;
    std::string exit_bytes_;
    unsigned last_id_ = 0;
    bool line_is_complete_ = true;  // the serial output ends with a line feed, or is empty
    std::string halted_at_;
    std::uint64_t next_listing_ms_ = 0;
    std::uint64_t start_ms_;
    Emulator emulator_;
};

}  // namespace

std::uint32_t RunMachine(const WideText& emulator, const VmConfig& config, const BootImage& image,
                         const BootRequest& request) {
    TemporaryFile file(".elf");
    WriteBootFile(file.Path(), image, request, config.modules);
    Machine machine(emulator, config, image, file.Name());
    MachineEnd end = MachineEnd::EmulatorGone;
    if (machine.AwaitStart()) {
        file.Delete();  // the emulator has already read the file
        end = machine.AwaitEnd(config.timeout_ms);
    }
    std::string failure;
    if (!config.dump.empty() && end != MachineEnd::WindowClosed && end != MachineEnd::EmulatorGone) {
        try {
            machine.WritePicture(config.dump);
        } catch (const std::runtime_error& error) {
            failure = std::string("Image de l'écran impossible : ") + error.what();
        }
    }
    machine.Quit();
    PrintLine(EndText(end, machine.ExitByte(), config.timeout_ms));
    if (!failure.empty())
        throw std::runtime_error(failure);
    return ExitCodeOf(end, machine.ExitByte());
}
