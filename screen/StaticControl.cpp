// Texts, icons and rules.
#include <QFrame>
#include <QLabel>

#include "platform/dialog/TextSize.h"
#include "platform/messages.h"
#include "screen/Control.h"
#include "screen/Icons.h"

namespace juntora::screen {
namespace {

constexpr DWORD KIND = 0x1F;

class Label : public ControlOf<QLabel> {
public:
    Label(const ViewedWindow& viewed, QWidget* parent) : ControlOf(viewed.window, parent) {
        widget().setAlignment(Qt::AlignLeft | Qt::AlignTop);
    }

protected:
    void show(const ViewedWindow& viewed, const Units& units) override {
        const auto icon =
            (viewed.style & KIND) == SS_ICON ? iconNumberOf(viewed.text) : std::nullopt;
        if (icon) {
            showIcon(*icon, units.size(viewed.place));
        } else {
            widget().setTextFormat(Qt::PlainText);
            widget().setAlignment(
                ((viewed.style & KIND) == SS_CENTER ? Qt::AlignHCenter : Qt::AlignLeft) |
                Qt::AlignTop);
            const QString text = plainText(viewed);
            // Where there is room for several lines, a text that is not broken yet is.
            const bool isForLines =
                viewed.place.bottom - viewed.place.top >= 2 * dialog::FONT_HEIGHT;
            widget().setWordWrap(isForLines && !text.contains(QLatin1Char('\n')));
            widget().setText(text);
            // Another font's letters: what would be cut takes the room that it needs.
            const int width = widget().width();
            widget().resize(widget().wordWrap() ? QSize(width, qMax(widget().height(),
                                                                    widget().heightForWidth(width)))
                                                : widget().size().expandedTo(widget().sizeHint()));
        }
    }

private:
    void showIcon(int number, QSize size) {
        constexpr int LARGEST = 256;
        const int side = qMin(LARGEST, qMin(size.width(), size.height()));
        widget().setPixmap(iconOf(number).pixmap(QSize(side, side), widget().devicePixelRatioF()));
        widget().setAccessibleName(nameOfIcon(number));
    }

    /// A label shows no mnemonic of its own here: its text is only looked at.
    static QString plainText(const ViewedWindow& viewed) {
        QString text = textOf(viewed.text);
        if ((viewed.style & SS_NOPREFIX) == 0) {
            text.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
            text.remove(QLatin1Char('&'));
            text.replace(QLatin1Char('\x01'), QLatin1Char('&'));
        }
        return text;
    }
};

class Rule : public ControlOf<QFrame> {
public:
    Rule(const ViewedWindow& viewed, QWidget* parent) : ControlOf(viewed.window, parent) {
        widget().setFrameStyle(QFrame::HLine | QFrame::Sunken);
        widget().setAccessibleName(QStringLiteral("Separator"));
    }

protected:
    void show(const ViewedWindow&, const Units&) override {}
};

}  // namespace

std::unique_ptr<Control> makeStatic(const ViewedWindow& viewed, QWidget* parent) {
    if ((viewed.style & KIND) == SS_ETCHEDHORZ) {
        return std::make_unique<Rule>(viewed, parent);
    }
    return std::make_unique<Label>(viewed, parent);
}

}  // namespace juntora::screen
