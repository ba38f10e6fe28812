#include "screen/Units.h"

#include <QFontMetricsF>
#include <QStringDecoder>

namespace juntora::screen {
namespace {

// What the model's pixels are measured by.
constexpr double MODEL_WIDTH = 6;
constexpr double MODEL_HEIGHT = 13;

/// The average of the letters, as dialog units are defined.
double averageWidth(const QFontMetricsF& metrics) {
    const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    return metrics.horizontalAdvance(letters) / static_cast<double>(letters.size());
}

}  // namespace

Units::Units(const QFont& font) {
    const QFontMetricsF metrics(font);
    m_across = averageWidth(metrics) / MODEL_WIDTH;
    m_down = metrics.height() / MODEL_HEIGHT;
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
