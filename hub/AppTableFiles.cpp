// The files of the table's rows.
#include "hub/AppTable.h"

namespace juntora {
namespace {

constexpr std::uint32_t ALL_FLAGS = 0xFFFF;
constexpr std::uint32_t ANY_FLAG = 0xFFF;

// The newest of the rows for which `matches` holds.
template <typename Matches>
AppEntry* newestOf(const FileIndex::Rows* rows, Matches matches) {
    if (rows) {
        for (const auto& [age, row] : *rows) {
            if (matches(*row)) {
                return row;
            }
        }
    }
    return nullptr;
}

}  // namespace

AppEntry* AppTable::findFileHolder(const PathName& file, std::uint32_t mask) const {
    return newestOf(m_files.holdersOf(file),
                    [&](const AppEntry& row) { return (row.access & mask) != 0; });
}

AppEntry* AppTable::rowWithFile(HWND window, const PathName& file) const {
    return newestOf(m_files.holdersOf(file),
                    [&](const AppEntry& row) { return row.window == window; });
}

AppEntry* AppTable::addFileToRow(HWND window, std::uint32_t access, const PathName& file,
                                 int* isMerged) {
    AppEntry* holder = rowWithFile(window, file);
    AppEntry* idle = newestOf(m_files.idleOf(window), [](const AppEntry&) { return true; });
    *isMerged = holder && (!idle || m_files.isNewer(holder, idle)) ? 1 : 0;
    if (*isMerged) {
        holder->access |= access;
        return holder;
    }
    if (idle) {
        m_files.setFile(idle, file);
        idle->access = access;
    }
    return idle;
}

void AppTable::clearFile(AppEntry* row) {
    m_files.setFile(row, PathName());
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
    AppEntry* row = newestOf(m_files.holdersOf(file), [&](const AppEntry& each) {
        return (window == 0 || each.window == window) &&
               (each.flags == wanted || (wanted == ANY_FLAG && each.flags != 0));
    });
    *flags = row ? row->flags : 0;
    return row;
}

}  // namespace juntora
