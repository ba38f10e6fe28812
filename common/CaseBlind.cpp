#include "common/CaseBlind.h"

#include <algorithm>
#include <cstdint>

namespace juntora {

bool equalCaseBlind(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return foldCase(a) == foldCase(b); });
}

std::size_t CaseBlindHash::operator()(std::string_view text) const {
    // FNV-1a: the keys are a few bytes long.
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(foldCase(c))) * 0x100000001b3;
    }
    return hash;
}

}  // namespace juntora
