#include "messages/errorText.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "messages/messageFamily.h"
#include "platform/kernel/errorText.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char MODULE[] = "TVCOMMN";
constexpr unsigned long OF_THE_SYSTEM = 0;
constexpr unsigned long UNKNOWN = 1820;

struct CodeText {
    int code;
    unsigned long number;
};
constexpr CodeText TEXTS[] = {{1, OF_THE_SYSTEM}, {2, 1801},          {3, 1802}, {4, 1803},
                              {5, 1804},          {6, 1805},          {7, 1803}, {8, 1807},
                              {9, 1808},          {10, OF_THE_SYSTEM}};

unsigned long numberOf(int code) {
    const auto* found = std::ranges::find(TEXTS, code, &CodeText::code);
    return found != std::end(TEXTS) ? found->number : UNKNOWN;
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

}  // namespace

int getErrorText(int code, char* buffer, unsigned int size) {
    if (!buffer) {
        return -1;
    }
    std::string text;
    if (const unsigned long number = numberOf(code); number != OF_THE_SYSTEM) {
        getMessageText(&text, MODULE, number);
    } else {
        text = systemText();
    }
    if (size > 0) {
        const std::size_t length = std::min<std::size_t>(text.size(), size - 1);
        std::memcpy(buffer, text.data(), length);
        buffer[length] = '\0';
    }
    return 0;
}

}  // namespace juntora
