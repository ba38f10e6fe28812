#include "messages/messageText.h"

#include <algorithm>
#include <cstring>

#include "messages/messageFamily.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char LOG_VARIABLE[] = "TARVEX_LOG_NVM_MESSAGES";

void copyText(const std::string& text, char* buffer, unsigned int size) {
    if (size > 0) {
        const std::size_t length = std::min<std::size_t>(text.size(), size - 1);
        std::memcpy(buffer, text.data(), length);
        buffer[length] = '\0';
    }
}

std::string systemText() {
    constexpr DWORD LANGUAGE = 0x400;  // The user's.
    char* buffer = nullptr;
    FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, GetLastError(),
                   LANGUAGE, &buffer);
    std::string text(buffer ? buffer : "");
    LocalFree(buffer);
    return text;
}

/// The message of TVCOMMN for a code; 0 where the system has the text.
unsigned long numberOf(int code) {
    switch (code) {
        case 1:
        case 10:
            return 0;
        case 2:
            return 1801;
        case 3:
            return 1802;
        case 4:
        case 7:
            return 1803;
        case 5:
            return 1804;
        case 6:
            return 1805;
        case 8:
            return 1807;
        case 9:
            return 1808;
        default:
            return 1820;
    }
}

}  // namespace

const NvMessage* firstMessage(const NvStatus& status) {
    status.initPosition(nullptr);
    return static_cast<const NvMessage*>(status.getNext(nullptr));
}

int getStatusText(std::string* out, NvStatus* status) {
    const NvMessage* message = firstMessage(*status);
    if (!message) {
        return -1;
    }
    NvString text;
    message->getSubstitutedDesc(&text, true);
    logMessageText(&text);
    status->flushMessages(true);
    *out = text.getChar();
    return 0;
}

int getStatusBody(std::string* out, NvStatus* status) {
    const NvMessage* message = firstMessage(*status);
    if (!message) {
        return -1;
    }
    NvString text;
    message->getSubstitutedDesc(&text, true);
    status->flushMessages(true);
    const int position = text.find(":", 0, false);
    NvString body;
    text.substring(position + 3, text.getLength(), &body);
    *out = body.getChar();
    return 0;
}

int getStatusHelp(std::string* out, NvStatus* status) {
    const NvMessage* message = firstMessage(*status);
    if (!message) {
        return -1;
    }
    const NvString help = message->getExtHelp();
    status->flushMessages(true);
    *out = help.getChar();
    return 0;
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

int getErrorText(int code, char* buffer, unsigned int size) {
    if (!buffer) {
        return -1;
    }
    std::string text;
    if (const unsigned long number = numberOf(code); number != 0) {
        getMessageText(&text, "TVCOMMN", number);
    } else {
        text = systemText();
    }
    copyText(text, buffer, size);
    return 0;
}

}  // namespace juntora
