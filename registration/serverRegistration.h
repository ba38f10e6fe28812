// Registering one server of the suite.
//
// Not for a thread beside others that read the environment; the message service's thread
// (messages/messageText.h). Blocks for as long as the server's registrar does.
#pragma once

#include <string>
#include <vector>

#include "registration/ServerRow.h"
#include "registration/registrars.h"

namespace juntora {

/// Takes the text of one result line. May be null, as a function of this type.
using ReportFn = void (*)(const char* line);

struct ServerResult {
    ServerOutcome outcome;
    std::string path;
    std::vector<std::string> lines{};     ///< What is reported.
    std::vector<std::string> failures{};  ///< What went wrong, for a person, a line each.

    bool isSuccess() const {
        return outcome == ServerOutcome::DONE || outcome == ServerOutcome::IN_ORDER;
    }
};

/// Registers (`doRegister` non-zero) or unregisters the server at `path`, as its kind has it. With
/// `force` zero, one that is registered at that path already is left in order. A path with "_g" in
/// it and a kind that is none of the three ("DLL", "OCX", "EXE", exactly) are passed over; one with
/// a double quote in it fails. Each registrar that ran, or failed to, is reported.
ServerResult runServer(bool force, bool doRegister, const std::string& kind,
                       const std::string& path, const std::string& classId,
                       const std::string& serverKey, void* exitFunctions);

/// Hands the lines to `report`, which may be null.
void reportLines(const ServerResult& result, ReportFn report);

/// Takes the class of a resident server out of the registry without starting the server.
ServerResult unregisterResident(const ServerRow& row, const std::string& path);

/// runServer() for who wants to know no more than 1, success or nothing to be done, and 0. Texts
/// are not null; `report` and `exitFunctions` may be.
int registerServer(int force, int doRegister, const char* kind, const char* path,
                   const char* classId, const char* serverKey, ReportFn report,
                   void* exitFunctions);

}  // namespace juntora
