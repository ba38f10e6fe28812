// A line of a deployment's table, of any of the three kinds: what is taken from it must not name
// anything but what the table is for, nor bring lines of its own into what is made of it.
#include "registration/desktopTypes.h"
#include "registration/serverTables.h"
#include "registration/userCleanUp.h"
#include "tests/fuzz/Fuzz.h"

using namespace juntora;

static bool hasSeparator(const std::string& text) {
    return text.find_first_of("/\\\"") != text.npos;
}

static void checkServers(const Words& words) {
    ServerTables tables;
    addServerRow(words, &tables);
    for (const ServerRow& row : tables.simulation) {
        mustHold(!hasSeparator(row.toolDir) && !hasSeparator(row.fileName),
                 "a row is in its folder");
        mustHold(row.toolDir != ".." && row.classId.size() == 36, "a row is in its form");
    }
}

static void checkAssociations(const Words& words) {
    AssociationTable table;
    addAssociationRow(words, &table);
    for (const KeyWrite& write : associationWrites(table.rows)) {
        mustHold(write.key.starts_with("SOFTWARE\\CLASSES\\") && write.key.size() > 17,
                 "a write is below the classes");
    }
    for (const AssociationRow& row : table.rows) {
        const DesktopType type{row.extension, row.display, row.program, row.display};
        const std::string text = row.extension.empty() ? "" : desktopEntryText(type);
        const auto lines = std::count(text.begin(), text.end(), '\n');
        mustHold(text.empty() || lines == 8, "an entry has the lines that it is to have");
    }
}

static void checkCleanUp(const Words& words) {
    CleanUpTable table;
    addCleanUpLine(words, &table);
    for (const std::string& key : table.keys()) {
        const std::string name = key.substr(key.rfind('\\') + 1);
        mustHold(name.front() == '{' || name.find('.') > 0, "no key of others is deleted");
        mustHold(key.starts_with("Software\\Classes\\"), "a key is below the classes");
    }
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    Words words;
    if (splitDataLine(input.text(), &words).empty() && !words.empty()) {
        for (const std::string& word : words) {
            mustHold(word.find_first_of("\n\r") == word.npos, "a word is of one line");
        }
        checkServers(words);
        checkAssociations(words);
        checkCleanUp(words);
    }
    return 0;
}
