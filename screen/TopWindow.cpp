#include "screen/TopWindow.h"

#include <set>

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>
#include <QWindow>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "screen/Channel.h"
#include "screen/Icons.h"

namespace juntora::screen {
namespace {

// Keys as the platform numbers them.
constexpr WPARAM KEY_RETURN = 13;
constexpr WPARAM KEY_ESCAPE = 27;

/// How long a window manager may take to do what it was asked to. Until then its word of a state
/// may be about an earlier one.
constexpr int SETTLING_MILLISECONDS = 400;

/// Between a window and one that it has opened, where the model names no place.
constexpr int GAP = 8;

Qt::WindowFlags flagsOf(const ViewedWindow& viewed) {
    Qt::WindowFlags flags = Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    const bool isForTaskBar = (viewed.extendedStyle & WS_EX_APPWINDOW) != 0;
    flags |= isForTaskBar || viewed.owner == 0 ? Qt::Window : Qt::Dialog;
    if ((viewed.style & WS_SYSMENU) != 0) {
        flags |= Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    }
    if ((viewed.style & WS_MINIMIZEBOX) != 0) {
        flags |= Qt::WindowMinimizeButtonHint;
    }
    return flags;
}

bool isSamePlace(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

}  // namespace

TopWindow::TopWindow(const ViewedWindow& viewed)
    : QWidget(nullptr, flagsOf(viewed)),
      m_window(viewed.window),
      m_units(font()),
      m_menu(viewed.window, viewed.thread) {
    // Who gets the focus is for the program and the person to say.
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    m_settling.setSingleShot(true);
    m_settling.setInterval(SETTLING_MILLISECONDS);
    QObject::connect(&m_settling, &QTimer::timeout, this, [this] { settle(); });
    if ((viewed.extendedStyle & WS_EX_APPWINDOW) != 0 && QSystemTrayIcon::isSystemTrayAvailable()) {
        m_tray = std::make_unique<Tray>(m_menu);
    }
}

TopWindow::~TopWindow() = default;

void TopWindow::update(const ViewedWindow& viewed, const std::vector<ViewedWindow>& controls) {
    std::vector<DWORD> changes{viewed.changes};
    for (const ViewedWindow& control : controls) {
        changes.insert(changes.end(), {control.window, control.changes});
    }
    if (changes == m_changes) {
        return;
    }
    m_changes = std::move(changes);
    updateFrame(viewed);
    updateControls(controls);
    updateState(viewed.style);
    if (m_tray) {
        m_tray->update(viewed, controls);
    }
}

void TopWindow::updateFrame(const ViewedWindow& viewed) {
    setWindowTitle(textOf(viewed.text));
    setWindowIcon(iconOf(viewed.icon));
    setEnabled((viewed.style & WS_DISABLED) == 0);
    if (!m_isPlaced || !isSamePlace(viewed.place, m_modelPlace)) {
        place(viewed);
    }
}

/// Where the model says, whenever that changes. At first centred windows come to this display's
/// middle, and those that the model only put into its corner below the one that opened them, so
/// that they do not hide it, or where the window manager finds a place.
void TopWindow::place(const ViewedWindow& viewed) {
    const QRect wanted = m_units.rect(viewed.place);
    setFixedSize(wanted.size());
    if ((viewed.style & DS_CENTER) != 0 && !m_isPlaced) {
        const QRect room = screen()->availableGeometry();
        move(room.center() - QPoint(wanted.width() / 2, wanted.height() / 2));
    } else if (m_isPlaced || !wanted.topLeft().isNull()) {
        move(wanted.topLeft());
    } else if (!m_owner.isNull()) {
        move(m_owner.bottomLeft() + QPoint(0, GAP));
    }
    m_isPlaced = true;
    m_modelPlace = viewed.place;
}

void TopWindow::updateControls(const std::vector<ViewedWindow>& controls) {
    std::set<HWND> there;
    QWidget* before = nullptr;
    for (const ViewedWindow& viewed : controls) {
        there.insert(viewed.window);
        std::unique_ptr<Control>& control = m_controls[viewed.window];
        const bool isNew = !control;
        if (isNew) {
            control = makeControl(viewed, this);
        }
        control->update(viewed, m_units);
        if (isNew && before != nullptr) {
            setTabOrder(before, &control->widget());
        }
        before = &control->widget();
    }
    std::erase_if(m_controls, [&](const auto& entry) { return !there.contains(entry.first); });
}

void TopWindow::updateState(DWORD style) {
    const bool isMinimised = (style & WS_MINIMIZE) != 0;
    const bool wasMinimised = (m_style & WS_MINIMIZE) != 0;
    const bool isFirst = !isVisible();
    m_style = style;
    if (isFirst || isMinimised != wasMinimised) {
        m_settling.start();
    }
    if (isMinimised && (isFirst || !wasMinimised)) {
        showMinimized();
    } else if (isFirst) {
        show();
    } else if (!isMinimised && wasMinimised) {
        showNormal();
        bringToFront();
    }
}

void TopWindow::stayAbove(TopWindow& owner) {
    const bool isThere = windowHandle() != nullptr && windowHandle()->transientParent() != nullptr;
    if (!isThere && !owner.isMinimized()) {
        m_owner = owner.frameGeometry();
        owner.winId();
        winId();
        windowHandle()->setTransientParent(owner.windowHandle());
    }
}

void TopWindow::bringToFront() {
    if ((m_style & WS_MINIMIZE) == 0) {
        raise();
        activateWindow();
    }
}

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
    } else if (event->type() == QEvent::ActivationChange && isActiveWindow() &&
               GetForegroundWindow() != m_window) {
        SetForegroundWindow(m_window);
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
    if (isVisible() && isMinimized() != ((m_style & WS_MINIMIZE) != 0)) {
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
            QWidget::keyPressEvent(event);
            break;
    }
}

void TopWindow::contextMenuEvent(QContextMenuEvent* event) {
    // It may outlive this window: the commands go to the model.
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    m_menu.fill(*menu, m_style);
    menu->popup(event->globalPos());
}

}  // namespace juntora::screen
