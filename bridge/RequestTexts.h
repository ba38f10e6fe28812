// What the bridge reads in the texts of records.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ipc/IpcMessage.h"

namespace juntora {

/// The whole text of a record, also of one that is too long for its slot: the file that it is in is
/// read and gone then.
std::string takeText(const IpcMessage& record);

/// A request to start a tool: `1 "C:\folder" "C:\bin\voltara.exe" arguments`.
struct QuotedLaunch {
    std::string program;
    std::string arguments;  ///< Without the blanks in front.
};

/// Nothing for another form, in which the folder or the program stands without quotes, and for a
/// folder or program of more than 259 characters.
std::optional<QuotedLaunch> readQuotedLaunch(std::string_view text);

inline std::string quoted(const std::string& text) { return '"' + text + '"'; }

/// The tokens of a text, without empty ones; double quotes keep delimiters together.
std::vector<std::string> tokensOf(const std::string& text, const char* delimiters);

}  // namespace juntora
