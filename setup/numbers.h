// Small calculations. Any thread may call these.
#pragma once

namespace juntora {

/// The length of the vector (x, y) to the nearest whole number, exact for all values; the largest
/// int where the length is beyond that.
int IntegerLength(int x, int y);

/// 0 if a and b differ by less than the tolerance, else a minus b.
double DifferenceBeyond(double a, double b, double tolerance);

/// How many digits stand right behind the first "." of the text, which may be null.
int CountDecimals(const char* text);

}  // namespace juntora
