// Where the tools' objects come from.
#include "bridge/ToolObjects.h"

#include <string>

#include "bridge/CAppReg.h"
#include "bridge/StandIns.h"
#include "platform/kernel/errorOutput.h"
#include "platform/kernel/modules.h"
#include "platform/kernel/printable.h"
#include "platform/kernel/process.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

constexpr char PATH_VARIABLE[] = "JUNTORA_TOOL_OBJECTS";
constexpr char PATH_VALUE[] = "ToolObjects";

std::string libraryPath() {
    if (const char* path = GetEnvironment(PATH_VARIABLE)) {
        return path;
    }
    std::string path;
    if (ReadRegistryText(HKEY_CURRENT_USER, SUITE_KEY, PATH_VALUE, &path) != ERROR_SUCCESS) {
        ReadRegistryText(HKEY_LOCAL_MACHINE, SUITE_KEY, PATH_VALUE, &path);
    }
    return path;
}

/// Null where none is supplied, or where it cannot be loaded, of which is told.
HMODULE loadLibrary() {
    const std::string path = libraryPath();
    if (path.empty()) {
        return nullptr;
    }
    const char* why = nullptr;
    const HMODULE loaded = LoadLibraryA(path.c_str(), &why);
    if (loaded == nullptr) {
        kernel::WriteToErrors(PrintableText("juntora: the library of tool objects, " + path +
                                            ", cannot be loaded: " + why +
                                            ". The tools are reached as automation servers; mend "
                                            "JUNTORA_TOOL_OBJECTS, or the registry's \"" +
                                            PATH_VALUE + "\", and start the hub again.") +
                              "\n");
    }
    return loaded;
}

HMODULE library() {
    static const HMODULE once = loadLibrary();
    return once;
}

/// What the library's function of that name makes, or the stand-in where it has no such function.
template <class Object>
std::unique_ptr<Object> create(const char* factory, std::unique_ptr<Object> (*standIn)()) {
    using Factory = Object* (*)();
    void* const address = library() != nullptr ? GetProcAddress(library(), factory) : nullptr;
    if (address == nullptr) {
        return standIn();
    }
    return std::unique_ptr<Object>(reinterpret_cast<Factory>(address)());
}

}  // namespace

std::unique_ptr<wVoltaraUserInterface> createWVoltaraUserInterface() {
    return create("createWVoltaraUserInterface", &makeVoltaraUserStandIn);
}

std::unique_ptr<wSimObjInterface> createWSimObjInterface() {
    return create("createWSimObjInterface", &makeSimObjStandIn);
}

std::unique_ptr<wTunaraInterface> createWTunaraInterface() {
    return create("createWTunaraInterface", &makeTunaraStandIn);
}

std::unique_ptr<wSketchelModelarInterface> createWSketchelModelarInterface() {
    return create("createWSketchelModelarInterface", &makeModelarStandIn);
}

std::unique_ptr<wSketchelWavendInterface> createWSketchelWavendInterface() {
    return create("createWSketchelWavendInterface", &makeWavendStandIn);
}

}  // namespace juntora
