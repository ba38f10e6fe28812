// A record's text: taken out of the shared block, and answered in place.
#pragma once

#include <cstddef>
#include <string_view>

#include "ipc/IpcMessage.h"

namespace juntora {

/// A copy of a record's text as it stood at one moment, always with a NUL. The sender's process can
/// write to the slot at any time, so no text is looked at twice where it lies; nor is it sure to
/// end inside its field.
class RecordText {
public:
    explicit RecordText(const IpcMessage& record)
        : RecordText(record.text, sizeof(IpcMessage::text)) {}
    /// The same of the text in the first `capacity` bytes at `text`, of which at most what the
    /// record's field holds are taken.
    RecordText(const char* text, std::size_t capacity);

    const char* c_str() const { return m_text; }
    std::string_view view() const { return {m_text, m_nLength}; }

private:
    std::size_t m_nLength;
    char m_text[IPC_TEXT_FIELD + 1];
};

/// Whether the sender has room for an answer of at least one byte.
inline bool hasReplyRoom(const IpcMessage& record) { return record.replyLength > 0; }

/// Writes an answer over the record's text, NUL included, and its length into replyLength. What the
/// sender has no room for is cut off, the NUL first; without any room the record stays as it is.
void writeReply(IpcMessage* record, std::string_view reply);

}  // namespace juntora
