// Values on their way through the message loop.
#pragma once

#include <map>
#include <memory>
#include <utility>

#include "platform/types.h"

namespace juntora {

/// A posted message has room for a number alone, and any program can post one with a number of its
/// own making. Here stays what belongs to the numbers that were really given out. What is never
/// taken goes with this object. For one thread.
template <class Value>
class Posted {
public:
    /// The number for the message, never 0.
    LPARAM put(Value value) {
        auto kept = std::make_unique<Value>(std::move(value));
        const auto number = reinterpret_cast<LPARAM>(kept.get());
        m_values[number] = std::move(kept);
        return number;
    }
    /// What was put in for the number, once; null for any other number.
    std::unique_ptr<Value> take(LPARAM number) {
        const auto entry = m_values.extract(number);
        return entry.empty() ? nullptr : std::move(entry.mapped());
    }

private:
    std::map<LPARAM, std::unique_ptr<Value>> m_values;
};

}  // namespace juntora
