// Texts of other processes on a person's terminal.
#pragma once

#include <string>
#include <string_view>

namespace juntora {

/// The text with every control character, line ends among them, as "\x1b": a record, a name or a
/// file must neither steer the terminal nor break the line that it is printed in.
std::string PrintableText(std::string_view text);

}  // namespace juntora
