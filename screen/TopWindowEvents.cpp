// What a person, and the window manager, do with a window.
#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QWindow>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "screen/Channel.h"
#include "screen/TopWindow.h"

namespace juntora::screen {
namespace {

// Keys as the platform numbers them.
constexpr WPARAM KEY_RETURN = 13;
constexpr WPARAM KEY_ESCAPE = 27;

}  // namespace

void TopWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!isEnabled()) {
        return;  // A box of its own stands in front of it.
    }
    tell(m_window, WM_SYSCOMMAND, SC_CLOSE, 0);
}

void TopWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        if (!m_settling.isActive()) {
            tellState();
        }
    } else if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        activated();
    } else if (event->type() == QEvent::FontChange) {
        remeasure();
    }
}

/// By the person. A disabled window has a box of its own in front of it, which is what the person
/// can use.
void TopWindow::activated() {
    if (isEnabled()) {
        if (GetForegroundWindow() != m_window) {
            SetForegroundWindow(m_window);
        }
        return;
    }
    TopWindow* box = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* const window = dynamic_cast<TopWindow*>(widget);
        if (window != nullptr && window->isVisible() && window->isEnabled() &&
            window->windowHandle()->transientParent() == windowHandle() &&
            (box == nullptr || box->m_order < window->m_order)) {
            box = window;
        }
    }
    if (box != nullptr) {
        box->bringToFront();
    }
}

/// A window that was asked to come to the front before it was there has not come.
void TopWindow::settle() {
    tellState();
    if (GetForegroundWindow() == m_window && !isActiveWindow()) {
        bringToFront();
    }
}

/// What the window manager has done, where it is not what the model has.
void TopWindow::tellState() {
    // One that cannot be put away by itself went with its owner.
    const bool wasOwnDoing = !isMinimized() || (m_style & WS_MINIMIZEBOX) != 0;
    if (isVisible() && wasOwnDoing && isMinimized() != ((m_style & WS_MINIMIZE) != 0)) {
        tell(m_window, WM_SYSCOMMAND, isMinimized() ? SC_MINIMIZE : SC_RESTORE, 0);
    }
}

HWND TopWindow::focusedControl() const {
    for (const auto& [window, control] : m_controls) {
        if (control->widget().hasFocus()) {
            return window;
        }
    }
    return m_window;
}

void TopWindow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            tell(focusedControl(), WM_KEYDOWN, KEY_RETURN, 0);
            break;
        case Qt::Key_Escape:
            tell(m_window, WM_KEYDOWN, KEY_ESCAPE, 0);
            break;
        default:
            tellLetter(*event);
            break;
    }
}

/// A button's letter presses it without the Alt key as well.
void TopWindow::tellLetter(const QKeyEvent& event) {
    const QByteArray letter = event.text().toLatin1();
    const bool isPlain = (event.modifiers() & ~Qt::ShiftModifier) == Qt::NoModifier;
    if (isPlain && letter.size() == 1 && letter.front() > ' ') {
        tell(focusedControl(), WM_CHAR, static_cast<unsigned char>(letter.front()), 0);
    }
}

void TopWindow::contextMenuEvent(QContextMenuEvent* event) {
    // It may outlive this window: the commands go to the model.
    m_menu.refresh();
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setWindowTitle(QStringLiteral("Menu of %1").arg(windowTitle()));
    m_menu.fill(*menu);
    menu->popup(event->globalPos());
}

}  // namespace juntora::screen
