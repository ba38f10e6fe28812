// The document types of the suite in the registry of the user, and on the desktop.
#pragma once

#include <string>
#include <vector>

#include "registration/desktopTypes.h"

namespace juntora {

/// Writes the keys of all document types (associationRows.h) below HKEY_CURRENT_USER, in the order
/// of the deployment's table, and makes the types known to the desktop (desktopTypes.h). What
/// cannot be written stops nothing. Returns 1.
int registerFileAssociations();

struct AssociationReport {
    std::vector<KeyWrite> failed;       ///< What the registry did not take.
    std::vector<std::string> problems;  ///< What the desktop did not, a line each.
    std::vector<DesktopType> types;
    std::size_t written = 0;  ///< Keys.
    bool isWhole = true;      ///< Nothing was wrong with the table.
};

/// The same, for who wants to know what has become of it.
AssociationReport writeFileAssociations();

}  // namespace juntora
