// The words of one line of a script.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace juntora {

/// Takes a line apart from the front. A word with blanks in it stands in double quotes, inside
/// which two double quotes stand for one and a backslash is a character like any other. What is
/// missing or not understood is told by problem(), the first of them; the values are empty from
/// then on.
class Arguments {
public:
    explicit Arguments(std::string_view line) : m_rest(line) {}

    std::string word(const char* what);
    /// All the words that are left.
    std::vector<std::string> words();
    /// Takes the next word if it is this one.
    bool takeIf(std::string_view expected);
    HWND window(const char* what);
    /// A decimal number from `lowest` to `highest`.
    int number(const char* what, int lowest, int highest);
    /// The last argument: one in quotes, or else all that is left of the line.
    std::string text(const char* what);
    /// The same, nothing where the line ends before it.
    std::optional<std::string> optionalText();

    /// Whether nothing is left, understood or not.
    bool isAtEnd();
    /// Whether the line ends here and was understood; else problem() tells.
    bool areComplete();
    const std::string& problem() const { return m_problem; }

private:
    void skipBlanks();
    std::string takeQuoted();
    void complain(std::string problem);

    std::string_view m_rest;
    std::string m_problem;
};

}  // namespace juntora
