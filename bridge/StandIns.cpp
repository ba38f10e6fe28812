#include "bridge/StandIns.h"

#include <string>

#include "bridge/TvxOleDispatchDriver.h"
#include "bridge/guarded.h"
#include "bridge/toolClasses.h"
#include "framework/CCmdTarget.h"

namespace juntora {
namespace {

constexpr int DID_NOT_COME_UP = -1;

/// The tool's end of a stand-in.
class ToolServer {
public:
    bool connect(const char* programId) { return m_driver.CreateDispatch(programId); }
    const IDispatch* object() const { return m_driver.m_lpDispatch; }

    template <class... Arguments>
    void tell(LONG member, Arguments... arguments) {
        guarded([&] { m_driver.InvokeHelper(member, arguments...); });
    }
    int start(LONG member) {
        int result = DID_NOT_COME_UP;
        guarded([&] { result = static_cast<int>(m_driver.InvokeHelper<LONG>(member)); });
        return result;
    }

private:
    TvxOleDispatchDriver m_driver;
};

/// A stand-in on its server; null where there is none to be had.
template <class StandIn>
std::unique_ptr<StandIn> connected(const char* programId) {
    auto standIn = std::make_unique<StandIn>();
    return standIn->server.connect(programId) ? std::move(standIn) : nullptr;
}

/// What a tool calls back.
template <class Callback>
class Sink : public CCmdTarget {
public:
    Sink() { EnableAutomation(); }

    /// Has the tool call from now on, or no more.
    void set(ToolServer& server, LONG member, Callback callback, int mode, void* context) {
        m_callback = callback;
        m_context = context;
        server.tell(member, callback != nullptr ? GetIDispatch(false) : nullptr, LONG{mode});
    }
    void call(LONG code) {
        if (m_callback != nullptr) {
            using Code = decltype(codeOf(m_callback));
            m_callback(static_cast<Code>(code), m_context);
        }
    }

protected:
    void OnFinalRelease() override {}  // A member of its stand-in.
    const AFX_DISPMAP* GetDispatchMap() const override {
        static const AFX_DISPMAP_ENTRY entries[] = {DISP_FUNCTION<&Sink::call>("Notify")};
        static const AFX_DISPMAP map("Voltara.JuntoraSink", entries);
        return &map;
    }

private:
    template <class Code>
    static Code codeOf(void (*)(Code, void*));

    Callback m_callback = nullptr;
    void* m_context = nullptr;
};

class VoltaraUser final : public wVoltaraUserInterface {
public:
    int start() override { return server.start(voltaraUser::START); }
    void afterOpen(int mode) override { server.tell(voltaraUser::AFTER_OPEN, LONG{mode}); }
    void openFile(const char* path) override { server.tell(voltaraUser::OPEN_FILE, path); }
    void closeFile() override { server.tell(voltaraUser::CLOSE_FILE); }

    ToolServer server;
};

class SimObj final : public wSimObjInterface {
public:
    void loadFile(const char* path, int mode) override {
        server.tell(voltaraRun::LOAD_FILE, path, LONG{mode});
    }
    void setNotify(Callback callback, int mask, void* context) override {
        m_sink.set(server, voltaraRun::SET_NOTIFY, callback, mask, context);
    }

    ToolServer server;

private:
    Sink<Callback> m_sink;
};

class Tunara final : public wTunaraInterface {
public:
    void openFile(const char* path, const char* same) override {
        server.tell(tunara::OPEN_FILE, path, same);
    }
    void setNotify(Callback callback, int mode, void* context) override {
        m_sink.set(server, tunara::SET_NOTIFY, callback, mode, context);
        m_watch.reset();
        if (callback != nullptr) {
            constexpr int ENDS = 2;
            m_watch = std::make_unique<ObjectWatch>(server.object(), [this] { m_sink.call(ENDS); });
        }
    }

    ToolServer server;

private:
    Sink<Callback> m_sink;
    std::unique_ptr<ObjectWatch> m_watch;  ///< A tool that dies does not tell of its end.
};

class Modelar final : public wSketchelModelarInterface {
public:
    int start() override { return server.start(modelar::START); }
    void openLibrary(const char* path) override { server.tell(modelar::OPEN_LIBRARY, path); }
    void getPart(const char* name, int mode) override {
        server.tell(modelar::GET_PART, name, LONG{mode});
    }
    void copyPart(const char* a, const char* b, const char* c, int mode) override {
        server.tell(modelar::COPY_PART, a, b, c, LONG{mode});
    }
    void saveLibraryAs(const char* path) override { server.tell(modelar::SAVE_LIBRARY_AS, path); }
    void createPart(const char* name, int mode) override {
        server.tell(modelar::CREATE_PART, name, LONG{mode});
    }

    ToolServer server;
};

class Wavend final : public wSketchelWavendInterface {
public:
    int start() override { return server.start(wavend::START); }
    void command(const char* text) override { server.tell(wavend::COMMAND, text); }

    ToolServer server;
};

}  // namespace

std::unique_ptr<wVoltaraUserInterface> makeVoltaraUserStandIn() {
    return connected<VoltaraUser>(VOLTARA_USER_PROGRAM_ID);
}

std::unique_ptr<wSimObjInterface> makeSimObjStandIn() {
    return connected<SimObj>(VOLTARA_RUN_PROGRAM_ID);
}

std::unique_ptr<wTunaraInterface> makeTunaraStandIn() {
    return connected<Tunara>(TUNARA_PROGRAM_ID);
}

std::unique_ptr<wSketchelModelarInterface> makeModelarStandIn() {
    return connected<Modelar>(MODELAR_PROGRAM_ID);
}

std::unique_ptr<wSketchelWavendInterface> makeWavendStandIn() {
    return connected<Wavend>(WAVEND_PROGRAM_ID);
}

}  // namespace juntora
