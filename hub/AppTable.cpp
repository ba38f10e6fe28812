#include "hub/AppTable.h"

#include "common/CaseBlind.h"

namespace juntora {

struct AppTable::Wanted {
    HWND window;
    const char* name;
    bool exact;

    bool matches(const AppEntry& row) const {
        if (window && row.window != window) {
            return false;
        }
        return !name || equalCaseBlind(exact ? std::string_view(row.name) : row.baseName(), name);
    }
};

AppTable::~AppTable() {
    for (Cursor cursor = atHead(); cursor;) {
        removeRow(&cursor);
    }
}

// All that can fail comes first, so that a row is entered wholly or not at all.
AppEntry* AppTable::pushFront(std::unique_ptr<AppEntry> row) {
    m_windows.reserveOne();
    m_names.reserveOne();
    m_baseNames.reserveOne();
    m_holders.reserveOne();
    m_idle.reserveOne();
    countInstance(*row);
    try {
        row->place.node = AppList::pushFront(row.get());
    } catch (...) {
        forgetInstance(*row);
        throw;
    }
    row->place.age = ++m_lastAge;
    m_windows.add(row.get());
    m_names.add(row.get());
    m_baseNames.add(row.get());
    enterByFile(row.get());
    return row.release();
}

void AppTable::removeRow(Cursor* cursor) {
    if (const std::unique_ptr<AppEntry> row(at(cursor)); row) {
        forgetByFile(row.get());
        m_baseNames.remove(row.get());
        m_names.remove(row.get());
        m_windows.remove(row.get());
        forgetInstance(*row);
        removeAt(cursor);
    }
}

void AppTable::removeRow(AppEntry* row) {
    Cursor cursor = row->place.node;
    removeRow(&cursor);
}

bool AppTable::hasSeveralRows(HWND window) const {
    const AppEntry* row = m_windows.newest(window);
    return row && m_windows.older(*row);
}

// The newest row with a key that is no newer than `from` and has all that is wanted.
template <typename Table, typename Value>
AppEntry* AppTable::firstIn(const Table& table, const Value& key, const AppEntry& from,
                            const Wanted& wanted) {
    AppEntry* row = table.newest(key);
    while (row && (row->place.age > from.place.age || !wanted.matches(*row))) {
        row = table.older(*row);
    }
    return row;
}

AppEntry* AppTable::findRow(Cursor* cursor, HWND window, const char* name, bool exact) const {
    AppEntry* from = at(cursor);
    if (!from) {
        return nullptr;
    }
    const Wanted wanted{window, name, exact};
    AppEntry* row = window  ? firstIn(m_windows, window, *from, wanted)
                    : !name ? from
                    : exact ? firstIn(m_names, std::string_view(name), *from, wanted)
                            : firstIn(m_baseNames, std::string_view(name), *from, wanted);
    *cursor = row ? row->place.node : atTail();
    return row;
}

int AppTable::nextInstance(std::string_view baseName) const {
    const auto instances = m_instances.find(baseName);
    return instances == m_instances.end() ? 0 : instances->second.rbegin()->first + 1;
}

void AppTable::countInstance(const AppEntry& row) {
    ++m_instances[std::string(row.baseName())][row.instance];
}

void AppTable::forgetInstance(const AppEntry& row) {
    const auto instances = m_instances.find(row.baseName());
    const auto number = instances->second.find(row.instance);
    if (--number->second == 0) {
        instances->second.erase(number);
    }
    if (instances->second.empty()) {
        m_instances.erase(instances);
    }
}

}  // namespace juntora
