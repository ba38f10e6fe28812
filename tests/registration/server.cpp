// A server that is to register itself: "BEHAVIOUR-CLASSID", in whatever folder. It appends what it
// is told, and the word for registration by user, to the file that TEST_SERVER_LOG names. The
// behaviours beside "good":
//   hang    never ends
//   crash   falls
//   lock    makes the registry refuse everything from then on
// and those that, the first time, take the program that has started them and themselves down:
//   early   before anything is written
//   half    in the middle
//   late    when all is done
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "common/PerUserRegistration.h"
#include "platform/automation/registration.h"
#include "platform/kernel/process.h"
#include "platform/registry/registry.h"

namespace juntora::test {
namespace {

std::string environmentText(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

struct Server {
    std::string path;
    std::string behaviour;
    std::string classId;

    explicit Server(const char* program) : path(program) {
        const std::string name = std::filesystem::path(path).stem();
        behaviour = name.substr(0, name.find('-'));
        classId = name.substr(name.find('-') + 1);
    }
    ClassRegistration registration() const {
        return {GuidOfText("{" + classId + "}").value_or(GUID{}), "Test." + classId, path};
    }
    /// Takes all down if this is the place for it, and it has not been done before.
    void fallAt(const char* place) const {
        const std::string mark = environmentText("TEST_SERVER_LOG") + ".fallen";
        if (behaviour != place || std::filesystem::exists(mark)) {
            return;
        }
        std::ofstream(mark) << place;
        kill(getppid(), SIGKILL);
        kill(getpid(), SIGKILL);
    }
    void registerIt() const {
        if (behaviour == "half") {
            HKEY key{};
            RegCreateKeyA(HKEY_CLASSES_ROOT, ("CLSID\\{" + classId + "}\\ProgID").c_str(), &key);
            RegCloseKey(key);
            fallAt("half");
        }
        RegisterClassOf(registration());
    }
};

int run(const Server& server, const std::string& word) {
    const std::string line =
        server.behaviour + " " + word + " [" + environmentText("OAPERUSERTLIBREG") + "]\n";
    std::ofstream(environmentText("TEST_SERVER_LOG"), std::ios::app) << line;
    if (server.behaviour == "hang") {
        for (;;) {
            pause();
        }
    }
    if (server.behaviour == "crash") {
        signal(SIGABRT, SIG_DFL);
        std::abort();
    }
    server.fallAt("early");
    PerUserRegistrationOn();
    word == "/unregserver" ? static_cast<void>(UnregisterClassOf(server.registration()))
                           : server.registerIt();
    PerUserRegistrationOff();
    if (server.behaviour == "lock") {
        for (const char* file : {"/user.db", "/machine.db"}) {
            chmod((environmentText("JUNTORA_REGISTRY") + file).c_str(), 0622);
        }
    }
    server.fallAt("late");
    return 0;
}

}  // namespace
}  // namespace juntora::test

int main(int argc, char** argv) {
    juntora::SetProgramArguments(argc, argv);
    return juntora::test::run(juntora::test::Server(argv[0]), argc > 1 ? argv[1] : "nothing");
}
