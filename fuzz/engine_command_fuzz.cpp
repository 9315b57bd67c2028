// The command line of any configuration, split again, is the engine's path and arguments from which an engine
// reads the same configuration.
#include "launch/engine_command.h"

#include "adapter/engine_process.h"
#include "config/config_text.h"
#include "fuzz.h"

namespace {

// What an engine is told: not the size when there is no own one.
std::string Told(VmConfig config) {
    if (!config.explicit_video)
        config.width = config.height = 1;
    return ComposeConfigText(config);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    const std::optional<VmConfig> record = ResultOf([&] { return ParseConfigText("version=1\n" + text); });
    if (!record || record->kernel.empty() || record->kernel.starts_with(TEXT("--")))
        return 0;
    const WideText engine = TEXT("\\\\?\\C:\\Outils VM\\tessarun.exe");
    for (const bool dry_run : {false, true}) {
        const auto line = ResultOf([&] { return BuildEngineCommandLine(engine, *record, dry_run); });
        Require(line || size > 10000);
        if (!line)
            continue;
        std::vector<WideText> words = SplitLine(*line);
        Require(words.at(0) == engine);
        words.erase(words.begin());
        const EngineRequest request = ParseEngineArguments(words);
        Require(request.dry_run == dry_run && Told(request.config) == Told(*record));
    }
    return 0;
}
