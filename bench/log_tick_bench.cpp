// One tick of the log window on an unchanged log: reads the file and compares it with the control's text.
#include <benchmark/benchmark.h>

#include <string>

#include "launch/log_window.h"
#include "scratch.h"

namespace {

// A launcher whose log window shows these bytes.
struct OpenLog {
    ScratchFolder folder;
    Launcher launcher;

    explicit OpenLog(const std::string& bytes) {
        WNDCLASSW window_class{};
        window_class.lpfnWndProc = LogWindowProc;
        window_class.lpszClassName = LOG_WINDOW_CLASS;
        RegisterClassW(&window_class);
        launcher.log_path = folder.Of(TEXT("veldranevm.log"));
        WriteBytes(launcher.log_path, bytes);
        ShowLogWindow(launcher);
    }
    ~OpenLog() {
        DestroyWindow(launcher.log_window);
    }
};

void LogTick(benchmark::State& state, std::string_view piece) {
    std::string bytes;
    while (bytes.size() < static_cast<std::size_t>(state.range(0)))
        bytes += piece;
    bytes.resize(static_cast<std::size_t>(state.range(0)) / piece.size() * piece.size());
    OpenLog log(bytes);
    for (auto _ : state)
        RefreshLogWindow(log.launcher);
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(16384)->Arg(131072)->Arg(1048576)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(LogTick, ascii, "un noyau qui parle\n")->Apply(Sizes);
BENCHMARK_CAPTURE(LogTick, accents, "\xC3\xA9\xC3\xA0\xC3\xA8\n ")->Apply(Sizes);
BENCHMARK_CAPTURE(LogTick, line_feeds, "\n")->Apply(Sizes);
BENCHMARK_CAPTURE(LogTick, ansi, "d\xE9marr\xE9\n")->Apply(Sizes);

}  // namespace
