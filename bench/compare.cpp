// The program's text work beside libraries that one could use for it, in one process, in alternating turns.
// Printed are our time divided by theirs (the median, the 10 % and the 90 % quantile of all turns) and the
// exponent by which our own time grows with the size; 1 is linear.
#include <glib.h>
// The platform defines its own.
#undef TRUE
#undef FALSE
#include <ini.h>
#define SI_NO_CONVERSION  // Debian's package lacks a header that the conversions include
#include <SimpleIni.h>
#include <fcntl.h>
#include <stdlib.h>
#include <toml++/toml.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/path_ops.h"
#include "base/text_convert.h"
#include "config/config_file.h"
#include "config/config_text.h"
#include "launch/engine_command.h"
#include "samples.h"
#include "spread.h"

namespace {

using Work = std::function<void()>;

constexpr double SECONDS_PER_TURN = 0.002;
constexpr std::size_t TURNS = 41;

template <typename Value>
void Keep(const Value& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

double Seconds(const Work& work, std::size_t times) {
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t time = 0; time < times; ++time)
        work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// How often the work must run for a turn of at least SECONDS_PER_TURN.
std::size_t TimesPerTurn(const Work& work) {
    std::size_t times = 1;
    while (Seconds(work, times) < SECONDS_PER_TURN)
        times *= 2;
    return times;
}

struct Result {
    double ratio;
    double low;
    double high;
    double seconds;
};

Result Compare(const Work& ours, const Work& theirs) {
    const std::size_t our_times = TimesPerTurn(ours);
    const std::size_t their_times = TimesPerTurn(theirs);
    std::vector<double> ratios;
    std::vector<double> seconds;
    for (std::size_t turn = 0; turn < TURNS; ++turn) {
        const double our_time = Seconds(ours, our_times) / static_cast<double>(our_times);
        ratios.push_back(our_time / (Seconds(theirs, their_times) / static_cast<double>(their_times)));
        seconds.push_back(our_time);
    }
    return {Quantile(ratios, 0.5), Quantile(ratios, 0.1), Quantile(ratios, 0.9), Quantile(seconds, 0.1)};
}

struct Pair {
    Work ours;
    Work theirs;
};

// Measures all sizes, and prints a line of the table for each of the last `printed` ones.
void Row(const char* work, const char* peer, const std::vector<std::size_t>& sizes, std::size_t printed,
         const std::function<Pair(std::size_t)>& make) {
    std::vector<Result> results;
    for (const std::size_t size : sizes) {
        const Pair pair = make(size);
        results.push_back(Compare(pair.ours, pair.theirs));
    }
    const double exponent = std::log(results.back().seconds / results.front().seconds) /
                            std::log(static_cast<double>(sizes.back()) / static_cast<double>(sizes.front()));
    for (std::size_t at = sizes.size() - printed; at < sizes.size(); ++at)
        std::printf("| %s, %zu | %s | %.2f | %.2f to %.2f | %.2f |\n", work, sizes[at], peer,
                    results[at].ratio, results[at].low, results[at].high, exponent);
    std::fflush(stdout);
}

// Ends the comparison if one side has not done its work.
void Require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "compare: %s\n", what);
    std::exit(1);
}

// --- the texts ---

std::string ManyKeys(std::size_t size) {
    std::string text = "version=1\n";
    for (unsigned number = 0; text.size() + 9 <= size; ++number)
        text += "k" + std::to_string(number) + "=\n";
    return text;
}

// The configuration as TOML: keys and values in quotes.
std::string AsToml(const std::string& text) {
    std::string toml;
    for (std::size_t start = text.find('\n') + 1; start < text.size();) {
        const std::size_t equals = text.find('=', start);
        const std::size_t end = text.find('\n', equals);
        toml += "'" + text.substr(start, equals - start) + "' = '" +
                text.substr(equals + 1, end - equals - 1) + "'\n";
        start = end + 1;
    }
    return toml;
}

// --- parsing and composing ---

