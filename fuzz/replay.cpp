// Runs a fuzz target, in builds without libFuzzer, with every file of the folders on the command
// line, or with "--random COUNT" with as many inputs that begin with random bytes, the same in
// every run. A folder without files is an error: it would test nothing.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char *argv[])
{
    std::size_t count = 0;
    if (argc == 3 && std::string_view(argv[1]) == "--random") {
        std::mt19937 random(1); // NOLINT(cert-msc51-cpp): reproducible
        std::vector<std::uint8_t> bytes;
        for (; count < std::strtoul(argv[2], nullptr, 10); ++count) {
            bytes.resize(random() % 1024);
            for (std::uint8_t &byte : bytes)
                byte = static_cast<std::uint8_t>(random());
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        }
        std::printf("%zu random inputs\n", count);
        return 0;
    }
    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()),
                                   bytes.size());
            ++count;
        }
    }
    std::printf("%zu inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
