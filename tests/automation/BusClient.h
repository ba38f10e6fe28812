// A program that knows the bus and the names there, and nothing of this layer.
#pragma once

#include <memory>
#include <string>

#include <systemd/sd-bus.h>

namespace juntora::test {

/// A connection, which counts as a process of its own. Its end, however it comes about, is what the
/// others see of the end of a process.
class BusClient {
public:
    explicit BusClient(const std::string& address);

    std::string name() const;
    /// The unique name of whoever offers the class.
    std::string nameOf(const std::string& programId);
    /// Makes an object of the class and returns its path, empty on failure.
    std::string create(const std::string& programId);
    /// Asks for a call of a member of the layer's own interfaces and does not wait for the answer.
    void send(const std::string& programId, const std::string& path, const char* interface,
              const char* member);
    /// Calls it (an empty path is the class's) with arguments as sd_bus_message_append has them:
    /// the name of the error, empty for none.
    template <class... Arguments>
    std::string call(const std::string& programId, const std::string& path, const char* interface,
                     const char* member, const char* types, Arguments... arguments) {
        sd_bus_message* message = newCall(programId, path, interface, member);
        sd_bus_message_append(message, types, arguments...);
        return send(message);
    }
    /// Shares the object with whoever has a name. False if that is refused.
    bool share(const std::string& programId, const std::string& path, const std::string& with);
    /// The number of a process that is on the bus, or of the bus itself ("org.freedesktop.DBus").
    unsigned processOf(const std::string& name);

private:
    sd_bus_message* newCall(const std::string& programId, const std::string& path,
                            const char* interface, const char* member);
    std::string send(sd_bus_message* message);

    struct End {
        void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    };
    std::unique_ptr<sd_bus, End> m_bus;
};

}  // namespace juntora::test
