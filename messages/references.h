// References in the text of a catalogue: "&lt;", "&#228;".
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace juntora {

/// Puts in their places what the references of a text stand for: the five names that XML has, and
/// characters by number. Returns the front of the memory, to which the text has become shorter.
/// Nothing, with the text half done, where there is a reference to anything else: another name, the
/// character zero, a number that is no character, or a bare "&".
std::optional<std::string_view> decodeReferences(std::span<char> text);

}  // namespace juntora
