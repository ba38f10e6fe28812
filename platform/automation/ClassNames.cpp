#include "platform/automation/ClassNames.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include <systemd/sd-bus.h>

#include "platform/automation/automation.h"
#include "platform/desktop/Attachment.h"

namespace juntora {
namespace {

bool isSign(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

/// The version at the end of a program identifier, "16.6.0", is one element on the bus: "v16_6_0".
std::size_t startOfVersion(const std::string& programId) {
    for (std::size_t dot = programId.find('.'); dot != programId.npos;
         dot = programId.find('.', dot + 1)) {
        if (dot + 1 < programId.size() &&
            std::isdigit(static_cast<unsigned char>(programId[dot + 1])) != 0) {
            return dot;
        }
    }
    return programId.npos;
}

}  // namespace

std::string BusNameOfClass(const std::string& programId) {
    const std::size_t version = startOfVersion(programId);
    std::string name = programId.substr(0, version);
    if (version != programId.npos) {
        std::string number = programId.substr(version + 1);
        std::ranges::replace(number, '.', '_');
        name += ".v" + number;
    }
    const bool isPlain =
        std::ranges::all_of(name, [](char sign) { return isSign(sign) || sign == '.'; });
    return isPlain && sd_bus_service_name_is_valid(name.c_str()) > 0 ? name : std::string();
}

namespace automation {

std::string ownNameOfClass(const std::string& programId) {
    const std::string name = BusNameOfClass(programId);
    const desktop::Attachment* desktop = desktop::Attachment::get();
    if (name.empty() || desktop == nullptr) {
        return "";
    }
    const std::string& folder = desktop->folderPath();
    std::string own = name + ".on_";
    for (const char sign : folder.substr(folder.rfind('/') + 1)) {
        char number[8];
        std::snprintf(number, sizeof number, "_%02x", unsigned{static_cast<unsigned char>(sign)});
        own += std::isalnum(static_cast<unsigned char>(sign)) != 0 ? std::string(1, sign) : number;
    }
    // The bus takes names of up to 255 characters.
    return sd_bus_service_name_is_valid(own.c_str()) > 0 ? own : name;
}

std::string pathOfClass(const std::string& programId) {
    std::string path = "/" + BusNameOfClass(programId);
    std::ranges::replace(path, '.', '/');
    return path;
}

}  // namespace automation
}  // namespace juntora
