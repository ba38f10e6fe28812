#include "registration/associationRows.h"

#include <algorithm>
#include <string_view>

namespace juntora {
namespace {

constexpr char FILE_NAME[] = "associations.txt";
constexpr char VERSION[] = "16.6.0";
constexpr char PREFIX[] = "SOFTWARE\\CLASSES\\";
constexpr char NOTHING[] = "-";
constexpr char DDE[] = "dde";

std::string orNothing(const std::string& word) { return word == NOTHING ? "" : word; }

bool isExtension(std::string_view text) {
    constexpr std::string_view LETTERS =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_+-";
    return text.size() > 1 && text.front() == '.' &&
           text.find_first_not_of(LETTERS, 1) == text.npos;
}

bool isNumber(std::string_view text) {
    return !text.empty() && text.size() <= 4 && text.find_first_not_of("0123456789") == text.npos;
}

std::string problemOf(const AssociationRow& row) {
    const bool hasExtension = row.kind != AssociationKind::CLASS;
    const bool hasProgram = row.kind == AssociationKind::CLASS || row.kind == AssociationKind::TYPE;
    if (!isPlainName(row.name)) {
        return "\"" + row.name + "\" is no name of a class";
    }
    if (hasExtension && !isExtension(row.extension)) {
        return "\"" + row.extension + "\" is no extension: one is a dot, and letters and digits";
    }
    if (hasProgram && (!isPlainName(row.program) || !isPlainName(row.toolDir))) {
        return "the program and its tool folder are names without separators, quotes and \"%\"";
    }
    if (!row.icon.empty() && !isNumber(row.icon)) {
        return "\"" + row.icon + "\" is no number of an icon";
    }
    return row.kind == AssociationKind::TYPE && row.icon.empty() ? "a type has an icon" : "";
}

std::string add(AssociationRow row, AssociationTable* table) {
    std::string problem = problemOf(row);
    if (problem.empty()) {
        table->rows.push_back(std::move(row));
    }
    return problem;
}

}  // namespace

std::string AssociationRow::className() const {
    switch (kind) {
        case AssociationKind::SYSTEM:
            return name;
        case AssociationKind::TYPE:
            return name + VERSION + extension;
        default:
            return name + VERSION;
    }
}

std::string addAssociationRow(const Words& words, AssociationTable* table) {
    using enum AssociationKind;
    const std::string& word = words.front();
    if (word == "class" && words.size() == 6) {
        return add({.kind = CLASS,
                    .name = words[1],
                    .display = orNothing(words[2]),
                    .program = words[3],
                    .toolDir = words[4],
                    .icon = orNothing(words[5])},
                   table);
    }
    if ((word == "extension" || word == "system") && words.size() == 3) {
        return add({.kind = word == "system" ? SYSTEM : EXTENSION,
                    .name = words[2],
                    .extension = words[1]},
                   table);
    }
    const bool isDde = words.size() == 8 && words.back() == DDE;
    if (word == "type" && (words.size() == 7 || isDde)) {
        return add({.kind = TYPE,
                    .name = words[1],
                    .extension = words[2],
                    .display = words[3],
                    .program = words[4],
                    .toolDir = words[5],
                    .icon = orNothing(words[6]),
                    .isDde = isDde},
                   table);
    }
    return "a line is one of: class STEM DISPLAY PROGRAM TOOLFOLDER ICON; extension .EXT STEM; "
           "system .EXT CLASS; type STEM .EXT DISPLAY PROGRAM TOOLFOLDER ICON [dde]";
}

AssociationTable readAssociations() {
    AssociationTable table;
    table.isWhole = readDataFile(
        FILE_NAME, [&](const Words& words) { return addAssociationRow(words, &table); });
    return table;
}

std::vector<KeyWrite> associationWrites(const std::vector<AssociationRow>& rows) {
    std::vector<KeyWrite> writes;
    for (const AssociationRow& row : rows) {
        const std::string key = PREFIX + row.className();
        if (!row.display.empty()) {
            writes.push_back({key, row.display});
        }
        if (!row.icon.empty()) {
            writes.push_back({key + "\\DefaultIcon", row.program + "," + row.icon});
        }
        if (!row.program.empty()) {
            writes.push_back(
                {key + "\\shell\\open\\command", row.program + (row.isDde ? " /dde" : " \"%1\"")});
        }
        if (row.isDde) {
            writes.push_back({key + "\\shell\\open\\ddeexec", "[open(\"%1\")]"});
        }
        if (!row.extension.empty()) {
            writes.push_back({PREFIX + row.extension, row.className()});
        }
    }
    return writes;
}

}  // namespace juntora
