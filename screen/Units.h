// From the dialog model's pixels to those of this display.
#pragma once

#include <string>

#include <QRect>
#include <QString>

#include "platform/types.h"

class QFont;

namespace juntora::screen {

/// The model is laid out for a font of 6 by 13 pixels. Here another one is in use, and everything
/// grows with it in both directions, so that texts fit where they fitted there.
class Units {
public:
    explicit Units(const QFont& font);

    QRect rect(const RECT& place) const;
    QSize size(const RECT& place) const { return rect(place).size(); }

private:
    double m_across;
    double m_down;
};

/// Bytes of the model as text: UTF-8 where they are that, else one sign a byte.
QString textOf(const std::string& bytes);

}  // namespace juntora::screen
