// bounded_run FOLDER: tests the inputs in the folder, then random mutations of them, the same ones on every
// run and every machine. For compilers that have no fuzzer.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Test(const std::string& input) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int, char** arguments) {
    std::vector<std::string> inputs;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::sort(inputs.begin(), inputs.end());  // a folder is listed in no fixed order
    std::for_each(inputs.begin(), inputs.end(), Test);
    std::mt19937 random(20240229);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    for (unsigned left = 20000; left > 0; --left) {
        std::string text = inputs.at(below(inputs.size()));
        for (std::size_t changes = below(7); changes > 0; --changes) {
            const std::string& other = inputs[below(inputs.size())];
            const std::string piece = other.substr(below(other.size() + 1), below(12));
            const std::string byte(1, static_cast<char>(below(256)));
            text.replace(below(text.size() + 1), below(2) * below(12), below(4) == 0 ? byte : piece);
        }
        Test(text);
    }
}
