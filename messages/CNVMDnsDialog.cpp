#include "messages/CNVMDnsDialog.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>

#include "framework/CWinApp.h"
#include "messages/dnsResources.h"
#include "messages/storedAnswers.h"
#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/dialog/TextSize.h"
#include "platform/dialog/dialog.h"

namespace juntora {

namespace {

constexpr int BUTTONS[] = {IDC_DNS_FIRST, IDC_DNS_SECOND, IDC_DNS_THIRD};
constexpr int MOST_TEXT = 1000;
constexpr int TALLEST_LINE = 16;
constexpr int TEXT_TOP = 2;
constexpr int ROOM_AFTER_TEXT = 18;  ///< To the right, and down to the buttons.
constexpr int MARGINS = 30;          ///< Of both sides.
constexpr int GAP = 8;
constexpr int GAP_TO_CHECK_BOX = 4;
constexpr int PER_LETTER = 2;  ///< That a label of the caller's widens its button by...
constexpr int PER_LABEL = 12;  ///< ...and this much once.
/// Stands for the width of the main window's client area in a program that has none, or one without
/// any width.
constexpr int WIDTH_WITHOUT_MAIN_WINDOW = 640;

/// The buttons of a style, and what stands on them; null: what the template has.
struct ButtonRow {
    unsigned style;
    int count;
    const char* labels[3];
};
constexpr ButtonRow ROWS[] = {
    {0, 1, {}},
    {1, 2, {}},
    {2, 3, {"Abort", "Retry", "Ignore"}},
    {3, 3, {"Yes", "No", "Cancel"}},
    {4, 2, {"Yes", "No"}},
    {6, 3, {"Cancel", "Try", "Continue"}},
};

const ButtonRow* rowOf(unsigned style) {
    const auto* row = std::ranges::find(ROWS, style, &ButtonRow::style);
    return row == std::end(ROWS) ? nullptr : row;
}

RECT clientOf(HWND window) {
    RECT rect{};
    GetClientRect(window, &rect);
    return rect;
}

int mainRight() {
    const CWnd* main = AfxGetMainWnd();
    const int width = main ? clientOf(main->m_hWnd).right : 0;
    return width > 0 ? width : WIDTH_WITHOUT_MAIN_WINDOW;
}

void moveTo(HWND window, const RECT& place) {
    SetWindowPos(window, HWND_TOP, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

CString applicationTitle() {
    CString title;
    title.LoadString(IDS_APPLICATION_TITLE);
    return title.IsEmpty() ? AfxGetAppName() : title;
}

int lengthOf(const char* label) { return label ? static_cast<int>(std::strlen(label)) : 0; }

}  // namespace

CNVMDnsDialog::CNVMDnsDialog(const char* ofText, const char* ofModule, unsigned ofNumber,
                             unsigned ofStyle, unsigned ofIcon, unsigned ofHelpContext,
                             int withCheckBox)
    : CNVMDnsDialog(ofText, ofModule, ofNumber, ofStyle, ofIcon, ofHelpContext, withCheckBox,
                    nullptr) {}

CNVMDnsDialog::CNVMDnsDialog(const char* ofText, const char* ofModule, unsigned ofNumber,
                             unsigned ofStyle, unsigned ofIcon, unsigned ofHelpContext,
                             int withCheckBox, const DnsButtonLabels* withLabels)
    : CDialog(IDD_DNS),
      text(ofText),
      module(ofModule),
      style(ofStyle),
      icon(ofIcon),
      number(ofNumber),
      helpContext(ofHelpContext),
      showCheckBox(withCheckBox),
      labels(withLabels) {
    RegisterDnsResources();
}

void CNVMDnsDialog::DoDataExchange(CDataExchange* exchange) {
    CDialog::DoDataExchange(exchange);
    DDX_Text(exchange, IDC_DNS_TEXT, text);
    DDV_MaxChars(exchange, text, MOST_TEXT);
}

int CNVMDnsDialog::DoModal() {
    if (EnsureScreen()) {
        const int result = CDialog::DoModal();
        if (result != dialog::NOT_SHOWN) {
            return result;
        }
    }
    dialog::PrintUnseenBox(text, applicationTitle(), firstLabel());
    return IDC_DNS_FIRST;
}

/// What the first button bears, or would.
const char* CNVMDnsDialog::firstLabel() const {
    const ButtonRow* row = rowOf(style);
    if (row && takesLabels(row->count)) {
        return labels->first ? labels->first : "";
    }
    if (row && row->labels[0]) {
        return row->labels[0];
    }
    const auto controls = FindDialogTemplate(IDD_DNS)->controls;
    const auto first = std::ranges::find(controls, IDC_DNS_FIRST, &DialogControl::id);
    return first != controls.end() ? first->text : "";
}

/// The caller's do not count for a single button.
bool CNVMDnsDialog::takesLabels(int count) const { return labels && count > 1; }

BOOL CNVMDnsDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    SetWindowTextA(m_hWnd, applicationTitle());
    watch.start(m_hWnd);
    layOutText();
    placeButtons();
    placeCheckBox();
    moveTo(m_hWnd, dialogRect);
    chooseIcon();
    return 1;
}

/// First in the room that the template has, then in half of the main window.
void CNVMDnsDialog::layOutText() {
    const HWND area = GetDlgItem(m_hWnd, IDC_DNS_TEXT);
    const int iconWidth = clientOf(GetDlgItem(m_hWnd, IDC_DNS_ICON)).right;
    const int main = mainRight();
    const int widest = main / 2 + 16;
    text = CString(dialog::ShortenForBox(static_cast<const char*>(text), widest));
    dialogRect = clientOf(m_hWnd);
    textRect = clientOf(area);
    const RECT before = textRect;
    const auto measure = [this] {
        CalculateTextRect(text, &textRect);
        singleLine = singleLine != 0 || textRect.bottom <= TALLEST_LINE ? 1 : 0;
    };
    measure();
    textRect.right = widest;
    measure();
    textRect.top += TEXT_TOP;
    textRect.bottom += TEXT_TOP;
    textRect.right += iconWidth;
    textRect.left = iconWidth;
    showText(area);
    const int width = std::max(textRect.right + ROOM_AFTER_TEXT, dialogRect.right) + MARGINS;
    const int height = dialogRect.bottom + textRect.bottom - before.bottom;
    const int corner = main / 4;
    moveTo(m_hWnd, {corner, corner, corner + width, corner + height});
    GetWindowRect(m_hWnd, &dialogRect);
}

/// What shows the text breaks it where it has been measured, whatever its own font. What is too
/// long for one control goes on in others below it.
void CNVMDnsDialog::showText(HWND area) {
    const auto pieces = dialog::PiecesOfLines(
        dialog::BreakLines(static_cast<const char*>(text), textRect.right - textRect.left));
    const auto placeOf = [this](const dialog::TextPiece& piece) {
        const int top = textRect.top + piece.firstLine * dialog::FONT_HEIGHT;
        return RECT{textRect.left, top, textRect.right,
                    top + piece.lineCount * dialog::FONT_HEIGHT};
    };
    SetWindowTextA(area, pieces.front().text.c_str());
    ModifyWindowStyle(area, SS_CENTER, singleLine != 0 ? SS_CENTER : SS_LEFT);
    moveTo(area, pieces.size() == 1 ? textRect : placeOf(pieces.front()));
    for (const dialog::TextPiece& piece : std::span(pieces).subspan(1)) {
        const RECT place = placeOf(piece);
        CreateWindowExA(0, "Static", piece.text.c_str(),
                        WS_CHILD | WS_VISIBLE | SS_LEFT | SS_NOPREFIX, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, m_hWnd, -1);
    }
}

int CNVMDnsDialog::buttonTop() const { return textRect.bottom + ROOM_AFTER_TEXT; }

void CNVMDnsDialog::placeButtons() {
    const ButtonRow* row = rowOf(style);
    if (!row) {
        lowerButtons();
        return;
    }
    int widths[3];
    for (int i = 0; i < 3; ++i) {
        const HWND button = GetDlgItem(m_hWnd, BUTTONS[i]);
        widths[i] = clientOf(button).right;
        juntora::ShowWindow(button, i < row->count ? SW_SHOW : SW_HIDE);
        if (i < row->count && row->labels[i]) {
            SetWindowTextA(button, row->labels[i]);
        }
    }
    const int width = dialogRect.right - dialogRect.left;
    if (takesLabels(row->count)) {
        placeLabelled(width, row->count, widths);
    } else {
        placeInRow(width, row->count, widths);
    }
}

/// A style that is none has all buttons side by side as the template has them, below the text.
void CNVMDnsDialog::lowerButtons() {
    for (const int button : BUTTONS) {
        RECT place{};
        GetWindowRect(GetDlgItem(m_hWnd, button), &place);
        juntora::SetWindowPos(GetDlgItem(m_hWnd, button), HWND_TOP, place.left, buttonTop(), 0, 0,
                              SWP_NOSIZE | SWP_NOZORDER);
    }
}

void CNVMDnsDialog::placeInRow(int width, int count, const int (&widths)[3]) {
    int left = width - (count - 1) * GAP;
    for (int i = 0; i < count; ++i) {
        left -= widths[i];
    }
    left /= 2;
    for (int i = 0; i < count; ++i) {
        juntora::SetWindowPos(GetDlgItem(m_hWnd, BUTTONS[i]), HWND_TOP, left, buttonTop(), 0, 0,
                              SWP_NOSIZE | SWP_NOZORDER);
        left += widths[i] + GAP;
    }
}

/// Labels of the caller's make all buttons as wide as the longer of the first two asks for.
void CNVMDnsDialog::placeLabelled(int width, int count, const int (&widths)[3]) {
    const int longest = std::max(lengthOf(labels->first), lengthOf(labels->second));
    const int grow = PER_LETTER * longest + PER_LABEL;
    const int newWidth = widths[1] + grow;
    int left = count == 2 ? (width - widths[0] - widths[1] - GAP) / 2 - grow
                          : (width - widths[0] - widths[1] - widths[2]) / 3 - PER_LETTER * longest;
    const char* const texts[] = {labels->first, labels->second, labels->third};
    for (int i = 0; i < count; ++i) {
        const HWND button = GetDlgItem(m_hWnd, BUTTONS[i]);
        moveTo(button, {left, buttonTop(), left + newWidth, buttonTop() + clientOf(button).bottom});
        SetWindowTextA(button, texts[i] ? texts[i] : "");
        left += newWidth + GAP;
    }
}

void CNVMDnsDialog::placeCheckBox() {
    const HWND box = GetDlgItem(m_hWnd, IDC_DNS_CHECK);
    const int rowEnd = buttonTop() + clientOf(GetDlgItem(m_hWnd, IDC_DNS_FIRST)).bottom;
    if (showCheckBox == 0) {
        juntora::ShowWindow(box, SW_HIDE);
        dialogRect.bottom = dialogRect.top + rowEnd + GAP;
        return;
    }
    RECT place{};
    GetWindowRect(box, &place);
    juntora::SetWindowPos(box, HWND_TOP, place.left, rowEnd + GAP_TO_CHECK_BOX, 0, 0,
                          SWP_NOSIZE | SWP_NOZORDER);
    dialogRect.bottom = dialogRect.top + rowEnd + GAP_TO_CHECK_BOX + place.bottom - place.top + GAP;
}

void CNVMDnsDialog::chooseIcon() {
    if (GetDlgItem(m_hWnd, IDC_DNS_ICON) == 0 || GetDlgItem(m_hWnd, IDC_DNS_QUESTION) == 0) {
        return;
    }
    const int chosen = icon == MB_ICONSTOP       ? IDC_DNS_STOP
                       : icon == MB_ICONQUESTION ? IDC_DNS_QUESTION
                                                 : IDC_DNS_ICON;
    for (const int control : {IDC_DNS_ICON, IDC_DNS_STOP, IDC_DNS_QUESTION}) {
        juntora::ShowWindow(GetDlgItem(m_hWnd, control), control == chosen ? SW_SHOW : SW_HIDE);
    }
}

const AFX_MSGMAP& CNVMDnsDialog::GetMessageMap() const {
    static const AFX_MSGMAP_ENTRY entries[] = {
        ON_COMMAND<&CNVMDnsDialog::OnFirst>(IDC_DNS_FIRST),
        ON_COMMAND<&CNVMDnsDialog::OnSecond>(IDC_DNS_SECOND),
        ON_COMMAND<&CNVMDnsDialog::OnThird>(IDC_DNS_THIRD),
        ON_MESSAGE<&CNVMDnsDialog::OnTimer>(WM_TIMER),
    };
    static const AFX_MSGMAP map{&CDialog::GetMessageMap(), entries};
    return map;
}

void CNVMDnsDialog::OnTimer(std::uintptr_t id) {
    if (id == dialog::ScreenWatch::TIMER && watch.isUnseen()) {
        EndDialog(dialog::NOT_SHOWN);
    }
}

void CNVMDnsDialog::OnFirst() { press(IDC_DNS_FIRST); }
void CNVMDnsDialog::OnSecond() { press(IDC_DNS_SECOND); }
void CNVMDnsDialog::OnThird() { press(IDC_DNS_THIRD); }

/// A press with the box clear forgets an answer as well.
void CNVMDnsDialog::press(int code) {
    if (SendMessageA(GetDlgItem(m_hWnd, IDC_DNS_CHECK), BM_GETCHECK, 0, 0) != 0) {
        dontShowAgain = 1;
    }
    storeAnswer(module, number, dontShowAgain != 0 ? std::to_string(code) : NO_ANSWER);
    EndDialog(code);
}

}  // namespace juntora
