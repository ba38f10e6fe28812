#include "tools/juntoractl/Timestamp.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace juntora {
namespace {

std::string formatted(const std::tm* parts, const char* format, long long milliseconds,
                      const char* zone) {
    char text[48];
    std::strftime(text, sizeof text, format, parts);
    char fraction[8];
    std::snprintf(fraction, sizeof fraction, ".%03d", static_cast<int>(milliseconds % 1000));
    return std::string(text) + fraction + zone;
}

}  // namespace

Timestamp::Timestamp()
    : m_milliseconds(std::chrono::duration_cast<std::chrono::milliseconds>(
                         std::chrono::system_clock::now().time_since_epoch())
                         .count()) {}

std::string Timestamp::clock() const {
    const auto seconds = static_cast<std::time_t>(m_milliseconds / 1000);
    return formatted(std::localtime(&seconds), "%H:%M:%S", m_milliseconds, "");
}

std::string Timestamp::iso() const {
    const auto seconds = static_cast<std::time_t>(m_milliseconds / 1000);
    return formatted(std::gmtime(&seconds), "%Y-%m-%dT%H:%M:%S", m_milliseconds, "Z");
}

}  // namespace juntora
