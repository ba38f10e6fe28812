#include "screen/Units.h"

#include <QFontMetricsF>
#include <QStringDecoder>

#include "platform/dialog/TextSize.h"

namespace juntora::screen {
namespace {

/// The average of the letters, as dialog units are defined.
double averageWidth(const QFontMetricsF& metrics) {
    const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    return metrics.horizontalAdvance(letters) / static_cast<double>(letters.size());
}

}  // namespace

Units::Units(const QFont& font) {
    const QFontMetricsF metrics(font);
    m_across = averageWidth(metrics) / dialog::FONT_WIDTH;
    m_down = metrics.height() / dialog::FONT_HEIGHT;
}

QRect Units::rect(const RECT& place) const {
    const int left = qRound(place.left * m_across);
    const int top = qRound(place.top * m_down);
    return {QPoint(left, top),
            QSize(qRound(place.right * m_across) - left, qRound(place.bottom * m_down) - top)};
}

QString textOf(const std::string& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text =
        decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return decoder.hasError() ? QString::fromLatin1(bytes.c_str()) : text;
}

}  // namespace juntora::screen
