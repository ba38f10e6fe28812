#include "common/CaseBlind.h"

#include <cstdint>

namespace juntora {

std::size_t CaseBlindHash::operator()(std::string_view text) const {
    // FNV-1a: the keys are a few bytes long.
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(foldCase(c))) * 0x100000001b3;
    }
    return hash;
}

}  // namespace juntora
