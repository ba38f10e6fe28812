// Extended help of catalogued messages, shown as a page in the desktop's viewer.
#pragma once

#include <string>

namespace juntora {

/// Writes the help page of a message to a new file in the folder for temporary files, which stays,
/// and opens it in the viewer for such files. 0; 1 if the message is unknown or has no page.
/// Whether a viewer shows it, nobody tells.
int showMessageHelp(const char* module, unsigned long number);

/// The same for a message that a text names, as "(TVCOMMN-1821)" does. 1 too where it names none.
int showMessageHelpForText(const char* text);

/// Reads the module and number that stand in a text between the first "(" and the first ")", with
/// the first "-" of the text between them. A number that is none is 0. 0; 1 if there is no such
/// name, and then nothing is changed.
int parseMessageKey(const char* text, std::string* module, int* number);

}  // namespace juntora
