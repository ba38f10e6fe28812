#include "platform/automation/Bus.h"

#include <poll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "platform/automation/BusAddress.h"
#include "platform/automation/NameWatch.h"
#include "platform/desktop/CallOut.h"
#include "platform/desktop/Queue.h"
#include "platform/desktop/Timers.h"
#include "platform/desktop/message.h"

namespace juntora::automation {
namespace {

/// What is served while calls wait inside of each other stops here; the rest stays in line.
constexpr int DEEPEST = 32;

/// Calls that wait in line, beyond which they are refused: more than any caller has under way.
constexpr std::size_t LONGEST_LINE = 10'000;

/// Messages taken in before those in line are served.
constexpr int TAKEN_AT_ONCE = 100;

/// The library's own limit for an answer lies beyond every limit that is watched here.
constexpr std::uint64_t NEVER_MICROSECONDS = 3'600'000'000;

/// The library's own failures at one look, after which the connection is taken for broken.
constexpr int MOST_FAILURES = 100;

constexpr long AT_ONCE_NANOSECONDS = 1;
constexpr long UNSENT_NANOSECONDS = 10'000'000;

constexpr char LOCAL_PATH[] = "/org/freedesktop/DBus/Local";
constexpr char PEER_INTERFACE[] = "org.freedesktop.DBus.Peer";

}  // namespace

/// A call that waits for its answer, or one whose caller has given up.
struct Bus::Pending {
    explicit Pending(Bus& owner) : bus(owner) {}

