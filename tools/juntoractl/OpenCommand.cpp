// open: a page in the person's browser or viewer. No hub takes part.
#include "setup/openPage.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {

void addOpenCommand(CLI::App& app, Action* action) {
    const auto page = std::make_shared<std::string>();
    const auto run = [](const std::string& asked) {
        if (OpenPage(asked.c_str()) == 0) {
            return EXIT_CODE_DONE;
        }
        complain(
            "\"" + asked +
            "\" was not opened. A file must be there, an address must begin with a scheme such "
            "as https:, and xdg-open must be found along PATH, or else a browser by the command "
            "in the registry (HKCR\\htmlfile\\shell\\open\\command)");
        return EXIT_CODE_REFUSED;
    };
    addCommand(app, "open", "Open a page in the browser, a file in the viewer for its kind", page,
               run, action)
        ->add_option("PAGE", *page, "A file, or an address with a scheme: https://..., mailto:...")
        ->required();
}

}  // namespace juntora
