// Standard error, for a program that must outlive whoever started it.
#pragma once

#include <string_view>

namespace juntora::kernel {

/// Writes the text. What nobody takes is dropped: a reader that has gone does not end this process,
/// and one that does not read does not hold it up.
void WriteToErrors(std::string_view text);

/// While it lives, what this process and its libraries write to standard error goes nowhere, and a
/// process that ends itself leaves no memory image: for a library that ends the process with words
/// of its own when it finds no display. One at a time.
class SilencedErrors {
public:
    SilencedErrors();
    ~SilencedErrors();
    SilencedErrors(const SilencedErrors&) = delete;
    SilencedErrors& operator=(const SilencedErrors&) = delete;

private:
    int m_errors;                  ///< Where they went before; -1 if they still do.
    unsigned long long m_largest;  ///< Image that the process would have left, in bytes.
};

}  // namespace juntora::kernel
