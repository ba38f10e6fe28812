#include "bench/Requests.h"

#include <spawn.h>
#include <sys/wait.h>

#include <stdexcept>
#include <string>

#include "bench/Statistics.h"
#include "bench/Tool.h"
#include "ipc/ipc.h"

extern char** environ;

namespace juntora::bench {
namespace {

constexpr char PROGRAM[] = "/bin/true";

/// One file after another is opened and closed while `held` others are held.
double openAndClose(const Files& files, int held) {
    Samples samples;
    for (int i = 0; i < 2000; ++i) {
        const int number = held + i * 7919 % 100'000;
        const auto start = Clock::now();
        files.open(number);
        files.close(number);
        samples.add(microsecondsSince(start));
    }
    return samples.median();
}

}  // namespace

void benchFiles() {
    std::printf("A file opened and closed through the hub (median)\n");
    double first = 0;
    Files files("/boards");
    for (const int count : {10, 100, 1000, 10'000}) {
        files.grow(count);
        const double median = openAndClose(files, count);
        printRow((std::to_string(count) + " files held").c_str(), median, "us");
        if (count == 10) {
            first = median;
        } else if (count == 10'000) {
            printRatio("10,000 files held to 10", median / first, 1.5, true);
        }
    }
    files.clear();
}

void benchLaunch() {
    Samples hub;
    Samples direct;
    for (int i = 0; i < 300; ++i) {
        auto start = Clock::now();
        if (ipcLaunch(PROGRAM, nullptr, 0, 1) != 0) {
            throw std::runtime_error("the hub does not start /bin/true");
        }
        hub.add(microsecondsSince(start));
        char program[] = "/bin/true";
        char* const arguments[] = {program, nullptr};
        pid_t child = 0;
        start = Clock::now();
        if (posix_spawn(&child, PROGRAM, nullptr, nullptr, arguments, environ) != 0) {
            throw std::runtime_error("/bin/true cannot be started");
        }
        direct.add(microsecondsSince(start));
        waitpid(child, nullptr, 0);
    }
    std::printf("A launch, until the request is answered\n");
    printRow("through the hub, median", hub.median(), "us");
    printRow("posix_spawn of the same program, median", direct.median(), "us");
    printRatio("of posix_spawn", hub.median() / direct.median(), 1.3, true);
}

}  // namespace juntora::bench
