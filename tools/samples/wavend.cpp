// A stimulus editor, as far as the hub can tell: it prints what it is told.
#include "framework/COleObjectFactory.h"
#include "tools/samples/ObjectServer.h"

namespace juntora {
namespace {

constexpr char TOOL[] = "wavend";

class Wavend : public SampleObject {
public:
    static CCmdTarget* create() { return new Wavend; }
    static const AFX_DISPMAP* map() {
        static const AFX_DISPMAP_ENTRY entries[] = {
            DISP_FUNCTION<&Wavend::Start>("Start"),
            DISP_FUNCTION<&Wavend::Command>("Command"),
        };
        static const AFX_DISPMAP map("Tarvex.SketchelWavend", entries);
        return &map;
    }

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return map(); }

private:
    LONG Start() {
        say(TOOL, "comes up, command line [" + leftCommandLine("Wavend Editor") + "]");
        return 0;
    }
    void Command(const char* text) { say(TOOL, text); }
};

const COleObjectFactory factory(
    {0x6C1E3000, 6, 0x4D0C, {0x9A, 0x41, 0x52, 0x7E, 0x0B, 0xC4, 0x8D, 0x16}},
    "Tarvex.SketchelWavend.16.6.0", &Wavend::create, &Wavend::map);

}  // namespace
}  // namespace juntora

int main(int argc, char** argv) { return juntora::runObjectServer(argc, argv, juntora::TOOL); }
