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

    /// Has the next update show everything anew: fonts or pixels are others now.
    void invalidate() { m_isUpToDate = false; }
    /// Whether an answer of the control's program is awaited that will be shown.
    virtual bool isReading() const { return false; }

    /// Brings the widget to the window's present state, where that has changed.
    void update(const ViewedWindow& viewed, const Units& units);

protected:
    virtual void show(const ViewedWindow& viewed, const Units& units) = 0;

private:
    const HWND m_window;
    DWORD m_changes = 0;
    bool m_isUpToDate = false;
};

/// A control that one widget of the toolkit's shows.
template <class Widget>
class ControlOf : public Control {
public:
    ControlOf(HWND window, QWidget* parent)
        : Control(window), m_widget(std::make_unique<Widget>(parent)) {}
    Widget& widget() override { return *m_widget; }

private:
    const std::unique_ptr<Widget> m_widget;
};

/// Names of classes compare without regard to case.
bool isOfClass(const ViewedWindow& viewed, const char* name);

bool isDefaultButton(const ViewedWindow& viewed);

/// By the window's class; what is of none that a screen knows is shown as its text.
std::unique_ptr<Control> makeControl(const ViewedWindow& viewed, QWidget* parent);

std::unique_ptr<Control> makeButton(const ViewedWindow& viewed, QWidget* parent);
std::unique_ptr<Control> makeList(const ViewedWindow& viewed, QWidget* parent);
std::unique_ptr<Control> makeStatic(const ViewedWindow& viewed, QWidget* parent);

}  // namespace juntora::screen
