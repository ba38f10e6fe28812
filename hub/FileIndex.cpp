#include "hub/FileIndex.h"

#include "hub/KeyedRows.h"

namespace juntora {

void FileIndex::add(AppNode* node) {
    auto* row = static_cast<AppEntry*>(node->value);
    const auto [place, isNew] = m_places.try_emplace(row, Place{m_nextAge++, node});
    try {
        enter(place->second.age, row);
    } catch (...) {
        m_places.erase(place);
        throw;
    }
}

void FileIndex::remove(AppEntry* row) {
    const auto place = m_places.find(row);
    leave(place->second.age, row);
    m_places.erase(place);
}

void FileIndex::setFile(AppEntry* row, const PathName& file) {
    const std::uint64_t age = m_places.at(row).age;
    leave(age, row);
    row->file = file;
    enter(age, row);
}

const FileIndex::Rows* FileIndex::holdersOf(const PathName& file) const {
    return rowsOf(m_holders, std::string_view(file.c_str()));
}

const FileIndex::Rows* FileIndex::idleOf(HWND window) const { return rowsOf(m_idle, window); }

AppNode* FileIndex::nodeOf(const AppEntry* row) const { return m_places.at(row).node; }

bool FileIndex::isNewer(const AppEntry* row, const AppEntry* other) const {
    return m_places.at(row).age > m_places.at(other).age;
}

void FileIndex::enter(std::uint64_t age, AppEntry* row) {
    Rows& rows = row->file.isEmpty() ? m_idle[row->window] : m_holders[row->file.c_str()];
    rows.emplace(age, row);
}

void FileIndex::leave(std::uint64_t age, const AppEntry* row) {
    if (row->file.isEmpty()) {
        forgetRow(m_idle, row->window, age);
    } else {
        forgetRow(m_holders, std::string_view(row->file.c_str()), age);
    }
}

}  // namespace juntora
