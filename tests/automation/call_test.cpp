// Objects of another process: making them, calling them, and what happens when that process is no
// good or goes.
#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>

#include "framework/COleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "platform/automation/registration.h"
#include "tests/automation/BusClient.h"
#include "tests/automation/testClass.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

class CallTest : public TestDesktop {
protected:
    void SetUp() override {
        ASSERT_TRUE(AfxOleInit());
        ASSERT_TRUE(
            RegisterClassOf({CLASS_ID, PROGRAM_ID, ProgramFolder() + "/automation_server"}));
    }

    /// What a call fails with; S_OK where it does not.
    template <class... Arguments>
    static HRESULT errorOf(COleDispatchDriver& driver, LONG member, Arguments... arguments) {
        try {
            driver.InvokeHelper<>(member, arguments...);
            return S_OK;
        } catch (CException* exception) {
            const HRESULT result = dynamic_cast<COleException&>(*exception).m_sc;
            exception->Delete();
            return result;
        }
    }
    static HRESULT creationError() {
        COleException error;
        COleDispatchDriver driver;
        return driver.CreateDispatch(PROGRAM_ID, &error) ? S_OK : error.m_sc;
    }
};

/// Calls the server again as long as it is told to.
class Caller : public CCmdTarget {
public:
    explicit Caller(COleDispatchDriver& server) : m_server(server) { EnableAutomation(); }
    int calls = 0;

protected:
    void OnFinalRelease() override {}
    const AFX_DISPMAP* GetDispatchMap() const override {
        static const AFX_DISPMAP_ENTRY entries[] = {DISP_FUNCTION<&Caller::OnCall>("OnCall")};
        static const AFX_DISPMAP map("Test.Caller", entries);
        return &map;
    }

private:
    LONG OnCall(LONG depth) {
        ++calls;
        return depth == 0
                   ? 0
                   : 1 + m_server.InvokeHelper<LONG>(CALL_BACK, GetIDispatch(false), depth - 1);
    }

    COleDispatchDriver& m_server;
};

TEST_F(CallTest, ValuesGoThereAndBack) {
    COleDispatchDriver driver;
    ASSERT_TRUE(driver.CreateDispatch(CLASS_ID));
    EXPECT_EQ(-3, driver.InvokeHelper<LONG>(ADD, LONG{-5}, LONG{2}));
    EXPECT_EQ(7, driver.InvokeHelper<LONG>(ADD, 5.0, LONG{2})) << "a number that is whole";
    for (const std::string text : {"", "plain", "C:\\my files\\a \"b\".olb", "\xC3\xA9t\xC3\xA9",
                                   "\xE9t\xE9 \x80\xFF", "\xF0\x9F\xBF\xBE", "\xEF\xB7\x90",
                                   "\xF0\x9F\x98\x80", "\xC0\x80", "\xED\xA0\x80", "tab\tline\n"}) {
        EXPECT_EQ(text, driver.InvokeHelper<std::string>(ECHO, text.c_str()));
    }
    const std::string large(200'000, 'x');
    EXPECT_EQ(large, driver.InvokeHelper<std::string>(ECHO, large.c_str()));
    LONG number = std::numeric_limits<LONG>::max() - 1;
    driver.InvokeHelper(BUMP, &number);
    EXPECT_EQ(std::numeric_limits<LONG>::max(), number);
    LONG id = 0;
    EXPECT_EQ(S_OK, driver.m_lpDispatch->GetIDsOfNames("echo", &id)) << "in any case of letters";
    EXPECT_EQ(ECHO, id);
}

TEST_F(CallTest, WhatDoesNotFitIsTheCallersError) {
    COleDispatchDriver driver;
    EXPECT_EQ(RPC_E_DISCONNECTED, errorOf(driver, ADD)) << "without an object";
    ASSERT_TRUE(driver.CreateDispatch(CLASS_ID));
    EXPECT_EQ(DISP_E_BADPARAMCOUNT, errorOf(driver, ADD, LONG{1}));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, errorOf(driver, ADD, LONG{1}, "2"));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, errorOf(driver, ADD, LONG{1}, 2.5));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, errorOf(driver, ECHO, LONG{1}));
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND, errorOf(driver, 0));
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND, errorOf(driver, 4711));
    EXPECT_EQ(DISP_E_EXCEPTION, errorOf(driver, RAISE));
    LONG id = 0;
    EXPECT_EQ(DISP_E_UNKNOWNNAME, driver.m_lpDispatch->GetIDsOfNames("Subtract", &id));
    IDispatch* other = nullptr;
    EXPECT_EQ(E_NOINTERFACE, driver.m_lpDispatch->QueryInterface(CLASS_ID, &other));
    EXPECT_EQ(nullptr, other);
    EXPECT_EQ(3, driver.InvokeHelper<LONG>(ADD, LONG{1}, LONG{2})) << "and no harm is done";
}

