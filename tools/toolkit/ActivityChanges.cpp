#include "tools/toolkit/ActivityChanges.h"

#include <algorithm>

namespace juntora {
namespace {

using Lines = std::vector<ActivityLine>;

/// The lines of `from` that are not in `other`, as often as they are missing there.
Lines without(const Lines& from, Lines other) {
    Lines left;
    for (const ActivityLine& line : from) {
        const auto found = std::find(other.begin(), other.end(), line);
        if (found == other.end()) {
            left.push_back(line);
        } else {
            other.erase(found);
        }
    }
    return left;
}

/// Takes the lines out of both lists that are one line before and after a change.
template <typename IsSame>
void pairUp(Lines* went, Lines* came, IsSame isSame, std::vector<ActivityChange>* changes) {
    for (auto old = went->begin(); old != went->end();) {
        const auto found = std::find_if(came->begin(), came->end(), [&](const ActivityLine& line) {
            return line.id == old->id && isSame(line, *old);
        });
        if (found == came->end()) {
            ++old;
            continue;
        }
        changes->push_back({ActivityChange::Kind::CHANGED, *found, false});
        came->erase(found);
        old = went->erase(old);
    }
}

}  // namespace

std::vector<ActivityChange> activityChanges(const Lines& before, const Lines& now) {
    Lines went = without(before, now);
    Lines came = without(now, before);
    std::vector<ActivityChange> changed;
    pairUp(
        &went, &came, [](const ActivityLine& a, const ActivityLine& b) { return a.file == b.file; },
        &changed);
    pairUp(
        &went, &came, [](const ActivityLine&, const ActivityLine&) { return true; }, &changed);

    std::vector<ActivityChange> all;
    for (const ActivityLine& line : went) {
        const bool isLast = std::none_of(now.begin(), now.end(),
                                         [&](const ActivityLine& l) { return l.id == line.id; });
        all.push_back({ActivityChange::Kind::WENT, line, isLast});
    }
    all.insert(all.end(), changed.begin(), changed.end());
    for (const ActivityLine& line : came) {
        all.push_back({ActivityChange::Kind::CAME, line, false});
    }
    return all;
}

}  // namespace juntora
