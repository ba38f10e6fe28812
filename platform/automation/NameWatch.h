// Word of who comes and goes on the bus.
#pragma once

#include <functional>
#include <string>

#include <systemd/sd-bus.h>

namespace juntora::automation {

class Bus;

/// Tells whether somebody has a name on the bus: once as it is, and from then on each time that it
/// changes hands. Nothing here waits. For the automation thread.
class NameWatch {
public:
    using Told = std::function<void(bool hasOwner)>;

    /// `told` is called while messages are taken in, where nothing of the program's may run. A bus
    /// that cannot watch the name counts as one on which nobody has it.
    NameWatch(Bus& bus, const std::string& name, Told told);
    ~NameWatch();
    NameWatch(const NameWatch&) = delete;
    NameWatch& operator=(const NameWatch&) = delete;

    /// False where not even the question could be sent.
    bool isWatching() const { return m_question != nullptr; }

private:
    static int onAdded(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onAnswer(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onChange(sd_bus_message* message, void* self, sd_bus_error* error);

    const Told m_told;
    sd_bus_slot* m_match = nullptr;
    sd_bus_slot* m_question = nullptr;
};

}  // namespace juntora::automation
