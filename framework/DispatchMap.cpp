#include "framework/DispatchMap.h"

namespace juntora {

AFX_DISPMAP::AFX_DISPMAP(const std::string& interfaceName,
                         std::span<const AFX_DISPMAP_ENTRY> entries)
    : m_description{interfaceName, {}}, m_entries(entries) {
    for (const AFX_DISPMAP_ENTRY& entry : entries) {
        const LONG id = static_cast<LONG>(m_description.members.size()) + 1;
        m_description.members.push_back({entry.name, id, entry.result, entry.parameters});
    }
}

AFX_DISPMAP_ENTRY::Handler AFX_DISPMAP::find(LONG id) const {
    const bool isThere = id > 0 && static_cast<std::size_t>(id) <= m_entries.size();
    return isThere ? m_entries[static_cast<std::size_t>(id) - 1].handler : nullptr;
}

}  // namespace juntora
