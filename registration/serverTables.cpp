#include "registration/serverTables.h"

#include <algorithm>
#include <iterator>

#include "platform/automation/guid.h"

namespace juntora {
namespace {

constexpr char FILE_NAME[] = "servers.txt";
constexpr std::size_t LEAST_WORDS = 6;
constexpr char RESIDENT[] = "resident";

struct Kind {
    const char* name;
    const char* serverKey;
};
constexpr Kind KINDS[] = {
    {"DLL", "InprocServer32"}, {"OCX", "InprocServer32"}, {"EXE", "LocalServer32"}};

std::string problemOf(const ServerRow& row) {
    const Kind* kind =
        std::ranges::find_if(KINDS, [&](const Kind& each) { return row.kind == each.name; });
    if (kind == std::end(KINDS)) {
        return "\"" + row.kind + "\" is no kind of server: DLL, OCX and EXE are";
    }
    if (!isPlainName(row.toolDir) || !isPlainName(row.fileName)) {
        return "the tool's folder and the file are names without separators, quotes and \"%\"";
    }
    if (row.serverKey != kind->serverKey) {
        return "the path of a server of the kind " + row.kind + " stands in " + kind->serverKey;
    }
    if (!GuidOfText("{" + row.classId + "}")) {
        return "\"" + row.classId + "\" is no class identifier of 36 characters without braces";
    }
    return "";
}

}  // namespace

std::string addServerRow(const Words& words, ServerTables* tables) {
    const bool isResident = words.size() == LEAST_WORDS + 2 && words[LEAST_WORDS] == RESIDENT &&
                            isPlainName(words.back());
    if (words.size() != LEAST_WORDS && !isResident) {
        return "a server has six words: group, kind, tool folder, file, server key and class "
               "identifier; \"resident\" and the name of its class may follow";
    }
    const ServerRow row{words[1], words[2], words[3],
                        words[4], words[5], isResident ? words.back() : ""};
    if (std::string problem = problemOf(row); !problem.empty()) {
        return problem;
    }
    if (words[0] == "schematic") {
        tables->schematic.push_back(row);
    } else if (words[0] == "simulation") {
        tables->simulation.push_back(row);
    } else {
        return "\"" + words[0] + "\" is no group: schematic and simulation are";
    }
    return "";
}

ServerTables readServerTables() {
    ServerTables tables;
    tables.isWhole =
        readDataFile(FILE_NAME, [&](const Words& words) { return addServerRow(words, &tables); });
    return tables;
}

}  // namespace juntora
