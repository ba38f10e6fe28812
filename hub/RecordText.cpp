#include "hub/RecordText.h"

#include <algorithm>
#include <cstring>

namespace juntora {

RecordText::RecordText(const char* text, std::size_t capacity) {
    const std::size_t limit = std::min<std::size_t>(capacity, IPC_TEXT_FIELD);
    const void* end = std::memchr(text, '\0', limit);
    const auto length =
        end ? static_cast<std::size_t>(static_cast<const char*>(end) - text) : limit;
    std::memcpy(m_text, text, length);
    m_text[length] = '\0';
    m_nLength = std::strlen(m_text);  // The copy is what counts: it changes no more.
}

void writeReply(IpcMessage* record, std::string_view reply) {
    const int room = std::min(record->replyLength, IPC_TEXT_FIELD);
    if (room <= 0) {
        return;
    }
    const std::size_t length = std::min(reply.size() + 1, static_cast<std::size_t>(room));
    const std::size_t characters = std::min(reply.size(), length);
    std::memcpy(record->text, reply.data(), characters);
    std::memset(record->text + characters, 0, length - characters);
    record->replyLength = static_cast<int>(length);
}

}  // namespace juntora
