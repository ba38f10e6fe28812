// The hub's own object: notices of libraries on their way to the tool that wants them.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <sqlite3.h>

#include "bridge/CLibraryStatus.h"
#include "bridge/TvxOleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "ipc/ipc.h"
#include "platform/automation/registration.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"
#include "tests/automation/BusClient.h"
#include "tests/support/BusDaemon.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

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
    std::string busAddress() const { return "unix:path=" + sandbox().desktopFolder() + "/bus"; }
    /// Waits until the hub has said so.
    bool hubSays(const std::string& text) {
        return waitFor([&] {
            m_hub->readLine(ChildProcess::Milliseconds(0));
            return m_hub->errors().find(text) != std::string::npos;
        });
    }
    bool hubHasEnded() { return m_hub->wait(ChildProcess::Milliseconds(0)).has_value(); }
};

TEST_F(LibraryTest, NoticesReachTheToolThatWantsThem) {
    startHub();
    TvxOleDispatchDriver driver;
    ASSERT_TRUE(makeObject(driver));
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(LIBRARY_CHANGED_MEMBER, "/nobody/cares.olb"));
    ChildProcess sketchel("juntoractl", {"tool", "Sketchel"});
    ASSERT_TRUE(sketchel.readLineWith("signed-on"));
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(LIBRARY_CHANGED_MEMBER, "/my libraries/a.olb"));
    EXPECT_TRUE(sketchel.readLineWith("\"text\":\"LibraryChange \\\"/my libraries/a.olb\\\"\""));
    for (const std::string& lost : {std::string(1024, 'x'), std::string("a\" CloseFile \"b")}) {
        EXPECT_EQ(0, driver.InvokeHelper<LONG>(LIBRARY_CHANGED_MEMBER, lost.c_str()));
    }
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(LIBRARY_LIST_CHANGED_MEMBER));
    EXPECT_TRUE(sketchel.readLine().value_or("").find("LibraryListChanged") != std::string::npos)
        << "what would name another file is not sent";
    EXPECT_EQ(0, control({"library", "close", "/b.olb"}));
    EXPECT_TRUE(sketchel.readLineWith("CloseFile \\\"/b.olb\\\""));
}

