// The answers that users had remembered, kept with the application's settings (CWinApp's profile).
#pragma once

#include <string>

namespace juntora {

inline constexpr char ANSWERS_SECTION[] = "Donot Show Dialog";
inline constexpr char NO_ANSWER[] = "0";

/// The value for a message as it is kept: a button's number in decimal; NO_ANSWER where none is.
std::string storedAnswer(const char* module, unsigned long number);
/// NO_ANSWER: from now on the user is asked again.
void storeAnswer(const char* module, unsigned long number, const std::string& answer);

}  // namespace juntora
