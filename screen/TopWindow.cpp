#include "screen/TopWindow.h"

#include <algorithm>
#include <set>

#include <QLabel>
#include <QScreen>
#include <QWindow>

#include "platform/messages.h"
#include "screen/Icons.h"

namespace juntora::screen {
namespace {

/// How long a window manager may take to do what it was asked to. Until then its word of a state
/// may be about an earlier one.
constexpr int SETTLING_MILLISECONDS = 400;

/// Between a window and one that it has opened, where the model names no place.
constexpr int GAP = 8;

Qt::WindowFlags flagsOf(const ViewedWindow& viewed) {
    Qt::WindowFlags flags = Qt::CustomizeWindowHint;
    // What is no popup always has a caption.
    const bool isBare = (viewed.style & WS_POPUP) != 0 && (viewed.style & WS_CAPTION) != WS_CAPTION;
    flags |= isBare ? Qt::FramelessWindowHint : Qt::WindowTitleHint;
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

bool isSamePosition(const RECT& a, const RECT& b) { return a.left == b.left && a.top == b.top; }

/// The toolkit has a mark of its own in titles, and shows it where it stands twice.
QString titleOf(const ViewedWindow& viewed) {
    return textOf(viewed.text).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
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
    if ((viewed.extendedStyle & WS_EX_APPWINDOW) != 0) {
        m_tray = std::make_unique<Tray>(m_menu);
    }
}

TopWindow::~TopWindow() = default;

void TopWindow::update(const ViewedWindow& viewed, const std::vector<ViewedWindow>& controls,
                       TopWindow* owner) {
    m_order = viewed.order;
    if (owner != nullptr && isVisible()) {
        stayAbove(*owner, viewed.style);
    }
    std::vector<DWORD> changes{viewed.changes};
    for (const ViewedWindow& control : controls) {
        changes.insert(changes.end(), {control.window, control.changes});
    }
    if (changes == m_changes) {
        return;
    }
    m_changes = std::move(changes);
    updateFrame(viewed, owner);
    updateControls(controls);
    updateDescription(controls);
    // Before the display has the window a place means its frame, and then the contents alone.
    if (owner != nullptr && !isVisible()) {
        stayAbove(*owner, viewed.style);
    }
    updateState(viewed.style);
    m_menu.update(viewed, controls);
    if (m_tray) {
        m_tray->update(viewed);
    }
}

/// What is only to be looked at: nobody gets there by the keyboard, so it is read out at once.
void TopWindow::updateDescription(const std::vector<ViewedWindow>& controls) {
    QStringList texts;
    for (const ViewedWindow& control : controls) {
        const auto* const label =
            qobject_cast<const QLabel*>(&m_controls.at(control.window)->widget());
        if (label != nullptr && label->isVisibleTo(this) && !label->text().isEmpty()) {
            texts.push_back(label->text());
        }
    }
    setAccessibleDescription(texts.join(QLatin1Char('\n')));
}

void TopWindow::updateFrame(const ViewedWindow& viewed, const TopWindow* owner) {
    setWindowTitle(titleOf(viewed));
    setWindowIcon(iconOf(viewed.icon));
    enable((viewed.style & WS_DISABLED) == 0);
    setFixedSize(m_units.size(viewed.place));
    if (!m_isPlaced || !isSamePosition(viewed.place, m_modelPlace)) {
        place(viewed, owner);
    }
}

/// The focus comes back to where it was when a box in front of the window ends.
void TopWindow::enable(bool isEnabled) {
    if (isEnabled == this->isEnabled()) {
        return;
    }
    if (!isEnabled) {
        m_focused = focusedControl();
    }
    setEnabled(isEnabled);
    if (isEnabled && isActiveWindow()) {
        activated();  // It was put in front before it could be told.
    }
}

/// Where the model says, whenever that changes. At first centred windows come to this display's
/// middle, and those that the model only put into its corner below the one that opened them, so
/// that they do not hide it, or where the window manager finds a place.
void TopWindow::place(const ViewedWindow& viewed, const TopWindow* owner) {
    const QRect wanted = m_units.rect(viewed.place);
    if ((viewed.style & DS_CENTER) != 0 && !m_isPlaced) {
        const QRect room = screen()->availableGeometry();
        move(room.center() - QPoint(wanted.width() / 2, wanted.height() / 2));
    } else if (m_isPlaced || !wanted.topLeft().isNull()) {
        move(wanted.topLeft());
    } else if (owner != nullptr && !owner->isMinimized()) {
        moveBelow(*owner);
    }
    m_isPlaced = true;
    m_modelPlace = viewed.place;
}

void TopWindow::moveBelow(const TopWindow& owner) {
    const QRect room = owner.screen()->availableGeometry();
    const QRect frame = owner.frameGeometry();
    const QSize decoration = frame.size() - owner.size();
    const QPoint wanted = frame.bottomLeft() + QPoint(0, GAP);
    const QSize size = this->size() + decoration;
    move(qMax(room.left(), qMin(wanted.x(), room.right() - size.width())),
         qMax(room.top(), qMin(wanted.y(), room.bottom() - size.height())));
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
    if (focusWidget() == nullptr && isEnabled()) {
        focusFirst(controls);
    }
}

/// The control that had the focus before, else the default button, else the first that the keyboard
/// can go to.
void TopWindow::focusFirst(const std::vector<ViewedWindow>& controls) {
    const auto takesFocus = [this](const ViewedWindow& viewed) {
        const QWidget& widget = m_controls.at(viewed.window)->widget();
        return widget.isVisibleTo(this) && widget.isEnabledTo(this) &&
               widget.focusPolicy() == Qt::StrongFocus;
    };
    auto first = std::ranges::find_if(controls, [&](const ViewedWindow& viewed) {
        return viewed.window == m_focused && takesFocus(viewed);
    });
    if (first == controls.end()) {
        first = std::ranges::find_if(controls, [&](const ViewedWindow& viewed) {
            return isDefaultButton(viewed) && takesFocus(viewed);
        });
    }
    if (first == controls.end()) {
        first = std::ranges::find_if(controls, takesFocus);
    }
    if (first != controls.end()) {
        m_controls.at(first->window)->widget().setFocus();
    }
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
        showNormal();  // It may have been minimised when it was hidden.
    } else if (!isMinimised && wasMinimised) {
        showNormal();
        bringToFront();
    }
}

/// Not above a minimised one: window managers put away with a window what stays above it. They
/// learn of whom it stays above when it comes to the display, and never later.
void TopWindow::stayAbove(TopWindow& owner, DWORD style) {
    if (owner.isMinimized()) {
        return;
    }
    owner.winId();
    winId();
    const bool isNew = windowHandle()->transientParent() == nullptr;
    const bool mustAppear = isVisible() && (style & WS_MINIMIZE) == 0;
    if (isNew && mustAppear) {
        hide();
    }
    windowHandle()->setTransientParent(owner.windowHandle());
    if (mustAppear && (isNew || isMinimized())) {
        showNormal();
    }
}

void TopWindow::putAway() {
    hide();
    m_changes.clear();
    if (m_tray) {
        m_tray->hide();
    }
}

void TopWindow::bringToFront() {
    if ((m_style & WS_MINIMIZE) != 0) {
        return;
    }
    if (isMinimized()) {  // Put away with its owner: it comes back alone.
        hide();
        windowHandle()->setTransientParent(nullptr);
        showNormal();
    }
    raise();
    activateWindow();
}

bool TopWindow::isComplete() const {
    return std::ranges::none_of(m_controls,
                                [](const auto& entry) { return entry.second->isReading(); });
}

void TopWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    QObject::connect(windowHandle(), &QWindow::screenChanged, this, &TopWindow::remeasure,
                     Qt::UniqueConnection);
}

/// Letters or pixels are of another size now.
void TopWindow::remeasure() {
    m_units = Units(font());
    m_changes.clear();  // The next look shows everything anew.
    for (const auto& [window, control] : m_controls) {
        control->invalidate();
    }
}

}  // namespace juntora::screen
