// What went wrong with a file, for a person.
#pragma once

namespace juntora {

/// Writes the text for a result code of the library's file operations, which are numbered alike in
/// all of them, to `buffer`: at most `size` bytes with the NUL. 0; -1 without a buffer. The codes 1
/// and 10 stand for what GetLastError has; one that is unknown has a text that says so.
int getErrorText(int code, char* buffer, unsigned int size);

}  // namespace juntora
