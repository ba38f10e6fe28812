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

/// Calls `use` with the first message that a status holds, and empties the status. 0; -1 without a
/// call if it holds none.
template <class Use>
int takeFirstMessage(NvStatus* status, const Use& use) {
    status->initPosition(nullptr);
    const auto* message = static_cast<const NvMessage*>(status->getNext(nullptr));
    if (!message) {
        return -1;
    }
    use(*message);
    status->flushMessages(true);
    return 0;
}

/// Appends a line to the file that TARVEX_LOG_NVM_MESSAGES names.
void logMessageText(NvString* text);

}  // namespace juntora
