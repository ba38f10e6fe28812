// By what the table finds its rows.
#pragma once

#include <string_view>

#include "common/CaseBlind.h"
#include "hub/AppEntry.h"

namespace juntora {

struct WindowKey {
    using Value = HWND;
    static constexpr RowKey KEY = RowKey::WINDOW;
    static HWND of(const AppEntry& row) { return row.window; }
    static constexpr bool HASH_TELLS_ALL = true;
    static std::size_t hash(HWND window) { return window; }
};

/// Of texts without regard to case.
struct TextKey {
    using Value = std::string_view;
    static constexpr bool HASH_TELLS_ALL = false;
    static std::size_t hash(std::string_view text) { return CaseBlindHash()(text); }
    static bool equal(std::string_view left, std::string_view right) {
        return equalCaseBlind(left, right);
    }
};

struct NameKey : TextKey {
    static constexpr RowKey KEY = RowKey::NAME;
    static std::string_view of(const AppEntry& row) { return row.name; }
};

struct BaseNameKey : TextKey {
    static constexpr RowKey KEY = RowKey::BASE_NAME;
    static std::string_view of(const AppEntry& row) { return row.baseName(); }
};

/// For rows with a file. Those without one share the link and stand under their window instead.
struct FileKey : TextKey {
    static constexpr RowKey KEY = RowKey::FILE;
    static std::string_view of(const AppEntry& row) { return row.file.c_str(); }
};

struct IdleKey : WindowKey {
    static constexpr RowKey KEY = RowKey::FILE;
};

}  // namespace juntora
