// Patterns of texts: "?" stands for one character, "*" for any number of them, and "\" has the next
// character of the pattern stand for itself. The case of A to Z doesn't count.
//
// Any thread may call these.
#pragma once

namespace juntora {

/// 1 if the pattern stands for the whole text, else 0. Takes at most as many steps as the product
/// of the two lengths.
///
/// Where the text is used up, what is left of the pattern must be nothing or a single "*": two of
/// them at the end of a pattern stand for one character at least. A "\" at the end matches nothing.
int WildcardMatch(const char* pattern, const char* text);

/// What WildcardApply says when it hasn't made a whole name.
inline constexpr int WILDCARD_NOT_APPLIED = 1405;

/// Makes a name out of `source`, as a rename with wildcards does: the text of `targetPattern` up to
/// its first wildcard, and behind it what the wildcards of `sourcePattern` stand for in `source`,
/// one for each character of `targetPattern` from that wildcard on, all of what is left for one at
/// the very end. Further text of `targetPattern` is not copied.
///
/// A wildcard stands for one character at least, and for as few as let the rest of `sourcePattern`
/// match the rest of `source`; for all that is left where nothing does. Other characters of
/// `sourcePattern` that `source` hasn't are passed over.
///
/// 0; or WILDCARD_NOT_APPLIED if `targetPattern` isn't used up, or if the name doesn't fit into the
/// `size` bytes of `output` with its NUL. That holds then what fitted as a whole; it mustn't
/// overlap the other texts.
int WildcardApply(const char* source, const char* sourcePattern, const char* targetPattern,
                  char* output, int size);

/// Whether "?" or "*" stands anywhere in the text.
bool HasWildcards(const char* text);

}  // namespace juntora
