#include "screen/Icons.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include <QApplication>
#include <QStyle>

#include "platform/messages.h"

namespace juntora::screen {
namespace {

constexpr int IDI_SUITE = 128;

/// The platform's own pictures, as the desktop in use draws them, and what they say.
struct StandardPicture {
    int resource;
    QStyle::StandardPixmap picture;
    const char* name;
};

constexpr StandardPicture STANDARD_PICTURES[] = {
    {IDI_STOP, QStyle::SP_MessageBoxCritical, "Error"},
    {IDI_QUESTION, QStyle::SP_MessageBoxQuestion, "Question"},
    {IDI_WARNING, QStyle::SP_MessageBoxWarning, "Warning"},
    {IDI_INFORMATION, QStyle::SP_MessageBoxInformation, "Information"},
};

const StandardPicture* standardPicture(int resource) {
    const auto* const found =
        std::ranges::find(STANDARD_PICTURES, resource, &StandardPicture::resource);
    return found == std::end(STANDARD_PICTURES) ? nullptr : found;
}

}  // namespace

QIcon iconOf(int resource) {
    if (resource == IDI_SUITE) {
        return QIcon(QStringLiteral(":/juntora.svg"));
    }
    const StandardPicture* const standard = standardPicture(resource);
    return standard == nullptr ? QIcon() : QApplication::style()->standardIcon(standard->picture);
}

QString nameOfIcon(int resource) {
    if (resource == IDI_SUITE) {
        return QStringLiteral("Voltara Juntora");
    }
    const StandardPicture* const standard = standardPicture(resource);
    return standard == nullptr ? QString() : QLatin1String(standard->name);
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
