// What a desktop's session has beside windows: a panel with a tray, and the person's preferences.
#pragma once

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/BusDaemon.h"

namespace juntora::test {

/// On a message bus of its own, served by a thread of its own.
class Panel {
public:
    explicit Panel(const std::string& folder);
    ~Panel();
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    const std::string& address() const { return m_bus.address(); }

    /// Says that the person would rather have dark colours now, or has no wish any more.
    void preferDark(bool isDark);

    /// The menu of the tray's icon as a text: its items' labels and numbers. Empty without an icon.
    std::string menu() const;
    /// Does what a person does who chooses an item of that menu. False where there is none.
    bool choose(const std::string& label) const;

    struct Service;

private:
    std::string call(const std::string& member, std::vector<std::string> arguments) const;

    BusDaemon m_bus;
    std::unique_ptr<Service> m_service;
    std::thread m_thread;
};

}  // namespace juntora::test
