// What the simulator's link reports, as the tool that asked for the simulator sees it.
#include "tests/bridge/BridgeFixture.h"

namespace juntora::test {
namespace {

constexpr int COMMAND = 30;
constexpr int STATUS = 50;

class LinkTest : public BridgeFixture {
protected:
    void startSession(const std::string& faults = "") {
        ASSERT_TRUE(TestLink::offer());
        startHubWithLibrary(faults);
        m_client = attachKeeper("Draftel");
        launch(m_client, R"(1 "C:\x" "voltara")");
        ASSERT_TRUE(finds("Scopel"));
        m_voltara = find("Voltara");
        m_scopel = find("Scopel");
    }
    void startSubscribedSession() {
        startSession();
        ASSERT_TRUE(waitFor([] { return TestLink::sink != nullptr; }));
    }
    /// The records that come of some changes; change 7 always gives one, and so tells the end.
    std::vector<Arrived> recordsOf(const std::vector<LONG>& changes) {
        for (const LONG code : changes) {
            EXPECT_TRUE(TestLink::change(code)) << code;
        }
        TestLink::dataFile = "end";
        EXPECT_TRUE(TestLink::change(7));
        std::vector<Arrived> all;
        const Arrived end{COMMAND, m_scopel, "OKtoAddTraces \"end\""};
        Arrived record = next();
        for (; record != end && record.opcode != 0; record = next()) {
            all.push_back(record);
        }
        EXPECT_EQ(end, record) << "the last one has not come";
        return all;
    }

    HWND m_client = 0;
    HWND m_voltara = 0;
    HWND m_scopel = 0;
};

TEST_F(LinkTest, WhichChangesReachTheTool) {
    startSubscribedSession();
    const Arrived starts{COMMAND, m_voltara, "StartScopelFile \"C:\\d a.dat\""};
    const Arrived traces{COMMAND, m_scopel, "OKtoAddTraces \"C:\\d a.dat\""};
    const auto status = [this](int code) {
        return Arrived{STATUS, m_voltara, "\"C:\\p q.sim\" " + std::to_string(code)};
    };
    struct Row {
        std::vector<LONG> changes;
        bool hasProfile;
        std::vector<Arrived> records;
    };
    // Each begins where a change 4 has opened the gate.
    const Row rows[] = {
        {{3}, true, {status(0)}},
        {{6}, true, {status(2)}},
        {{8}, true, {status(3)}},
        {{3, 3, 6}, true, {status(0)}},
        {{6, 3, 8}, true, {status(2)}},
        {{3, 4, 6}, true, {status(0), starts, status(2)}},
        {{3, 7, 6}, true, {status(0), traces}},
        {{3}, false, {}},
        {{4}, true, {starts}},
        {{4, 4}, true, {starts, starts}},
        {{7}, true, {traces}},
        {{5}, true, {}},
        {{2, 10, 0, -1, 65'536}, true, {}},
    };
    for (const Row& row : rows) {
        recordsOf({4});
        TestLink::dataFile = "C:\\d a.dat";
        TestLink::profileFile = row.hasProfile ? "C:\\p q.sim" : "";
        EXPECT_EQ(row.records, recordsOf(row.changes)) << testing::PrintToString(row.changes);
    }
    // A change whose profile is empty leaves the gate open.
    TestLink::profileFile = "";
    recordsOf({4, 3});
    TestLink::profileFile = "C:\\p q.sim";
    EXPECT_EQ(std::vector{status(2)}, recordsOf({6}));
}

TEST_F(LinkTest, TheGateOutlivesTheSession) {
    startSubscribedSession();
    TestLink::profileFile = "p";
    EXPECT_EQ(1U, recordsOf({3}).size());
    EXPECT_TRUE(TestLink::change(9));
    EXPECT_TRUE(loses("Voltara"));
    EXPECT_TRUE(waitFor([] { return TestLink::sink == nullptr; })) << "nobody listens any more";
    EXPECT_EQ(1, TestLink::unadvised);
    launch(m_client, R"(1 "C:\x" "voltara")");
    ASSERT_TRUE(waitFor([] { return TestLink::sink != nullptr; }));
    EXPECT_TRUE(recordsOf({3}).empty());
    EXPECT_EQ(2U, recordsOf({4, 3}).size());
}

TEST_F(LinkTest, TheLastToolToSpeakIsToldOfChanges) {
    startSubscribedSession();
    const HWND other = attachKeeper("Sketchel");
    EXPECT_EQ(1, tell(other, m_voltara, "C:\\x.sim"));
    signOff(m_client);
    EXPECT_NE(0U, find("Voltara"));
    TestLink::dataFile = "d";
    EXPECT_TRUE(TestLink::change(4));
    EXPECT_EQ((Arrived{COMMAND, m_voltara, "StartScopelFile \"d\""}), next());
    EXPECT_EQ(1, tell(other, m_scopel, "add trace \"V(1)\""));
    EXPECT_TRUE(waitFor(
        [] { return TestLink::commands == std::vector<std::string>{"add trace \"V(1)\""}; }));
    signOff(other);
    EXPECT_TRUE(waitFor([] { return TestLink::sink == nullptr; }));
}

TEST_F(LinkTest, ALinkThatRaisesCostsNothingElse) {
    startSubscribedSession();
    TestLink::raises = true;
    TestLink::dataFile = "unseen";
    EXPECT_TRUE(TestLink::change(4));
    EXPECT_EQ((Arrived{COMMAND, m_voltara, "StartScopelFile \"\""}), next());
    EXPECT_EQ(1, tell(m_client, m_scopel, "lost"));
    EXPECT_TRUE(waitFor([] { return !TestLink::commands.empty(); }));
    EXPECT_EQ(1, tell(m_client, m_voltara, "C:\\x.sim"));
    EXPECT_TRUE(hubGoesOn());
    signOff(m_client);
    EXPECT_TRUE(loses("Voltara"));
    EXPECT_TRUE(hubGoesOn());
}

TEST_F(LinkTest, ALinkThatRefusesToListenIsAskedAgain) {
    TestLink::raises = true;
    startSession();
    EXPECT_TRUE(hubGoesOn());
    EXPECT_EQ(nullptr, TestLink::sink);
    TestLink::raises = false;
    EXPECT_EQ(1, tell(m_client, m_scopel, "now"));
    EXPECT_TRUE(waitFor([] { return TestLink::sink != nullptr; }));
}

TEST_F(LinkTest, AHubThatIsCalledCallsBackInTheMiddleOfItsOwnCall) {
    startSubscribedSession();
    // The hub asks for the data file inside of notifyChange, while it is itself asked to pass on a
    // command: calls in both directions stand inside one another.
    TestLink::dataFile = "d";
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(1, tell(m_client, m_scopel, "go"));
        EXPECT_TRUE(TestLink::change(4));
        EXPECT_EQ(COMMAND, next().opcode);
    }
    EXPECT_TRUE(waitFor([] { return TestLink::commands.size() == 50; }));
}

}  // namespace
}  // namespace juntora::test
