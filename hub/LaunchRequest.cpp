#include "hub/LaunchRequest.h"

#include "ipc/TextScan.h"

namespace juntora {
namespace {

bool scanDirectory(TextScan& scan, bool isQuoted, std::string_view* directory) {
    if (!isQuoted) {
        return scan.word(directory);
    }
    // A quote in the arguments alone doesn't make the folder a quoted one.
    return scan.rest().starts_with('"') && scan.quoted("\"", directory);
}

}  // namespace

LaunchRequest::LaunchRequest(std::string_view text) {
    const bool isQuoted = text.find('"') != std::string_view::npos;
    TextScan scan(text);
    std::string_view folder;
    if (scan.decimal(&show) && scanDirectory(scan, isQuoted, &folder)) {
        directory = folder;
        command = scan.rest();
    }
}

}  // namespace juntora
