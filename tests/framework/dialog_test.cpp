// Dialogs as objects: their data, their commands, their ends.
#include "platform/dialog/dialog.h"

#include <stdexcept>
#include <string>

#include "framework/CDialog.h"
#include "framework/CListBox.h"
#include "framework/CWinApp.h"
#include "platform/desktop/message.h"
#include "platform/kernel/process.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

constexpr int ID_TEXT = 20;
constexpr int ID_LIST = 21;
constexpr int ID_STRING = 900;
constexpr int ID_HELP_COMMAND = 0xE146;

constexpr DialogControl CONTROLS[] = {
    {ID_TEXT, "Static", "from the template", WS_VISIBLE, 0, 0, 50, 8},
    {ID_LIST, "ListBox", "", WS_VISIBLE | WS_TABSTOP | LBS_SORT, 0, 8, 50, 30},
};
constexpr DialogTemplate TEMPLATES[] = {
    {30, "Framework dialog", WS_POPUP, 0, 60, 40, "MS Sans Serif", 8, CONTROLS}};
constexpr StringResource STRINGS[] = {{ID_STRING, "of the table"}};

class TestApp : public CWinApp {
public:
    bool InitInstance() override { return false; }

protected:
    const AFX_MSGMAP& GetMessageMap() const override {
        static const AFX_MSGMAP_ENTRY entries[] = {ON_COMMAND<&TestApp::OnHelp>(ID_HELP)};
        static const AFX_MSGMAP map{&CWinApp::GetMessageMap(), entries};
        return map;
    }
};

class TestDlg : public CDialog {
public:
    explicit TestDlg(int templateId = 30, CWnd* parent = nullptr) : CDialog(templateId, parent) {}

    CString m_strText{"from the member"};
    CListBox m_listBox;
    CListBox m_missing;
    int m_inits = 0;
    UINT m_posted = 0;  ///< Posted to the dialog once it is there.
    WPARAM m_wParam = 0;
    std::string m_shown;

    std::string shown() const {
        char text[64];
        GetWindowTextA(GetDlgItem(m_hWnd, ID_TEXT), text, sizeof text);
        return text;
    }

protected:
    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        ++m_inits;
        m_shown = shown();
        if (m_posted != 0) {
            SetWindowTextA(GetDlgItem(m_hWnd, ID_TEXT), "from the control");
            PostMessageA(m_hWnd, m_posted, m_wParam, 0);
        }
        return 1;
    }
    void DoDataExchange(CDataExchange* exchange) override {
        DDX_Text(exchange, ID_TEXT, m_strText);
        DDX_Text(exchange, 999, m_strText);  // No such control: nothing happens.
        DDX_Control(exchange, ID_LIST, m_listBox);
        DDX_Control(exchange, 999, m_missing);
    }
};

class FrameworkDialogTest : public TestDesktop {
protected:
    FrameworkDialogTest() {
        static const bool once = (RegisterResources(TEMPLATES, STRINGS), true);
        EXPECT_TRUE(once);
    }
    TestApp m_application;
};

std::string text(const CString& string) { return static_cast<const char*>(string); }

TEST_F(FrameworkDialogTest, BindsAndFillsItsControls) {
    TestDlg dialog;
    EXPECT_FALSE(dialog.Create(31, nullptr)) << "no such template";
    ASSERT_TRUE(dialog.Create(30, nullptr));
    EXPECT_FALSE(dialog.Create(30, nullptr)) << "it stands already";
    EXPECT_EQ(dialog.m_inits, 1);
    EXPECT_EQ(dialog.shown(), "from the member");
    EXPECT_EQ(dialog.m_listBox.m_hWnd, GetDlgItem(dialog.m_hWnd, ID_LIST));
    EXPECT_EQ(dialog.m_missing.m_hWnd, 0U);

    SetWindowTextA(GetDlgItem(dialog.m_hWnd, ID_TEXT), "typed");
    EXPECT_TRUE(dialog.UpdateData(true));
    EXPECT_EQ(text(dialog.m_strText), "typed");
    const DWORD changes = GetWindowChangeCount(GetDlgItem(dialog.m_hWnd, ID_TEXT));
    EXPECT_TRUE(dialog.UpdateData(false));
    EXPECT_EQ(GetWindowChangeCount(GetDlgItem(dialog.m_hWnd, ID_TEXT)), changes)
        << "nothing is shown anew that is shown already";

    dialog.DestroyWindow();
    EXPECT_EQ(dialog.m_hWnd, 0U);
    EXPECT_EQ(dialog.m_listBox.m_hWnd, 0U);
    EXPECT_FALSE(dialog.UpdateData(false));
}

