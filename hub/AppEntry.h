// One row of the application table.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "common/AppList.h"
#include "common/PathName.h"
#include "hub/RowPlace.h"
#include "platform/types.h"

namespace juntora {

struct FreeWatchers {
    void operator()(AppList* watchers) const;
};
/// The windows to tell when a row departs, the newest registration first. Each value is a heap word
/// (HWND) of its own, which goes with the list.
using WatchList = std::unique_ptr<AppList, FreeWatchers>;

/// A tool that runs, or one of the files that it holds. `name` and `window` stay what they are for
/// as long as the row is in a table, which finds it by them. It begins on a cache line of its own,
/// so that name and window are read with one miss.
struct alignas(64) AppEntry {
    /// A `fileText` of null makes a row without a file, whatever `rowAccess` says.
    AppEntry(std::string_view rowName, std::int32_t rowInstance, HWND rowWindow,
             std::uint32_t rowPrimary, std::int32_t rowToolIndex, std::uint32_t rowAccess,
             const char* fileText);

    /// The row's name before its last semicolon, or all of it.
    std::string_view baseName() const;
    /// Puts a window in front of the watchers; the same one may stand there several times.
    void addWatcher(HWND watcher);

    std::string name;        ///< Unique name: base name, semicolon, instance number.
    std::int32_t instance;   ///< The number behind the semicolon.
    HWND window;             ///< The client's id.
    std::uint32_t primary;   ///< 1 in the row that a sign-on made, 0 in one for a further file.
    std::uint32_t access;    ///< How the file is held: 1 read, 2 write, 3 both; 0 without a file.
    std::uint32_t flags;     ///< Bits that clients set on the file.
    PathName file;           ///< Empty in a row without a file.
    WatchList watchers;      ///< Null until the first watch.
    std::int32_t toolIndex;  ///< Row of ToolTable, -1 for a tool that the suite does not know.
    RowPlace place;          ///< Of use to the table that holds the row.
};

/// The part of a unique name before its last semicolon, or all of it if it has none.
std::string_view baseNameOf(std::string_view name);

/// The unique name of the instance `instance` of a tool.
std::string uniqueName(std::string_view baseName, std::int32_t instance);

}  // namespace juntora
