// Texts cut at delimiters, piece by piece and without quotes; TextTokens is for all else. A blank
// is a blank or a tab here.
//
// Texts are ended by a NUL; none may be null unless it says so. Any thread may call these.
#pragma once

namespace juntora {

/// Removes every blank, in place, and returns the text.
char* RemoveBlanks(char* text);

/// Copies the token at `cursor` to `output` of `size` bytes, without the blanks at its two ends and
/// cut to what fits, and returns `output`. A token goes up to the delimiter or to the end of the
/// text. `*next` becomes the cursor for the token behind it; null behind the last one. Where only
/// blanks are left, the token is empty and the last one. A null `cursor`: null, and `output` stays.
char* NextToken(const char* cursor, const char** next, char delimiter, char* output, int size);

/// Whether a token of the list, as NextToken finds them but whole, equals the name without regard
/// to the case of A to Z. Only blanks behind the last delimiter are no token. Either may be null:
/// false.
bool ListHasToken(const char* name, const char* list, char delimiter);

/// Passes over all characters of `delimiters`, copies what comes up to the next of them to
/// `output`, and returns the place behind it; null, and `output` is empty, if nothing comes. There
/// must be room for the longest field: as much as `text` takes is always enough.
const char* NextField(const char* text, const char* delimiters, char* output);

}  // namespace juntora
