// How far a command has come, for a person who waits for it.
#pragma once

#include <cstddef>
#include <string>

namespace juntora {

/// One line at the bottom of the terminal that standard error is; nothing where it is none.
class ProgressBar {
public:
    explicit ProgressBar(std::size_t steps) : m_steps(steps) {}
    ~ProgressBar() { clear(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Shows that `done` steps are done, and what is being worked at.
    void show(std::size_t done, const std::string& at);
    /// Takes the line away, so that another can be printed.
    void clear();

private:
    const std::size_t m_steps;
    bool m_isShown = false;
};

}  // namespace juntora