void ParseOurs(const std::string& text) {
    try {
        Keep(ParseConfigText(text));
    } catch (const std::runtime_error& error) {
        Keep(error);
    }
}

int PutIntoMap(void* map, const char*, const char* key, const char* value) {
    (*static_cast<std::map<std::string, std::string>*>(map))[key] = value;
    return 1;
}

// Debian builds it for lines of at most 200 bytes; of longer values it keeps the first piece.
void ParseWithInih(const std::string& text) {
    std::map<std::string, std::string> map;
    Require(ini_parse_string(text.c_str(), PutIntoMap, &map) >= 0 && map.size() > 3, "inih has not parsed");
    Keep(map);
}

void ParseWithSimpleIni(const std::string& text) {
    CSimpleIniA ini(true);
    Require(ini.LoadData(text) == SI_OK && ini.GetValue("", "version") != nullptr,
            "SimpleIni has not parsed");
    Keep(ini);
}

void ParseWithToml(const std::string& text) {
    const toml::table table = toml::parse(text);
    Require(table.size() > 3, "toml++ has not parsed");
}

std::function<Pair(std::size_t)> Parse(const std::function<std::string(std::size_t)>& make,
                                       void (*peer)(const std::string&),
                                       std::string (*form)(const std::string&) = nullptr) {
    return [=](std::size_t size) {
        const std::string text = make(size);
        const std::string theirs = form != nullptr ? form(text) : text;
        return Pair{[=] { ParseOurs(text); }, [=] { peer(theirs); }};
    };
}

std::string ModulesText(std::size_t size) {
    return ComposeConfigText(WithModules(size));
}

// Its texts are UTF-8 already.
void ComposeWithKeyFile(const std::vector<std::pair<std::string, std::string>>& entries) {
    GKeyFile* const file = g_key_file_new();
    for (const auto& [key, value] : entries)
        g_key_file_set_string(file, "vm", key.c_str(), value.c_str());
    gsize length = 0;
    gchar* const text = g_key_file_to_data(file, &length, nullptr);
    Keep(length);
    g_free(text);
    g_key_file_free(file);
}

Pair Compose(std::size_t size) {
    const VmConfig config = WithModules(size);
    std::vector<std::pair<std::string, std::string>> entries;
    for (std::size_t index = 0; index < config.modules.size(); ++index) {
        const std::string stem = "module." + std::to_string(index);
        entries.emplace_back(stem + ".path", Utf8FromWide(config.modules[index].path));
        entries.emplace_back(stem + ".command", Utf8FromWide(config.modules[index].command));
    }
    return {[=] { Keep(ComposeConfigText(config)); }, [=] { ComposeWithKeyFile(entries); }};
}

// --- writing ---

// A folder in build/, since that of temporary files can be in memory.
std::string Folder() {
    static const std::string folder = [] {
        std::string name = (std::filesystem::current_path() / "build/compare-XXXXXX").string();
        Require(mkdtemp(name.data()) != nullptr, "no folder to write in");
        return name;
    }();
    return folder;
}

void WriteRaw(const std::string& folder, const std::string& text) {
    const std::string temporary = folder + "/raw.tmp";
    const std::string target = folder + "/raw";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    Require(write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) && fsync(file) == 0 &&
                close(file) == 0 && rename(temporary.c_str(), target.c_str()) == 0,
            "the raw write failed");
    const int directory = open(folder.c_str(), O_RDONLY | O_CLOEXEC);
    Require(fsync(directory) == 0 && close(directory) == 0, "the raw write failed");
}

Pair Write(std::size_t size) {
    const VmConfig config = WithModules(size);
    const std::string text = ComposeConfigText(config);
    const std::string folder = Folder();
    WideText path = TEXT("C:") + WideFromUtf8(folder + "/ours");
    std::replace(path.begin(), path.end(), WCHAR{'/'}, WCHAR{'\\'});
    return {[=] { WriteConfigFile(path, config); }, [=] { WriteRaw(folder, text); }};
}

