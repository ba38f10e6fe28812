// This process's connection to the bus.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "platform/automation/Message.h"

namespace juntora::automation {

/// The bus itself, as one on it.
inline constexpr char DAEMON_NAME[] = "org.freedesktop.DBus";
inline constexpr char DAEMON_PATH[] = "/org/freedesktop/DBus";

class NameWatch;

/// For the thread that made it. Nothing that the program has written runs from inside the
/// library's own processing, which must not be entered twice: what comes in is put into a line and
/// served from the message loop, or while this thread waits for an answer. Nothing waits for a bus
/// that does not read, either: what it does not take is sent later.
class Bus {
public:
    using Receiver = std::function<void(Message)>;
    struct Events {
        Receiver called;                   ///< A call has come in.
        Receiver answeredLate;             ///< An answer for which nobody waits any more.
        std::function<void()> ended = {};  ///< The bus has ended; once.
    };

    /// Connects, and has the thread's message loop watch the connection. Null with the reason in
    /// `*why`.
    static std::unique_ptr<Bus> open(Events events, std::string* why);
    ~Bus();
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    /// False once the bus has ended. What was held for others then counts as released.
    bool isOpen() const { return m_isOpen; }

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
    void later(std::function<void()> work);

private:
    friend class NameWatch;
    struct Pending;

    Bus(sd_bus* bus, Events events);
    bool join(std::string* why);
    bool processSome();
    bool serveLine();
    void end();
    void lookAgainIf(bool mayHaveMore) const;
    void nudgeAfter(long nanoseconds) const;
    static int onMessage(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onAnswer(sd_bus_message* message, void* pending, sd_bus_error* error);
    static void onReady(void* self);

    sd_bus* const m_bus;
    Events m_events;
    std::string m_name;
    std::deque<std::function<void()>> m_line;
    std::set<const NameWatch*> m_watches;  ///< Told of the end.
    int m_descriptor = -1;
    int m_nudge = -1;  ///< A clock's descriptor, which the loop watches too.
    int m_depth = 0;
    bool m_isOpen = true;
};

}  // namespace juntora::automation
