#include "tools/juntoractl/CommandLine.h"

#include "tools/juntoractl/HubAccess.h"
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

HWND RequestOptions::window() const {
    HWND window = 0;
    parseWindow(subject, &window);
    return window;
}

RequestCommand addRequest(CLI::App& app, const std::string& name, const std::string& description,
                          const std::string& jsonDescription, int (*request)(const RequestOptions&),
                          Action* action) {
    auto options = std::make_shared<RequestOptions>();
    const auto run = [request](const RequestOptions& given) {
        return withHub([&] { return request(given); });
    };
    CLI::App* command = addCommand(app, name, description, options, run, action);
    addJsonFlag(command, &options->json, jsonDescription);
    return {command, options.get()};
}

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
