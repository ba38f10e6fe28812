#include "bridge/RequestTexts.h"

#include <cstddef>

#include "common/TextTokens.h"
#include "hub/RecordText.h"
#include "ipc/Spill.h"
#include "ipc/TextScan.h"

namespace juntora {
namespace {

constexpr std::size_t LONGEST_FIELD = 259;

}  // namespace

std::string takeText(const IpcMessage& record) {
    if (record.spillLength < 1) {
        return RecordText(record).c_str();
    }
    IpcMessage* whole = newExpandedCopy(&record);
    if (whole == nullptr) {
        return "";
    }
    // The text is longer than the field that it starts in.
    std::string text = reinterpret_cast<const char*>(whole) + offsetof(IpcMessage, text);
    deleteExpandedCopy(whole);
    return text;
}

std::optional<QuotedLaunch> readQuotedLaunch(std::string_view text) {
    TextScan scan(text);
    std::int32_t show = 0;
    std::string_view folder;
    std::string_view program;
    if (!scan.decimal(&show) || !scan.rest().starts_with('"') || !scan.quoted("\"", &folder) ||
        !scan.rest().starts_with('"') || !scan.quoted("\"", &program)) {
        return std::nullopt;
    }
    const bool isClosed = program.data() + program.size() < text.data() + text.size();
    if (!isClosed || folder.size() > LONGEST_FIELD || program.size() > LONGEST_FIELD) {
        return std::nullopt;
    }
    return QuotedLaunch{std::string(program), std::string(scan.rest())};
}

std::vector<std::string> tokensOf(const std::string& text, const char* delimiters) {
    TextTokens tokens(text.c_str(), delimiters, 1, "\"");
    std::vector<std::string> all;
    for (int i = 0; i < tokens.count(); ++i) {
        CString token;
        tokens.get(i, token);
        all.emplace_back(token);
    }
    return all;
}

}  // namespace juntora
