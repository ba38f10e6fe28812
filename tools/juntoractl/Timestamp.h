// The time at which something is printed.
#pragma once

#include <string>

namespace juntora {

class Timestamp {
public:
    /// Now.
    Timestamp();

    /// "14:05:09.123", where the user is.
    std::string clock() const;
    /// "2024-05-01T12:05:09.123Z"
    std::string iso() const;

private:
    long long m_milliseconds;  ///< Since 1970.
};

}  // namespace juntora
