#include "messages/Complaints.h"

#include <algorithm>

namespace juntora {

void Complaints::add(std::size_t offset, const std::string& text) {
    if (m_kept.size() < MOST_KEPT) {
        m_kept.push_back({offset, text});
    }
    ++m_count;
}

std::vector<std::string> Complaints::told(const std::string& path, std::string_view bytes) const {
    std::vector<std::string> texts;
    for (const Complaint& complaint : m_kept) {
        const std::string_view before = bytes.substr(0, complaint.offset);
        const auto line = std::ranges::count(before, '\n') + 1;
        texts.push_back(path + ":" + std::to_string(line) + ": " + complaint.text + ".");
    }
    if (const std::size_t more = m_count - m_kept.size(); more > 0) {
        texts.push_back(path + ": and " + std::to_string(more) +
                        (more == 1 ? " mistake more." : " mistakes more."));
    }
    return texts;
}

}  // namespace juntora
