#include "setup/home.h"

#include "setup/environmentText.h"

namespace juntora {
namespace {

std::string driveText(HomeDrive drive) {
    std::string text = drive == HomeDrive::OF_THE_USER ? environmentText("HOMEDRIVE") : "";
    return text.empty() ? "C:" : text;
}

}  // namespace

std::string homeFolder(HomeDrive drive) {
    std::string home = environmentText("HOME");
    if (!home.empty()) {
        return home;
    }
    home = environmentText("HOMEPATH");
    if (home.empty()) {
        return "";
    }
    if (home.find(':') == std::string::npos) {
        home.insert(0, driveText(drive));
    }
    PutEnvironment(("HOME=" + home).c_str());
    return home;
}

}  // namespace juntora
