#include "tools/juntoractl/CommandLine.h"

#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

std::string checkWindow(std::string& text) {
    HWND window = 0;
    return parseWindow(text, &window) ? ""
                                      : "\"" + text +
                                            "\" is no ID: a hexadecimal number without a "
                                            "prefix is meant, as `juntoractl apps` "
                                            "prints it";
}

}  // namespace

void addJsonFlag(CLI::App* command, bool* json, const std::string& description) {
    command->add_flag("--json", *json, description);
}

CLI::Option* addWindow(CLI::App* command, const std::string& name, std::string* window,
                       const std::string& description) {
    return command->add_option(name, *window, description)
        ->required()
        ->check(CLI::Validator(checkWindow, ""));
}

}  // namespace juntora
