// Has a library or control register itself, in a process that it may take down with it:
//   juntora-regsvr [/u] [/s] PATH
// "/u" unregisters, "/s" leaves the word of success unsaid. PATH is all that is left of the line,
// in double quotes or not. How it ends: registration/registrars.h.
#include <cstdio>
#include <string>
#include <string_view>

#include "common/CaseBlind.h"
#include "platform/kernel/modules.h"
#include "platform/kernel/printable.h"
#include "platform/kernel/process.h"
#include "registration/registrars.h"

namespace juntora {
namespace {

struct Request {
    bool doRegister = true;
    bool isSilent = false;
    std::string path;
};

std::string_view trimmed(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

Request parse(std::string_view line) {
    Request request;
    for (line = trimmed(line);; line = trimmed(line.substr(2))) {
        const std::string_view word = line.substr(0, line.find(' '));
        if (equalCaseBlind(word, "/u")) {
            request.doRegister = false;
        } else if (equalCaseBlind(word, "/s")) {
            request.isSilent = true;
        } else {
            break;
        }
    }
    const bool isQuoted = line.size() > 1 && line.front() == '"' && line.back() == '"';
    request.path = isQuoted ? line.substr(1, line.size() - 2) : line;
    return request;
}

int fail(int code, const std::string& what) {
    std::fprintf(stderr, "juntora-regsvr: %s\n", PrintableText(what).c_str());
    return code;
}

int run(const Request& request) {
    if (request.path.empty() || request.path.front() == '-') {
        return fail(REGISTRAR_USAGE, "which library or control? juntora-regsvr [/u] [/s] PATH");
    }
    const char* why = "";
    const HMODULE control = LoadLibraryA(request.path.c_str(), &why);
    if (control == nullptr) {
        return fail(REGISTRAR_NOT_LOADED, request.path + " cannot be loaded: " + std::string(why));
    }
    const std::string name = registrationExport(request.doRegister);
    void* const function = GetProcAddress(control, name.c_str());
    if (function == nullptr) {
        return fail(REGISTRAR_NO_FUNCTION,
                    request.path + " does not register itself: it has no " + name);
    }
    if (const int result = callRegistrationExport(function); result < 0) {
        return fail(REGISTRAR_REFUSED,
                    request.path + ": " + name + " has failed, with " + std::to_string(result));
    }
    if (!request.isSilent) {
        std::printf("%s: %s has succeeded\n", PrintableText(request.path).c_str(), name.c_str());
    }
    return REGISTRAR_DONE;
}

}  // namespace
}  // namespace juntora

int main(int argc, char** argv) {
    juntora::SetProgramArguments(argc, argv);
    return juntora::run(juntora::parse(juntora::CommandLineTail()));
}
