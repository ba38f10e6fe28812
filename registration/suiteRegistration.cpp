#include "registration/suiteRegistration.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "common/CaseBlind.h"
#include "common/PerUserRegistration.h"
#include "platform/kernel/hostEnvironment.h"
#include "platform/kernel/process.h"
#include "setup/programTree.h"

namespace juntora {
namespace {

constexpr char PER_USER[] = "OAPERUSERTLIBREG";
constexpr char SEARCH_PATH[] = "PATH";

std::string_view withoutExtension(std::string_view name) {
    constexpr std::string_view EXTENSION = ".exe";
    const std::size_t length = name.size() - std::min(EXTENSION.size(), name.size());
    return equalCaseBlind(name.substr(length), EXTENSION) ? name.substr(0, length) : name;
}

/// As the file of a program may or may not have the extension here.
bool isSelf(const ServerRow& row) {
    char path[4096];
    const std::string self(path, GetModuleFileNameA(path, sizeof path));
    return equalCaseBlind(withoutExtension(row.fileName),
                          withoutExtension(self.substr(self.rfind('/') + 1)));
}

/// In the environment of this process and of all servers while it lives, unless it is there anyway.
class PerUserWord {
public:
    PerUserWord() {
        const char* word = GetEnvironment(PER_USER);
        if (!IsUserAdministrator() && (word == nullptr || std::string_view(word) != "1")) {
            m_isOurs = true;
            PutEnvironment((std::string(PER_USER) + "=1").c_str());
        }
    }
    ~PerUserWord() {
        if (m_isOurs) {
            PutEnvironment((std::string(PER_USER) + "=").c_str());
        }
    }
    PerUserWord(const PerUserWord&) = delete;
    PerUserWord& operator=(const PerUserWord&) = delete;

private:
    bool m_isOurs = false;
};

/// As this machine has it: the platform's form would leave out folders that are not there.
void removeQuotesFromSearchPath() {
    std::string path = kernel::hostEnvironment(SEARCH_PATH);
    if (std::erase(path, '"') > 0) {
        PutEnvironment((std::string(SEARCH_PATH) + "=" + path).c_str());
    }
}

/// The rows of one table, with what they have in common.
class ListRun {
public:
    ListRun(bool force, bool doRegister, void* exitFunctions)
        : m_force(force), m_doRegister(doRegister), m_exitFunctions(exitFunctions) {}

    ServerResult run(const ServerRow& row) const {
        if (isSelf(row)) {
            return {ServerOutcome::PASSED_OVER, m_tree.folderOf(row.toolDir) + row.fileName};
        }
        ServerResult result = runIn(m_tree.folderOf(row.toolDir), row);
        if (m_tree.development.empty() || result.isSuccess()) {
            return result;
        }
        const ServerResult second = runIn(m_tree.installedFolder(row.toolDir), row);
        if (second.outcome != ServerOutcome::NOT_FOUND) {
            result.outcome = second.outcome;
            result.path = second.path;
        }
        std::ranges::copy(second.lines, std::back_inserter(result.lines));
        std::ranges::copy(second.failures, std::back_inserter(result.failures));
        return result;
    }

private:
    ServerResult runIn(const std::string& folder, const ServerRow& row) const {
        const std::string path = folder + row.fileName;
        return !row.residentName.empty() && !m_doRegister
                   ? unregisterResident(row, path)
                   : runServer(m_force, m_doRegister, row.kind, path, row.classId, row.serverKey,
                               m_exitFunctions);
    }

    const bool m_force;
    const bool m_doRegister;
    void* const m_exitFunctions;
    const ProgramTree m_tree = LocateProgramTree();
};

ServerWatch reportTo(ReportFn report) {
    return [report](const ServerRow&, const ServerResult* result) {
        if (result != nullptr) {
            reportLines(*result, report);
        }
    };
}

}  // namespace

int registerSuiteServers(int force, int doRegister, ReportFn report, void* exitFunctions) {
    runSuite(force != 0, doRegister != 0, readServerTables(), reportTo(report), exitFunctions);
    return 1;
}

int registerServerList(int force, int doRegister, const ServerRow* rows, int count, ReportFn report,
                       void* exitFunctions) {
    const std::span<const ServerRow> table(rows, static_cast<std::size_t>(count > 0 ? count : 0));
    runServerList(force != 0, doRegister != 0, table, reportTo(report), exitFunctions);
    return 1;
}

void runServerList(bool force, bool doRegister, std::span<const ServerRow> rows,
                   const ServerWatch& watch, void* exitFunctions) {
    const ListRun list(force, doRegister, exitFunctions);
    for (const ServerRow& row : rows) {
        watch(row, nullptr);
        const ServerResult result = list.run(row);
        watch(row, &result);
    }
}

void runSuite(bool force, bool doRegister, const ServerTables& tables, const ServerWatch& watch,
              void* exitFunctions) {
    const PerUserWord perUser;
    removeQuotesFromSearchPath();
    runServerList(force, doRegister, tables.schematic, watch, exitFunctions);
    runServerList(force, doRegister, tables.simulation, watch, nullptr);
}

}  // namespace juntora
