#include "platform/automation/Objects.h"

#include <charconv>
#include <string_view>
#include <utility>

#include "platform/automation/RemoteObject.h"
#include "platform/automation/protocol.h"

namespace juntora::automation {
namespace {

constexpr std::string_view OBJECT_PATH = "/juntora/object/";
constexpr char ROAD_MARK = '>';  ///< In no bus name.
constexpr char UNIQUE_MARK = ':';

/// That one process may hold: more than any has use for.
constexpr std::size_t MOST_OBJECTS = 1'000;

std::string pathOfObject(DWORD number) { return std::string(OBJECT_PATH) + std::to_string(number); }

}  // namespace

Objects::~Objects() { releaseEverything(); }

bool Objects::give(IDispatch* object, const std::string& receiver, ObjectAddress* address) {
    if (const auto* remote = dynamic_cast<const RemoteObject*>(object)) {
        *address = remote->address();
        return true;
    }
    const Number number = numberOf(object);
    *address = {m_bus.name(), pathOfObject(number)};
    return addReference(number, receiver);
}

void Objects::announce(IDispatch* object, const std::string& receiver) {
    if (const auto* remote = dynamic_cast<const RemoteObject*>(object)) {
        remote->shareWith(receiver);
    }
}

void Objects::takeBack(IDispatch* object, const std::string& receiver) {
    if (const auto known = m_numbers.find(object); known != m_numbers.end()) {
        releaseOne(known->second, receiver);
    }
}

IDispatch* Objects::take(const ObjectAddress& address, const std::string& sender) {
    if (address.owner != m_bus.name()) {
        return new RemoteObject(m_bus, *this, address);
    }
    // One of this process's own has come back: the reference on the road becomes one in memory.
    const std::string road = sender == address.owner ? sender : roadOf(sender);
    IDispatch* object = held(address.path, road);
    if (object != nullptr) {
        object->AddRef();
        release(address.path, road);
    }
    return object;
}

/// The holder of references that a process has given to this one, until they are taken.
std::string Objects::roadOf(const std::string& sender) { return ROAD_MARK + sender; }

Objects::Number Objects::numberOf(IDispatch* object) {
    const auto known = m_numbers.find(object);
    if (known != m_numbers.end()) {
        return known->second;
    }
    while (++m_last == 0 || m_objects.contains(m_last)) {
    }
    m_numbers[object] = m_last;
    m_objects[m_last] = {object};
    return m_last;
}

/// 0 for a path that is no object's.
Objects::Number Objects::numberAt(const std::string& path) const {
    const std::string_view text = path;
    if (!text.starts_with(OBJECT_PATH)) {
        return 0;
    }
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data() + OBJECT_PATH.size(), end, number);
    return parsed.ec == std::errc() && parsed.ptr == end ? number : 0;
}

bool Objects::holds(const std::string& holder, Number number) const {
    const auto entry = m_holders.find(holder);
    return entry != m_holders.end() && entry->second.references.contains(number);
}

IDispatch* Objects::held(const std::string& path, const std::string& holder) const {
    const Number number = numberAt(path);
    return holds(holder, number) ? m_objects.at(number).object : nullptr;
}

/// False where the holder can hold nothing; an object that nobody holds then is forgotten.
bool Objects::addReference(Number number, const std::string& holder) {
    Entry& entry = m_objects.at(number);
    Holder& known = m_holders[holder];
    if (!known.watch && !watch(known, holder)) {
        m_holders.erase(holder);
        drop(number, 0);
        return false;
    }
    if (known.references.size() >= MOST_OBJECTS && !known.references.contains(number)) {
        drop(number, 0);
        return false;
    }
    ++known.references[number];
    ++entry.references;
    entry.object->AddRef();
    return true;
}

/// This process needs no watching; who has a reference on the road is watched in its stead. Names
/// that can pass to another process hold nothing.
bool Objects::watch(Holder& holder, const std::string& key) {
    const std::string name = key.starts_with(ROAD_MARK) ? key.substr(1) : key;
    if (name == m_bus.name()) {
        return true;
    }
    if (!name.starts_with(UNIQUE_MARK) || !m_bus.isOpen()) {
        return false;
    }
    holder.watch = std::make_unique<NameWatch>(m_bus, name, [this, key](bool isThere) {
        if (!isThere) {
            releaseAllOf(key);  // The key outlives its holder: what is being told stays until then.
        }
    });
    return true;
}

bool Objects::share(const std::string& path, const std::string& holder, const std::string& other) {
    const Number number = numberAt(path);
    return holds(holder, number) &&
           addReference(number, other == m_bus.name() ? roadOf(holder) : other);
}

bool Objects::release(const std::string& path, const std::string& holder) {
    return releaseOne(numberAt(path), holder);
}

bool Objects::releaseOne(Number number, const std::string& holder) {
    if (!holds(holder, number)) {
        return false;
    }
    const auto entry = m_holders.find(holder);
    const auto reference = entry->second.references.find(number);
    if (--reference->second == 0) {
        forget(entry->second, number);
    }
    drop(number, 1);
    return true;
}

void Objects::releaseAllOf(const std::string& holder) {
    const auto entry = m_holders.extract(holder);
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

void Objects::disconnect(const IDispatch* object) {
    m_released.forget(object);
    const auto known = m_numbers.find(object);
    if (known == m_numbers.end()) {
        return;
    }
    const Number number = known->second;
    for (auto& [name, holder] : m_holders) {
        forget(holder, number);
    }
    m_objects.erase(number);
    m_numbers.erase(known);
}

void Objects::forget(Holder& holder, Number number) {
    holder.references.erase(number);
    std::erase_if(holder.ofClasses, [&](const auto& ofClass) { return ofClass.second == number; });
}

/// Gives back references to an object, and forgets it when nobody holds it any more.
void Objects::drop(Number number, DWORD references) {
    const auto found = m_objects.find(number);
    IDispatch* const object = found->second.object;
    found->second.references -= references;
    if (found->second.references == 0) {
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
            return m_objects.at(known->second).object;
        }
    }
    IDispatch* object = served.create();
    if (object == nullptr) {
        return nullptr;
    }
    const Number number = numberOf(object);
    const bool isHeld = addReference(number, holder);
    if (isHeld) {
        m_holders[holder].ofClasses[served.programId] = number;
    }
    object->Release();  // The holder's reference keeps it, if there is one.
    return isHeld ? object : nullptr;
}

std::size_t Objects::foreignReferences() const {
    std::size_t count = 0;
    for (const auto& [number, entry] : m_objects) {
        count += entry.references;
    }
    return count;
}

}  // namespace juntora::automation
