// The command line of any configuration, split again, is the engine's path and the options in their order.
#include "launch/engine_command.h"

#include "config/config_text.h"
#include "fuzz.h"

namespace {

using Words = std::vector<WideText>;

Words ExpectedWords(const WideText& engine, const VmConfig& record, bool dry_run) {
    const auto number = [](std::uint32_t value) { return DecodedUtf8(std::to_string(value)); };
    Words words{engine,         record.kernel,       TEXT("--ram"),     number(record.ram_mib),
                TEXT("--zoom"), number(record.zoom), TEXT("--timeout"), number(record.timeout_ms)};
    const std::pair<bool, Words> rows[] = {
        {!record.command.empty(), {TEXT("--cmdline"), record.command}},
        {!record.dump.empty(), {TEXT("--dump-fb"), record.dump}},
        {record.explicit_video, {TEXT("--fb"), number(record.width), number(record.height)}},
        {record.headless, {TEXT("--headless")}},
        {record.force_no_header, {TEXT("--force-no-header")}},
        {dry_run, {TEXT("--dry-run")}},
        {!record.ide[0].empty(), {TEXT("--ide-primary-master"), record.ide[0]}},
        {!record.ide[1].empty(), {TEXT("--ide-primary-slave"), record.ide[1]}},
        {!record.ide[2].empty(), {TEXT("--ide-secondary-master"), record.ide[2]}},
        {!record.ide[3].empty(), {TEXT("--ide-secondary-slave"), record.ide[3]}},
    };
    for (const auto& [is_there, option] : rows)
        if (is_there)
            words.insert(words.end(), option.begin(), option.end());
    for (const ModuleEntry& module : record.modules)
        words.insert(words.end(), {TEXT("--module-args"), module.path, module.command});
    return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    const std::optional<VmConfig> record = ResultOf([&] { return ParseConfigText("version=1\n" + text); });
    if (!record || record->kernel.empty())
        return 0;
    const WideText engine = TEXT("\\\\?\\C:\\Outils VM\\tessarun.exe");
    for (const bool dry_run : {false, true}) {
        const auto line = ResultOf([&] { return BuildEngineCommandLine(engine, *record, dry_run); });
        Require(line ? SplitLine(*line) == ExpectedWords(engine, *record, dry_run) : size > 10000);
    }
    return 0;
}
