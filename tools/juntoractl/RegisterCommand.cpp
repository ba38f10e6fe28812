// register: the suite's servers, one after the other. No hub takes part.
#include "registration/boundedRun.h"
#include "registration/classKeys.h"
#include "registration/desktopTypes.h"
#include "registration/suiteRegistration.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"
#include "tools/juntoractl/ProgressBar.h"

namespace juntora {
namespace {

constexpr std::size_t WORD_WIDTH = 16;

struct Options {
    bool unregister = false;
    bool force = false;
    bool json = false;
};

const char* wordOf(ServerOutcome outcome, bool doRegister) {
    switch (outcome) {
        case ServerOutcome::DONE:
            return doRegister ? "registered" : "unregistered";
        case ServerOutcome::IN_ORDER:
            return doRegister ? "in order" : "not registered";
        case ServerOutcome::PASSED_OVER:
            return "passed over";
        case ServerOutcome::NOT_FOUND:
            return "not there";
        case ServerOutcome::NOT_LOADED:
            return "not loaded";
        case ServerOutcome::NO_REGISTRAR:
            return "no registrar";
        default:
            return "failed";
    }
}

bool isFailure(ServerOutcome outcome) {
    return outcome == ServerOutcome::FAILED || outcome == ServerOutcome::NOT_LOADED ||
           outcome == ServerOutcome::NO_REGISTRAR;
}

/// Whether a server that has been asked has done it, of which the registry alone tells.
bool isConfirmed(const ServerRow& row, const ServerResult& result, bool doRegister) {
    return findClass(row.classId.c_str(), row.serverKey.c_str(), result.path.c_str()) ==
           (doRegister ? ClassPlace::HERE : ClassPlace::NOWHERE);
}

std::string doubtOf(const ServerRow& row, const ServerResult& result, bool doRegister) {
    return result.path + " has been asked, but its class {" + row.classId + "} is " +
           (doRegister ? "not registered at this place" : "still registered, or cannot be read") +
           ". If it is running, end it; see that the registry can be read and written; and try "
           "again.";
}

/// A line for each server as it comes.
class Listing {
public:
    Listing(const Options& options, std::size_t count) : m_options(options), m_bar(count) {}

    void add(const ServerRow& row, const ServerResult* result) {
        if (result == nullptr) {
            m_bar.show(m_done, row.fileName);
            return;
        }
        ++m_done;
        m_bar.clear();
        const bool doRegister = !m_options.unregister;
        const bool isInDoubt =
            result->outcome == ServerOutcome::DONE && !isConfirmed(row, *result, doRegister);
        print(row, *result, isInDoubt ? "not confirmed" : wordOf(result->outcome, doRegister));
        for (const std::string& failure : result->failures) {
            complain(failure);
        }
        if (isInDoubt) {
            complain(doubtOf(row, *result, doRegister));
        }
        m_hasFailed = m_hasFailed || isInDoubt || isFailure(result->outcome);
    }
    bool hasFailed() const { return m_hasFailed; }

private:
    void print(const ServerRow& row, const ServerResult& result, const std::string& word) const {
        if (!m_options.json) {
            printLine(word + std::string(WORD_WIDTH - word.size(), ' ') + result.path);
            return;
        }
        printJson({{"file", row.fileName},
                   {"kind", row.kind},
                   {"class", row.classId},
                   {"path", result.path},
                   {"scope", classScope().word},
                   {"result", word},
                   {"lines", result.lines},
                   {"failures", result.failures}});
    }

    const Options& m_options;
    ProgressBar m_bar;
    std::size_t m_done = 0;
    bool m_hasFailed = false;
};

int run(const Options& options) {
    if (const std::string problem = patienceProblem(); !problem.empty()) {
        complain(problem);
    }
    const ServerTables tables = readServerTables();
    Listing listing(options, tables.schematic.size() + tables.simulation.size());
    runSuite(
        options.force, !options.unregister, tables,
        [&](const ServerRow& row, const ServerResult* result) { listing.add(row, result); },
        nullptr);
    bool isDone = tables.isWhole && !listing.hasFailed();
    if (options.unregister) {
        for (const std::string& problem : removeDesktopTypes()) {
            complain(problem);
            isDone = false;
        }
    }
    return isDone ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

}  // namespace

void addRegisterCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        addCommand(app, "register",
                   "Register the suite's servers, for all users where you are an administrator",
                   options, run, action);
    command->add_flag("--unregister", options->unregister,
                      "Unregister them instead, and take the document types from the desktop");
    command->add_flag("--force", options->force, "Also those that are in order");
    addJsonFlag(command, &options->json, "Print an object for each server");
}

}  // namespace juntora
