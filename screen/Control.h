// A control of a dialog as a widget.
#pragma once

#include <memory>

#include <QWidget>

#include "platform/desktop/view.h"
#include "screen/Units.h"

namespace juntora::screen {

/// What all kinds have in common: place, visibility, state. A kind shows the rest.
class Control {
public:
    explicit Control(HWND window) : m_window(window) {}
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    HWND window() const { return m_window; }
    virtual QWidget& widget() = 0;

    /// Brings the widget to the window's present state, where that has changed.
    void update(const ViewedWindow& viewed, const Units& units);

protected:
    virtual void show(const ViewedWindow& viewed, const Units& units) = 0;

private:
    const HWND m_window;
    DWORD m_changes = 0;
    bool m_isUpToDate = false;
};

/// By the window's class; what is of none that a screen knows is shown as its text.
std::unique_ptr<Control> makeControl(const ViewedWindow& viewed, QWidget* parent);

std::unique_ptr<Control> makeButton(const ViewedWindow& viewed, QWidget* parent);
std::unique_ptr<Control> makeList(const ViewedWindow& viewed, QWidget* parent);
std::unique_ptr<Control> makeStatic(const ViewedWindow& viewed, QWidget* parent);

}  // namespace juntora::screen
