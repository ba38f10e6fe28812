#include "screen/Icons.h"

#include <charconv>

#include <QApplication>
#include <QStyle>

#include "platform/messages.h"

namespace juntora::screen {
namespace {

constexpr int IDI_SUITE = 128;

QIcon standardIcon(QStyle::StandardPixmap picture) {
    return QApplication::style()->standardIcon(picture);
}

}  // namespace

QIcon iconOf(int resource) {
    switch (resource) {
        case IDI_SUITE:
            return QIcon(QStringLiteral(":/juntora.svg"));
        case IDI_STOP:
            return standardIcon(QStyle::SP_MessageBoxCritical);
        case IDI_QUESTION:
            return standardIcon(QStyle::SP_MessageBoxQuestion);
        case IDI_WARNING:
            return standardIcon(QStyle::SP_MessageBoxWarning);
        case IDI_INFORMATION:
            return standardIcon(QStyle::SP_MessageBoxInformation);
        default:
            return {};
    }
}

std::optional<int> iconNumberOf(const std::string& text) {
    int number = 0;
    const char* const end = text.data() + text.size();
    if (!text.starts_with('#') || std::from_chars(text.data() + 1, end, number).ptr != end) {
        return std::nullopt;
    }
    return number;
}

}  // namespace juntora::screen
