// What other processes ask of this one.
#pragma once

#include <map>
#include <string>

#include "platform/automation/Objects.h"

namespace juntora::automation {

/// Serves the classes of this process and the objects that others hold. For the automation thread.
class Server {
public:
    Server(Bus& bus, Objects& objects) : m_bus(bus), m_objects(objects) {}

    /// False where the bus refuses the class's name.
    bool serve(const ServedClass& served);
    /// Offers nothing any more. What has come until then is served before it returns.
    void revokeAll();
    /// Answers a call. One that nobody here knows is told so.
    void answer(const Message& call);

private:
    struct Call;

    Message newNameRequest(const char* member, const std::string& name) const;
    void answerCall(const Message& call);
    const ServedClass* classAt(const std::string& path) const;
    bool answerInterface(Call& call);
    void introspect(Call& call);
    void createInstance(Call& call);
    void idOfName(Call& call);
    void queryInterface(Call& call);
    void invoke(Call& call);
    void share(Call& call);
    void release(Call& call);
    void callPlainMember(Call& call, const DispatchMember& member, const ServedClass* served,
                         IDispatch* object);

    Bus& m_bus;
    Objects& m_objects;
    std::map<std::string, ServedClass> m_classes;  ///< By the path.
};

}  // namespace juntora::automation
