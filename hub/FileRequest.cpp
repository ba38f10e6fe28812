#include "hub/FileRequest.h"

#include "ipc/TextScan.h"

namespace juntora {

FileRequest::FileRequest(std::string_view text) {
    const std::size_t quote = text.find('"');
    const bool isQuoted = quote != std::string_view::npos;
    TextScan scan(text.substr(isQuoted ? quote : 0));
    std::string_view name;
    const bool hasFile = isQuoted ? scan.quoted(" \"", &name) : scan.word(&name);
    isComplete = hasFile && scan.integer(&number);
    if (isComplete) {
        file = name;
        scan.window(&window);
    }
}

}  // namespace juntora
