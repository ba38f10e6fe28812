// The files of the table's rows.
#include "hub/AppTable.h"

namespace juntora {
namespace {

constexpr std::uint32_t ALL_FLAGS = 0xFFFF;
constexpr std::uint32_t ANY_FLAG = 0xFFF;

// The newest of the rows with a key for which `matches` holds.
template <typename Table, typename Value, typename Matches>
AppEntry* newestOf(const Table& table, const Value& key, Matches matches) {
    AppEntry* row = table.newest(key);
    while (row && !matches(*row)) {
        row = table.older(*row);
    }
    return row;
}

}  // namespace

AppEntry* AppTable::findFileHolder(const PathName& file, std::uint32_t mask) const {
    return newestOf(m_holders, file.c_str(),
                    [&](const AppEntry& row) { return (row.access & mask) != 0; });
}

AppEntry* AppTable::rowWithFile(HWND window, const PathName& file) const {
    return newestOf(m_holders, file.c_str(),
                    [&](const AppEntry& row) { return row.window == window; });
}

AppEntry* AppTable::addFileToRow(HWND window, std::uint32_t access, const PathName& file,
                                 int* isMerged) {
    AppEntry* holder = rowWithFile(window, file);
    AppEntry* idle = m_idle.newest(window);
    *isMerged = holder && (!idle || holder->place.age > idle->place.age) ? 1 : 0;
    if (*isMerged) {
        holder->access |= access;
        return holder;
    }
    if (idle) {
        setFile(idle, file);
        idle->access = access;
    }
    return idle;
}

void AppTable::clearFile(AppEntry* row) {
    setFile(row, PathName());
    row->access = 0;
    row->flags = 0;
}

AppEntry* AppTable::setFileFlags(HWND window, const PathName& file, std::uint32_t bits) {
    AppEntry* row = rowWithFile(window, file);
    if (row) {
        row->flags |= bits;
    }
    return row;
}

AppEntry* AppTable::clearFileFlags(HWND window, const PathName& file, std::uint32_t bits) {
    AppEntry* row = rowWithFile(window, file);
    if (row) {
        row->flags &= ~bits;
    }
    return row;
}

AppEntry* AppTable::findFileFlags(HWND window, const PathName& file, std::uint32_t* flags) const {
    const std::uint32_t wanted = *flags == 0 ? ALL_FLAGS : *flags;
    AppEntry* row = newestOf(m_holders, file.c_str(), [&](const AppEntry& each) {
        return (window == 0 || each.window == window) &&
               (each.flags == wanted || (wanted == ANY_FLAG && each.flags != 0));
    });
    *flags = row ? row->flags : 0;
    return row;
}

void AppTable::setFile(AppEntry* row, const PathName& file) {
    m_holders.reserveOne();
    m_idle.reserveOne();
    PathName changed;
    changed = file;
    forgetByFile(row);
    row->file.swap(changed);
    enterByFile(row);
}

void AppTable::enterByFile(AppEntry* row) {
    if (row->file.isEmpty()) {
        m_idle.add(row);
    } else {
        m_holders.add(row);
    }
}

void AppTable::forgetByFile(AppEntry* row) {
    if (row->file.isEmpty()) {
        m_idle.remove(row);
    } else {
        m_holders.remove(row);
    }
}

}  // namespace juntora
