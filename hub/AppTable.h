// The hub's one record of what runs.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "common/AppList.h"
#include "common/CaseBlind.h"
#include "hub/AppEntry.h"
#include "hub/RowKeys.h"
#include "hub/RowTable.h"

namespace juntora {

/// A list of AppEntry rows, the newest first: at least one for each attached tool, one for each
/// file that it holds. The table owns its rows. Names compare without regard to case. For the hub's
/// one thread.
///
/// A cursor (AppList::Cursor) stands on a row; its operations accept a null address and a cursor
/// without a row, and find nothing then. A row that is removed invalidates the cursors on it, but
/// for the one that it was removed by.
class AppTable : private AppList {
public:
    using AppList::atHead;
    using AppList::count;
    using AppList::Cursor;
    using AppList::newCursor;

    AppTable() = default;
    ~AppTable();

    /// The row at the cursor, null without one.
    static AppEntry* at(const Cursor* cursor) {
        return static_cast<AppEntry*>(AppList::at(cursor));
    }
    /// Moves on to the next older row and returns it. At the oldest: null, and the cursor stays.
    static AppEntry* next(Cursor* cursor) { return static_cast<AppEntry*>(AppList::next(cursor)); }

    /// Enters a row as the newest and returns it.
    AppEntry* pushFront(std::unique_ptr<AppEntry> row);

    /// Removes and destroys the cursor's row; the cursor moves to the next older one, to none
    /// behind the oldest. Watchers that the row still has are not told, and go with it.
    void removeRow(Cursor* cursor);
    /// The same for a row of this table.
    void removeRow(AppEntry* row);

    /// The newest row from the cursor's own on that has this window (0: any) and this name (null:
    /// any): with `exact` the unique name, otherwise the base name. The cursor moves to it. Without
    /// a match the result is null and the cursor stands on the oldest row. The cost depends on how
    /// many rows have this window or name, not on the number of rows.
    AppEntry* findRow(Cursor* cursor, HWND window, const char* name, bool exact) const;

    /// The same search over the whole table, for those who need no cursor.
    AppEntry* findNewest(HWND window, const char* name, bool exact) const {
        Cursor cursor = atHead();
        return findRow(&cursor, window, name, exact);
    }

    /// The newest row of a window; null for 0, which is no window.
    AppEntry* rowOfWindow(HWND window) const { return window ? m_windows.newest(window) : nullptr; }

    /// Whether the table has more than one row of a window.
    bool hasSeveralRows(HWND window) const;

    // --- Files -----------------------------------------------------------------------------------
    // A row's `file` is changed here alone. Files compare without regard to case; a row without one
    // never matches. Each result is a row, or null. The cost depends on how many hold the one file,
    // not on the number of rows.

    /// The newest row that holds a file with an access that has a bit in common with `mask`.
    AppEntry* findFileHolder(const PathName& file, std::uint32_t mask) const;
    /// Enters a file in the newest row of a window that holds this file, which then has `access` as
    /// well as what it had (`*isMerged` 1), or that holds none (`*isMerged` 0).
    AppEntry* addFileToRow(HWND window, std::uint32_t access, const PathName& file, int* isMerged);
    /// Takes the file, its access and its flags from a row of this table.
    void clearFile(AppEntry* row);

    /// Sets or removes bits of the newest row of a window that holds a file.
    AppEntry* setFileFlags(HWND window, const PathName& file, std::uint32_t bits);
    AppEntry* clearFileFlags(HWND window, const PathName& file, std::uint32_t bits);
    using FlagChange = AppEntry* (AppTable::*)(HWND window, const PathName& file,
                                               std::uint32_t bits);
    /// The newest row, of this window unless that is 0, that holds a file and has exactly the flags
    /// `*flags`; 4,095 stands for any but 0, and 0 for 65,535. `*flags` becomes what the row has, 0
    /// without one.
    AppEntry* findFileFlags(HWND window, const PathName& file, std::uint32_t* flags) const;

    // --- Names -----------------------------------------------------------------------------------

    /// The instance number that the next tool of a base name gets: one above the highest among its
    /// rows, 0 if there are none.
    int nextInstance(std::string_view baseName) const;

private:
    struct Wanted;
    template <typename Table, typename Value>
    static AppEntry* firstIn(const Table& table, const Value& key, const AppEntry& from,
                             const Wanted& wanted);

    void countInstance(const AppEntry& row);
    void forgetInstance(const AppEntry& row);
    AppEntry* rowWithFile(HWND window, const PathName& file) const;
    void setFile(AppEntry* row, const PathName& file);
    void enterByFile(AppEntry* row);
    void forgetByFile(AppEntry* row);

    /// How many rows of a base name carry each instance number.
    using Instances = std::map<int, int>;

    std::uint64_t m_lastAge = 0;
    RowTable<WindowKey> m_windows;
    RowTable<NameKey> m_names;
    RowTable<BaseNameKey> m_baseNames;
    RowTable<FileKey> m_holders;
    RowTable<IdleKey> m_idle;
    std::unordered_map<std::string, Instances, CaseBlindHash, CaseBlindEqual> m_instances;
};

}  // namespace juntora
