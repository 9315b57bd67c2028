// The same inputs on every run and every machine, for compilers that bring no fuzzer: a few seeds, changed at
// random from a fixed start.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace std::string_view_literals;

constexpr unsigned INPUTS = 20000;
constexpr unsigned CHANGES_AT_MOST = 6;

const std::vector<std::string> SEEDS = {
    "version=1\n",
    "\xEF\xBB\xBF# c\r\nversion=1\r\nkernel=C:\\\xC3\xA9.elf\r\nram_mib=0256\r\nheadless=1\r\ndump= d \r\n",
    "version=1\nmodule_count=2\nmodule.0.path=a\nmodule.1.path=b\nmodule.1.command=c=d # e\nzoom=4\n"
    "ide_primary_master=\xF0\x9F\x98\x80\nide_secondary_slave=3\nwidth=1\nheight=8192\ntimeout_ms=3600000\n"};
// Each up to the next bar.
constexpr std::string_view PIECES =
    "=|\n|\r|\r\n|#| |\t|\0|0|9|\xEF\xBB\xBF|\xC3\xA9|\xED\xA0\x80|kernel=k\n|command=\n|module_count=|"
    "explicit_video=1\n|force_no_header=1\n|module.2.path=x\n|module.0.command=y\n|"sv;

struct Mutator {
    std::mt19937 random{20240229};

    std::size_t Below(std::size_t limit) {
        return random() % limit;
    }
    std::string_view Piece() {
        const std::string_view rest = PIECES.substr(Below(PIECES.size()));
        const std::string_view next = rest.substr(std::min(rest.find('|') + 1, rest.size() - 1));
        return next.substr(0, next.find('|'));
    }
    void Change(std::string& text) {
        const std::size_t at = Below(text.size() + 1);
        const std::size_t count = Below(12);
        switch (Below(5)) {
            case 0:
                text.insert(at, Piece());
                break;
            case 1:
                text.erase(at, count);
                break;
            case 2:
                text.insert(Below(text.size() + 1), text.substr(at, count));
                break;
            case 3:
                text.insert(at, 1, static_cast<char>(Below(256)));
                break;
            default:
                text.replace(at, count, Piece());
        }
    }
};

}  // namespace

int main() {
    Mutator mutator;
    for (unsigned input = 0; input < INPUTS; ++input) {
        std::string text = SEEDS[input % SEEDS.size()];
        for (std::size_t left = mutator.Below(CHANGES_AT_MOST + 1); left > 0; --left)
            mutator.Change(text);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    }
    std::printf("%u inputs\n", INPUTS);
}
