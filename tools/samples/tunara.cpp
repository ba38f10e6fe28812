// An optimiser, as far as the hub can tell: it prints what it is told, and for a file that it is
// given reports what that file says, line by line: `notify N` (1: its parameters have changed; 2:
// it ends), `wait N`, `die`.
#include <cstdlib>

#include "framework/COleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "tools/samples/ObjectServer.h"

namespace juntora {
namespace {

constexpr char TOOL[] = "tunara";

class Tunara : public SampleObject {
public:
    Tunara() : m_script([this](const auto& word, const auto& rest) { step(word, rest); }) {}
    ~Tunara() override { keep(nullptr); }
    static CCmdTarget* create() { return new Tunara; }
    static const AFX_DISPMAP* map() {
        static const AFX_DISPMAP_ENTRY entries[] = {
            DISP_FUNCTION<&Tunara::OpenFile>("OpenFile"),
            DISP_FUNCTION<&Tunara::SetNotify>("SetNotify"),
        };
        static const AFX_DISPMAP map("Tarvex.Tunara", entries);
        return &map;
    }

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return map(); }

private:
    void OpenFile(const char* path, const char*) {
        if (*path == '\0') {
            say(TOOL, "comes up, command line [" + leftCommandLine("Tunara") + "]");
            return;
        }
        const bool isRead = m_script.load(path);
        say(TOOL, std::string(isRead ? "opens " : "cannot read ") + path);
    }
    void SetNotify(IDispatch* sink, LONG) {
        keep(sink);
        if (sink != nullptr) {
            m_script.run();
        }
    }
    void keep(IDispatch* sink) {
        if (sink != nullptr) {
            sink->AddRef();
        }
        if (m_sink != nullptr) {
            m_sink->Release();
        }
        m_sink = sink;
    }
    void step(const std::string& word, const std::string& rest) {
        constexpr LONG NOTIFY = 1;
        if (word == "die") {
            std::_Exit(1);
        }
        if (word != "notify" || m_sink == nullptr) {
            return;
        }
        COleDispatchDriver driver;
        driver.AttachDispatch(m_sink, false);
        try {
            driver.InvokeHelper(NOTIFY, LONG{std::atoi(rest.c_str())});
        } catch (CException* exception) {
            say(TOOL, "the hub does not take " + rest);
            exception->Delete();
        }
    }

    SampleScript m_script;
    IDispatch* m_sink = nullptr;  ///< With a reference.
};

const COleObjectFactory factory(
    {0x6C1E3000, 4, 0x4D0C, {0x9A, 0x41, 0x52, 0x7E, 0x0B, 0xC4, 0x8D, 0x16}},
    "Tarvex.Tunara.16.6.0", &Tunara::create, &Tunara::map);

}  // namespace
}  // namespace juntora

int main(int argc, char** argv) { return juntora::runObjectServer(argc, argv, juntora::TOOL); }
