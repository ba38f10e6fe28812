#include "tools/juntoractl/Output.h"

#include <charconv>
#include <cstdio>
#include <system_error>

#include "platform/kernel/printable.h"

namespace juntora {
namespace {

bool writeLine(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

}  // namespace

bool printLine(std::string_view line) { return writeLine(PrintableText(line)); }

bool printJson(const Json& value) {
    return writeLine(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

void complain(std::string_view message) {
    std::fprintf(stderr, "juntoractl: %s\n", PrintableText(message).c_str());
}

std::string windowText(HWND window) {
    char text[16];
    return {text, std::to_chars(text, text + sizeof text, window, 16).ptr};
}

bool parseWindow(std::string_view text, HWND* window) {
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, *window, 16);
    return error == std::errc() && behind == end;
}

}  // namespace juntora
