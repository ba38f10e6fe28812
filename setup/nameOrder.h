// The order of names as a person expects it.
#pragma once

namespace juntora {

/// Negative, 0 or positive as `left` comes before, with or behind `right`. Runs of digits at the
/// same place count as numbers of any length, so that `a9` comes before `a10` and `a007` is `a7`.
/// Other characters go by their bytes, A to Z as a to z, and "$" as "{": behind the letters. The
/// amount is the difference of the two numbers or bytes that decide, as far as an int holds it.
int CompareNames(const char* left, const char* right);

}  // namespace juntora
