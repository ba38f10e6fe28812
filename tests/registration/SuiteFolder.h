// An installation of a test's own, with servers in it.
#pragma once

#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {

class SuiteFolder : public TestDesktop {
protected:
    using Lines = std::vector<std::string>;

    /// Empty folders, an empty registry, and this process's environment set to both.
    SuiteFolder();

    static const std::string& root();
    /// A server's path as a run over a table has it.
    static std::string toolPath(const std::string& toolDir, const std::string& file);
    static std::string classId(int number);
    /// Puts a server program of a behaviour (server.cpp) into the tools, for the class. Returns the
    /// name that a row has for it.
    static std::string addServer(const std::string& toolDir, const std::string& behaviour,
                                 int number);
    /// Puts one of the test's libraries there, "NAME.so".
    static void addLibrary(const std::string& toolDir, const std::string& name,
                           const std::string& library);
    static void writeTable(const std::string& name, const std::string& text);

    /// What the servers have been told since the last call.
    static Lines takeLog();

    struct Outcome {
        int code;
        std::string output;
        std::string errors;
    };
    static Outcome control(const Lines& arguments, const Lines& environment = {});
    /// All that is in the registry and among the bus's services.
    static std::string dump();
    /// What is not for an administrator.
    static constexpr char ORDINARY[] = "MRN_TARVEX_DISABLE_ADMIN_MODE=1";
};

}  // namespace juntora::test
