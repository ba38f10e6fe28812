// Tools and a hub for the measurements.
#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ipc/ipc.h"
#include "tests/support/ChildProcess.h"

namespace juntora::bench {

/// A hub process without Planchet (this process holds its mutex, so that the hub finds it running).
class Hub {
public:
    Hub();
    pid_t pid() const { return m_process.pid(); }

private:
    HANDLE m_planchet;
    test::ChildProcess m_process;
};

/// A window of this process that can sign on.
HWND makeToolWindow();

/// This process's link to the hub.
class Link : public ipc {
public:
    explicit Link(const char* name);
    int onRequest(int opcode, IpcMessage* record) override;
    bool isOn() const { return *m_pName != '\0'; }
};

/// Another process that signs on and counts the records that it gets; they carry a number, and one
/// out of order ends it with an error.
class Receiver {
public:
    Receiver();
    HWND window() const { return m_window; }
    /// Records received so far.
    int received();

private:
    test::ChildProcess m_process;
    HWND m_window;
};

/// The receiver's main.
int runReceiver();

/// Rows for windows of this process, signed on under names of their own.
class Rows {
public:
    /// Makes it `count` rows.
    void grow(std::size_t count);
    void clear();
    HWND window(std::size_t index) const { return m_windows[index]; }
    static std::string name(std::size_t index);

private:
    std::vector<HWND> m_windows;
};

/// Files of a folder that this process's link holds for writing; they need not exist.
class Files {
public:
    explicit Files(std::string folder) : m_folder(std::move(folder)) {}

    std::string path(int number) const;
    /// Throws where the hub refuses. The file need not be among those that grow() opens.
    void open(int number) const;
    void close(int number) const;

    /// Makes it `count` files, numbered from 0.
    void grow(int count);
    void clear();

private:
    const std::string m_folder;
    int m_held = 0;
};

}  // namespace juntora::bench
