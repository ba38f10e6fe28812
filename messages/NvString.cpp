#include "messages/NvString.h"

#include <algorithm>

#include "platform/files/CaseFolding.h"

namespace juntora {

int NvString::find(const char* text, int from, bool ignoreCase) const {
    const std::string_view whole = m_text;
    const std::string_view wanted = text ? text : "";
    const auto start = static_cast<std::size_t>(std::max(from, 0));
    if (!ignoreCase) {
        const std::size_t at = whole.find(wanted, start);
        return at == std::string_view::npos ? -1 : static_cast<int>(at);
    }
    for (std::size_t at = start; at + wanted.size() <= whole.size(); ++at) {
        if (files::equalIgnoringCase(whole.substr(at, wanted.size()), wanted)) {
            return static_cast<int>(at);
        }
    }
    return -1;
}

void NvString::substring(int from, int count, NvString* part) const {
    const auto start = static_cast<std::size_t>(std::clamp(from, 0, getLength()));
    part->m_text = m_text.substr(start, static_cast<std::size_t>(std::max(count, 0)));
}

}  // namespace juntora
