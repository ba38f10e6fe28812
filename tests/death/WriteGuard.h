// Tells which instructions of a tracee write to a desktop's shared memory: it is made read-only, so
// that each of them is refused once and seen.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "tests/death/Tracee.h"

namespace juntora::test {

/// A byte of a mapped file, the same in all processes.
struct Place {
    std::string file;  ///< Relative to the folder; empty for no place.
    std::uint64_t offset = 0;

    bool operator<(const Place& other) const {
        return std::tie(file, offset) < std::tie(other.file, other.offset);
    }
};

/// Watches what the tracee has mapped, shared, from files below one folder. Nothing escapes it that
/// comparing contents would miss, such as a change that is undone by the next instruction.
class WriteGuard {
public:
    /// The tracee must be stopped between two instructions, for this and all calls.
    WriteGuard(Tracee& tracee, std::string folder);

    /// Looks anew at what is mapped, by what name: after each system call of the tracee.
    void refresh();
    void protect();
    /// Lets the kernel write too, for the length of a system call.
    void release();

    bool covers(Address address) const { return rangeOf(address) != nullptr; }
    /// Of an address that is covered.
    Place placeOf(Address address) const;
    /// 0 when the place is not mapped.
    Address addressOf(const Place& place) const;

    /// The same for one page alone, the one with this address in it.
    void protectPage(Address address);
    void releasePage(Address address);
    /// Runs the one instruction whose write was refused at tracee.faultAddress().
    Tracee::Stop stepThrough();

private:
    struct Range {
        Address begin;
        Address end;
        Place place;  ///< Of the first byte.
    };

    const Range* rangeOf(Address address) const;
    void setAccess(Address begin, Address end, int access);

    Tracee& m_tracee;
    std::string m_folder;
    std::vector<Range> m_ranges;
};

}  // namespace juntora::test
