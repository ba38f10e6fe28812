#include "platform/automation/NameWatch.h"

#include <utility>

#include "platform/automation/Bus.h"

namespace juntora::automation {

struct NameWatch::State {
    explicit State(Told word) : told(std::move(word)) {}

    const Told told;
};

NameWatch::NameWatch(Bus& bus, const std::string& name, Told told)
    : m_bus(bus), m_state(std::make_shared<State>(std::move(told))) {
    // Watched first, so that no change falls between the answer and the first word.
    const std::string rule = std::string("type='signal',sender='") + DAEMON_NAME +
                             "',member='NameOwnerChanged',arg0='" + name + "'";
    const bool isAsked =
        bus.isOpen() &&
        sd_bus_add_match_async(bus.handle(), &m_match, rule.c_str(), &onChange, &onAdded, this) >=
            0 &&
        sd_bus_call_method_async(bus.handle(), &m_question, DAEMON_NAME, DAEMON_PATH, DAEMON_NAME,
                                 "NameHasOwner", &onAnswer, this, "s", name.c_str()) >= 0;
    bus.m_watches.insert(this);
    if (!isAsked) {
        tell(false);
        bus.lookAgain();
    }
}

NameWatch::~NameWatch() {
    m_bus.m_watches.erase(this);
    sd_bus_slot_unref(m_question);
    sd_bus_slot_unref(m_match);
}

void NameWatch::tell(bool hasOwner) const {
    m_bus.later([state = std::weak_ptr(m_state), hasOwner] {
        if (const auto alive = state.lock()) {
            alive->told(hasOwner);
        }
    });
}

/// Without one of our own the library would close the connection over a match that is refused.
int NameWatch::onAdded(sd_bus_message*, void*, sd_bus_error*) { return 1; }

/// An error is no word of anybody: whoever is there stays so until the bus says that they have
/// gone.
int NameWatch::onAnswer(sd_bus_message* message, void* self, sd_bus_error*) {
    int hasOwner = 0;
    if (sd_bus_message_is_method_error(message, nullptr) == 0 &&
        sd_bus_message_read(message, "b", &hasOwner) > 0) {
        static_cast<NameWatch*>(self)->tell(hasOwner != 0);
    }
    return 1;
}

int NameWatch::onChange(sd_bus_message* message, void* self, sd_bus_error*) {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* now = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &now) > 0) {
        static_cast<NameWatch*>(self)->tell(*now != '\0');
    }
    return 0;
}

}  // namespace juntora::automation
