// Windows as objects: where a message goes.
#include <stdexcept>
#include <vector>

#include "framework/CWnd.h"
#include "platform/desktop/message.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

constexpr char CLASS[] = "FrameworkTest";
UINT registeredNumber = 0;

class BaseWnd : public CWnd {
public:
    std::vector<UINT> m_seen;
    int m_commands = 0;
    WPARAM m_wParam = 0;
    LPARAM m_lParam = 0;

    BOOL make() { return CreateEx(0, CLASS, "title", WS_POPUP, 1, 2, 3, 4, 0, 0); }
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return SendMessageA(m_hWnd, message, wParam, lParam);
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        m_seen.push_back(message);
        return CWnd::WindowProc(message, wParam, lParam);
    }
    const AFX_MSGMAP& GetMessageMap() const override {
        static const AFX_MSGMAP_ENTRY entries[] = {
            ON_MESSAGE<&BaseWnd::onBoth>(WM_APP),
            ON_MESSAGE<&BaseWnd::onBase>(WM_APP + 1),
            ON_MESSAGE<&BaseWnd::onGetText>(WM_GETTEXTLENGTH),
            ON_MESSAGE<&BaseWnd::onThrow>(WM_APP + 2),
            ON_REGISTERED_MESSAGE<&BaseWnd::onRegistered>(registeredNumber),
            ON_COMMAND<&BaseWnd::onCommand>(1000),
        };
        static const AFX_MSGMAP map{&CWnd::GetMessageMap(), entries};
        return map;
    }

private:
    LRESULT onBoth(WPARAM wParam, LPARAM lParam) {
        m_wParam = wParam;
        m_lParam = lParam;
        return 5;
    }
    int onBase(WPARAM) { return 1; }
    LRESULT onGetText() {
        send(WM_APP);  // A message inside this one must not become the one that Default handles.
        return Default() + 100;
    }
    void onThrow() { throw std::runtime_error("on purpose"); }
    int onRegistered() { return 77; }
    void onCommand() { ++m_commands; }
};

class DerivedWnd : public BaseWnd {
protected:
    const AFX_MSGMAP& GetMessageMap() const override {
        static const AFX_MSGMAP_ENTRY entries[] = {
            ON_MESSAGE<&DerivedWnd::onOwn>(WM_APP + 1),
        };
        static const AFX_MSGMAP map{&BaseWnd::GetMessageMap(), entries};
        return map;
    }

private:
    int onOwn(std::uint32_t) { return 2; }
};

class FrameworkWindowTest : public TestDesktop {
protected:
    FrameworkWindowTest() {
        const WNDCLASSA windowClass{0, AfxGetAfxWndProc(), 0, 0, 0, CLASS};
        EXPECT_TRUE(AfxRegisterClass(&windowClass)) << "also when it is registered already";
        EXPECT_TRUE(AfxRegisterClass(&windowClass));
    }
};

TEST_F(FrameworkWindowTest, GetsItsMessagesFromTheFirstToTheLast) {
    BaseWnd window;
    EXPECT_FALSE(window.CreateEx(0, "NoSuchClass", "", WS_POPUP, 0, 0, 0, 0, 0, 0));
    // The next window of the class is not taken for the one that failed.
    DestroyWindow(CreateWindowExA(0, CLASS, "", WS_POPUP, 0, 0, 0, 0, 0, 0));
    ASSERT_TRUE(window.make());
    EXPECT_FALSE(window.make()) << "it has a window already";
    HWND handle = window.m_hWnd;
    EXPECT_TRUE(IsWindow(handle));
    EXPECT_EQ(window.m_seen, std::vector<UINT>{WM_CREATE});
    window.m_seen.clear();
    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(window.m_seen, (std::vector<UINT>{WM_DESTROY, WM_NCDESTROY}));
    EXPECT_EQ(window.m_hWnd, 0U);
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_FALSE(window.DestroyWindow());
    {
        BaseWnd shortLived;
        ASSERT_TRUE(shortLived.make());
        handle = shortLived.m_hWnd;
    }
    EXPECT_FALSE(IsWindow(handle)) << "an object takes its window with it";
}

TEST_F(FrameworkWindowTest, MapsLeadToTheMostDerivedHandler) {
    DerivedWnd window;
    ASSERT_TRUE(window.make());
    EXPECT_EQ(window.send(WM_APP, ~WPARAM{0}, -2), 5);
    EXPECT_EQ(window.m_wParam, ~WPARAM{0});
    EXPECT_EQ(window.m_lParam, -2);
    EXPECT_EQ(window.send(WM_APP + 1), 2);
    EXPECT_EQ(window.send(0), 0) << "nobody's, nor that of a registered message without a number";
    registeredNumber = RegisterWindowMessageA("FrameworkTestMessage");
    EXPECT_EQ(window.send(registeredNumber), 77);
    BaseWnd base;
    ASSERT_TRUE(base.make());
    EXPECT_EQ(base.send(WM_APP + 1), 1);
}

TEST_F(FrameworkWindowTest, DefaultHandlesTheMessageOfTheHandlerThatAsks) {
    BaseWnd window;
    ASSERT_TRUE(window.make());
    EXPECT_EQ(window.send(WM_GETTEXTLENGTH), 105) << "100 more than the length of \"title\"";
}

TEST_F(FrameworkWindowTest, CommandsAreClicksAloneAndAnExceptionEndsInItsMessage) {
    BaseWnd window;
    ASSERT_TRUE(window.make());
    for (const WPARAM command : {1000, 1001, 1000 | 5 << 16}) {
        window.send(WM_COMMAND, command);
    }
    EXPECT_EQ(window.m_commands, 1);
    EXPECT_EQ(window.send(WM_APP + 2), 0);
    EXPECT_EQ(window.send(WM_APP), 5);
}

LRESULT plainProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == WM_APP + 5 ? 55 : DefWindowProcA(window, message, wParam, lParam);
}

TEST_F(FrameworkWindowTest, TakesOverAWindowOfAnotherClass) {
    const WNDCLASSA plain{0, plainProcedure, 0, 0, 0, "FrameworkPlain"};
    AfxRegisterClass(&plain);
    const HWND handle = CreateWindowExA(0, "FrameworkPlain", "", WS_POPUP, 0, 0, 0, 0, 0, 0);
    ASSERT_NE(handle, 0U);
    BaseWnd window;
    ASSERT_TRUE(window.SubclassWindow(handle));
    BaseWnd second;
    EXPECT_FALSE(second.SubclassWindow(handle)) << "it has an object already";
    EXPECT_FALSE(second.SubclassWindow(0));
    EXPECT_EQ(SendMessageA(handle, WM_APP, 0, 0), 5) << "its own handler";
    EXPECT_EQ(SendMessageA(handle, WM_APP + 5, 0, 0), 55) << "its class's";
    DestroyWindow(handle);
    EXPECT_EQ(window.m_hWnd, 0U);
}

}  // namespace
}  // namespace juntora::test
