// This process's connection to the bus.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "platform/automation/Message.h"

namespace juntora::automation {

/// For the thread that made it. Nothing that the program has written runs from inside the
/// library's own processing, which must not be entered twice: what comes in is put into a line and
/// served from the message loop, or while this thread waits for an answer.
class Bus {
public:
    using Receiver = std::function<void(Message)>;

    /// Connects, and has the thread's message loop watch the connection. Null with the reason in
    /// `*why`.
    static std::unique_ptr<Bus> open(Receiver receiver, std::string* why);
    ~Bus();
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    /// False once the bus has ended. What was held for others then counts as released.
    bool isOpen() const { return m_isOpen; }
    /// Called once, when the bus ends.
    void setEnded(std::function<void()> ended) { m_ended = std::move(ended); }

    sd_bus* handle() const { return m_bus; }
    /// This connection's own name.
    const std::string& name() const { return m_name; }

    /// A call's message; null where the names are no names or the bus has ended.
    Message newCall(const std::string& destination, const std::string& path,
                    const std::string& interface, const std::string& member) const;
    /// Sends it and waits for the answer, serving what comes meanwhile. Null with `*error`.
    Message call(const Message& message, DWORD milliseconds, HRESULT* error);
    /// Sends a message that asks for no answer.
    void send(const Message& message) const;

    /// Waits until `isDone`, serving what comes meanwhile. False when the time is over or the bus
    /// has ended.
    bool waitUntil(const std::function<bool()>& isDone, DWORD milliseconds);
    /// To be called behind a call of the library's that waits by itself: what has come meanwhile it
    /// has taken in, so that the connection never becomes readable for it. The loop looks.
    void lookAgain() const;
    /// Runs `work` from the line, behind what came before it.
    void later(std::function<void()> work) { m_line.push_back(std::move(work)); }

private:
    Bus(sd_bus* bus, Receiver receiver);
    bool join(std::string* why);
    void processAll();
    bool serveLine();
    void end();
    static int onMessage(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onAnswer(sd_bus_message* message, void* pending, sd_bus_error* error);
    static void onReady(void* self);

    sd_bus* const m_bus;
    const Receiver m_receiver;
    std::function<void()> m_ended;
    std::string m_name;
    std::deque<std::function<void()>> m_line;
    int m_descriptor = -1;
    int m_nudge = -1;  ///< An event descriptor that the loop watches too.
    int m_depth = 0;
    bool m_isOpen = true;
};

}  // namespace juntora::automation
