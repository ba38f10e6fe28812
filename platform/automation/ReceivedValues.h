// The values of a message.
#pragma once

#include <string_view>
#include <vector>

#include "platform/automation/Message.h"
#include "platform/automation/ObjectRoad.h"

namespace juntora::automation {

/// Everything in a message from where it is being read to its end, in variants or not, those of an
/// array of variants that is in nothing else one by one. Any whole number that a LONG holds becomes
/// one. Objects have come with a reference each, which goes with this unless it is taken.
class ReceivedValues {
public:
    ReceivedValues(sd_bus_message* message, ObjectRoad& road);
    ~ReceivedValues();
    ReceivedValues(const ReceivedValues&) = delete;
    ReceivedValues& operator=(const ReceivedValues&) = delete;

    /// False where one is of a type that no VARIANT has, or an object that is not there. It is no
    /// value; the others are there.
    bool areGood() const { return m_areGood; }

    std::size_t size() const { return m_values.size(); }
    const std::vector<VARIANT>& all() const { return m_values; }
    /// One of them, with the reference of an object, which is null here from then on.
    VARIANT take(std::size_t at);

private:
    bool readAll(bool isInside);
    bool readNext(char type, std::string_view contents);

    sd_bus_message* const m_message;
    ObjectRoad& m_road;
    std::vector<VARIANT> m_values;
    bool m_areGood = true;
};

}  // namespace juntora::automation
