// Names without regard to the case of A to Z. Bytes above 127 are compared as they are, whatever
// the locale: in some of them "I" and "i" are no pair.
#pragma once

#include <algorithm>
#include <string_view>

namespace juntora::files {

constexpr char foldCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline bool equalIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return foldCase(a) == foldCase(b); });
}

inline bool lessIgnoringCase(std::string_view left, std::string_view right) {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](char a, char b) {
                                            return static_cast<unsigned char>(foldCase(a)) <
                                                   static_cast<unsigned char>(foldCase(b));
                                        });
}

}  // namespace juntora::files
