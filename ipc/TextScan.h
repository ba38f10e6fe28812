// Reads the texts of records, field by field.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/types.h"

namespace juntora {

/// Reads what printf-style formats have written, as scanf would: blanks before a field are skipped,
/// and a field ends at the first character that cannot belong to it. Each call returns false when
/// there is no such field, and then leaves `*field` alone; what follows is not to be read any more.
class TextScan {
public:
    /// `text` must outlive the scan.
    explicit TextScan(std::string_view text) : m_rest(text) {}

    /// "%s": the characters up to the next blank.
    bool word(std::string_view* field);
    /// "%*[\"] %[^\"] %*c", with more to skip in the brackets than the quote: the characters in
    /// double quotes, without the blanks before them. Where the closing quote is missing they run
    /// to the end of the text.
    bool quoted(std::string_view skipped, std::string_view* field);
    /// "%d". A number beyond 32 bits is none.
    bool decimal(std::int32_t* field);
    /// "%i": as decimal, but octal behind a 0, and hexadecimal behind 0x.
    bool integer(std::int32_t* field);
    /// "%lx", a window: hexadecimal with or without a sign and the prefix 0x. A number beyond 32
    /// bits is none, for no window has it.
    bool window(HWND* field);

    /// What is left behind the fields read, and the blanks behind these.
    std::string_view rest();

private:
    void skipBlanks();
    bool number(int base, bool negative, std::int32_t* field);
    bool skipPrefix();
    bool skipSign();
    std::string_view m_rest;
};

/// The window that a text names, 0 (which is no window) if it names none.
HWND scanWindow(std::string_view text);

}  // namespace juntora
