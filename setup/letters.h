// Kinds of characters, among ASCII alone: names of parts and nets don't change with the locale.
#pragma once

#include "common/CaseBlind.h"

namespace juntora {

inline bool isDigit(char c) { return c >= '0' && c <= '9'; }
inline bool isLetter(char c) { return foldCase(c) >= 'a' && foldCase(c) <= 'z'; }
/// A blank or a tab.
inline bool isBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace juntora
