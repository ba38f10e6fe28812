#include "hub/ActivityLine.h"

#include <cstdio>

#include "platform/files/shell.h"

namespace juntora {
namespace {

constexpr std::size_t NAME_WIDTH = 11;

const char* accessText(std::uint32_t access) {
    constexpr const char* TEXTS[] = {"", "(r)", "(w)", "(r/w)"};
    return access < std::size(TEXTS) ? TEXTS[access] : "";
}

}  // namespace

void fileDisplayName(const PathName& file, char* buffer, int size) {
    if (file.isEmpty() || !SHGetFileInfoA(file.c_str(), buffer, size)) {
        std::snprintf(buffer, static_cast<std::size_t>(size), "%s", file.c_str());
    }
}

std::string displayName(const PathName& file) {
    char buffer[DISPLAY_NAME_SIZE];
    fileDisplayName(file, buffer, sizeof buffer);
    return buffer;
}

std::string activityLine(std::string_view name, HWND window, std::string_view fileText,
                         std::uint32_t access, std::uint32_t flags) {
    char id[16];
    std::snprintf(id, sizeof id, " (%04x)", window);
    const char* quote = fileText.find(' ') == std::string_view::npos ? "" : "\"";

    std::string line(" ");
    line.append(name);
    line.append(name.size() < NAME_WIDTH ? NAME_WIDTH - name.size() : 0, ' ');
    line.append(id).append("        ");
    line.append(flags & FILE_MARKED ? "*" : " ");
    line.append(quote).append(fileText).append(quote);
    line.append("  ").append(accessText(access));
    return line;
}

}  // namespace juntora