TEST_F(LibraryTest, AnyProgramOnTheBusCallsIt) {
    ASSERT_TRUE(AfxOleInit());  // Keeps the desktop's bus while there is no hub.
    ASSERT_EQ(0, ChildProcess("juntora", {"-Regserver"}).wait());
    const std::string name = BusNameOfClass(LIBRARY_STATUS_PROGRAM_ID);
    const auto call = [&](const std::string& member, std::vector<std::string> arguments) {
        std::vector<std::string> words{"--bus=" + busAddress(), "--print-reply", "--dest=" + name,
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
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(0, control({"library", "changed", "/a.olb"}));
    const std::chrono::duration<double, std::micro> whole =
        std::chrono::steady_clock::now() - start;
    constexpr int DEATHS = 40;
    for (int i = 0; i < DEATHS; ++i) {
        ChildProcess client("juntoractl", {"library", "changed", "/a.olb"}, {{}, "", true});
        SleepMicroseconds(static_cast<DWORD>(whole.count() * i / DEATHS));  // Somewhere on its way.
        client.kill();
        client.wait();
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
    EXPECT_EQ(0, driver.InvokeHelper<LONG>(CLOSE_FILE_MEMBER, "/a.olb"));
}

TEST_F(LibraryTest, ClientsThatComeAndGoAtRandomLeaveNothing) {
    constexpr int CLIENTS = 1'000;
    constexpr std::size_t AT_ONCE = 20;
    startHub();
    const HWND tool = attach("Draftel");
    struct Client {
        BusClient bus;
        std::string path;
    };
    std::vector<Client> clients;
    std::mt19937 random(20'261);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    for (int made = 0; made < CLIENTS || !clients.empty();) {
        if (made < CLIENTS && (clients.size() < 2 || below(4) == 0)) {
            clients.push_back({BusClient(busAddress()), ""});
            ++made;
        }
        const std::size_t chosen = below(clients.size());
        Client& client = clients[chosen];
        const auto send = [&](const char* interface, const char* member) {
            client.bus.send(LIBRARY_STATUS_PROGRAM_ID, client.path, interface, member);
        };
        switch (below(clients.size() < AT_ONCE && made < CLIENTS ? 6 : 1)) {
            case 0:
                clients.erase(clients.begin() + static_cast<std::ptrdiff_t>(chosen));
                break;
            case 1:
                client.path = client.bus.create(LIBRARY_STATUS_PROGRAM_ID);
                EXPECT_FALSE(client.path.empty());
                break;
            case 2:
                send("juntora.Class", "CreateInstance");
                break;
            case 3:
                send("juntora.Object", "Release");
                break;
            case 4:
                send("juntora.Object", "Invoke");  // With nothing of what belongs in it.
                break;
            default:
                send(BusNameOfClass(LIBRARY_STATUS_PROGRAM_ID).c_str(), "LibraryListChanged");
                break;
        }
    }
    EXPECT_TRUE(hubGoesOn());
    signOff(tool);
    EXPECT_TRUE(waitFor([this] {
        tick();
        return hubHasEnded();
    })) << "an object was left";
    EXPECT_EQ(0, m_hub->wait());
}

TEST_F(LibraryTest, TheHubOutlivesTheBusAndSaysSoOnce) {
    startHub();
    const HWND tool = attach("Draftel");
    const unsigned bus = BusClient(busAddress()).processOf("org.freedesktop.DBus");
    ASSERT_NE(0U, bus);
    kill(static_cast<pid_t>(bus), SIGKILL);
    EXPECT_TRUE(hubSays("bus has ended"));
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(IsWindow(tool));
    EXPECT_TRUE(AfxOleInit()) << "who comes now starts another";
    EXPECT_NE(0U, BusClient(busAddress()).processOf("org.freedesktop.DBus"));
    signOff(tool);
    tick();
    EXPECT_EQ(0, hubResult());
    EXPECT_EQ(m_hub->errors().find("bus has ended"), m_hub->errors().rfind("bus has ended"));
}

TEST_F(LibraryTest, ABusThatIsStoppedHoldsUpNobody) {
    BusDaemon bus(sandbox().runtimeFolder());
    startHub({}, "juntora", {"DBUS_SESSION_BUS_ADDRESS=" + bus.address()});
    const HWND tool = attach("Draftel");
    BusClient client(bus.address());
    const pid_t daemon = static_cast<pid_t>(client.processOf("org.freedesktop.DBus"));
    ASSERT_FALSE(client.create(LIBRARY_STATUS_PROGRAM_ID).empty());
    kill(daemon, SIGSTOP);
    EXPECT_TRUE(hubGoesOn());
    EXPECT_EQ(1, command(tool, "JUNTORA_ANY_APPS_RUNNING"));
    kill(daemon, SIGCONT);
    EXPECT_FALSE(client.create(LIBRARY_STATUS_PROGRAM_ID).empty());
}

TEST_F(LibraryTest, WhatTheCommandLineDoes) {
    const auto registered = [] {
        return control({"registry", "get",
                        "HKCR\\" + std::string(LIBRARY_STATUS_PROGRAM_ID) + "\\CLSID"}) == 0;
    };
    const auto forget = [] {
        return control({"registry", "delete", "HKCR\\" + std::string(LIBRARY_STATUS_PROGRAM_ID)});
    };
    releasePlanchet();
    for (const std::string word : {"-Embedding", "/Embedding", "-Automation"}) {
        startHub({word});
        EXPECT_TRUE(registered()) << word;
        EXPECT_EQ(0, forget());
        for (const std::string second : {"", "-regserver"}) {
            EXPECT_EQ(0, ChildProcess("juntora", {second}).wait());
            EXPECT_FALSE(registered()) << "one that finds a hub changes nothing";
        }
        EXPECT_TRUE(hubGoesOn());
        EXPECT_EQ(0U, ipcFindApp("Planchet")) << "started for an object, it starts no Planchet";
        PostMessageA(mainDialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
        EXPECT_EQ(0, hubResult());
    }
    startHub({"-Unregserver", "-V", std::string(300, 'w'), '"' + std::string(260, 'q')});
    EXPECT_TRUE(registered()) << "it is no switch, and nor is the rest";
    EXPECT_TRUE(waitFor([] { return ipcFindApp("Planchet") != 0; }));
}

TEST_F(LibraryTest, WithoutABusThereIsNoHub) {
    ChildProcess hub("juntora", {}, {{"PATH=/nowhere"}, "", true});
    EXPECT_EQ(1, hub.wait());
    EXPECT_NE(std::string::npos,
              hub.errors().find("OLE initialization failed.  Make sure that the OLE libraries are "
                                "the correct version."));
    EXPECT_NE(std::string::npos, hub.errors().find("dbus-daemon")) << "what to do about it";
}

TEST_F(LibraryTest, ARegistryThatIsNoGoodStopsNoHub) {
    const std::string folder = sandbox().runtimeFolder() + "/registry";
    const std::string file = folder + "/user.db";
    std::filesystem::create_directories(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    for (const char* name : {"/user.db", "/machine.db"}) {
        std::ofstream(folder + name) << "no database";
    }
    ChildProcess registering("juntora", {"-Regserver"}, {{}, "", true});
    EXPECT_EQ(1, registering.wait());
    EXPECT_NE(std::string::npos, registering.errors().find("its class could not be registered"));
    EXPECT_NE(std::string::npos, registering.errors().find(file)) << "which file to mend";
    startHub();
    const HWND tool = attach("Draftel");
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(hubSays("its class could not be registered"));
    EXPECT_EQ("no database",
              std::string(std::istreambuf_iterator<char>(std::ifstream(file).rdbuf()), {}));
    signOff(tool);
}

TEST_F(LibraryTest, ARegistryThatIsLockedHoldsUpAHubForSeconds) {
    ASSERT_EQ(0, ChildProcess("juntora", {"-Regserver"}).wait());
    sqlite3* intruder = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_open((sandbox().runtimeFolder() + "/registry/machine.db").c_str(),
                                      &intruder));
    ASSERT_EQ(SQLITE_OK, sqlite3_exec(intruder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr));
    const DWORD start = GetTickCount();
    startHub();
    EXPECT_LT(GetTickCount() - start, 8'000U) << "it is waited for once, and not by each read";
    sqlite3_close(intruder);
    EXPECT_TRUE(hubSays("locked"));
    TvxOleDispatchDriver driver;
    EXPECT_TRUE(makeObject(driver)) << "what was registered before still holds";
}

TEST_F(LibraryTest, AToolThatIsBeingClosedStillTellsTheHub) {
    startHub();
    static TvxOleDispatchDriver* driver;
    TvxOleDispatchDriver own;
    driver = &own;
    ASSERT_TRUE(makeObject(own));
    const HWND asking = attach("Draftel");
    const HWND closing = attach("Sketchel");
    SetWindowProc(closing, [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        if (message == WM_SYSCOMMAND) {
            EXPECT_EQ(0, driver->InvokeHelper<LONG>(CLOSE_FILE_MEMBER, "/a.olb"));
        }
        return DefWindowProcA(window, message, wParam, lParam);
    });
    const DWORD start = GetTickCount();
    EXPECT_EQ(0, command(asking, "JUNTORA_CLOSE_ALL_APPS"));
    EXPECT_LT(GetTickCount() - start, 3'000U) << "the hub serves while it waits for the tool";
    EXPECT_FALSE(IsWindow(closing));
}

TEST_F(LibraryTest, NoCallMeetsAHubThatEnds) {
    ASSERT_TRUE(AfxOleInit());  // Keeps the bus.
    ASSERT_EQ(0, ChildProcess("juntora", {"-Regserver"}).wait());
    const std::string name = BusNameOfClass(LIBRARY_STATUS_PROGRAM_ID);
    for (int i = 0; i < 30; ++i) {
        BusClient client(busAddress());
        EXPECT_EQ(
            "", client.call(LIBRARY_STATUS_PROGRAM_ID, "", name.c_str(), "LibraryListChanged", ""))
            << i;
    }
}

TEST_F(LibraryTest, TheBusOfASessionThatHasEndedIsNoBus) {
    { BusDaemon(sandbox().runtimeFolder()).end(); }
    ASSERT_TRUE(std::filesystem::exists(sandbox().runtimeFolder() + "/bus"));
    // Signals that its starter ignores, a program ignores from its start.
    ChildProcess hub("/usr/bin/env",
                     {"--ignore-signal=CHLD", ProgramFolder() + "/juntora", "-Regserver"});
    EXPECT_EQ(0, hub.wait());
}

TEST_F(LibraryTest, ADriverHoldsWhatItAskedForOrNothing) {
    startHub();
    TvxOleDispatchDriver driver;
    IDispatch* offered = driver.m_lpDispatch;
    EXPECT_EQ(E_NOINTERFACE, driver.getDispInterface(IID_IDispatch, &offered)) << "it is empty";
    EXPECT_EQ(nullptr, offered);
    COleException error;
    ASSERT_TRUE(AfxOleInit());
    EXPECT_FALSE(driver.createObjectDispatch("Nobody.Knows.It", IID_IDispatch, &error));
    EXPECT_EQ(CO_E_CLASSSTRING, error.m_sc);
    EXPECT_FALSE(driver.createObjectDispatch(CLSID_LibraryStatus, CLSID_LibraryStatus, &error))
        << "an interface that the object does not offer";
    EXPECT_EQ(nullptr, driver.m_lpDispatch);
    EXPECT_EQ(0, hubResult()) << "the object was released, the last that there was";
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
