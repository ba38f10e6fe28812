// What the indexes of the table have in common: rows under a key, and no key without rows.
#pragma once

namespace juntora {

/// The rows of a key, null if it has none.
template <typename Map, typename Key>
auto rowsOf(const Map& map, const Key& key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

/// Takes a place out of the rows of a key, and the key with its last row.
template <typename Map, typename Key, typename Place>
void forgetRow(Map& map, const Key& key, const Place& place) {
    const auto found = map.find(key);
    found->second.erase(place);
    if (found->second.empty()) {
        map.erase(found);
    }
}

}  // namespace juntora
