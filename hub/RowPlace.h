// Where a row stands in the table that holds it.
#pragma once

#include <cstdint>

#include "common/AppList.h"

namespace juntora {

struct AppEntry;

/// What rows can have in common. The table finds the rows of each such key without a walk.
enum class RowKey { WINDOW, NAME, BASE_NAME, FILE };
inline constexpr int ROW_KEYS = 4;

/// Kept by the table alone, in the row itself so that finding it touches as little memory as can
/// be.
struct RowPlace {
    struct Neighbours {
        AppEntry* newer = nullptr;
        AppEntry* older = nullptr;
    };
    /// The next rows with the same key, by RowKey.
    Neighbours neighbours[ROW_KEYS];
    /// Grows with each row that comes: the order of ages is the list's own.
    std::uint64_t age = 0;
    AppNode* node = nullptr;
};

}  // namespace juntora
