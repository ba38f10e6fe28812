// The servers of the suite, from the deployment's "servers.txt".
#pragma once

#include <string>
#include <vector>

#include "registration/ServerRow.h"
#include "registration/dataFile.h"

namespace juntora {

/// In the order of registration.
struct ServerTables {
    std::vector<ServerRow> schematic;
    std::vector<ServerRow> simulation;
    bool isWhole = true;  ///< Nothing was wrong with the file.
};

/// Reads both, anew at each call. What is wrong with the file is told as readDataFile does.
ServerTables readServerTables();

/// Adds the row of one line. Returns what is wrong with it, empty for nothing.
std::string addServerRow(const Words& words, ServerTables* tables);

}  // namespace juntora
