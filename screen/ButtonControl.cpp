// Push buttons and check boxes.
#include <QCheckBox>
#include <QPushButton>

#include "platform/desktop/message.h"
#include "screen/Channel.h"
#include "screen/Control.h"

namespace juntora::screen {
namespace {

constexpr DWORD KIND = 0xF;

class PushButton : public Control {
public:
    PushButton(const ViewedWindow& viewed, QWidget* parent)
        : Control(viewed.window), m_button(std::make_unique<QPushButton>(parent)) {
        QObject::connect(m_button.get(), &QPushButton::clicked,
                         [window = window()] { tell(window, BM_CLICK, 0, 0); });
    }
    QWidget& widget() override { return *m_button; }

protected:
    void show(const ViewedWindow& viewed, const Units&) override {
        m_button->setText(textOf(viewed.text));
        m_button->setDefault((viewed.style & KIND) == BS_DEFPUSHBUTTON);
    }

private:
    std::unique_ptr<QPushButton> m_button;
};

/// Whether it is checked is its owner's to say: a click is told, and the answer shown.
class CheckBox : public Control {
public:
    CheckBox(const ViewedWindow& viewed, QWidget* parent)
        : Control(viewed.window),
          m_box(std::make_unique<QCheckBox>(parent)),
          m_channel(Channel::to(viewed.thread)),
          m_alive(std::make_shared<int>()) {
        QObject::connect(m_box.get(), &QCheckBox::clicked,
                         [window = window()] { tell(window, BM_CLICK, 0, 0); });
    }
    QWidget& widget() override { return *m_box; }

protected:
    void show(const ViewedWindow& viewed, const Units&) override {
        m_box->setText(textOf(viewed.text));
        m_channel->ask(m_alive, [this, window = window()]() -> std::function<void()> {
            const bool isChecked = SendMessageA(window, BM_GETCHECK, 0, 0) == 1;
            return [this, isChecked] { m_box->setChecked(isChecked); };
        });
    }

private:
    std::unique_ptr<QCheckBox> m_box;
    std::shared_ptr<Channel> m_channel;
    std::shared_ptr<void> m_alive;
};

}  // namespace

std::unique_ptr<Control> makeButton(const ViewedWindow& viewed, QWidget* parent) {
    if ((viewed.style & KIND) == BS_AUTOCHECKBOX) {
        return std::make_unique<CheckBox>(viewed, parent);
    }
    return std::make_unique<PushButton>(viewed, parent);
}

}  // namespace juntora::screen
