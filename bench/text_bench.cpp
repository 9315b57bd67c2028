// Paths, the engine's command line and the log, each at three sizes. The same rate at every size means time
// linear in the input.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "base/path_ops.h"
#include "launch/engine_command.h"
#include "launch/log_text.h"

namespace {

template <typename Operation>
void Run(benchmark::State& state, const Operation& operation) {
    for (auto _ : state)
        benchmark::DoNotOptimize(operation());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The piece repeated up to the size.
template <typename Character>
std::basic_string<Character> Repeated(std::basic_string_view<Character> piece, std::int64_t size) {
    std::basic_string<Character> text;
    for (std::int64_t at = 0; at < size; ++at)
        text += piece[static_cast<std::size_t>(at) % piece.size()];
    return text;
}

void Normalize(benchmark::State& state, WideView piece) {
    const WideText path = TEXT("C:\\") + Repeated(piece, state.range(0));
    Run(state, [&] { return NormalPath(path); });
}

// Names and then as many `..`, which remove the names one by one.
void NormalizeNested(benchmark::State& state) {
    const std::int64_t names = state.range(0) / 5;
    const WideText path =
        Repeated(WideView(TEXT("a\\")), 2 * names) + Repeated(WideView(TEXT("..\\")), 3 * names);
    Run(state, [&] { return NormalPath(path); });
}

void CommandLine(benchmark::State& state, WCHAR unit) {
    constexpr std::int64_t REST_OF_LINE = 80;
    VmConfig config;
    config.kernel = TEXT("k.elf");
    // A backslash at the end of an argument is doubled.
    const std::int64_t width = unit == '\\' ? 2 : 1;
    config.command.assign(static_cast<std::size_t>((state.range(0) - REST_OF_LINE) / width), unit);
    Run(state, [&] { return BuildEngineCommandLine(TEXT("C:\\e.exe"), config, false); });
}

void Log(benchmark::State& state, std::string_view piece) {
    const std::string bytes = Repeated(piece, state.range(0));
    Run(state, [&] { return LogText(bytes); });
}

void PathSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(500)->Arg(4000)->Arg(32000);
}

void LineSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(512)->Arg(4096)->Arg(32766);
}

void LogSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(16384)->Arg(131072)->Arg(1048576);
}

BENCHMARK_CAPTURE(Normalize, up_and_down, TEXT("a\\..\\"))->Apply(PathSizes);
BENCHMARK_CAPTURE(Normalize, separators, TEXT("//"))->Apply(PathSizes);
BENCHMARK(NormalizeNested)->Apply(PathSizes);
BENCHMARK_CAPTURE(CommandLine, letters, WCHAR{'a'})->Apply(LineSizes);
BENCHMARK_CAPTURE(CommandLine, backslashes, WCHAR{'\\'})->Apply(LineSizes);
BENCHMARK_CAPTURE(Log, ascii, "un noyau qui parle\n")->Apply(LogSizes);
BENCHMARK_CAPTURE(Log, accents, "\xC3\xA9\xC3\xA0\xC3\xA8\n ")->Apply(LogSizes);
BENCHMARK_CAPTURE(Log, line_feeds, "\n")->Apply(LogSizes);
BENCHMARK_CAPTURE(Log, ansi, "d\xE9marr\xE9\n")->Apply(LogSizes);

}  // namespace

BENCHMARK_MAIN();
