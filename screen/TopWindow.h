// A top-level window of the desktop as a window of the display.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include <QTimer>
#include <QWidget>

#include "platform/desktop/view.h"
#include "screen/Control.h"
#include "screen/Tray.h"
#include "screen/WindowMenu.h"

namespace juntora::screen {

/// Shows what the model has, and tells the model what a person does with it: nothing that is done
/// here changes what is shown but by way of the model. Only where the window lies is the window
/// manager's own affair.
class TopWindow : public QWidget {
public:
    explicit TopWindow(const ViewedWindow& viewed);
    ~TopWindow() override;

    HWND window() const { return m_window; }
    /// Brings the window and its controls to their present state. It stays above `owner`, where
    /// that is shown.
    void update(const ViewedWindow& viewed, const std::vector<ViewedWindow>& controls,
                TopWindow* owner);
    /// Takes the window off the display until the next update.
    void putAway();
    /// Brings the window to the front, as the program wants it.
    void bringToFront();
    /// Whether all that is to be seen in it has been read.
    bool isComplete() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void updateFrame(const ViewedWindow& viewed, const TopWindow* owner);
    void updateControls(const std::vector<ViewedWindow>& controls);
    void updateState(DWORD style);
    void updateDescription(const std::vector<ViewedWindow>& controls);
    void enable(bool isEnabled);
    void place(const ViewedWindow& viewed, const TopWindow* owner);
    void moveBelow(const TopWindow& owner);
    void stayAbove(TopWindow& owner, DWORD style);
    void focusFirst(const std::vector<ViewedWindow>& controls);
    void remeasure();
    void activated();
    void settle();
    void tellState();
    void tellLetter(const QKeyEvent& event);
    HWND focusedControl() const;

    const HWND m_window;
    Units m_units;
    DWORD m_style = 0;
    std::int64_t m_order = 0;
    std::vector<DWORD> m_changes;  ///< By which what is shown tells whether it is up to date.
    QTimer m_settling;
    bool m_isPlaced = false;
    RECT m_modelPlace{};
    std::map<HWND, std::unique_ptr<Control>> m_controls;
    HWND m_focused = 0;  ///< The control that had the focus when the window was disabled.
    WindowMenu m_menu;
    std::unique_ptr<Tray> m_tray;
};

}  // namespace juntora::screen
