// Operations on texts that CString doesn't have. Each goes over its text once. White space is
// blank, tab, newline, vertical tab, form feed and carriage return, whatever the locale.
#pragma once

#include "framework/CString.h"

namespace juntora {

/// The position of the first character at or behind `from` that is in `set`. -1 if there is none,
/// for a null `set`, and for a `from` that is negative or behind the text.
int findOneOfFrom(const CString& text, int from, const char* set);

/// Removes `count` characters at `at`. Returns 0; -1, and the text stays, if `count` is 0, if
/// either is negative or if there are not that many. In an empty text there is nothing to remove:
/// 0.
int deleteChars(CString& text, int count, int at);

/// Replaces every `from` by `to`, which must not be NUL.
void replaceChar(CString& text, char from, char to);

/// Removes every character that is in `set`; goes over the text once for each of these.
void removeChars(CString& text, const CString& set);

/// Removes all white space.
void removeWhitespace(CString& text);

/// Makes one blank of each run of white space, and none of those at the two ends.
void collapseWhitespace(CString& text);

}  // namespace juntora
