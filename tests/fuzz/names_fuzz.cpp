// The steps of names, and their order. An input: a byte, by which the buffer is larger than the
// name (smaller from 128 on), then three names that end at a NUL.
#include <string>

#include "setup/letters.h"
#include "setup/nameOrder.h"
#include "setup/nameSteps.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/setup/ExactBuffer.h"

namespace juntora {
namespace {

using Step = int (*)(char* name, int size);

/// The name after a step in a buffer of exactly that size; the same name where it was refused.
std::string stepped(Step step, const std::string& name, std::size_t size, bool* done) {
    test::ExactBuffer buffer(size, name);
    const std::string before = buffer.text();
    const int result = step(buffer.data(), buffer.size());
    mustHold(result == 0 || result == 1, "a step or none");
    mustHold(result == 0 ? buffer.isEnded() : buffer.text() == before, "the end, or the old name");
    *done = result == 0;
    return buffer.text();
}

bool endsInNumber(const std::string& name) {
    return !name.empty() && (isDigit(name.back()) || name.back() == ']');
}

/// Whether zeros in front, which don't come back, are at the end of the name.
bool hasPlainNumber(const std::string& name) {
    const std::string digits = name.ends_with(']') ? name.substr(0, name.size() - 1) : name;
    const std::size_t before = digits.find_last_not_of("0123456789");
    return digits[before == std::string::npos ? 0 : before + 1] != '0';
}

void checkSteps(const std::string& name, std::size_t size) {
    const bool isNumbered = endsInNumber(name);
    for (const Step step : {IncrementName, IncrementNumber, DecrementName, DecrementNumber}) {
        bool done = false;
        const std::string roomy = stepped(step, name, name.size() + 2, &done);
        const bool canStep = done;
        const std::string tight = stepped(step, name, size, &done);
        mustHold(done == (canStep && std::max(
                                         name, roomy,
                                         [](const auto& left, const auto& right) {
                                             return left.size() < right.size();
                                         }).size() < size),
                 "a step where the names fit");
        mustHold(!done || tight == roomy, "the same name in each buffer");
    }
    bool done = false;
    const std::string next = stepped(IncrementName, name, name.size() + 2, &done);
    if (done && (!isNumbered || hasPlainNumber(name))) {
        mustHold(next != name, "another name");
        mustHold(stepped(DecrementName, next, next.size() + 1, &done) == name && done,
                 "the way back from the next name");
    }
    const std::string numbered = stepped(IncrementNumber, name, name.size() + 2, &done);
    if (done && (!isNumbered || hasPlainNumber(name))) {
        mustHold(CompareNames(name.c_str(), numbered.c_str()) < 0, "order by number");
        mustHold(stepped(DecrementNumber, numbered, numbered.size() + 1, &done) == name && done,
                 "the way back from the next number");
    }
}

int signOfOrder(const std::string& left, const std::string& right) {
    const int order = CompareNames(left.c_str(), right.c_str());
    return (order > 0) - (order < 0);
}

void checkOrder(const std::string& first, const std::string& second, const std::string& third) {
    mustHold(signOfOrder(first, first) == 0, "a name is as itself");
    mustHold(signOfOrder(first, second) == -signOfOrder(second, first), "order from both sides");
    const int toSecond = signOfOrder(first, second);
    if (toSecond == signOfOrder(second, third)) {
        mustHold(signOfOrder(first, third) == toSecond, "order of three");
    }
}

}  // namespace
}  // namespace juntora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace juntora;
    FuzzInput input(data, size);
    const auto room = static_cast<std::int8_t>(input.byte());
    const std::string first = input.text();
    const std::string second = input.text();
    const std::string third = input.text();
    const auto capacity = static_cast<std::ptrdiff_t>(first.size()) + room;
    checkSteps(first, capacity > 0 ? static_cast<std::size_t>(capacity) : 0);
    checkOrder(first, second, third);
    return 0;
}
