// The objects by which the bridge starts and steers tools that are driven by automation.
//
// A deployment supplies them in a shared library with one C function for each class, of the
// factory's name below, without arguments, whose result is the caller's (null: there is none). The
// library's path stands in JUNTORA_TOOL_OBJECTS, else in the value "ToolObjects" of
// HKEY_CURRENT_USER\Software\Tarvex\Voltara Juntora\16.6.0, else there in HKEY_LOCAL_MACHINE; it is
// looked up once in a process. Where there is no library, stand-ins reach each tool as an
// automation server (docs/tool-objects.md).
//
// The order of the virtual operations is part of the library's interface. All calls come on the
// thread that serves the hub, and the callbacks are expected there; none of them throws. Texts are
// the caller's, for the length of the call.
#pragma once

#include <memory>

namespace juntora {

/// The simulator's user interface.
class wVoltaraUserInterface {
public:
    virtual ~wVoltaraUserInterface() = default;
    /// Brings it up. 0 when it came.
    virtual int start() = 0;
    virtual void afterOpen(int mode) = 0;  ///< `mode` is 0.
    virtual void openFile(const char* path) = 0;
    virtual void closeFile() = 0;
};

/// The simulator's run.
class wSimObjInterface {
public:
    /// Bit 0 or bit 1 of `flags`: the run has begun, or has ended.
    using Callback = void (*)(unsigned char flags, void* context);

    virtual void loadFile(const char* path, int mode) = 0;  ///< `mode` is 1.
    /// Calls back from now on for what `mask` has (3: both bits); null stops it.
    virtual void setNotify(Callback callback, int mask, void* context) = 0;
    virtual ~wSimObjInterface() = default;
};

class wTunaraInterface {
public:
    /// `code` 1: its parameters have changed; 2: it ends.
    using Callback = void (*)(int code, void* context);

    virtual void openFile(const char* path, const char* same) = 0;  ///< Empty texts for no file.
    virtual void setNotify(Callback callback, int mode, void* context) = 0;  ///< `mode` is 0.
    virtual ~wTunaraInterface() = default;
};

/// The model editor. Made for one call and ended behind it.
class wSketchelModelarInterface {
public:
    virtual int start() = 0;  ///< 0 when it came up.
    virtual void openLibrary(const char* path) = 0;
    virtual void getPart(const char* name, int mode) = 0;  ///< `mode` is 2, here and below.
    virtual void copyPart(const char* a, const char* b, const char* c, int mode) = 0;
    virtual ~wSketchelModelarInterface() = default;
    virtual void saveLibraryAs(const char* path) = 0;
    virtual void createPart(const char* name, int mode) = 0;
};

/// The stimulus editor. Made for one call and ended behind it.
class wSketchelWavendInterface {
public:
    virtual int start() = 0;  ///< 0 when it came up.
    virtual void command(const char* text) = 0;
    virtual ~wSketchelWavendInterface() = default;
};

std::unique_ptr<wVoltaraUserInterface> createWVoltaraUserInterface();
std::unique_ptr<wSimObjInterface> createWSimObjInterface();
std::unique_ptr<wTunaraInterface> createWTunaraInterface();
std::unique_ptr<wSketchelModelarInterface> createWSketchelModelarInterface();
std::unique_ptr<wSketchelWavendInterface> createWSketchelWavendInterface();

}  // namespace juntora
