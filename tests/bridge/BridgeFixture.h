// A hub with a bridge, a tool that asks it for others, and the tools' objects.
#pragma once

#include <string>
#include <vector>

#include "framework/CCmdTarget.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {

/// A record that has reached a tool.
struct Arrived {
    int opcode;
    HWND sender;
    std::string text;

    friend bool operator==(const Arrived&, const Arrived&) = default;
};
std::ostream& operator<<(std::ostream& stream, const Arrived& record);

class BridgeFixture : public HubProcess {
protected:
    /// With the library of this test's own, which prints at the hub's standard output.
    void startHubWithLibrary(const std::string& faults = "");
    /// Signs on a tool that keeps what reaches it.
    HWND attachKeeper(const std::string& name);

    /// Requests in a tool's name. `launch` has the text as the client's wrappers make it.
    static int launch(HWND tool, const std::string& text);
    static int tell(HWND tool, HWND target, const std::string& text, int opcode = 30);
    static HWND find(const std::string& name);
    bool finds(const std::string& name) const;
    bool loses(const std::string& name) const;

    /// The next record for any keeper; one with opcode 0 when none comes.
    static Arrived next();
    /// The hub's next `count` lines.
    std::vector<std::string> calls(std::size_t count);
    static std::string standByCaption(const std::string& tool);
};

/// The simulator's link, served by the test itself.
class TestLink : public CCmdTarget {
public:
    /// Offers the class from now on.
    static bool offer();

    static inline std::string dataFile;
    static inline std::string profileFile;
    static inline IDispatch* sink = nullptr;  ///< With a reference; null while nobody listens.
    static inline int unadvised = 0;
    static inline bool raises = false;
    static inline std::vector<std::string> commands;

    /// Has the hub told of a change; false where it does not take it.
    static bool change(LONG code);

    TestLink() { EnableAutomation(); }
    static CCmdTarget* create() { return new TestLink; }
    static const AFX_DISPMAP* map();

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return map(); }

private:
    std::string GetDataFile();
    LONG ScopelCommand(const char* text);
    void Advise(IDispatch* listener, LONG mask, LONG* cookie);
    void Unadvise(LONG cookie);
    std::string GetProfileFile();
};

}  // namespace juntora::test
