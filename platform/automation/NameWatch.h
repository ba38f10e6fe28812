// Word of who comes and goes on the bus.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <systemd/sd-bus.h>

namespace juntora::automation {

class Bus;

/// Tells whether somebody has a name on the bus: once as it is, and from then on each time that it
/// changes hands. Nothing here waits. For the automation thread.
class NameWatch {
public:
    using Told = std::function<void(bool hasOwner)>;

    /// `told` is called from the bus's line. A bus that cannot watch the name, or has ended, counts
    /// as one on which nobody has it.
    NameWatch(Bus& bus, const std::string& name, Told told);
    ~NameWatch();
    NameWatch(const NameWatch&) = delete;
    NameWatch& operator=(const NameWatch&) = delete;

private:
    friend class Bus;
    struct State;

    void tell(bool hasOwner) const;
    static int onAdded(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onAnswer(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onChange(sd_bus_message* message, void* self, sd_bus_error* error);

    Bus& m_bus;
    const std::shared_ptr<State> m_state;  ///< What is in line for one that has gone is not told.
    sd_bus_slot* m_match = nullptr;
    sd_bus_slot* m_question = nullptr;
};

}  // namespace juntora::automation
