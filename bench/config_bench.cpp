// Configurations, each of three sizes. The same rate at every size means time linear in the input.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "base/text_convert.h"
#include "config/config_file.h"
#include "config/config_text.h"
#include "samples.h"

namespace {

constexpr std::int64_t SMALL = 16384;
constexpr std::int64_t MIDDLE = 131072;
constexpr std::int64_t LARGE = MAX_CONFIG_BYTES;

// As many different keys as fit, all unknown: the most entries that a text can have.
std::string ManyKeys(std::size_t size) {
    std::string text = "version=1\n";
    for (unsigned number = 0;; ++number) {
        std::string key;
        for (unsigned rest = number; key.empty() || rest > 0; rest /= 64)
            key += static_cast<char>('?' + rest % 64);
        if (text.size() + key.size() + 2 > size)
            return text;
        text += key + "=\n";
    }
}

WideText BenchFile() {
    return TEXT("C:\\tmp\\veldrane-bench-") + WideNumberText(GetCurrentProcessId()) + TEXT(".config");
}

void WriteText(const WideText& path, const std::string& text) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
}

// Measures an operation that may throw.
template <typename Operation>
void RunRefusable(benchmark::State& state, std::size_t bytes, const Operation& operation) {
    for (auto _ : state) {
        try {
            benchmark::DoNotOptimize(operation());
        } catch (const std::runtime_error& error) {
            benchmark::DoNotOptimize(error.what());
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

using MakeText = std::string (*)(std::size_t);

void Parse(benchmark::State& state, MakeText make) {
    const std::string text = make(static_cast<std::size_t>(state.range(0)));
    RunRefusable(state, text.size(), [&] { return ParseConfigText(text); });
}

void Read(benchmark::State& state, MakeText make) {
    const std::string text = make(static_cast<std::size_t>(state.range(0)));
    const WideText path = BenchFile();
    WriteText(path, text);
    RunRefusable(state, text.size(), [&] { return ReadConfigFile(path); });
    DeleteFileW(path.c_str());
}

void Compose(benchmark::State& state) {
    const VmConfig config = WithModules(static_cast<std::size_t>(state.range(0)));
    RunRefusable(state, ComposeConfigText(config).size(), [&] { return ComposeConfigText(config); });
}

void Write(benchmark::State& state) {
    const VmConfig config = WithModules(static_cast<std::size_t>(state.range(0)));
    const WideText path = BenchFile();
    RunRefusable(state, ComposeConfigText(config).size(), [&] {
        WriteConfigFile(path, config);
        return 0;
    });
    DeleteFileW(path.c_str());
}

BENCHMARK_CAPTURE(Parse, huge_value, HugeValue)->Arg(SMALL)->Arg(MIDDLE)->Arg(LARGE);
BENCHMARK_CAPTURE(Parse, many_keys, ManyKeys)->Arg(SMALL)->Arg(MIDDLE)->Arg(LARGE);
BENCHMARK_CAPTURE(Read, huge_value, HugeValue)->Arg(SMALL)->Arg(MIDDLE)->Arg(LARGE);
BENCHMARK_CAPTURE(Read, many_keys, ManyKeys)->Arg(SMALL)->Arg(MIDDLE)->Arg(LARGE);
BENCHMARK(Compose)->Arg(SMALL)->Arg(MIDDLE)->Arg(LARGE);
BENCHMARK(Write)->Arg(SMALL)->Arg(MIDDLE)->Arg(LARGE);

}  // namespace
