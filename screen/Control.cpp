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
    if (own.focusPolicy() != Qt::NoFocus) {
        own.setFocusPolicy((viewed.style & WS_TABSTOP) != 0 ? Qt::StrongFocus : Qt::ClickFocus);
    }
    own.setVisible((viewed.style & WS_VISIBLE) != 0);
    show(viewed, units);
}

bool isOfClass(const ViewedWindow& viewed, const char* name) {
    return qstricmp(viewed.className.c_str(), name) == 0;
}

bool isDefaultButton(const ViewedWindow& viewed) {
    constexpr DWORD KIND = 0xF;
    return isOfClass(viewed, "Button") && (viewed.style & KIND) == BS_DEFPUSHBUTTON;
}

std::unique_ptr<Control> makeControl(const ViewedWindow& viewed, QWidget* parent) {
    if (isOfClass(viewed, "Button")) {
        return makeButton(viewed, parent);
    }
    return isOfClass(viewed, "ListBox") ? makeList(viewed, parent) : makeStatic(viewed, parent);
}

}  // namespace juntora::screen
