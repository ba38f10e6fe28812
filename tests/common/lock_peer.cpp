// Another process with locks on a file, for the tests: does as the lines on its standard input say,
// one answer a line, or, once told to storm, takes and leaves locks until it is killed.
#include <cstdlib>
#include <iostream>
#include <random>
#include <sstream>
#include <string>

#include "common/FileLock.h"

namespace juntora {
namespace {

[[noreturn]] void storm(const char* path, unsigned seed) {
    std::mt19937 random(seed);
    const auto oneOf = [&random](unsigned count) {
        return static_cast<unsigned>(random()) % count;
    };
    for (bool isFirst = true;; isFirst = false) {
        FileLock lock(path);
        lock.lock(nullptr, oneOf(3), oneOf(3) == 0 ? LOCK_MODE_WRITE : LOCK_MODE_READ);
        lock.setMonitored(static_cast<unsigned char>(oneOf(2)));
        if (isFirst) {
            std::cout << "storming" << std::endl;
        }
        for (unsigned looks = oneOf(8); looks > 0; --looks) {
            lock.status();
        }
        if (oneOf(4) == 0) {
            lock.setMode(LOCK_MODE_READ, 1);
        }
        if (oneOf(2) == 0) {
            lock.unlock();
        }
    }
}

/// Counts up a number in a file under the write lock; the number of times that it was refused.
int count(FileLock& lock, const std::string& file, int times) {
    int refused = 0;
    for (int i = 0; i < times; ++i) {
        while (lock.lock(nullptr, 10'000, LOCK_MODE_WRITE) != LOCK_DONE) {
            ++refused;
        }
        std::FILE* number = std::fopen(file.c_str(), "r+");
        int value = 0;
        if (number != nullptr && std::fscanf(number, "%d", &value) == 1) {
            std::rewind(number);
            std::fprintf(number, "%d", value + 1);
        }
        if (number != nullptr) {
            std::fclose(number);
        }
        lock.unlock();
    }
    return refused;
}

int obey(FileLock& lock, std::istringstream words) {
    std::string verb;
    int mode = 0;
    unsigned long timeout = 0;
    words >> verb;
    if (verb == "lock") {
        words >> mode >> timeout;
        return lock.lock(nullptr, timeout, mode);
    }
    if (verb == "monitor") {
        return lock.setMonitored(1);
    }
    if (verb == "count") {
        std::string file;
        words >> file >> mode;
        return count(lock, file, mode);
    }
    return verb == "unlock" ? lock.unlock() : lock.status();
}

[[noreturn]] void run(const char* path) {
    FileLock lock(path);
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << obey(lock, std::istringstream(line)) << std::endl;
    }
    std::exit(0);  // Destroys no lock: who leaves without unlocking is what the tests are after.
}

}  // namespace
}  // namespace juntora

int main(int argc, char** argv) {
    if (argc > 2) {
        juntora::storm(argv[1], static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)));
    }
    if (argc > 1) {
        juntora::run(argv[1]);
    }
    return 2;
}
