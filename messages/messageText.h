// Texts of catalogued messages.
//
// One thread at a time. Where TARVEX_LOG_NVM_MESSAGES names a file, each text that is got here is
// appended to it as a line; a file that cannot be written to is passed over in silence.
#pragma once

#include <string>

#include "messages/NvStatus.h"

namespace juntora {

/// Gets the text of the first message that a status holds, and empties the status. 0; -1 if it
/// holds none, and then nothing is changed.
int getStatusText(std::string* out, NvStatus* status);
/// The same without what stands before the text itself ("ERROR(TVCOMMN-1802):  "), and no line is
/// written for it.
int getStatusBody(std::string* out, NvStatus* status);
/// The same for the page of extended help, which may be empty.
int getStatusHelp(std::string* out, NvStatus* status);

/// The first message that a status holds, null if none. It belongs to the status.
const NvMessage* firstMessage(const NvStatus& status);

/// Appends a line to the file that TARVEX_LOG_NVM_MESSAGES names.
void logMessageText(NvString* text);

/// Writes what a result code of the file operations (FileLock.h, PathCheck.h) means to a person, at
/// most `size` bytes with the NUL. 0; -1 without a buffer. The codes 1 and 10 stand for what
/// GetLastError has; a code that is unknown has a text that says so.
int getErrorText(int code, char* buffer, unsigned int size);

}  // namespace juntora