    Bus& bus;
    bool isAnswered = false;
    bool isGivenUp = false;
    Message answer = nullptr;
};

std::unique_ptr<Bus> Bus::open(Events events, std::string* why) {
    sd_bus* connection = connectToBus(why);
    if (connection == nullptr) {
        return nullptr;
    }
    std::unique_ptr<Bus> bus(new Bus(connection, std::move(events)));
    return bus->join(why) ? std::move(bus) : nullptr;
}

Bus::Bus(sd_bus* bus, Events events) : m_bus(bus), m_events(std::move(events)) {}

Bus::~Bus() {
    if (m_descriptor >= 0) {
        UnwatchDescriptor(m_descriptor);
    }
    if (m_nudge >= 0) {
        UnwatchDescriptor(m_nudge);
        close(m_nudge);
    }
    if (desktop::Queue* queue = desktop::Queue::current()) {
        queue->setLongWait(nullptr);
    }
    sd_bus_close_unref(m_bus);
}

bool Bus::join(std::string* why) {
    const char* name = nullptr;
    if (sd_bus_get_unique_name(m_bus, &name) < 0 ||
        sd_bus_add_filter(m_bus, nullptr, &onMessage, this) < 0) {
        *why = "the message bus does not answer";
        return false;
    }
    m_name = name;
    m_descriptor = sd_bus_get_fd(m_bus);
    m_nudge = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (m_nudge < 0 || !WatchDescriptor(m_descriptor, &onReady, this) ||
        !WatchDescriptor(m_nudge, &onReady, this)) {
        *why = "the message bus cannot be watched: there are no descriptors left";
        return false;
    }
    // Whom a message has been sent to may have calls to make before it is answered.
    desktop::Queue::current()->setLongWait([this] { onReady(this); });
    return true;
}

int Bus::onMessage(sd_bus_message* message, void* self, sd_bus_error*) {
    auto& bus = *static_cast<Bus*>(self);
    const char* path = sd_bus_message_get_path(message);
    if (sd_bus_message_is_signal(message, nullptr, "Disconnected") > 0 && path != nullptr &&
        std::strcmp(path, LOCAL_PATH) == 0) {
        bus.m_isOpen = false;
        return 1;
    }
    if (sd_bus_message_is_method_call(message, nullptr, nullptr) <= 0 ||
        sd_bus_message_is_method_call(message, PEER_INTERFACE, nullptr) > 0) {
        return 0;
    }
    if (bus.m_line.size() >= LONGEST_LINE) {
        sd_bus_reply_method_errorf(message, SD_BUS_ERROR_LIMITS_EXCEEDED,
                                   "too many calls are waiting here");
        return 1;
    }
    bus.later([&bus, kept = std::shared_ptr<sd_bus_message>(sd_bus_message_ref(message),
                                                            &sd_bus_message_unref)] {
        bus.m_events.called(Message(sd_bus_message_ref(kept.get())));
    });
    return 1;
}

void Bus::nudgeAfter(long nanoseconds) const {
    const itimerspec once{{0, 0}, {0, nanoseconds}};
    timerfd_settime(m_nudge, 0, &once, nullptr);
}

void Bus::lookAgain() const { nudgeAfter(AT_ONCE_NANOSECONDS); }

/// At once where there is something to do, after a while where the bus has not taken everything.
void Bus::lookAgainIf(bool mayHaveMore) const {
    // What is in line at the deepest comes up when a call there has ended.
    if (mayHaveMore || (!m_line.empty() && m_depth < DEEPEST)) {
        lookAgain();
    } else if (m_isOpen && (sd_bus_get_events(m_bus) & POLLOUT) != 0) {
        nudgeAfter(UNSENT_NANOSECONDS);
    }
}

void Bus::later(std::function<void()> work) { m_line.push_back(std::move(work)); }

void Bus::onReady(void* self) {
    auto& bus = *static_cast<Bus*>(self);
    const bool mayHaveMore = bus.processSome();
    bus.serveLine();
    bus.lookAgainIf(mayHaveMore);
}

/// Whether there may be more to take in.
bool Bus::processSome() {
    // A message that the library fails to handle by itself is behind it all the same.
    int failures = 0;
    int worked = 1;
    for (int i = 0; i < TAKEN_AT_ONCE && m_isOpen && worked != 0; ++i) {
        worked = sd_bus_process(m_bus, nullptr);
        failures += worked < 0 ? 1 : 0;
        m_isOpen = m_isOpen && sd_bus_is_open(m_bus) > 0 && failures < MOST_FAILURES;
    }
    if (!m_isOpen) {
        end();
    }
    return m_isOpen && worked != 0;
}

/// No more than waits now: who calls without a pause does not keep the loop from the rest. Whether
/// there was any.
bool Bus::serveLine() {
    if (m_depth >= DEEPEST || m_line.empty()) {
        return false;
    }
    ++m_depth;
    for (std::size_t left = m_line.size(); left > 0 && !m_line.empty(); --left) {
        const std::function<void()> work = std::move(m_line.front());
        m_line.pop_front();
        desktop::callOut("automation", 0, work);
    }
    --m_depth;
    return true;
}

void Bus::end() {
    if (m_descriptor >= 0) {
        UnwatchDescriptor(m_descriptor);
        m_descriptor = -1;
        sd_bus_close(m_bus);
        for (const NameWatch* watch : m_watches) {
            watch->tell(false);
        }
        if (m_events.ended) {
            later(std::exchange(m_events.ended, nullptr));
        }
        lookAgain();
    }
}

Message Bus::newCall(const std::string& destination, const std::string& path,
                     const std::string& interface, const std::string& member) const {
    sd_bus_message* message = nullptr;
    const bool isMade = m_isOpen && sd_bus_message_new_method_call(
                                        m_bus, &message, destination.c_str(), path.c_str(),
                                        interface.c_str(), member.c_str()) >= 0;
    if (isMade) {
        // Programs are started here, where their end is noticed; the bus would wait for them.
        sd_bus_message_set_auto_start(message, 0);
    }
    return Message(isMade ? message : nullptr);
}

int Bus::onAnswer(sd_bus_message* message, void* data, sd_bus_error*) {
    auto& pending = *static_cast<Pending*>(data);
    pending.isAnswered = true;
    pending.answer.reset(sd_bus_message_ref(message));
    if (pending.isGivenUp) {
        Bus& bus = pending.bus;
        bus.later([&bus, kept = std::shared_ptr<sd_bus_message>(pending.answer.release(),
                                                                &sd_bus_message_unref)] {
            bus.m_events.answeredLate(Message(sd_bus_message_ref(kept.get())));
        });
    }
    return 1;
}

Message Bus::call(const Message& message, DWORD milliseconds, HRESULT* error) {
    *error = RPC_E_DISCONNECTED;
    auto pending = std::make_unique<Pending>(*this);
    sd_bus_slot* slot = nullptr;
    if (!message || !m_isOpen ||
        sd_bus_call_async(m_bus, &slot, message.get(), &onAnswer, pending.get(),
                          NEVER_MICROSECONDS) < 0) {
        return nullptr;
    }
    const bool isDone = waitUntil([&] { return pending->isAnswered; }, milliseconds);
    if (!isDone && m_isOpen) {
        // The answer may bring objects all the same, which somebody has to give back.
        pending->isGivenUp = true;
        sd_bus_slot_set_destroy_callback(
            slot, [](void* data) { std::unique_ptr<Pending>(static_cast<Pending*>(data)); });
        sd_bus_slot_set_floating(slot, 1);
        [[maybe_unused]] const Pending* ofSlot = pending.release();
    }
    sd_bus_slot_unref(slot);
    if (!isDone) {
        *error = m_isOpen ? RPC_E_TIMEOUT : RPC_E_DISCONNECTED;
        return nullptr;
    }
    if (const sd_bus_error* refused = sd_bus_message_get_error(pending->answer.get())) {
        *error = resultOfErrorName(refused->name);
        return nullptr;
    }
    *error = S_OK;
    return std::move(pending->answer);
}

void Bus::send(const Message& message) const {
    if (message && m_isOpen) {
        sd_bus_message_set_expect_reply(message.get(), 0);
        sd_bus_send(m_bus, message.get(), nullptr);
        lookAgainIf(false);
    }
}

bool Bus::waitUntil(const std::function<bool()>& isDone, DWORD milliseconds) {
    desktop::Queue* const queue = desktop::Queue::current();
    const std::int64_t end = desktop::nowMilliseconds() + milliseconds;
    for (;;) {
        const bool mayHaveMore = processSome();
        const bool hasServed = serveLine();
        const bool hasServedSent = queue != nullptr && queue->serveSent();
        const bool isOver = isDone();
        const std::int64_t left = end - desktop::nowMilliseconds();
        if (isOver || !m_isOpen || left <= 0 || queue == nullptr) {
            lookAgainIf(mayHaveMore);
            return isOver;
        }
        if (!mayHaveMore && !hasServed && !hasServedSent) {
            queue->waitForSentOr(sd_bus_get_fd(m_bus), static_cast<short>(sd_bus_get_events(m_bus)),
                                 static_cast<int>(left));
        }
    }
}

}  // namespace juntora::automation
