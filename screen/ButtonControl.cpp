// Push buttons and check boxes.
#include <QCheckBox>
#include <QPushButton>

#include "platform/desktop/message.h"
#include "screen/Channel.h"
#include "screen/Control.h"

namespace juntora::screen {
namespace {

constexpr DWORD KIND = 0xF;

/// What is pressed here is a click there.
void tellClicks(const QAbstractButton& button, HWND window) {
    QObject::connect(&button, &QAbstractButton::clicked,
                     [window] { tell(window, BM_CLICK, 0, 0); });
}

class PushButton : public ControlOf<QPushButton> {
public:
    PushButton(const ViewedWindow& viewed, QWidget* parent) : ControlOf(viewed.window, parent) {
        tellClicks(widget(), window());
    }

protected:
    void show(const ViewedWindow& viewed, const Units&) override {
        widget().setText(textOf(viewed.text));
        widget().setDefault(isDefaultButton(viewed));
    }
};

/// Whether it is checked is its owner's to say: a click is told, and the answer shown.
class CheckBox : public ControlOf<QCheckBox> {
public:
    CheckBox(const ViewedWindow& viewed, QWidget* parent)
        : ControlOf(viewed.window, parent),
          m_channel(Channel::to(viewed.thread)),
          m_alive(std::make_shared<int>()) {
        tellClicks(widget(), window());
        // The widget has changed itself, and an owner that refuses the click tells of no change.
        QObject::connect(&widget(), &QCheckBox::clicked, [this] { read(); });
    }
    bool isReading() const override { return m_questions > 0; }

protected:
    void show(const ViewedWindow& viewed, const Units&) override {
        widget().setText(textOf(viewed.text));
        read();
    }

private:
    void read() {
        ++m_questions;
        m_channel->ask(m_alive, [this, window = window()]() -> std::function<void()> {
            const bool isChecked = SendMessageA(window, BM_GETCHECK, 0, 0) == 1;
            return [this, isChecked] {
                --m_questions;
                widget().setChecked(isChecked);
            };
        });
    }

    std::shared_ptr<Channel> m_channel;
    std::shared_ptr<void> m_alive;
    int m_questions = 0;
};

}  // namespace

std::unique_ptr<Control> makeButton(const ViewedWindow& viewed, QWidget* parent) {
    if ((viewed.style & KIND) == BS_AUTOCHECKBOX) {
        return std::make_unique<CheckBox>(viewed, parent);
    }
    return std::make_unique<PushButton>(viewed, parent);
}

}  // namespace juntora::screen