TEST_F(CallTest, WhoIsCalledCallsBack) {
    COleDispatchDriver driver;
    ASSERT_TRUE(driver.CreateDispatch(CLASS_ID));
    Caller caller(driver);
    EXPECT_EQ(10, driver.InvokeHelper<LONG>(CALL_BACK, caller.GetIDispatch(false), LONG{10}));
    EXPECT_EQ(11, caller.calls);
    // In the other order: the server begins, and is called back. And both at once.
    driver.InvokeHelper(CALL_LATER, caller.GetIDispatch(false), LONG{10});
    EXPECT_EQ(10, driver.InvokeHelper<LONG>(CALL_BACK, caller.GetIDispatch(false), LONG{10}));
    EXPECT_TRUE(waitFor([&] { return caller.calls == 33; })) << caller.calls;
    EXPECT_TRUE(waitFor([] { return ForeignReferences() == 0; })) << "nothing of it stays held";
}

TEST_F(CallTest, ObjectsGoWithTheirReferences) {
    COleDispatchDriver first;
    ASSERT_TRUE(first.CreateDispatch(CLASS_ID));
    EXPECT_EQ(1, first.InvokeHelper<LONG>(REFERENCES));
    {
        COleDispatchDriver second;
        second.AttachDispatch(first.InvokeHelper<IDispatch*>(MAKE));
        EXPECT_EQ(2, first.InvokeHelper<LONG>(REFERENCES));
        EXPECT_EQ(5, second.InvokeHelper<LONG>(ADD, LONG{2}, LONG{3}));
    }
    EXPECT_TRUE(waitFor([&] { return first.InvokeHelper<LONG>(REFERENCES) == 1; }));
    EXPECT_EQ(RPC_E_DISCONNECTED, errorOf(first, DIE)) << "it dies in the middle of the call";
    EXPECT_EQ(RPC_E_DISCONNECTED, errorOf(first, ADD, LONG{1}, LONG{2}));
    Caller caller(first);
    EXPECT_EQ(RPC_E_DISCONNECTED, errorOf(first, CALL_BACK, caller.GetIDispatch(false), LONG{0}));
    EXPECT_TRUE(waitFor([] { return ForeignReferences() == 0; })) << "the dead hold nothing";
    COleDispatchDriver again;
    EXPECT_TRUE(again.CreateDispatch(CLASS_ID)) << "its program is started anew";
}

TEST_F(CallTest, WhatIsSharedGoesWithThoseWhoHoldIt) {
    COleDispatchDriver driver;
    ASSERT_TRUE(driver.CreateDispatch(CLASS_ID));
    const auto references = [&] { return driver.InvokeHelper<LONG>(REFERENCES); };
    const std::string address = "unix:path=" + sandbox().desktopFolder() + "/bus";
    BusClient receiver(address);
    {
        BusClient giver(address);
        const std::string path = giver.create(PROGRAM_ID);
        ASSERT_FALSE(path.empty());
        EXPECT_FALSE(receiver.share(PROGRAM_ID, path, giver.name())) << "it holds none";
        EXPECT_TRUE(giver.share(PROGRAM_ID, path, receiver.name()));
        EXPECT_TRUE(giver.share(PROGRAM_ID, path, receiver.nameOf(PROGRAM_ID)))
            << "to its own process, in a message that never comes";
        EXPECT_FALSE(giver.share(PROGRAM_ID, path, "org.freedesktop.DBus"));
        EXPECT_TRUE(giver.share(PROGRAM_ID, path, ":1.99999")) << "one that has gone is noticed";
        EXPECT_TRUE(waitFor([&] { return references() == 4; }));
    }
    EXPECT_TRUE(waitFor([&] { return references() == 2; })) << "the receiver's, and the driver's";
    EXPECT_EQ(2, references());
}

