// The suite's document types as a desktop of this machine knows them, so that a file manager opens
// a document with its tool: a MIME type and an entry for each in the user's data folder
// ($XDG_DATA_HOME, else ~/.local/share), in
//   mime/packages/voltara-documents.xml
//   applications/voltara-EXTENSION.desktop
// Files of these names that somebody else has written are left alone. Each file is whole at any
// time. The desktop's own programs are run each time, where they are installed, that make its
// indices of them; nobody waits longer for these than for a server (boundedRun.h).
#pragma once

#include <string>
#include <vector>

#include "registration/associationRows.h"

namespace juntora {

struct DesktopType {
    std::string extension;  ///< With its dot.
    std::string display;    ///< What a person calls such a document.
    std::string tool;       ///< What a person calls the tool.
    std::string program;    ///< The tool's file, an absolute path of this machine; empty for none.
};

/// The types that open with a tool of the suite; of several rows for an extension the last counts.
std::vector<DesktopType> desktopTypes(const std::vector<AssociationRow>& rows);

/// Makes the types whose tool is there known, and takes those away that are no longer among them.
/// Without any that is all. Returns what could not be written or removed, for a person, a line
/// each.
std::vector<std::string> writeDesktopTypes(const std::vector<DesktopType>& types);

/// Takes all of them away.
std::vector<std::string> removeDesktopTypes();

/// The two files, as texts.
std::string mimePackageText(const std::vector<DesktopType>& types);
std::string desktopEntryText(const DesktopType& type);

}  // namespace juntora
