// Activity lines as they are printed.
#pragma once

#include <string>

#include "tools/juntoractl/Output.h"
#include "tools/toolkit/ActivityReader.h"

namespace juntora {

Json activityJson(const ActivityLine& line);

/// Lines up what is printed for people.
class ActivityColumns {
public:
    ActivityColumns(std::size_t nameWidth, std::size_t idWidth)
        : m_nameWidth(nameWidth), m_idWidth(idWidth) {}

    std::string heading() const;
    std::string row(const ActivityLine& line) const;

private:
    std::string cells(const std::string& name, const std::string& id, const std::string& access,
                      const std::string& mark, const std::string& file) const;

    std::size_t m_nameWidth;
    std::size_t m_idWidth;
};

}  // namespace juntora
