// switch: whether the environment has something switched on. No hub takes part.
#include "setup/switches.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {

void addSwitchCommand(CLI::App& app, Action* action) {
    const auto name = std::make_shared<std::string>();
    const auto run = [](const std::string& asked) {
        const bool isOn = isSwitchOn(asked.c_str());
        printLine(isOn ? "on" : "off");
        return isOn ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
    };
    addCommand(app, "switch", "Tell whether a switch is on: 0 if it is, 1 if it is off", name, run,
               action)
        ->add_option("NAME", *name,
                     "A word of the environment: TRUE, YES or what begins with 1 turns it on")
        ->required();
}

}  // namespace juntora