TEST_F(FrameworkDialogTest, EndsWithItsDataOnOkAndWithoutOnCancel) {
    TestDlg accepted;
    accepted.m_posted = WM_COMMAND;
    accepted.m_wParam = IDOK;
    EXPECT_EQ(accepted.DoModal(), IDOK);
    EXPECT_EQ(accepted.m_shown, "from the member");
    EXPECT_EQ(text(accepted.m_strText), "from the control");
    EXPECT_EQ(accepted.m_hWnd, 0U);

    TestDlg refused;
    refused.m_posted = WM_CLOSE;
    EXPECT_EQ(refused.DoModal(), IDCANCEL);
    EXPECT_EQ(text(refused.m_strText), "from the member");
    EXPECT_EQ(refused.DoModal(), IDCANCEL) << "a second time";
    EXPECT_EQ(refused.m_inits, 2);
}

TEST_F(FrameworkDialogTest, IsNotLeftHalfMade) {
    class Failing : public TestDlg {
        BOOL OnInitDialog() override {
            TestDlg::OnInitDialog();
            throw std::runtime_error("no more");
        }
    };
    Failing dialog;
    testing::internal::CaptureStderr();
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_FALSE(dialog.Create(30, nullptr));
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_NE(told.find("dialog 30 failed: no more"), std::string::npos) << told;
    EXPECT_EQ(dialog.m_inits, 2);
    EXPECT_EQ(dialog.m_hWnd, 0U);
    EXPECT_EQ(dialog.m_listBox.m_hWnd, 0U);
    EXPECT_EQ(FindWindowA(nullptr, "Framework dialog"), 0U);
}

TEST_F(FrameworkDialogTest, DisablesTheMainWindowUnlessItHasAnotherParent) {
    TestDlg mainWindow;
    ASSERT_TRUE(mainWindow.Create(30, nullptr));
    m_application.m_pMainWnd = &mainWindow;
    EXPECT_EQ(AfxGetMainWnd(), &mainWindow);

    class Looking : public TestDlg {
    public:
        using TestDlg::TestDlg;
        bool m_wasEnabled = true;

    private:
        BOOL OnInitDialog() override {
            TestDlg::OnInitDialog();
            m_wasEnabled = IsWindowEnabled(AfxGetMainWnd()->m_hWnd) != 0;
            EndDialog(1);
            return 1;
        }
    };
    Looking dialog;
    dialog.DoModal();
    EXPECT_FALSE(dialog.m_wasEnabled);
    EXPECT_TRUE(IsWindowEnabled(mainWindow.m_hWnd));

    TestDlg parent;
    ASSERT_TRUE(parent.Create(30, nullptr));
    Looking ofParent(30, &parent);
    ofParent.DoModal();
    EXPECT_TRUE(ofParent.m_wasEnabled);
}

TEST_F(FrameworkDialogTest, CommandsThatNobodyWantsComeToTheApplication) {
    TestDlg dialog;
    ASSERT_TRUE(dialog.Create(30, nullptr));
    testing::internal::CaptureStderr();
    SendMessageA(dialog.m_hWnd, WM_COMMAND, ID_HELP_COMMAND, 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("There is no help for this program."),
              std::string::npos);
}

TEST_F(FrameworkDialogTest, MessageBoxesBearTheProgramsName) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(AfxMessageBox(ID_STRING, MB_YESNO), IDYES);
    const std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_EQ(shown.find("[framework_dialog_test]\n    of the table\n"), 0U) << shown;
    CString string;
    EXPECT_TRUE(string.LoadString(ID_STRING));
    EXPECT_FALSE(string.LoadString(901));
    EXPECT_TRUE(string.IsEmpty());
}

}  // namespace
}  // namespace juntora::test
