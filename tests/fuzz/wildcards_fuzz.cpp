// WildcardMatch and WildcardApply: short inputs against the recursion that tells what they mean,
// all against the bounds of the output. An input: a byte, the output's size, then texts that end at
// a NUL: a pattern, a text and a target pattern.
#include <algorithm>
#include <string>

#include "setup/wildcards.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/setup/ExactBuffer.h"
#include "tests/setup/WildcardReference.h"

namespace juntora {
namespace {

/// The recursion takes exponential time.
bool isShort(const std::string& pattern, const std::string& text) {
    return pattern.size() + text.size() <= 20 &&
           std::count(pattern.begin(), pattern.end(), '*') <= 5;
}

void checkMatch(const std::string& pattern, const std::string& text) {
    const int result = WildcardMatch(pattern.c_str(), text.c_str());
    mustHold(result == 0 || result == 1, "a match or none");
    if (isShort(pattern, text)) {
        mustHold(
            result == static_cast<int>(test::matchesByRecursion(pattern.c_str(), text.c_str())),
            "the recursion's answer");
    }
    std::string literally;
    for (const char c : text) {
        literally.append(1, '\\').append(1, c);
    }
    mustHold(WildcardMatch(literally.c_str(), text.c_str()) == 1, "a text matches itself");
    mustHold(WildcardMatch(("*" + literally + "*").c_str(), (pattern + text).c_str()) == 1 ||
                 text.empty(),
             "a text is found behind another");
    mustHold(result == 1 || HasWildcards(pattern.c_str()) ||
                 pattern.find('\\') != std::string::npos || pattern != text,
             "a pattern without wildcards matches itself");
}

void checkApply(const std::string& source, const std::string& pattern, const std::string& target,
                std::size_t size) {
    test::ExactBuffer output(size);
    const int result = WildcardApply(source.c_str(), pattern.c_str(), target.c_str(), output.data(),
                                     output.size());
    mustHold(result == 0 || result == WILDCARD_NOT_APPLIED, "a name or none");
    mustHold(output.isEnded() == (size > 0), "the end");
    if (size == 0) {
        mustHold(result == WILDCARD_NOT_APPLIED, "no room");
    } else if (isShort(pattern, source)) {
        const test::Applied expected =
            test::applyByRecursion(source.c_str(), pattern.c_str(), target, size - 1);
        mustHold(result == expected.result && output.text() == expected.name,
                 "the recursion's name");
    }
}

}  // namespace
}  // namespace juntora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace juntora;
    FuzzInput input(data, size);
    const std::size_t room = input.byte();
    const std::string pattern = input.text();
    const std::string text = input.text();
    const std::string target = input.text();
    checkMatch(pattern, text);
    checkApply(text, pattern, target, room);
    return 0;
}
