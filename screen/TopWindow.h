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
    /// Brings the window and its controls to their present state.
    void update(const ViewedWindow& viewed, const std::vector<ViewedWindow>& controls);
    /// Keeps the window above another one. Not above a minimised one: window managers put away with
    /// a window what stays above it.
    void stayAbove(TopWindow& owner);
    /// Brings the window to the front, as the program wants it.
    void bringToFront();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void updateFrame(const ViewedWindow& viewed);
    void updateControls(const std::vector<ViewedWindow>& controls);
    void updateState(DWORD style);
    void place(const ViewedWindow& viewed);
    void settle();
    void tellState();
    HWND focusedControl() const;

    const HWND m_window;
    Units m_units;
    DWORD m_style = 0;
    std::vector<DWORD> m_changes;  ///< By which what is shown tells whether it is up to date.
    QTimer m_settling;
    bool m_isPlaced = false;
    QRect m_owner;  ///< Where the owner was on the display when this window came up.
    RECT m_modelPlace{};
    std::map<HWND, std::unique_ptr<Control>> m_controls;
    WindowMenu m_menu;
    std::unique_ptr<Tray> m_tray;
};

}  // namespace juntora::screen
