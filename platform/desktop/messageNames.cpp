// Numbers of messages by name: an array that only grows.
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "platform/desktop/Attachment.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/WindowIndex.h"
#include "platform/desktop/message.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace desktop {
namespace {

std::string lowered(const char* name) {
    std::string text(name);
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    }
    return text;
}

/// What this process has read of the array so far. Names are never removed.
class KnownNames {
public:
    /// The name's index, NONE while it is not among the first `count`.
    std::uint32_t find(const Segment& segment, const std::string& name, std::uint32_t count) {
        if (m_segment != &segment) {  // A forked child may have come to a desktop of a new life.
            m_segment = &segment;
            m_read = 0;
            m_indices.clear();
        }
        for (; m_read < count; ++m_read) {
            m_indices.try_emplace(lowered(segment.names[m_read].text), m_read);
        }
        const auto found = m_indices.find(name);
        return found == m_indices.end() ? NONE : found->second;
    }

    std::mutex mutex;

private:
    const Segment* m_segment = nullptr;
    std::uint32_t m_read = 0;
    std::map<std::string, std::uint32_t> m_indices;
};

KnownNames& knownNames() {
    static auto* const names = new KnownNames;  // Wanted until the last static object has gone.
    return *names;
}

std::uint32_t addName(Segment& segment, const char* name, const std::string& key,
                      KnownNames& known) {
    const SegmentLock lock(segment);
    if (!lock) {
        return NONE;
    }
    const std::uint32_t count = segment.nameCount.load();
    const std::uint32_t index = known.find(segment, key, count);
    if (index != NONE || count == MAX_NAMES) {
        return index;
    }
    std::strcpy(segment.names[count].text, name);
    segment.nameCount = count + 1;
    return count;
}

}  // namespace
}  // namespace desktop

UINT RegisterWindowMessageA(const char* name) {
    using namespace desktop;
    Attachment* attachment = Attachment::get();
    if (attachment == nullptr || name == nullptr || *name == '\0' ||
        std::strlen(name) >= sizeof(MessageName::text)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    Segment& segment = attachment->segment();
    const std::string key = lowered(name);
    KnownNames& known = knownNames();
    const std::lock_guard guard(known.mutex);
    std::uint32_t index = known.find(segment, key, segment.nameCount.load());
    if (index == NONE) {
        index = addName(segment, name, key, known);
    }
    if (index == NONE) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    return FIRST_REGISTERED_MESSAGE + index;
}

}  // namespace juntora
