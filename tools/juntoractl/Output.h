// What juntoractl prints.
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "platform/types.h"

namespace juntora {

/// Keeps its members in the order in which they were put in.
using Json = nlohmann::ordered_json;

/// Writes a line to standard output at once, its control characters made visible. False when nobody
/// reads it any more.
bool printLine(std::string_view line);
/// The same for an object. Bytes that are no UTF-8 are printed as replacement characters.
bool printJson(const Json& value);
/// "juntoractl: MESSAGE" to standard error, as printLine does.
void complain(std::string_view message);

/// A window as it travels: lower-case hexadecimal without a prefix.
std::string windowText(HWND window);
/// Reads one. False when `text` is none.
bool parseWindow(std::string_view text, HWND* window);

}  // namespace juntora
