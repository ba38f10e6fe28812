#include "bench/Messages.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <pugixml.hpp>

#include "bench/Statistics.h"
#include "messages/NvMessageManager.h"
#include "messages/messageFamily.h"
#include "tests/support/DesktopSandbox.h"

namespace juntora::bench {
namespace {

constexpr int MESSAGES = 10'000;
constexpr int ROUNDS = 50;
constexpr int CALLS = 2'000;

/// As those of the suite are: a sentence or two with two parameters each.
std::string catalogue() {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<catalogue module=\"TVB\">\n";
    for (int number = 1; number <= MESSAGES; ++number) {
        text += "  <message number=\"" + std::to_string(number) +
                "\" kind=\"error\">\n    <parameter>the file</parameter>\n"
                "    <parameter>the line</parameter>\n"
                "    <text>The file %1 cannot be read from line %2 on. See that it is a design of "
                "this release &amp; open it again.</text>\n  </message>\n";
    }
    return text + "</catalogue>\n";
}

void mustHold(bool holds) {
    if (!holds) {
        throw std::runtime_error("a call of the message service failed");
    }
}

void benchLoading(const std::string& folder) {
    const std::string bytes = catalogue();
    const std::string file = folder + "/bench.xml";
    std::ofstream(file, std::ios::binary) << bytes;
    Samples own;
    Samples parser;
    for (int round = 0; round < ROUNDS; ++round) {
        auto start = Clock::now();
        NvStatus status(false);
        mustHold(NvMessageManager::getInstance()
                         ->loadModule("TVB", nullptr)
                         ->registerCatalog("bench.xml", &status) != nullptr &&
                 status.isOK(1) != 0);
        own.add(microsecondsSince(start) / 1000);
        NvMessageManager::exitMS();
        start = Clock::now();
        {
            pugi::xml_document document;
            mustHold(document.load_file(file.c_str()));
            parser.add(microsecondsSince(start) / 1000);
        }
    }
    std::printf("A catalogue of %d messages, %zu KiB\n", MESSAGES, bytes.size() / 1024);
    printRow("registered", own.median(), "ms");
    printRow("the XML reader's own parse of the file", parser.median(), "ms");
    printRatio("of the parse", own.median() / parser.median(), 2, true);
}

void benchRetrieval() {
    const char* const path = "/home/me/boards/amplifier/rev 4/output.opj";
    char buffer[500];
    Samples own;
    Samples plain;
    std::string text;
    for (int round = 0; round < ROUNDS; ++round) {
        auto start = Clock::now();
        for (int line = 0; line < CALLS; ++line) {
            mustHold(getMessageText(&text, "TVB", 5'000, path, line) == 0);
        }
        own.add(microsecondsSince(start) / CALLS);
        start = Clock::now();
        for (int line = 0; line < CALLS; ++line) {
            std::snprintf(buffer, sizeof buffer,
                          "ERROR(%s-%u):  The file %s cannot be read from line %d on. See that it "
                          "is a design of this release & open it again.",
                          "TVB", 5'000U, path, line);
            text = buffer;
        }
        plain.add(microsecondsSince(start) / CALLS);
    }
    std::printf("A message's text with two parameters\n");
    printRow("getMessageText", own.median(), "us");
    printRow("snprintf of the same into a buffer, and a copy", plain.median(), "us");
    printRatio("of snprintf", own.median() / plain.median(), 3, true);
}

}  // namespace

void benchMessages() {
    // Both keep the memory that they give back: else the one that comes to fresh pages each time
    // pays the kernel for them, and which one that is depends on what lies where.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    const test::DesktopSandbox sandbox;
    setenv("JUNTORA_CATALOGUES", sandbox.runtimeFolder().c_str(), 1);
    std::ofstream(sandbox.runtimeFolder() + "/modules.txt") << "TVB bench.xml\n";
    benchLoading(sandbox.runtimeFolder());
    benchRetrieval();
    unsetenv("JUNTORA_CATALOGUES");
}

}  // namespace juntora::bench
