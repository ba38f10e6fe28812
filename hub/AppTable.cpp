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

namespace {

AppEntry* rowOf(AppNode* node) { return static_cast<AppEntry*>(node->value); }

}  // namespace

AppTable::~AppTable() {
    for (Cursor cursor = atHead(); cursor;) {
        removeRow(&cursor);
    }
}

AppEntry* AppTable::pushFront(std::unique_ptr<AppEntry> row) {
    Cursor cursor = AppList::pushFront(row.get());
    try {
        m_index.add(cursor);
        try {
            m_files.add(cursor);
        } catch (...) {
            m_index.remove(cursor);
            throw;
        }
    } catch (...) {
        removeAt(&cursor);
        throw;
    }
    return row.release();
}

void AppTable::removeRow(Cursor* cursor) {
    if (const std::unique_ptr<AppEntry> row(at(cursor)); row) {
        m_files.remove(row.get());
        m_index.remove(*cursor);
        removeAt(cursor);
    }
}

void AppTable::removeRow(AppEntry* row) {
    Cursor cursor = m_files.nodeOf(row);
    removeRow(&cursor);
}

bool AppTable::hasSeveralRows(HWND window) const {
    const RowIndex::Rows* rows = m_index.ofWindow(window);
    return rows && rows->size() > 1;
}

AppEntry* AppTable::findRow(Cursor* cursor, HWND window, const char* name, bool exact) const {
    if (!at(cursor)) {
        return nullptr;
    }
    const Wanted wanted{window, name, exact};
    AppNode* node = *cursor;
    if (node == atHead()) {
        node = findFromHead(wanted);
    } else {
        while (node && !wanted.matches(*rowOf(node))) {
            node = node->next;
        }
    }
    *cursor = node ? node : atTail();
    return node ? rowOf(node) : nullptr;
}

// What a walk from the head would find: the list only ever grows at its head, so the rows that the
// index holds under a key stand there in the list's own order.
AppNode* AppTable::findFromHead(const Wanted& wanted) const {
    if (!wanted.window && !wanted.name) {
        return atHead();
    }
    const RowIndex::Rows* rows = wanted.window  ? m_index.ofWindow(wanted.window)
                                 : wanted.exact ? m_index.ofName(wanted.name)
                                                : m_index.ofBaseName(wanted.name);
    if (!rows) {
        return nullptr;
    }
    if (!wanted.window || !wanted.name) {
        return rows->front();  // The key was all that is asked for.
    }
    for (AppNode* node : *rows) {
        if (wanted.matches(*rowOf(node))) {
            return node;
        }
    }
    return nullptr;
}

}  // namespace juntora