TEST_F(CallTest, WhatNoCallerOfThisLayerSends) {
    COleDispatchDriver driver;
    ASSERT_TRUE(driver.CreateDispatch(CLASS_ID));
    BusClient client("unix:path=" + sandbox().desktopFolder() + "/bus");
    const std::string path = client.create(PROGRAM_ID);
    constexpr char MISMATCH[] = "juntora.Error.TypeMismatch";
    constexpr char GONE[] = "org.freedesktop.DBus.Error.UnknownObject";
    const auto invoke = [&](const std::string& at, auto... arguments) {
        return client.call(PROGRAM_ID, at, "juntora.Object", "Invoke", arguments...);
    };
    EXPECT_EQ("", invoke(path, "iuav", ADD, 1, 2, "i", 1, "i", 2));
    EXPECT_EQ("", invoke(path, "iuav", ADD, 1, 2, "v", "i", 1, "d", 2.0));
    EXPECT_EQ("", invoke(path, "iuav", ADD, 1, 2, "y", 1, "t", std::uint64_t{2}));
    EXPECT_EQ(MISMATCH, invoke(path, "iuav", ADD, 1, 2, "i", 1, "t", std::uint64_t{1} << 40));
    EXPECT_EQ(MISMATCH, invoke(path, "iuav", ADD, 1, 2, "i", 1, "x", -(std::int64_t{1} << 40)));
    EXPECT_EQ(MISMATCH, invoke(path, "iuav", ADD, 1, 2, "i", 1, "as", 0));
    EXPECT_EQ(MISMATCH, invoke(path, "iuav", ADD, 1, 2, "i", 1, "(ii)", 1, 2));
    EXPECT_EQ(MISMATCH, invoke(path, "iuav", ADD, 1, 1, "av", 1, "i", 1));
    EXPECT_EQ(MISMATCH, invoke(path, "iuav", ECHO, 1, 1, "ay", 2, 'a', 0));
    EXPECT_EQ("org.freedesktop.DBus.Error.UnknownObject",
              invoke("/juntora/object/999", "iuav", ADD, 1, 0));
    EXPECT_EQ(MISMATCH, invoke(path, "iu", ADD, 1));
    EXPECT_EQ(MISMATCH, invoke(path, "iuavs", ADD, 1, 0, "x"));
    EXPECT_EQ(GONE, invoke("/juntora/object/1x", "iuav", ADD, 1, 0));
    EXPECT_EQ(GONE, client.call(PROGRAM_ID, "/x", "juntora.Class", "CreateInstance", ""));
    EXPECT_EQ(MISMATCH, client.call(PROGRAM_ID, "", "juntora.Class", "CreateInstance", "s", "x"));
    EXPECT_EQ(3, driver.InvokeHelper<LONG>(ADD, LONG{1}, LONG{2})) << "it serves on";
    for (int i = 0; i < 1'000 && !client.create(PROGRAM_ID).empty(); ++i) {
    }
    EXPECT_EQ("", client.create(PROGRAM_ID)) << "nobody has use for so many";
    EXPECT_EQ(S_OK, creationError());
}

TEST_F(CallTest, EachFaultOfAProgramHasItsOwnError) {
    const ClassRegistration gone{CLASS_ID, PROGRAM_ID, "/nowhere/program"};
    ASSERT_TRUE(RegisterClassOf(gone));
    EXPECT_EQ(CO_E_APPNOTFOUND, creationError());
    ASSERT_TRUE(UnregisterClassOf(gone));
    EXPECT_EQ(CO_E_CLASSSTRING, creationError());
    SetUp();
    setenv(MODE, "idle", 1);
    EXPECT_EQ(CO_E_SERVER_START_TIMEOUT, creationError());
    setenv(MODE, "late", 1);
    EXPECT_EQ(RPC_E_TIMEOUT, creationError());
    unsetenv(MODE);
    COleDispatchDriver driver;
    ASSERT_TRUE(driver.CreateDispatch(PROGRAM_ID)) << "it works again";
    EXPECT_TRUE(waitFor([&] { return driver.InvokeHelper<LONG>(REFERENCES) == 1; }))
        << "the object that came too late is given back";
}

TEST_F(CallTest, AFaultThatIsMendedIsForgotten) {
    setenv(MODE, "exit", 1);
    EXPECT_EQ(CO_E_SERVER_EXEC_FAILURE, creationError());
    unsetenv(MODE);
    EXPECT_EQ(S_OK, creationError());
}

}  // namespace
}  // namespace juntora::test
