#include "bench/Registration.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "bench/Statistics.h"
#include "registration/registryKeys.h"
#include "registration/suiteRegistration.h"
#include "tests/support/ChildProcess.h"

namespace juntora::bench {
namespace {

constexpr int ROUNDS = 10;
constexpr int SUBKEYS = 1'000;
constexpr const char* SERVERS[] = {"juntora", "voltara", "tunara", "modelar", "wavend"};

void mustHold(bool holds, const char* what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

/// The same programs, one after the other.
void startEach() {
    for (const char* server : SERVERS) {
        std::string program = test::ProgramFolder() + "/" + server;
        char word[] = "/regserver";
        char* const arguments[] = {program.data(), word, nullptr};
        pid_t child = 0;
        mustHold(posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ) == 0,
                 "a server cannot be started");
        waitpid(child, nullptr, 0);
    }
}

int g_lines = 0;

void run(int force) {
    g_lines = 0;
    registerSuiteServers(
        force, 1, [](const char*) { ++g_lines; }, nullptr);
    mustHold(g_lines == (force != 0 ? static_cast<int>(std::size(SERVERS)) : 0),
             "not all servers of the suite were registered");
}

void makeTree() {
    for (int i = 0; i < SUBKEYS; ++i) {
        const std::string key = "Software\\Bench\\" + std::to_string(i) + "\\a\\b\\c";
        mustHold(setUserKeyDefaultValue(key.c_str(), "v") != 0, "a key cannot be written");
    }
}

template <typename Call>
void measure(Samples& samples, Call call) {
    const auto start = Clock::now();
    call();
    samples.add(microsecondsSince(start) / 1000);
}

void deleteKeyByKey() {
    for (int i = 0; i < SUBKEYS; ++i) {
        std::string key = "Software\\Bench\\" + std::to_string(i) + "\\a\\b\\c";
        for (int level = 0; level < 4; ++level) {
            mustHold(RegDeleteKeyA(HKEY_CURRENT_USER, key.c_str()) == ERROR_SUCCESS,
                     "a key cannot be deleted");
            key.erase(key.rfind('\\'));
        }
    }
}

}  // namespace

void benchRegistration() {
    Samples suite;
    Samples bare;
    Samples inOrder;
    run(1);
    for (int round = 0; round < ROUNDS; ++round) {
        measure(suite, [] { run(1); });
        measure(bare, startEach);
        measure(inOrder, [] { run(0); });
    }
    Samples tree;
    Samples single;
    for (int round = 0; round < 3; ++round) {
        makeTree();
        measure(tree, [] { deleteKeyTree(HKEY_CURRENT_USER, "Software\\Bench"); });
        makeTree();
        measure(single, deleteKeyByKey);
    }
    std::printf("The registration of the suite, five servers and 13 that are not installed\n");
    printRow("a run over all", suite.median(), "ms");
    printRow("the same programs by posix_spawn, one after the other", bare.median(), "ms");
    printRatio("of the bare starts", suite.median() / bare.median(), 1.3, true);
    printRow("a run in which all are in order", inOrder.median(), "ms");
    std::printf("A tree of 4,000 keys\n");
    printRow("deleted as one", tree.median(), "ms");
    printRow("key by key", single.median(), "ms");
    printRatio("of key by key", tree.median() / single.median(), 1, true);
}

}  // namespace juntora::bench
