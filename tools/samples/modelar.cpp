// A model editor, as far as the hub can tell: it prints what it is told.
#include "framework/COleObjectFactory.h"
#include "tools/samples/ObjectServer.h"

namespace juntora {
namespace {

constexpr char TOOL[] = "modelar";

class Modelar : public SampleObject {
public:
    static CCmdTarget* create() { return new Modelar; }
    static const AFX_DISPMAP* map() {
        static const AFX_DISPMAP_ENTRY entries[] = {
            DISP_FUNCTION<&Modelar::Start>("Start"),
            DISP_FUNCTION<&Modelar::OpenLibrary>("OpenLibrary"),
            DISP_FUNCTION<&Modelar::GetPart>("GetPart"),
            DISP_FUNCTION<&Modelar::CopyPart>("CopyPart"),
            DISP_FUNCTION<&Modelar::SaveLibraryAs>("SaveLibraryAs"),
            DISP_FUNCTION<&Modelar::CreatePart>("CreatePart"),
        };
        static const AFX_DISPMAP map("Tarvex.SketchelModelar", entries);
        return &map;
    }

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return map(); }

private:
    LONG Start() {
        say(TOOL, "comes up, command line [" + leftCommandLine("Modelar Editor") + "]");
        return 0;
    }
    void OpenLibrary(const char* path) { say(TOOL, std::string("opens the library ") + path); }
    void GetPart(const char* name, LONG) { say(TOOL, std::string("gets the part ") + name); }
    void CopyPart(const char* a, const char* b, const char* c, LONG) {
        say(TOOL, std::string("copies a part: ") + a + ", " + b + ", " + c);
    }
    void SaveLibraryAs(const char* path) { say(TOOL, std::string("saves the library as ") + path); }
    void CreatePart(const char* name, LONG) { say(TOOL, std::string("makes the part ") + name); }
};

const COleObjectFactory factory(
    {0x6C1E3000, 5, 0x4D0C, {0x9A, 0x41, 0x52, 0x7E, 0x0B, 0xC4, 0x8D, 0x16}},
    "Tarvex.SketchelModelar.16.6.0", &Modelar::create, &Modelar::map);

}  // namespace
}  // namespace juntora

int main(int argc, char** argv) { return juntora::runObjectServer(argc, argv, juntora::TOOL); }
