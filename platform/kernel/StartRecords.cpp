#include "platform/kernel/StartRecords.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/desktop/Futex.h"
#include "platform/desktop/Lock.h"

namespace juntora::kernel {
namespace {

using desktop::Attachment;
using desktop::Segment;
using desktop::SegmentLock;
using desktop::StartRecord;

/// The record, if it is still the one of that token.
StartRecord* recordAt(const StartPlace& place) {
    Attachment* desktop = Attachment::get();
    if (desktop == nullptr || place.index >= desktop::MAX_STARTS || place.token == 0) {
        return nullptr;
    }
    StartRecord& record = desktop->segment().starts[place.index];
    return record.token.load() == place.token ? &record : nullptr;
}

StartPlace parsePlace(const char* text) {
    StartPlace place;
    const char* end = text + std::strlen(text);
    const auto index = std::from_chars(text, end, place.index);
    if (index.ec != std::errc() || index.ptr == end || *index.ptr != '.' ||
        std::from_chars(index.ptr + 1, end, place.token, 16).ptr != end) {
        return {};
    }
    return place;
}

struct Claim {
    StartPlace place;
    OwnStart start;
};

/// Takes the record that the environment names, once: a process that inherits a stale name finds
/// the record claimed.
Claim claimOwn() {
    Claim claim;
    const char* text = std::getenv(START_VARIABLE);
    if (text == nullptr) {
        return claim;
    }
    const StartPlace place = parsePlace(text);
    unsetenv(START_VARIABLE);
    StartRecord* record = recordAt(place);
    std::uint32_t unclaimed = 0;
    if (record == nullptr || !record->claimed.compare_exchange_strong(unclaimed, 1)) {
        return claim;
    }
    claim.place = place;
    claim.start.hasCommandLine = true;
    claim.start.commandLine.assign(record->commandLine,
                                   strnlen(record->commandLine, sizeof record->commandLine));
    claim.start.showState = record->showState;
    return claim;
}

const Claim& ownClaim() {
    static const auto* const claim = new Claim(claimOwn());  // The line outlives static objects.
    return *claim;
}

}  // namespace

StartPlace offerStart(Attachment& desktop, const std::string& commandLine, int showState) {
    Segment& segment = desktop.segment();
    const SegmentLock lock(segment);
    if (!lock || commandLine.size() >= sizeof(StartRecord::commandLine)) {
        return {};
    }
    for (std::uint32_t i = 0; i < desktop::MAX_STARTS; ++i) {
        StartRecord& record = segment.starts[i];
        if (record.token.load() != 0) {
            continue;
        }
        record.claimed = 0;
        record.idle = 0;
        record.starter = desktop.process();
        record.showState = showState;
        std::memcpy(record.commandLine, commandLine.c_str(), commandLine.size() + 1);
        const std::uint64_t token = ++segment.lastToken;
        record.token = token;
        return {i, token};
    }
    return {};
}

std::string startText(const StartPlace& place) {
    char text[64];
    std::snprintf(text, sizeof text, "%u.%llx", place.index,
                  static_cast<unsigned long long>(place.token));
    return text;
}

void endStart(const StartPlace& place) {
    if (StartRecord* record = recordAt(place)) {
        std::uint64_t token = place.token;
        record->token.compare_exchange_strong(token, 0);
    }
}

bool isInputIdle(const StartPlace& place) {
    const StartRecord* record = recordAt(place);
    return record != nullptr && record->idle.load() != 0;
}

void awaitInputIdle(const StartPlace& place, std::uint32_t milliseconds) {
    if (StartRecord* record = recordAt(place)) {
        desktop::futexWait({&record->idle, 0}, {nullptr, 0}, milliseconds);
    }
}

const OwnStart& ownStart() { return ownClaim().start; }

void noteInputIdle() {
    if (StartRecord* record = recordAt(ownClaim().place)) {
        record->idle = 1;
        desktop::futexWakeAll(&record->idle);
    }
}

void noteWaitFor(std::uint32_t process) {
    const StartRecord* record = recordAt(ownClaim().place);
    if (record != nullptr && record->starter == process && record->idle.load() == 0) {
        noteInputIdle();
    }
}

void releaseStartsOf(Segment& segment, std::uint32_t process) {
    for (StartRecord& record : segment.starts) {
        if (record.token.load() != 0 && record.starter == process) {
            record.token = 0;
        }
    }
}

}  // namespace juntora::kernel
