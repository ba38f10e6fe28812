// A descriptor that is closed with its owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace juntora::test {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor() { reset(); }

    void reset() {
        if (m_number >= 0) {
            close(std::exchange(m_number, -1));
        }
    }
    /// -1 for none.
    operator int() const& { return m_number; }
    operator int() && = delete;  // It would be closed already.

private:
    int m_number = -1;
};

}  // namespace juntora::test
