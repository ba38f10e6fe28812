// Objects that processes share: which of this process's others hold, and others' as they look here.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/automation/Bus.h"
#include "platform/automation/LateRelease.h"

namespace juntora::automation {

/// Each process that has been given an object holds counted references to it, which go with the
/// process. For the automation thread.
class Objects : public ObjectRoad {
public:
    explicit Objects(Bus& bus) : m_bus(bus) {}
    ~Objects() override;
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;

    bool give(IDispatch* object, const std::string& receiver, std::string* owner,
              std::string* path) override;
    IDispatch* take(const std::string& owner, const std::string& path,
                    const std::string& sender) override;

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

    /// The object that a class's own path stands for to a process that has never made one: it is
    /// made by the first call, and held until that process ends. Null if it cannot be made.
    IDispatch* classObject(const ServedClass& served, const std::string& holder);

    std::size_t foreignReferences() const;

private:
    struct TrackEnd {
        void operator()(sd_bus_track* track) const { sd_bus_track_unref(track); }
    };
    struct Holder {
        std::unique_ptr<sd_bus_track, TrackEnd> track;
        std::map<DWORD, DWORD> references;       ///< By the object's number.
        std::map<std::string, DWORD> ofClasses;  ///< By the program identifier.
    };
    DWORD numberOf(IDispatch* object);
    IDispatch* at(const std::string& path, DWORD* number) const;
    bool addReference(DWORD number, const std::string& holder);
    bool watch(Holder& holder, const std::string& key);
    static std::string roadOf(const std::string& sender);
    void drop(DWORD number, DWORD references);
    static int onGone(sd_bus_track* track, void* watch);

    Bus& m_bus;
    LateRelease m_released;
    std::map<DWORD, IDispatch*> m_objects;
    std::map<IDispatch*, DWORD> m_numbers;
    std::map<std::string, Holder> m_holders;
    DWORD m_last = 0;
};

/// The path of an object's number.
std::string pathOfObject(DWORD number);

}  // namespace juntora::automation
