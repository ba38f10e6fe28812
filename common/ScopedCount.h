// How deep something is nested.
#pragma once

namespace juntora {

/// Adds one for as long as it lives.
class ScopedCount {
public:
    explicit ScopedCount(int& count) : m_nCount(count) { ++m_nCount; }
    ~ScopedCount() { --m_nCount; }
    ScopedCount(const ScopedCount&) = delete;
    ScopedCount& operator=(const ScopedCount&) = delete;

private:
    int& m_nCount;
};

}  // namespace juntora