// --- paths and the command line ---

std::u16string UpAndDown(std::size_t size) {
    std::u16string path = u"C:\\";
    while (path.size() + 5 <= size)
        path += u"a\\..\\";
    return path;
}

// The least possible work: one pass in place that remembers the start of each name.
std::u16string NormalInPlace(std::u16string path) {
    std::vector<std::size_t> starts;
    std::size_t used = 3;
    for (std::size_t at = 3; at < path.size();) {
        std::size_t end = at;
        while (end < path.size() && path[end] != '\\')
            ++end;
        if (end - at == 2 && path[at] == '.' && path[at + 1] == '.') {
            if (!starts.empty()) {
                used = starts.back();
                starts.pop_back();
            }
        } else {
            starts.push_back(used);
            std::copy(path.begin() + static_cast<std::ptrdiff_t>(at),
                      path.begin() + static_cast<std::ptrdiff_t>(end),
                      path.begin() + static_cast<std::ptrdiff_t>(used));
            used += end - at;
            if (end < path.size())
                path[used++] = '\\';
        }
        at = end + 1;
    }
    path.resize(used);
    return path;
}

Pair NormalAgainstInPlace(std::size_t size) {
    const std::u16string path = UpAndDown(size);
    return {[=] { Keep(NormalPath(WideView(path))); }, [=] { Keep(NormalInPlace(path)); }};
}

Pair NormalAgainstLibrary(std::size_t size) {
    const std::u16string path = UpAndDown(size);
    std::string slashes(path.begin() + 2, path.end());
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    const std::filesystem::path theirs = slashes;
    return {[=] { Keep(NormalPath(WideView(path))); },
            [=] { Keep(std::filesystem::path(theirs.native()).lexically_normal()); }};
}

Pair CommandLine(std::size_t size) {
    VmConfig config;
    config.kernel = TEXT("k.elf");
    while (config.command.size() + 100 < size)
        config.command += TEXT("root=/dev/hda1 ");
    std::vector<std::string> arguments{"C:\\e.exe"};
    for (const WideText& argument : BuildEngineArguments(config, false))
        arguments.push_back(Utf8FromWide(argument));
    const auto theirs = [=] {
        std::string line;
        for (const std::string& argument : arguments) {
            gchar* const quoted = g_shell_quote(argument.c_str());
            line.append(quoted).append(1, ' ');
            g_free(quoted);
        }
        Keep(line);
    };
    return {[=] { Keep(BuildEngineCommandLine(TEXT("C:\\e.exe"), config, false)); }, theirs};
}

}  // namespace

int main() {
    const std::vector<std::size_t> sizes{16384, 65536, 1048576};
    std::puts("| work, bytes | beside | ours / theirs | 10 % to 90 % | our growth |\n|---|---|---|---|---|");
    Row("parse 128 modules", "inih with a map", sizes, 2, Parse(ModulesText, ParseWithInih));
    Row("parse 128 modules", "SimpleIni", sizes, 2, Parse(ModulesText, ParseWithSimpleIni));
    Row("parse 128 modules", "toml++", sizes, 2, Parse(ModulesText, ParseWithToml, AsToml));
    Row("parse short keys", "SimpleIni", sizes, 1, Parse(ManyKeys, ParseWithSimpleIni));
    Row("parse one huge value", "SimpleIni", sizes, 1, Parse(HugeValue, ParseWithSimpleIni));
    Row("compose 128 modules", "GKeyFile", sizes, 1, Compose);
    Row("write the file", "write, fsync, rename, fsync", sizes, 2, Write);
    std::filesystem::remove_all(Folder());
    Row("NormalPath of a\\..\\", "one pass in place", {500, 4000, 32000}, 1, NormalAgainstInPlace);
    Row("NormalPath of a\\..\\", "lexically_normal", {500, 4000, 32000}, 1, NormalAgainstLibrary);
    Row("command line", "g_shell_quote", {512, 4096, 32766}, 1, CommandLine);
}
