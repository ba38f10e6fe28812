#include "hub/RowIndex.h"

#include "hub/KeyedRows.h"

namespace juntora {
namespace {

const AppEntry& rowOf(const AppNode* node) { return *static_cast<const AppEntry*>(node->value); }

}  // namespace

// All that can fail comes first, so that a row is entered wholly or not at all.
void RowIndex::add(AppNode* node) {
    const AppEntry& row = rowOf(node);
    Rows byWindow{node};
    Rows byName{node};
    Rows byBaseName{node};
    Rows& ofSameWindow = m_windows[row.window];
    Rows& ofSameName = m_names[row.name];
    Family& family = m_families[std::string(row.baseName())];
    m_places[node] = {byWindow.begin(), byName.begin(), byBaseName.begin()};
    ++family.instances[row.instance];

    ofSameWindow.splice(ofSameWindow.begin(), byWindow);
    ofSameName.splice(ofSameName.begin(), byName);
    family.rows.splice(family.rows.begin(), byBaseName);
}

void RowIndex::remove(AppNode* node) {
    const auto known = m_places.find(node);
    const AppEntry& row = rowOf(node);
    const Places& places = known->second;
    forgetRow(m_windows, row.window, places.byWindow);
    forgetRow(m_names, row.name, places.byName);

    const auto family = m_families.find(row.baseName());
    Instances& instances = family->second.instances;
    if (const auto number = instances.find(row.instance); --number->second == 0) {
        instances.erase(number);
    }
    family->second.rows.erase(places.byBaseName);
    if (family->second.rows.empty()) {
        m_families.erase(family);
    }
    m_places.erase(known);
}

const RowIndex::Rows* RowIndex::ofWindow(HWND window) const { return rowsOf(m_windows, window); }

const RowIndex::Rows* RowIndex::ofName(std::string_view name) const {
    return rowsOf(m_names, name);
}

const RowIndex::Rows* RowIndex::ofBaseName(std::string_view baseName) const {
    const auto family = m_families.find(baseName);
    return family == m_families.end() ? nullptr : &family->second.rows;
}

int RowIndex::nextInstance(std::string_view baseName) const {
    const auto family = m_families.find(baseName);
    return family == m_families.end() ? 0 : family->second.instances.rbegin()->first + 1;
}

}  // namespace juntora
