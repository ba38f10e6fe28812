// A simulator, as far as the hub can tell: it comes up when it is asked to, and for a file that it
// is given reports what that file says, line by line:
//
//     data FILE     what GetDataFile answers from then on; the file given, at first
//     profile FILE  the same of GetProfileFile
//     change N      the link's change number N
//     flags N       what the run reports without a link
//     wait N        nothing for N milliseconds
//     hang N        no answer to anybody for N milliseconds
//     die           ends without a word
#include <cstdlib>
#include <map>

#include "framework/COleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "platform/desktop/message.h"
#include "tools/samples/ObjectServer.h"

namespace juntora {
namespace {

constexpr char TOOL[] = "voltara";

/// Reports to an object that the hub has handed over.
void notify(IDispatch* sink, LONG code) {
    constexpr LONG NOTIFY = 1;
    COleDispatchDriver driver;
    driver.AttachDispatch(sink, false);
    try {
        driver.InvokeHelper(NOTIFY, code);
    } catch (CException* exception) {
        say(TOOL, "the hub does not take " + std::to_string(code));
        exception->Delete();
    }
}

/// What its objects share.
class Simulator {
public:
    static Simulator& the() {
        static auto* const simulator = new Simulator;
        return *simulator;
    }

    bool open(const std::string& path) {
        dataFile = path;
        profileFile = path;
        return m_script.load(path);
    }
    void run() { m_script.run(); }

    std::string dataFile;
    std::string profileFile;
    std::map<LONG, IDispatch*> sinks;  ///< Of the link, by cookie; with a reference each.
    LONG lastCookie = 0;
    IDispatch* runSink = nullptr;  ///< With a reference.

private:
    Simulator() : m_script([this](const auto& word, const auto& rest) { step(word, rest); }) {}

    void step(const std::string& word, const std::string& rest) {
        const LONG number = std::atoi(rest.c_str());
        if (word == "data") {
            dataFile = rest;
        } else if (word == "profile") {
            profileFile = rest;
        } else if (word == "change") {
            say(TOOL, "change " + rest);
            for (const auto& [cookie, sink] : std::map(sinks)) {
                notify(sink, number);
            }
        } else if (word == "flags" && runSink != nullptr) {
            notify(runSink, number);
        } else if (word == "hang") {
            Sleep(static_cast<DWORD>(number));
        } else if (word == "die") {
            std::_Exit(1);
        }
    }

    SampleScript m_script;
};

class VoltaraUser : public SampleObject {
public:
    static CCmdTarget* create() { return new VoltaraUser; }
    static const AFX_DISPMAP* map() {
        static const AFX_DISPMAP_ENTRY entries[] = {
            DISP_FUNCTION<&VoltaraUser::Start>("Start"),
            DISP_FUNCTION<&VoltaraUser::AfterOpen>("AfterOpen"),
            DISP_FUNCTION<&VoltaraUser::OpenFile>("OpenFile"),
            DISP_FUNCTION<&VoltaraUser::CloseFile>("CloseFile"),
        };
        static const AFX_DISPMAP map("Tarvex.VoltaraUserInterface", entries);
        return &map;
    }

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return map(); }

private:
    LONG Start() {
        say(TOOL, "comes up, command line [" + leftCommandLine("Voltara") + "]");
        return 0;
    }
    void AfterOpen(LONG) { Simulator::the().run(); }
    void OpenFile(const char* path) {
        const bool isRead = Simulator::the().open(path);
        say(TOOL, std::string(isRead ? "opens " : "cannot read ") + path);
    }
    void CloseFile() { say(TOOL, "closes its file"); }
};

class VoltaraRun : public SampleObject {
public:
    ~VoltaraRun() override { SetNotify(nullptr, 0); }
    static CCmdTarget* create() { return new VoltaraRun; }
    static const AFX_DISPMAP* map() {
        static const AFX_DISPMAP_ENTRY entries[] = {
            DISP_FUNCTION<&VoltaraRun::LoadFile>("LoadFile"),
            DISP_FUNCTION<&VoltaraRun::SetNotify>("SetNotify"),
        };
        static const AFX_DISPMAP map("Tarvex.VoltaraSimObject", entries);
        return &map;
    }

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return map(); }

private:
    void LoadFile(const char* path, LONG) { say(TOOL, std::string("loads ") + path); }
    void SetNotify(IDispatch* sink, LONG) {
        IDispatch*& kept = Simulator::the().runSink;
        if (sink != nullptr) {
            sink->AddRef();
        }
        if (kept != nullptr) {
            kept->Release();
        }
        kept = sink;
    }
};

class VoltaraLink : public SampleObject {
public:
    static CCmdTarget* create() { return new VoltaraLink; }
    static const AFX_DISPMAP* map() {
        static const AFX_DISPMAP_ENTRY entries[] = {
            DISP_FUNCTION<&VoltaraLink::GetDataFile>("getDataFile"),
            DISP_FUNCTION<&VoltaraLink::ScopelCommand>("scopelCommand"),
            DISP_FUNCTION<&VoltaraLink::Advise>("advise"),
            DISP_FUNCTION<&VoltaraLink::Unadvise>("unadvise"),
            DISP_FUNCTION<&VoltaraLink::GetProfileFile>("getProfileFile"),
        };
        static const AFX_DISPMAP map("Tarvex.VoltaraIpcLink", entries);
        return &map;
    }

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return map(); }

private:
    std::string GetDataFile() { return Simulator::the().dataFile; }
    LONG ScopelCommand(const char* text) {
        say("scopel", text);
        return 0;
    }
    void Advise(IDispatch* sink, LONG, LONG* cookie) {
        if (sink == nullptr) {
            AfxThrowOleException(E_FAIL);
        }
        Simulator& simulator = Simulator::the();
        *cookie = ++simulator.lastCookie;
        sink->AddRef();
        simulator.sinks[*cookie] = sink;
        say(TOOL, "the hub listens");
    }
    void Unadvise(LONG cookie) {
        const auto entry = Simulator::the().sinks.extract(cookie);
        if (entry.empty()) {
            AfxThrowOleException(E_FAIL);
        }
        entry.mapped()->Release();
        say(TOOL, "the hub listens no more");
    }
    std::string GetProfileFile() { return Simulator::the().profileFile; }
};

constexpr GUID classId(WORD number) {
    return {0x6C1E3000, number, 0x4D0C, {0x9A, 0x41, 0x52, 0x7E, 0x0B, 0xC4, 0x8D, 0x16}};
}

const COleObjectFactory userFactory(classId(1), "Tarvex.VoltaraUserInterface.16.6.0",
                                    &VoltaraUser::create, &VoltaraUser::map);
const COleObjectFactory runFactory(classId(2), "Tarvex.VoltaraSimObject.16.6.0",
                                   &VoltaraRun::create, &VoltaraRun::map);
const COleObjectFactory linkFactory(classId(3), "Tarvex.VoltaraIpcLink.16.6.0",
                                    &VoltaraLink::create, &VoltaraLink::map);

}  // namespace
}  // namespace juntora

int main(int argc, char** argv) { return juntora::runObjectServer(argc, argv, juntora::TOOL); }
