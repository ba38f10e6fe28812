#include "setup/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "setup/letters.h"

namespace juntora {
namespace {

std::uint64_t squareOf(int value) {
    const std::int64_t wide = value;
    return static_cast<std::uint64_t>(wide * wide);
}

}  // namespace

int IntegerLength(int x, int y) {
    constexpr std::uint64_t MOST = std::numeric_limits<int>::max();
    const std::uint64_t square = squareOf(x) + squareOf(y);
    std::uint64_t length = 0;  // Bit by bit, the largest of which the square isn't beyond.
    for (std::uint64_t bit = std::uint64_t{1} << 31; bit != 0; bit >>= 1) {
        if ((length + bit) * (length + bit) <= square) {
            length += bit;
        }
    }
    // Up where the root is nearer to the next: no square lies halfway between two whole roots.
    length += square - length * length > length ? 1 : 0;
    return static_cast<int>(std::min(length, MOST));
}

double DifferenceBeyond(double a, double b, double tolerance) {
    return std::fabs(a - b) < tolerance ? 0 : a - b;
}

int CountDecimals(const char* text) {
    const char* point = text ? std::strchr(text, '.') : nullptr;
    int count = 0;
    while (point && isDigit(point[count + 1])) {
        ++count;
    }
    return count;
}

}  // namespace juntora
