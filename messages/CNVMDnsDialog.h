// A message box that the user can switch off: a text, up to three buttons, an icon, and a check box
// that says that the question need not be asked again. It takes the size that its text needs; of
// one with more than 40 lines it shows the first.
#pragma once

#include <cstdint>

#include "framework/CDialog.h"
#include "framework/CString.h"
#include "platform/dialog/UnseenBox.h"

namespace juntora {

/// Labels for the first, second and third button.
struct DnsButtonLabels {
    const char* first;
    const char* second;
    const char* third;
};

class CNVMDnsDialog : public CDialog {
public:
    /// `style` tells the buttons, 0 to 6 as MB_OK to MB_CANCELTRYCONTINUE do; `icon` is one of
    /// MB_ICONSTOP, MB_ICONQUESTION and others. With `showCheckBox` 0 nothing can be switched off.
    /// The help context is kept and stands for nothing.
    CNVMDnsDialog(const char* text, const char* module, unsigned number, unsigned style,
                  unsigned icon, unsigned helpContext, int showCheckBox);
    /// `labels`, which the caller keeps, take the place of the style's; null: they don't.
    CNVMDnsDialog(const char* text, const char* module, unsigned number, unsigned style,
                  unsigned icon, unsigned helpContext, int showCheckBox,
                  const DnsButtonLabels* labels);

    /// Asks, and returns the button: IDC_DNS_FIRST, _SECOND or _THIRD (dnsResources.h); IDCANCEL if
    /// the box was closed otherwise, which remembers nothing. Where no screen can show it, or has
    /// for ten seconds, the text goes to standard error, the first button is the answer, and that
    /// is not remembered either. -1 if the dialog cannot be made.
    int DoModal() override;

protected:
    const AFX_MSGMAP& GetMessageMap() const override;
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;

private:
    void layOutText();
    void showText(HWND area);
    const char* firstLabel() const;
    bool takesLabels(int count) const;
    int buttonTop() const;
    void placeButtons();
    void lowerButtons();
    void placeInRow(int width, int count, const int (&widths)[3]);
    void placeLabelled(int width, int count, const int (&widths)[3]);
    void placeCheckBox();
    void chooseIcon();
    void OnFirst();
    void OnSecond();
    void OnThird();
    void OnTimer(std::uintptr_t id);
    void press(int code);

    int dontShowAgain = 0;
    CString text;
    CString module;
    unsigned style;
    unsigned icon;
    unsigned number;
    [[maybe_unused]] unsigned helpContext;  ///< There is no help for it to stand for.
    int showCheckBox;
    const DnsButtonLabels* labels;
    RECT dialogRect{};
    RECT textRect{};
    int singleLine = 0;  ///< The text fits one line, and stands in the middle.
    dialog::ScreenWatch watch;
};

}  // namespace juntora
