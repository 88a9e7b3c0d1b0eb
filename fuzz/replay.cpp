// Runs a target on the files of its corpus, without a fuzzer.
#include "fuzz/target.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char **argv) {
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            LLVMFuzzerTestOneInput(
                reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
            ++files;
        }
    }
    std::printf("%d inputs\n", files);
    return files > 0 ? 0 : 1;
}
