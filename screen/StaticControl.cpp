// Texts, icons and rules.
#include <QFrame>
#include <QLabel>

#include "platform/messages.h"
#include "screen/Control.h"
#include "screen/Icons.h"

namespace juntora::screen {
namespace {

constexpr DWORD KIND = 0x1F;

class Label : public Control {
public:
    Label(const ViewedWindow& viewed, QWidget* parent)
        : Control(viewed.window), m_label(std::make_unique<QLabel>(parent)) {
        m_label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    }
    QWidget& widget() override { return *m_label; }

protected:
    void show(const ViewedWindow& viewed, const Units& units) override {
        const auto icon =
            (viewed.style & KIND) == SS_ICON ? iconNumberOf(viewed.text) : std::nullopt;
        if (icon) {
            showIcon(*icon, units.size(viewed.place));
        } else {
            m_label->setTextFormat(Qt::PlainText);
            m_label->setText(plainText(viewed));
            // Another font's letters: a line that would be cut takes what room it needs.
            m_label->resize(m_label->size().expandedTo(m_label->sizeHint()));
        }
    }

private:
    void showIcon(int number, QSize size) {
        constexpr int LARGEST = 256;
        const int side = qMin(LARGEST, qMin(size.width(), size.height()));
        m_label->setPixmap(iconOf(number).pixmap(QSize(side, side), m_label->devicePixelRatioF()));
        m_label->setAccessibleName(QStringLiteral("Icon"));
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

    std::unique_ptr<QLabel> m_label;
};

class Rule : public Control {
public:
    Rule(const ViewedWindow& viewed, QWidget* parent)
        : Control(viewed.window), m_frame(std::make_unique<QFrame>(parent)) {
        m_frame->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    }
    QWidget& widget() override { return *m_frame; }

protected:
    void show(const ViewedWindow&, const Units&) override {}

private:
    std::unique_ptr<QFrame> m_frame;
};

}  // namespace

std::unique_ptr<Control> makeStatic(const ViewedWindow& viewed, QWidget* parent) {
    if ((viewed.style & KIND) == SS_ETCHEDHORZ) {
        return std::make_unique<Rule>(viewed, parent);
    }
    return std::make_unique<Label>(viewed, parent);
}

}  // namespace juntora::screen
