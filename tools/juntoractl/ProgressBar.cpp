#include "tools/juntoractl/ProgressBar.h"

#include "platform/kernel/errorOutput.h"
#include "platform/kernel/printable.h"

namespace juntora {
namespace {

constexpr std::size_t WIDTH = 30;
constexpr char CLEAR_LINE[] = "\r\x1b[K";

/// What goes beyond the last column would begin a second line, which is never taken away.
std::size_t fittingBytes(const std::string& line) {
    std::size_t columns = kernel::ErrorColumns();
    if (columns == 0 || line.size() < columns) {
        return line.size();
    }
    for (--columns; columns > 0 && (line[columns] & 0xc0) == 0x80;) {
        --columns;  // Not through a character.
    }
    return columns;
}

}  // namespace

void ProgressBar::show(std::size_t done, const std::string& at) {
    if (m_steps == 0 || !kernel::ErrorsAreOnTerminal()) {
        return;
    }
    const std::size_t filled = WIDTH * done / m_steps;
    const std::string line = '[' + std::string(filled, '#') + std::string(WIDTH - filled, '.') +
                             "] " + std::to_string(done) + " of " + std::to_string(m_steps) + "  " +
                             PrintableText(at);
    kernel::WriteToErrors(CLEAR_LINE + line.substr(0, fittingBytes(line)));
    m_isShown = true;
}

void ProgressBar::clear() {
    if (m_isShown) {
        kernel::WriteToErrors(CLEAR_LINE);
        m_isShown = false;
    }
}

}  // namespace juntora
