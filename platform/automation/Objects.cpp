#include "platform/automation/Objects.h"

#include <charconv>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/automation/RemoteObject.h"
#include "platform/automation/protocol.h"

namespace juntora::automation {
namespace {

constexpr std::string_view OBJECT_PATH = "/juntora/object/";
constexpr char ROAD_MARK = '>';  ///< In no bus name.

}  // namespace

std::string pathOfObject(DWORD number) { return std::string(OBJECT_PATH) + std::to_string(number); }

Objects::~Objects() { releaseEverything(); }

bool Objects::give(IDispatch* object, const std::string& receiver, std::string* owner,
                   std::string* path) {
    if (const auto* remote = dynamic_cast<const RemoteObject*>(object)) {
        *owner = remote->owner();
        *path = remote->path();
        remote->shareWith(receiver);
        return true;
    }
    const DWORD number = numberOf(object);
    if (!addReference(number, receiver)) {
        drop(number, 0);
        return false;
    }
    *owner = m_bus.name();
    *path = pathOfObject(number);
    return true;
}

IDispatch* Objects::take(const std::string& owner, const std::string& path,
                         const std::string& sender) {
    if (owner != m_bus.name()) {
        return new RemoteObject(m_bus, *this, owner, path);
    }
    // One of this process's own has come back: the reference on the road becomes one in memory.
    const std::string road = sender == owner ? owner : roadOf(sender);
    IDispatch* object = held(path, road);
    if (object != nullptr) {
        object->AddRef();
        release(path, road);
    }
    return object;
}

/// The holder of references that a process has given to this one, until they are taken.
std::string Objects::roadOf(const std::string& sender) { return ROAD_MARK + sender; }

/// Known objects keep their number for as long as somebody holds them.
DWORD Objects::numberOf(IDispatch* object) {
    const auto known = m_numbers.find(object);
    if (known != m_numbers.end()) {
        return known->second;
    }
    while (++m_last == 0 || m_objects.contains(m_last)) {
    }
    m_numbers[object] = m_last;
    m_objects[m_last] = object;
    return m_last;
}

IDispatch* Objects::at(const std::string& path, DWORD* number) const {
    const std::string_view text = path;
    if (!text.starts_with(OBJECT_PATH)) {
        return nullptr;
    }
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data() + OBJECT_PATH.size(), end, *number);
    const auto found = m_objects.find(*number);
    return parsed.ec != std::errc() || parsed.ptr != end || found == m_objects.end()
               ? nullptr
               : found->second;
}

bool Objects::addReference(DWORD number, const std::string& holder) {
    Holder& entry = m_holders[holder];
    if (!entry.track && !watch(entry, holder)) {
        m_holders.erase(holder);
        return false;
    }
    ++entry.references[number];
    m_objects.at(number)->AddRef();
    return true;
}

/// Fails for a process that has gone already. This one needs no watching; who has a reference on
/// the road is watched in its stead.
bool Objects::watch(Holder& holder, const std::string& key) {
    const std::string name = key.starts_with(ROAD_MARK) ? key.substr(1) : key;
    if (name == m_bus.name()) {
        return true;
    }
    if (!name.starts_with(':')) {
        return false;  // Names that can pass to another process hold nothing.
    }
    sd_bus_track* track = nullptr;
    if (sd_bus_track_new(m_bus.handle(), &track, &onGone, this) < 0) {
        return false;
    }
    holder.track.reset(track);
    if (sd_bus_track_add_name(track, name.c_str()) < 0) {
        holder.track.reset();
        return false;
    }
    return true;
}

int Objects::onGone(sd_bus_track* track, void* self) {
    auto& objects = *static_cast<Objects*>(self);
    for (const auto& [name, holder] : objects.m_holders) {
        if (holder.track.get() == track) {
            // Objects that end do what they like: not from in here.
            objects.m_bus.later([&objects, gone = name] { objects.releaseAllOf(gone); });
            break;
        }
    }
    return 1;
}

IDispatch* Objects::held(const std::string& path, const std::string& holder) const {
    DWORD number = 0;
    IDispatch* object = at(path, &number);
    const auto entry = m_holders.find(holder);
    const bool isHeld =
        object != nullptr && entry != m_holders.end() && entry->second.references.contains(number);
    return isHeld ? object : nullptr;
}

bool Objects::share(const std::string& path, const std::string& holder, const std::string& other) {
    DWORD number = 0;
    return held(path, holder) != nullptr && at(path, &number) != nullptr &&
           addReference(number, other == m_bus.name() ? roadOf(holder) : other);
}

bool Objects::release(const std::string& path, const std::string& holder) {
    DWORD number = 0;
    if (held(path, holder) == nullptr || at(path, &number) == nullptr) {
        return false;
    }
    const auto entry = m_holders.find(holder);
    const auto reference = entry->second.references.find(number);
    if (--reference->second == 0) {
        entry->second.references.erase(reference);
        std::erase_if(entry->second.ofClasses,
                      [&](const auto& ofClass) { return ofClass.second == number; });
    }
    if (entry->second.references.empty()) {
        m_holders.erase(entry);
    }
    drop(number, 1);
    return true;
}

void Objects::releaseAllOf(const std::string& holder) {
    auto entry = m_holders.extract(holder);
    if (entry.empty()) {
        return;
    }
    for (const auto& [number, references] : entry.mapped().references) {
        drop(number, references);
    }
}

void Objects::releaseEverything() {
    while (!m_holders.empty()) {
        releaseAllOf(std::string(m_holders.begin()->first));
    }
}

/// Gives back references to an object, and forgets it when nobody holds it any more.
void Objects::drop(DWORD number, DWORD references) {
    const auto found = m_objects.find(number);
    if (found == m_objects.end()) {
        return;
    }
    IDispatch* const object = found->second;
    bool isHeld = false;
    for (const auto& [name, holder] : m_holders) {
        isHeld = isHeld || holder.references.contains(number);
    }
    if (!isHeld) {
        m_numbers.erase(object);
        m_objects.erase(found);
    }
    m_released.add(object, references);
}

IDispatch* Objects::classObject(const ServedClass& served, const std::string& holder) {
    const auto entry = m_holders.find(holder);
    if (entry != m_holders.end()) {
        const auto known = entry->second.ofClasses.find(served.programId);
        if (known != entry->second.ofClasses.end()) {
            return m_objects.at(known->second);
        }
    }
    IDispatch* object = served.create();
    if (object == nullptr) {
        return nullptr;
    }
    const DWORD number = numberOf(object);
    const bool isHeld = addReference(number, holder);
    if (isHeld) {
        m_holders[holder].ofClasses[served.programId] = number;
    } else {
        drop(number, 0);
    }
    object->Release();  // The holder's reference keeps it, if there is one.
    return isHeld ? object : nullptr;
}

std::size_t Objects::foreignReferences() const {
    std::size_t count = 0;
    for (const auto& [name, holder] : m_holders) {
        count += holder.references.size();
    }
    return count;
}

}  // namespace juntora::automation
