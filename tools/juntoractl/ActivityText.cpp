#include "tools/juntoractl/ActivityText.h"

#include <algorithm>

namespace juntora {
namespace {

constexpr std::size_t ACCESS_WIDTH = 6;
constexpr std::size_t MARK_WIDTH = 4;

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text + "  ";
}

}  // namespace

Json activityJson(const ActivityLine& line) {
    return {{"name", line.name},
            {"id", windowText(line.id)},
            {"file", line.file},
            {"access", line.access},
            {"marked", line.isMarked}};
}

std::string ActivityColumns::heading() const {
    return cells("NAME", "ID", "ACCESS", "MARK", "FILE");
}

std::string ActivityColumns::row(const ActivityLine& line) const {
    return cells(line.name, windowText(line.id), line.access, line.isMarked ? "*" : "", line.file);
}

std::string ActivityColumns::cells(const std::string& name, const std::string& id,
                                   const std::string& access, const std::string& mark,
                                   const std::string& file) const {
    std::string line = padded(name, m_nameWidth) + padded(id, m_idWidth) +
                       padded(access, ACCESS_WIDTH) + padded(mark, MARK_WIDTH) + file;
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

}  // namespace juntora
