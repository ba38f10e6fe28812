// The text of a private-profile file: sections of keys with values, and lines that are for people.
//
//     [Section]
//     ; a comment
//     Key = value
//
// Names of sections and keys count without regard to the case of A to Z and to blanks around them;
// sections of one name are one, and of keys of one name in it the first counts. A value is what
// stands behind the first "=", without the blanks around it, and without a pair of quotes that is
// put around all of it and has none of its kind inside. A line that begins with ";" is a comment;
// so is, for the reader, any other that is none of the two above. Lines end in LF or CRLF, and for
// the reader at a NUL. A UTF-8 mark at the start is passed over.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace juntora::files {

/// Blanks, tabs and carriage returns at both ends go.
std::string_view withoutBlanks(std::string_view text);

/// Looks at a text, which must stay.
class ProfileText {
public:
    explicit ProfileText(std::string_view text) : m_text(text) {}

    /// Whether the text is of 16-bit characters, by its mark, so that none of this can be found.
    bool isWide() const;

    std::optional<std::string_view> value(std::string_view section, std::string_view key) const;
    /// Each name once, as it is written first; those without a letter are left out.
    std::vector<std::string_view> sections() const;
    std::vector<std::string_view> keys(std::string_view section) const;

    // The text with a change. All that is not changed stays as it is: order, blanks, comments and
    // line ends. The names must be of the form below, and a value without a line end.

    /// A new key comes behind the last one of its section, a new section at the end, each with the
    /// line end that the text has. The value goes in without the blanks around it.
    std::string withValue(std::string_view section, std::string_view key,
                          std::string_view value) const;
    std::string withoutKey(std::string_view section, std::string_view key) const;
    /// Comments behind the section's last key stay: they may be about what follows.
    std::string withoutSection(std::string_view section) const;

    /// Whether a name, without blanks around it, could be read again from the line it would make.
    static bool isSectionName(std::string_view name);
    static bool isKeyName(std::string_view name);

private:
    std::string_view m_text;
};

}  // namespace juntora::files
