// Texts that are the same when they differ in nothing but the case of the letters A to Z. Bytes
// above 127 are compared as they are, whatever the locale.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/files/CaseFolding.h"

namespace juntora {

using files::foldCase;

inline bool equalCaseBlind(std::string_view left, std::string_view right) {
    return files::equalIgnoringCase(left, right);
}

/// Hash and equality of text keys, for look-ups by any kind of text without a copy of it.
struct CaseBlindHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const;
};
struct CaseBlindEqual {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const {
        return equalCaseBlind(left, right);
    }
};

}  // namespace juntora
