// Stands in libFuzzer's place where there is none: gives each file that is named to the fuzzer.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/fuzz/Fuzz.h"

int main(int count, char** arguments) {
    if (count < 2) {
        std::fprintf(stderr, "usage: %s FILE...\n", arguments[0]);
        return 2;
    }
    for (int i = 1; i < count; ++i) {
        std::ifstream file(arguments[i], std::ios::binary);
        const std::vector<char> input{std::istreambuf_iterator<char>(file), {}};
        if (!file.is_open() || file.bad()) {
            std::fprintf(stderr, "cannot read %s\n", arguments[i]);
            return 1;
        }
        std::fprintf(stderr, "%s\n", arguments[i]);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    }
    return 0;
}
