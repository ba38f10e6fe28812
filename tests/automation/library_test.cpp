// The hub's own object: notices of libraries on their way to the tool that wants them.
#include <csignal>
#include <cstdlib>

#include "bridge/CLibraryStatus.h"
#include "bridge/TvxOleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "platform/automation/registration.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"
#include "tests/support/BusDaemon.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

constexpr LONG LIST_CHANGED = 1;
constexpr LONG CHANGED = 2;
constexpr LONG CLOSE_FILE = 3;

class LibraryTest : public HubProcess {
protected:
    static bool makeObject(TvxOleDispatchDriver& driver) {
        COleException error;
        return AfxOleInit() && driver.createObjectDispatch(LIBRARY_STATUS_PROGRAM_ID,
                                                           IID_LibraryStatus, &error) != 0;
    }
    static int control(std::vector<std::string> words) {
        return ChildProcess("juntoractl", std::move(words)).wait().value_or(-1);
    }
    bool hubHasEnded() { return m_hub->wait(ChildProcess::Milliseconds(0)).has_value(); }
};

TEST_F(LibraryTest, NoticesReachTheToolThatWantsThem) {
    startHub();
    TvxOleDispatchDriver driver;
    ASSERT_TRUE(makeObject(driver));
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(CHANGED, "/nobody/cares.olb"));
    ChildProcess sketchel("juntoractl", {"tool", "Sketchel"});
    ASSERT_TRUE(sketchel.readLineWith("signed-on"));
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(CHANGED, "/my libraries/a.olb"));
    EXPECT_TRUE(sketchel.readLineWith("\"text\":\"LibraryChange \\\"/my libraries/a.olb\\\"\""));
    const std::string tooLong(1024, 'x');
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(CHANGED, tooLong.c_str()));
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(LIST_CHANGED));
    EXPECT_TRUE(sketchel.readLine().value_or("").find("LibraryListChanged") != std::string::npos)
        << "what does not fit is not sent in part";
    EXPECT_EQ(0, control({"library", "close", "/b.olb"}));
    EXPECT_TRUE(sketchel.readLineWith("CloseFile \\\"/b.olb\\\""));
}

TEST_F(LibraryTest, AnyProgramOnTheBusCallsIt) {
    ASSERT_TRUE(AfxOleInit());  // Keeps the desktop's bus while there is no hub.
    ASSERT_EQ(0, ChildProcess("juntora", {"-Regserver"}).wait());
    const std::string name = BusNameOfClass(LIBRARY_STATUS_PROGRAM_ID);
    const auto call = [&](const std::string& member, std::vector<std::string> arguments) {
        std::vector<std::string> words{"--bus=unix:path=" + sandbox().desktopFolder() + "/bus",
                                       "--print-reply", "--dest=" + name,
                                       "/Voltara/JuntoraLibraryStatus/v16_6_0", member};
        words.insert(words.end(), arguments.begin(), arguments.end());
        ChildProcess tool("/usr/bin/dbus-send", std::move(words), {{}, "", true});
        return tool.wait() == 0 ? tool.readAll(ChildProcess::Milliseconds(0)) : tool.errors();
    };
    EXPECT_NE(std::string::npos, call(name + ".LibraryListChanged", {}).find("int32 0"))
        << "the bus starts a hub for it";
    EXPECT_TRUE(waitFor([] { return hubWindow() == 0; })) << "which ends when its caller has gone";

    startHub();
    const HWND tool = attach("Draftel");  // The hub would end with each caller.
    const std::string document = call("org.freedesktop.DBus.Introspectable.Introspect", {});
    EXPECT_NE(std::string::npos, document.find("LibraryChanged"));
    EXPECT_NE(std::string::npos, call(name + ".LibraryChanged", {}).find("ParameterCount"));
    EXPECT_NE(std::string::npos, call(name + ".LibraryChanged", {"int32:1"}).find("TypeMismatch"));
    EXPECT_NE(std::string::npos, call(name + ".Nothing", {}).find("UnknownMethod"));
    ChildProcess sketchel("juntoractl", {"tool", "Sketchel"});
    ASSERT_TRUE(sketchel.readLineWith("signed-on"));
    EXPECT_NE(std::string::npos,
              call(name + ".LibraryChanged", {"string:/a b.olb"}).find("int32 0"));
    EXPECT_TRUE(sketchel.readLineWith("LibraryChange \\\"/a b.olb\\\""));
    signOff(tool);
}

