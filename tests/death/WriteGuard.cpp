#include "tests/death/WriteGuard.h"

#include <sys/mman.h>
#include <sys/syscall.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

namespace juntora::test {
namespace {

constexpr Address PAGE = 4096;

}  // namespace

WriteGuard::WriteGuard(Tracee& tracee, std::string folder)
    : m_tracee(tracee), m_folder(std::move(folder)) {
    refresh();
}

void WriteGuard::refresh() {
    m_ranges.clear();
    std::ifstream maps("/proc/" + std::to_string(m_tracee.pid()) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream words(line);
        Range range{};
        char dash = 0;
        std::string access;
        words >> std::hex >> range.begin >> dash >> range.end >> access >> range.place.offset;
        // One that this very object has protected reads "r--s"; to one that was never writable
        // nothing can write anyway.
        const bool shared = access.size() == 4 && access[3] == 's';
        const std::size_t path = line.find(" " + m_folder + "/");
        if (shared && path != std::string::npos) {
            range.place.file = line.substr(path + m_folder.size() + 2);
            m_ranges.push_back(std::move(range));
        }
    }
}

const WriteGuard::Range* WriteGuard::rangeOf(Address address) const {
    const auto found = std::find_if(m_ranges.begin(), m_ranges.end(), [&](const Range& range) {
        return range.begin <= address && address < range.end;
    });
    return found == m_ranges.end() ? nullptr : &*found;
}

Place WriteGuard::placeOf(Address address) const {
    const Range* range = rangeOf(address);
    return {range->place.file, range->place.offset + (address - range->begin)};
}

Address WriteGuard::addressOf(const Place& place) const {
    for (const Range& range : m_ranges) {
        const std::uint64_t into = place.offset - range.place.offset;
        if (range.place.file == place.file && into < range.end - range.begin) {
            return range.begin + into;
        }
    }
    return 0;
}

void WriteGuard::setAccess(Address begin, Address end, int access) {
    const long result = m_tracee.systemCall(SYS_mprotect, static_cast<long>(begin),
                                            static_cast<long>(end - begin), access);
    if (result != 0) {
        throw TraceError("shared memory cannot be protected: error " + std::to_string(-result));
    }
}

void WriteGuard::protect() {
    for (const Range& range : m_ranges) {
        setAccess(range.begin, range.end, PROT_READ);
    }
}

void WriteGuard::release() {
    for (const Range& range : m_ranges) {
        setAccess(range.begin, range.end, PROT_READ | PROT_WRITE);
    }
}

void WriteGuard::protectPage(Address address) {
    const Address begin = address & ~(PAGE - 1);
    setAccess(begin, begin + PAGE, PROT_READ);
}

void WriteGuard::releasePage(Address address) {
    const Address begin = address & ~(PAGE - 1);
    setAccess(begin, begin + PAGE, PROT_READ | PROT_WRITE);
}

Tracee::Stop WriteGuard::stepThrough() {
    const Address fault = m_tracee.faultAddress();
    // Two pages: one write may reach into the next.
    const Address begin = fault & ~(PAGE - 1);
    const Address end = std::min(begin + 2 * PAGE, rangeOf(fault)->end);
    setAccess(begin, end, PROT_READ | PROT_WRITE);
    const Tracee::Stop stop = m_tracee.step();
    if (stop == Tracee::Stop::STEP) {
        setAccess(begin, end, PROT_READ);
    }
    return stop;
}

}  // namespace juntora::test
