// Starting the emulator, listening to it, and ending it.
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

constexpr unsigned LOOK_MS = 50;
constexpr std::uint64_t ANSWER_LIMIT_MS = 15000;
constexpr std::uint64_t QUIT_LIMIT_MS = 5000;
constexpr ControlCommand LOOK_AT_REGISTERS{"human-monitor-command", "command-line", "info registers"};

class Machine {
public:
    Machine(const WideText& program, const VmConfig& config, const BootImage& image,
            const std::string& image_name)
        : start_ms_(GetTickCount64()),
          emulator_(program, Arguments(program, config, image, image_name), config.zoom) {}

    // Waits until the machine exists: only the emulator's first answer proves that.
    bool Begin() {
        return Await("QMP", "") && Ask({"qmp_capabilities", "", ""});
    }

    // Follows the machine to its end; a limit of 0 is none.
    MachineEnd Watch(std::uint32_t limit_ms) {
        std::string halted_at;
        std::uint64_t next_look_ms = 0;
        while (true) {
            Look(LOOK_MS);
            if (HasWritten())
                return MachineEnd::ExitCode;
            while (const std::optional<ControlLine> line = NextLine()) {
                if (const std::optional<MachineEnd> end = EndOfEvent(*line)) {
                    Look(0);  // the byte was written first
                    return HasWritten() ? MachineEnd::ExitCode : *end;
                }
                const auto answer = line->find("return");
                if (answer == line->end())
                    continue;
                const std::optional<std::string> at = HaltedAt(answer->second);
                // Twice at the same place: the listing is not taken in one moment.
                if (at && *at == halted_at)
                    return MachineEnd::Halted;
                halted_at = at.value_or("");
                next_look_ms = GetTickCount64() + LOOK_MS;
            }
            if (control_.HasEnded())
                return MachineEnd::EmulatorGone;
            const std::uint64_t now_ms = GetTickCount64();
            if (limit_ms != 0 && now_ms - start_ms_ >= limit_ms)
                return MachineEnd::TimeLimit;
            if (now_ms >= next_look_ms) {
                control_.Send(WriteControlLine(LOOK_AT_REGISTERS, ""));
                next_look_ms = UINT64_MAX;  // until the answer: to one that hangs, sending would stop too
            }
        }
    }

    // Writes the picture of a machine that stands still from here on. Throws with the reason why not.
    void WritePicture(const WideText& path) {
        const TemporaryFile picture(".ppm");
        std::optional<ControlLine> answer = Ask({"stop", "", ""});
        if (answer)
            answer = Ask({"screendump", "filename", picture.Name()});
        if (!answer || answer->contains("error"))
            throw std::runtime_error(answer ? (*answer)["desc"] : std::string("pas de réponse."));
        CopyOver(picture.Path(), path);
    }

    // Has the emulator end, and takes what it still says.
    void Quit() {
        control_.Send(WriteControlLine({"quit", "", ""}, ""));
        const std::uint64_t limit_ms = GetTickCount64() + QUIT_LIMIT_MS;
        while (!(control_.HasEnded() && serial_.HasEnded()) && GetTickCount64() < limit_ms &&
               !(emulator_.HasEnded() && !serial_.IsConnected()))
            Look(LOOK_MS);
        if (!line_is_complete_)
            PrintLine("");
    }

    unsigned char Written() const {
        return written_.empty() ? 0 : static_cast<unsigned char>(written_.front());
    }

private:
    std::vector<std::string> Arguments(const WideText& program, const VmConfig& config,
                                       const BootImage& image, const std::string& image_name) const {
        MachineRequest machine;
        machine.image = image_name;
        for (std::size_t at = 0; at < config.ide.size(); ++at)
            machine.disks[at] =
                config.ide[at].empty() ? std::string() : EmulatorPath(program, config.ide[at]);
        machine.ram_mib = config.ram_mib;
        machine.mode = image.mode;
        machine.has_window = !config.headless;
        return EmulatorArguments(machine, {control_.Port(), serial_.Port(), exit_code_.Port()});
    }

    void Look(unsigned limit_ms) {
        Channel* const channels[] = {&control_, &serial_, &exit_code_};
        AwaitChannels(channels, limit_ms);
        const std::string said = serial_.Take();
        if (!said.empty())
            Print(said);
        line_is_complete_ = said.empty() ? line_is_complete_ : said.ends_with('\n');
        control_text_ += control_.Take();
        written_ += exit_code_.Take();
    }

    bool HasWritten() const {
        return !written_.empty();
    }

    std::optional<ControlLine> NextLine() {
        const std::size_t end = control_text_.find('\n');
        if (end == std::string::npos)
            return std::nullopt;
        ControlLine line = ReadControlLine(std::string_view(control_text_).substr(0, end));
        control_text_.erase(0, end + 1);
        return line;
    }

    // The line that has this name with this text, or with any where that is empty; none when the emulator is
    // gone or does not answer.
    std::optional<ControlLine> Await(const std::string& name, const std::string& text) {
        const std::uint64_t limit_ms = GetTickCount64() + ANSWER_LIMIT_MS;
        while (!control_.HasEnded() && !emulator_.HasEnded() && GetTickCount64() < limit_ms) {
            while (std::optional<ControlLine> line = NextLine())
                if (const auto found = line->find(name);
                    found != line->end() && (text.empty() || found->second == text))
                    return line;
            Look(LOOK_MS);
        }
        return std::nullopt;
    }

    std::optional<ControlLine> Ask(const ControlCommand& command) {
        const std::string id = NumberText(++asked_);
        control_.Send(WriteControlLine(command, id));
        return Await("id", id);
    }

    Channel control_;
    Channel serial_;
    Channel exit_code_;
    std::string control_text_;
    std::string written_;  // to the exit port
    unsigned asked_ = 0;
    bool line_is_complete_ = true;
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
    if (machine.Begin()) {
        file.Delete();  // it has been read
        end = machine.Watch(config.timeout_ms);
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
    PrintLine(EndText(end, machine.Written(), config.timeout_ms));
    if (!failure.empty())
        throw std::runtime_error(failure);
    return ExitCodeOf(end, machine.Written());
}
