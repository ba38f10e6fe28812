// Taking the suite's classes out of an administrator's own part of the registry, where they hide
// those of the machine.
#pragma once

#include <string>
#include <vector>

#include "platform/types.h"
#include "registration/dataFile.h"

namespace juntora {

/// Deletes the keys of the deployment's "cleanup.txt" below HKEY_CURRENT_USER: for each identifier
/// its class, interface and library, and the first two once more below Wow6432Node; then each
/// programmatic name. For an administrator; anybody else's registrations stay. Failures are passed
/// over. Returns 1.
int cleanUserRegistrations();

struct CleanUpTable {
    std::vector<std::string> identifiers;  ///< 36 characters, no braces.
    std::vector<std::string> names;
    bool isWhole = true;  ///< Nothing was wrong with the file.

    /// The keys below HKEY_CURRENT_USER, in the order of deletion.
    std::vector<std::string> keys() const;
};

/// Adds what one line says. Returns what is wrong with it, empty for nothing.
std::string addCleanUpLine(const Words& words, CleanUpTable* table);

/// Reads the file, anew at each call. What is wrong with it is told as readDataFile does.
CleanUpTable readCleanUp();

/// Those keys of the table that are there, each once. ERROR_SUCCESS, or why it cannot be told.
DWORD findPresentKeys(const CleanUpTable& table, std::vector<std::string>* present);

/// Deletes all keys of the table, whoever the user is. Failures are passed over.
void deleteKeys(const CleanUpTable& table);

}  // namespace juntora
