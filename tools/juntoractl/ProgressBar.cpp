#include "tools/juntoractl/ProgressBar.h"

#include "platform/kernel/errorOutput.h"
#include "platform/kernel/printable.h"

namespace juntora {
namespace {

constexpr std::size_t WIDTH = 30;
constexpr char CLEAR_LINE[] = "\r\x1b[K";

}  // namespace

void ProgressBar::show(std::size_t done, const std::string& at) {
    if (m_steps == 0 || !kernel::ErrorsAreOnTerminal()) {
        return;
    }
    const std::size_t filled = WIDTH * done / m_steps;
    kernel::WriteToErrors(CLEAR_LINE + ('[' + std::string(filled, '#')) +
                          std::string(WIDTH - filled, '.') + "] " + std::to_string(done) + " of " +
                          std::to_string(m_steps) + "  " + PrintableText(at));
    m_isShown = true;
}

void ProgressBar::clear() {
    if (m_isShown) {
        kernel::WriteToErrors(CLEAR_LINE);
        m_isShown = false;
    }
}

}  // namespace juntora
