// Objects that processes share: which of this process's others hold, and others' as they look here.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>

#include "platform/automation/Bus.h"
#include "platform/automation/LateRelease.h"
#include "platform/automation/NameWatch.h"
#include "platform/automation/ObjectRoad.h"

namespace juntora::automation {

/// Each process that has been given an object holds counted references to it, which go with the
/// process. For the automation thread.
class Objects : public ObjectRoad {
public:
    explicit Objects(Bus& bus) : m_bus(bus) {}
    ~Objects() override;
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;

    bool give(IDispatch* object, const std::string& receiver, ObjectAddress* address) override;
    void announce(IDispatch* object, const std::string& receiver) override;
    void takeBack(IDispatch* object, const std::string& receiver) override;
    IDispatch* take(const ObjectAddress& address, const std::string& sender) override;

    /// The object of a path, for a process that holds a reference to it; null for any other.
    IDispatch* held(const std::string& path, const std::string& holder) const;
    /// Gives `other` a reference to what `holder` has one to. One for this process itself is on its
    /// way with a message of the holder's, and goes with the holder if that never comes.
    bool share(const std::string& path, const std::string& holder, const std::string& other);
    /// Takes one reference back.
    bool release(const std::string& path, const std::string& holder);
    /// Takes back all that a process holds.
    void releaseAllOf(const std::string& holder);
    void releaseEverything();
    /// Forgets an object that ends, with all references to it.
    void disconnect(const IDispatch* object);

    /// The object that a class's own path stands for to a process that has never made one: it is
    /// made by the first call, and held until that process ends. Null if it cannot be made.
    IDispatch* classObject(const ServedClass& served, const std::string& holder);

    std::size_t foreignReferences() const;

private:
    using Number = DWORD;  ///< Of an object, for as long as somebody holds it.

    struct Entry {
        IDispatch* object;
        DWORD references = 0;  ///< Of all holders.
    };
    /// A process that holds references, or has; it is known until it leaves the bus.
    struct Holder {
        std::unique_ptr<NameWatch> watch;
        std::unordered_map<Number, DWORD> references;
        std::map<std::string, Number> ofClasses;  ///< By the program identifier.
    };
    Number numberOf(IDispatch* object);
    Number numberAt(const std::string& path) const;
    bool holds(const std::string& holder, Number number) const;
    bool addReference(Number number, const std::string& holder);
    bool watch(Holder& holder, const std::string& key);
    static void forget(Holder& holder, Number number);
    bool releaseOne(Number number, const std::string& holder);
    void drop(Number number, DWORD references);
    static std::string roadOf(const std::string& sender);

    Bus& m_bus;
    LateRelease m_released;
    std::unordered_map<Number, Entry> m_objects;
    std::unordered_map<const IDispatch*, Number> m_numbers;
    std::unordered_map<std::string, Holder> m_holders;
    Number m_last = 0;
};

}  // namespace juntora::automation