TEST_F(LibraryTest, AnObjectKeepsTheHub) {
    startHub();
    TvxOleDispatchDriver driver;
    ASSERT_TRUE(makeObject(driver));
    PostMessageA(mainDialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_TRUE(hubGoesOn());
    const HWND tool = attach("Draftel");
    signOff(tool);
    tick();
    EXPECT_TRUE(hubGoesOn());
    driver.ReleaseDispatch();
    EXPECT_EQ(0, hubResult()) << "it asks for the hub's end when it goes";
}

TEST_F(LibraryTest, AHubThatWasStartedForAnObjectEndsWithIt) {
    EXPECT_EQ(0, ChildProcess("juntora", {"-regserver"}).wait());
    EXPECT_EQ(0U, hubWindow());
    TvxOleDispatchDriver driver;
    ASSERT_TRUE(makeObject(driver));
    EXPECT_TRUE(waitFor([] { return hubWindow() != 0; }));
    driver.ReleaseDispatch();
    EXPECT_TRUE(waitFor([] { return hubWindow() == 0; }));
    EXPECT_EQ(0, control({"library", "list-changed"})) << "and is started again for the next";
    EXPECT_TRUE(waitFor([] { return hubWindow() == 0; }));
}

TEST_F(LibraryTest, ClientsThatDieLeaveNothing) {
    startHub();
    const HWND tool = attach("Draftel");
    for (int i = 0; i < 40; ++i) {
        ChildProcess client("juntoractl", {"library", "changed", "/a.olb"}, {{}, "", true});
        if (i % 4 == 0) {
            EXPECT_EQ(0, client.wait());
        } else {
            SleepMicroseconds(static_cast<DWORD>(i * 300));  // Somewhere on its way.
            client.kill();
            client.wait();
        }
    }
    signOff(tool);
    EXPECT_TRUE(waitFor([this] {
        tick();
        return hubHasEnded();
    })) << "an object was left";
}

TEST_F(LibraryTest, WhatOthersPostToItsWindowDoesNoHarm) {
    startHub();
    TvxOleDispatchDriver driver;
    ASSERT_TRUE(makeObject(driver));
    const UINT notice = RegisterWindowMessageA("Juntora_LibraryStatus_Internal_Msg");
    HWND window = 0;
    ASSERT_TRUE(waitFor([&] {
        window = GetDlgItem(mainDialog(), 1018);
        return window != 0;
    }));
    for (const LPARAM address : {LPARAM{1}, LPARAM{0x7FFF'FFFF'0000}, LPARAM{-1}}) {
        for (WPARAM code = 0; code < 5; ++code) {
            PostMessageA(window, notice, code, address);
        }
    }
    EXPECT_TRUE(hubGoesOn());
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(CLOSE_FILE, "/a.olb"));
}

TEST_F(LibraryTest, TheHubOutlivesTheBusAndSaysSoOnce) {
    BusDaemon bus(sandbox().runtimeFolder());
    startHub({}, "juntora", {"DBUS_SESSION_BUS_ADDRESS=" + bus.address()});
    const HWND tool = attach("Draftel");
    bus.end();
    EXPECT_TRUE(waitFor([this] {
        m_hub->readLine(ChildProcess::Milliseconds(0));
        return m_hub->errors().find("bus has ended") != std::string::npos;
    }));
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(IsWindow(tool));
    signOff(tool);
    tick();
    EXPECT_EQ(0, hubResult());
    EXPECT_EQ(m_hub->errors().find("bus has ended"), m_hub->errors().rfind("bus has ended"));
}

TEST_F(LibraryTest, WithoutABusThereIsNoHub) {
    ChildProcess hub("juntora", {}, {{"PATH=/nowhere"}, "", true});
    EXPECT_EQ(1, hub.wait());
    EXPECT_NE(std::string::npos,
              hub.errors().find("OLE initialization failed.  Make sure that the OLE libraries are "
                                "the correct version."));
    EXPECT_NE(std::string::npos, hub.errors().find("dbus-daemon")) << "what to do about it";
}

TEST_F(LibraryTest, TheClassIsRegisteredWhereTheUserMay) {
    const auto registered = [](const std::string& root) {
        return control({"registry", "get",
                        root + "\\Software\\Classes\\" + std::string(LIBRARY_STATUS_PROGRAM_ID) +
                            "\\CLSID"}) == 0;
    };
    const std::string ordinary = "MRN_TARVEX_DISABLE_ADMIN_MODE=1";
    EXPECT_EQ(
        0,
        ChildProcess("juntora", {"-Regserver"}, {{ordinary, "TARVEX_REGISTER_IN_HKLM=1"}}).wait());
    EXPECT_TRUE(registered("HKLM"));
    EXPECT_FALSE(registered("HKCU"));
    EXPECT_EQ(0, ChildProcess("juntora", {"/REGSERVER"}, {{ordinary}}).wait());
    EXPECT_TRUE(registered("HKCU"));
}

}  // namespace
}  // namespace juntora::test
