#include "screen/Control.h"

#include "platform/messages.h"

namespace juntora::screen {

void Control::update(const ViewedWindow& viewed, const Units& units) {
    if (m_isUpToDate && viewed.changes == m_changes) {
        return;
    }
    m_isUpToDate = true;
    m_changes = viewed.changes;
    QWidget& own = widget();
    own.setGeometry(units.rect(viewed.place));
    own.setEnabled((viewed.style & WS_DISABLED) == 0);
    own.setVisible((viewed.style & WS_VISIBLE) != 0);
    show(viewed, units);
}

std::unique_ptr<Control> makeControl(const ViewedWindow& viewed, QWidget* parent) {
    if (viewed.className == "Button") {
        return makeButton(viewed, parent);
    }
    return viewed.className == "ListBox" ? makeList(viewed, parent) : makeStatic(viewed, parent);
}

}  // namespace juntora::screen
