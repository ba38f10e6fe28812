// Names in a series: the next one, and the one before.
//
// A name is changed in place, in a buffer of `size` bytes. The result is 0; or 1, and the name
// stays, where it can't be stepped, where the new one wouldn't fit with its NUL, and where the old
// one isn't ended within the buffer. Numbers may have any number of digits; zeros in front of them
// are not kept. Letters are A to Z and a to z. Any thread may call, each on a name of its own.
#pragma once

namespace juntora {

/// A name that ends in a number, `a9` or `x[9]`, gets the number above: `a10`, `x[10]`. Any other
/// one gets a 1 behind it: `a1`. 1 for a name that ends in "]" and has no number in brackets.
int IncrementNumber(char* name, int size);

/// The other way. `x[0]` is the first of its series, and can't be stepped; the first of the others
/// is the name without a number, so that `a1` becomes `a`, as does `a0`. 1 for a name without a
/// number.
int DecrementNumber(char* name, int size);

/// As IncrementNumber for a name that ends in a digit or in "]". A letter at the end becomes the
/// next one, `ab` `ac`, and the last letter two of the first: `az` `aaa`, `aZ` `aAA`. 1 for a name
/// that ends in anything else, or is empty.
int IncrementName(char* name, int size);

/// As DecrementNumber for a name that ends in a digit or in "]". A letter at the end becomes the
/// one before it, `ac` `ab`. An "a" there takes the letter in front of it along: that goes down,
/// `xba` `xaz`, and two first letters become one last letter, `xaa` `xz`. The case is that of the
/// last letter. With no letter in front, an "a" stays, and the result is 0. 1 for a name that ends
/// in anything else, or is empty.
int DecrementName(char* name, int size);

}  // namespace juntora
