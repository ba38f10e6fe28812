// A library of tool objects as a deployment supplies it: prints each call of its objects as a line.
// A file whose name ends in "-N" has the callback come with N as soon as it is set. What is named
// in TEST_TOOL_FAULTS fails: "start" is refused, "none" has no object made.
#include "bridge/ToolObjects.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using namespace juntora;

bool hasFault(const char* name) {
    const char* faults = std::getenv("TEST_TOOL_FAULTS");
    return faults != nullptr && std::strcmp(faults, name) == 0;
}

__attribute__((format(printf, 1, 2))) void tell(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::putchar('\n');
    std::fflush(stdout);
}

/// The number at the end of a file's name; 0 for none.
int numberIn(const std::string& path) {
    const std::size_t mark = path.rfind('-');
    return mark == std::string::npos ? 0 : std::atoi(path.c_str() + mark + 1);
}

class User final : public wVoltaraUserInterface {
public:
    ~User() override { tell("user.end"); }
    int start() override {
        tell("user.start");
        return hasFault("start") ? 1 : 0;
    }
    void afterOpen(int mode) override { tell("user.afterOpen %d", mode); }
    void openFile(const char* path) override { tell("user.openFile %s", path); }
    void closeFile() override { tell("user.closeFile"); }
};

class Run final : public wSimObjInterface {
public:
    ~Run() override { tell("run.end"); }
    void loadFile(const char* path, int mode) override {
        tell("run.loadFile %s %d", path, mode);
        m_path = path;
    }
    void setNotify(Callback callback, int mask, void* context) override {
        tell("run.setNotify %s %d", callback != nullptr ? "on" : "off", mask);
        if (callback != nullptr && numberIn(m_path) != 0) {
            callback(static_cast<unsigned char>(numberIn(m_path)), context);
        }
    }

private:
    std::string m_path;
};

class Tunara final : public wTunaraInterface {
public:
    ~Tunara() override { tell("tunara.end"); }
    void openFile(const char* path, const char* same) override {
        tell("tunara.openFile [%s] [%s]", path, same);
        m_path = path;
    }
    void setNotify(Callback callback, int mode, void* context) override {
        tell("tunara.setNotify %s %d", callback != nullptr ? "on" : "off", mode);
        if (callback != nullptr && numberIn(m_path) != 0) {
            callback(numberIn(m_path), context);
        }
    }

private:
    std::string m_path;
};

class Modelar final : public wSketchelModelarInterface {
public:
    ~Modelar() override { tell("modelar.end"); }
    int start() override {
        tell("modelar.start");
        return hasFault("start") ? 1 : 0;
    }
    void openLibrary(const char* path) override { tell("modelar.openLibrary %s", path); }
    void getPart(const char* name, int mode) override { tell("modelar.getPart %s %d", name, mode); }
    void copyPart(const char* a, const char* b, const char* c, int mode) override {
        tell("modelar.copyPart %s %s %s %d", a, b, c, mode);
    }
    void saveLibraryAs(const char* path) override { tell("modelar.saveLibraryAs %s", path); }
    void createPart(const char* name, int mode) override {
        tell("modelar.createPart %s %d", name, mode);
    }
};

class Wavend final : public wSketchelWavendInterface {
public:
    ~Wavend() override { tell("wavend.end"); }
    int start() override {
        tell("wavend.start");
        return hasFault("start") ? 1 : 0;
    }
    void command(const char* text) override { tell("wavend.command %s", text); }
};

template <class Object, class Interface>
Interface* make() {
    return hasFault("none") ? nullptr : new Object;
}

}  // namespace

extern "C" {
wVoltaraUserInterface* createWVoltaraUserInterface() { return make<User, wVoltaraUserInterface>(); }
wSimObjInterface* createWSimObjInterface() { return make<Run, wSimObjInterface>(); }
wTunaraInterface* createWTunaraInterface() { return make<Tunara, wTunaraInterface>(); }
wSketchelModelarInterface* createWSketchelModelarInterface() {
    return make<Modelar, wSketchelModelarInterface>();
}
wSketchelWavendInterface* createWSketchelWavendInterface() {
    return make<Wavend, wSketchelWavendInterface>();
}
}
