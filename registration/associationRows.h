// The document types of the suite, from the deployment's "associations.txt".
//
// A class of documents has a name made of a stem and the suite's version, "Draftel16.6.0". Which
// extensions belong to it is told by lines of their own; a type is a class for one extension, of
// that name with the extension behind it, "Voltara16.6.0.cir".
#pragma once

#include <string>
#include <vector>

#include "registration/dataFile.h"

namespace juntora {

enum class AssociationKind {
    CLASS,      ///< A class: its key with the display name, the icon, the command.
    EXTENSION,  ///< An extension that belongs to a class of the suite.
    SYSTEM,     ///< An extension that belongs to a class of the system's.
    TYPE,       ///< A type: all that a class has, and the extension that belongs to it.
};

struct AssociationRow {
    AssociationKind kind;
    std::string name;         ///< The stem; for SYSTEM the class as it is.
    std::string extension{};  ///< With its dot.
    std::string display{};    ///< Empty: the class has no value of its own.
    std::string program{};    ///< The file that opens such documents, without its folder.
    std::string toolDir{};    ///< The program's folder below the tools of the install root.
    std::string icon{};       ///< Its number in the program; empty for none.
    bool isDde = false;       ///< A program that runs is told of the document.

    /// For all kinds: the name of the class that the row is about, or that the extension gets.
    std::string className() const;
};

struct AssociationTable {
    std::vector<AssociationRow> rows;
    bool isWhole = true;  ///< Nothing was wrong with the file.
};

/// Reads all, anew at each call. What is wrong with the file is told as readDataFile does.
AssociationTable readAssociations();

/// Adds the row of one line. Returns what is wrong with it, empty for nothing.
std::string addAssociationRow(const Words& words, AssociationTable* table);

/// A key of the registry and its default value.
struct KeyWrite {
    std::string key;
    std::string value;
};

/// What is written below HKEY_CURRENT_USER for the rows, in order.
std::vector<KeyWrite> associationWrites(const std::vector<AssociationRow>& rows);

}  // namespace juntora
