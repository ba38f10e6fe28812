#include "messages/messageText.h"

#include "platform/files/wholeFile.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constexpr char LOG_VARIABLE[] = "TARVEX_LOG_NVM_MESSAGES";

}  // namespace

int getStatusText(std::string* out, NvStatus* status) {
    return takeFirstMessage(status, [out](const NvMessage& message) {
        NvString text;
        message.getSubstitutedDesc(&text, true);
        logMessageText(&text);
        *out = text.getChar();
    });
}

int getStatusBody(std::string* out, NvStatus* status) {
    return takeFirstMessage(status, [out](const NvMessage& message) {
        NvString text;
        message.getSubstitutedDesc(&text, true);
        const int position = text.find(":", 0, false);
        NvString body;
        text.substring(position + 3, text.getLength(), &body);
        *out = body.getChar();
    });
}

int getStatusHelp(std::string* out, NvStatus* status) {
    return takeFirstMessage(
        status, [out](const NvMessage& message) { *out = message.getExtHelp().getChar(); });
}

void logMessageText(NvString* text) {
    const char* path = GetEnvironment(LOG_VARIABLE);
    if (!path || *path == '\0') {
        return;
    }
    std::string line(text->getChar());
    line += '\n';
    AppendToFile(path, line.data(), line.size());
}

}  // namespace juntora
