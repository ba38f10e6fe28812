// Pictures by resource number.
#pragma once

#include <optional>
#include <string>

#include <QIcon>
#include <QString>

namespace juntora::screen {

/// The suite's own and the platform's; a null icon for any other number.
QIcon iconOf(int resource);

/// What a picture says, for those who don't see it; empty for any other number than iconOf's.
QString nameOfIcon(int resource);

/// The number in the text of a control that shows an icon ("#128").
std::optional<int> iconNumberOf(const std::string& text);

}  // namespace juntora::screen
