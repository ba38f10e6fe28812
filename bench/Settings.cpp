#include "bench/Settings.h"

#include <glib.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Statistics.h"
#include "platform/files/privateProfile.h"
#include "setup/configValues.h"
#include "setup/pathList.h"

namespace juntora::bench {
namespace {

constexpr int SECTIONS = 10;
constexpr int KEYS = 1'000;
constexpr int ROUNDS = 200;
constexpr int CALLS = 20;
constexpr char SECTION[] = "Section 5";
constexpr char KEY[] = "Key 550";
constexpr char VALUE[] = "/home/me/boards/amplifier/rev 4/output.opj";

void mustHold(bool holds) {
    if (!holds) {
        throw std::runtime_error("a setting could not be read");
    }
}

void writeKeys(const std::string& path) {
    std::ofstream file(path);
    for (int key = 0; key < KEYS; ++key) {
        if (key % (KEYS / SECTIONS) == 0) {
            file << "\n[Section " << key / (KEYS / SECTIONS) << "]\n";
        }
        file << "Key " << key << "=" << VALUE << "\n";
    }
}

void readByGLib(const std::string& path) {
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> file(g_key_file_new(),
                                                                     g_key_file_free);
    mustHold(g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr) != 0);
    const std::unique_ptr<char, decltype(&g_free)> value(
        g_key_file_get_string(file.get(), SECTION, KEY, nullptr), g_free);
    mustHold(value.get() == std::string(VALUE));
}

void benchKeys(const std::string& path) {
    writeKeys(path);
    Samples own;
    Samples expanded;
    Samples other;
    char value[256];
    for (int round = 0; round < ROUNDS; ++round) {
        measureCalls(own, CALLS, [&] {
            GetPrivateProfileStringA(SECTION, KEY, "", value, sizeof value, path.c_str());
            mustHold(value == std::string(VALUE));
        });
        measureCalls(expanded, CALLS, [&] {
            GetConfigString(SECTION, KEY, "", value, sizeof value, path.c_str(), false);
            mustHold(value == std::string(VALUE));
        });
        measureCalls(other, CALLS, [&] { readByGLib(path); });
    }
    std::printf("One key of a file of settings with %d keys\n", KEYS);
    printRow("GetPrivateProfileStringA", own.median(), "us");
    printRow("GetConfigString, of a file that is named", expanded.median(), "us");
    printRow("GLib's key file, loaded and asked", other.median(), "us");
    printRatio("of GLib's", own.median() / other.median(), 1, true);
}

/// Microseconds for a list of that many items, half of them variables.
double readList(const std::string& path, int items) {
    {
        std::ofstream file(path);
        file << "[S]\nk=";
        for (int i = 0; i < items; ++i) {
            file << (i % 2 == 0 ? "\"C:\\folder\\" : "$BENCH_FOLDER\\") << i
                 << (i % 2 == 0 ? "\";" : ";");
        }
    }
    std::vector<char> list(std::size_t(items) * 64);
    Samples samples;
    for (int round = 0; round < 20; ++round) {
        measureCalls(samples, CALLS, [&] {
            mustHold(ReadPathList("S", "k", "", list.data(), static_cast<DWORD>(list.size()),
                                  path.c_str(), false) == 1);
        });
    }
    return samples.median();
}

void benchLists(const std::string& path) {
    setenv("BENCH_FOLDER", "/home/me/libraries", 1);
    const double thousand = readList(path, 1'000);
    const double twoThousand = readList(path, 2'000);
    const double tenThousand = readList(path, 10'000);
    std::printf("ReadPathList by the number of items\n");
    printRow("1,000 items", thousand, "us");
    printRow("2,000 items", twoThousand, "us");
    printRow("10,000 items", tenThousand, "us");
    printRatio("for each item, 2,000 to 1,000", twoThousand / thousand / 2, 1.5, true);
    printRatio("for each item, 10,000 to 1,000", tenThousand / thousand / 10, 1.5, true);
}

}  // namespace

void benchSettings() {
    const std::string path = std::filesystem::temp_directory_path() / "settings.ini";
    benchKeys(path);
    benchLists(path);
    std::filesystem::remove(path);
}

}  // namespace juntora::bench
