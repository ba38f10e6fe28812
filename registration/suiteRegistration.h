// Registering all servers of the suite, or a table of them, in one pass. Whose registry it goes to
// follows from the rights of the process: the machine's for an administrator, else the user's own.
//
// Nothing stops a run: a server that fails costs a line, and the next one follows. The run changes
// the environment and blocks on each server; see serverRegistration.h for its thread.
#pragma once

#include <functional>
#include <span>

#include "registration/serverRegistration.h"
#include "registration/serverTables.h"

namespace juntora {

/// The whole run, over the deployment's tables (serverTables.h), the schematic group first. An
/// ordinary user's servers find OAPERUSERTLIBREG set to "1" in their environment, for the time of
/// the run; PATH loses its double quotes for good. `force` zero leaves alone what is in order;
/// `doRegister` zero unregisters. `report`, which may be null, gets a line for each registrar that
/// ran or failed to. `exitFunctions` goes with the schematic group and may be null. Returns 1.
int registerSuiteServers(int force, int doRegister, ReportFn report, void* exitFunctions);

/// The same for `count` rows of a table, null only for none, without the environment's part. The
/// running program's own row is passed over; where a development tree is in use
/// (setup/programTree.h) its folder is tried first. Returns 1.
int registerServerList(int force, int doRegister, const ServerRow* rows, int count, ReportFn report,
                       void* exitFunctions);

/// Is told of each row twice: before it, with null, and behind it. Where two places were tried,
/// that is the result of the second, or of the first if the second is not there, with the lines and
/// failures of both.
using ServerWatch = std::function<void(const ServerRow& row, const ServerResult* result)>;

/// What both are made of.
void runServerList(bool force, bool doRegister, std::span<const ServerRow> rows,
                   const ServerWatch& watch, void* exitFunctions);
void runSuite(bool force, bool doRegister, const ServerTables& tables, const ServerWatch& watch,
              void* exitFunctions);

}  // namespace juntora
