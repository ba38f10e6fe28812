#include "messages/NvMessageManager.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "messages/catalogueFiles.h"

namespace juntora {
namespace {

std::string& productName() {
    static std::string name;
    return name;
}

}  // namespace

void NvMrdUtil::mrdUtilInit(const char* product) { productName() = product; }
const std::string& NvMrdUtil::product() { return productName(); }

NvMessageCatalog* NvMessageModule::registerCatalog(const char* file, NvStatus* status) {
    const auto known = std::ranges::find(m_catalogues, std::string_view(file), &Registered::file);
    if (known != m_catalogues.end()) {
        return known->catalogue.get();
    }
    try {
        return readCatalog(file, status);
    } catch (const std::bad_alloc&) {
        status->addFailure(std::string(file) +
                           ": there is not enough memory for this catalogue. Close some programs.");
        return nullptr;
    }
}

NvMessageCatalog* NvMessageModule::readCatalog(const char* file, NvStatus* status) {
    std::string bytes;
    std::string path;
    const std::string failure = readCatalogueFile(file, &bytes, &path);
    if (!failure.empty()) {
        status->addFailure(failure);
        return nullptr;
    }
    Complaints complaints;
    m_catalogues.push_back({file, Catalogue::read(std::move(bytes), m_name, &complaints)});
    Catalogue* catalogue = m_catalogues.back().catalogue.get();
    add(*catalogue, &complaints);
    if (complaints.count() > 0) {
        // Once more, for the lines: the parser has worked over those bytes. A file that changes
        // meanwhile has others.
        readCatalogueFile(file, &bytes, &path);
        for (std::string& text : complaints.told(path, bytes)) {
            status->addFailure(std::move(text));
        }
    }
    return catalogue;
}

void NvMessageModule::add(const Catalogue& catalogue, Complaints* complaints) {
    m_messages.reserve(m_messages.size() + catalogue.messages().size());
    for (const CataloguedMessage& message : catalogue.messages()) {
        m_messages.push_back(&message);
    }
    if (!std::ranges::is_sorted(m_messages, {}, &CataloguedMessage::number)) {
        std::ranges::stable_sort(m_messages, {}, &CataloguedMessage::number);
    }
    // Those that were there before stand first among equals.
    const CataloguedMessage* previous = nullptr;
    std::erase_if(m_messages, [&](const CataloguedMessage* message) {
        const bool isRepeated = previous && previous->number == message->number;
        if (isRepeated) {
            complaints->add(message->offset, "message \"" + std::to_string(message->number) +
                                                 "\": its number is in another catalogue of " +
                                                 m_name + " already");
        }
        previous = message;
        return isRepeated;
    });
}

const CataloguedMessage* NvMessageModule::find(unsigned long number) const {
    const auto at = std::ranges::lower_bound(m_messages, number, {}, &CataloguedMessage::number);
    return at != m_messages.end() && (*at)->number == number ? *at : nullptr;
}

void NvMessageManager::initMS() { getInstance(); }
void NvMessageManager::exitMS() { getInstance()->m_modules.clear(); }

NvMessageManager* NvMessageManager::getInstance() {
    // Never destroyed, as the door to it is not: a static object's end may still have something
    // to say.
    static auto* const manager = new NvMessageManager;
    return manager;
}

NvMessageModule* NvMessageManager::loadModule(const char* name, NvMessageModule*) {
    for (const auto& [known, module] : m_modules) {
        if (known == name) {
            return module.get();
        }
    }
    return m_modules.emplace_back(name, std::make_unique<NvMessageModule>(name)).second.get();
}

const CataloguedMessage* NvMessageManager::find(std::string_view name, unsigned long number) const {
    for (const auto& [known, module] : m_modules) {
        if (known == name) {
            return module->find(number);
        }
    }
    return nullptr;
}

}  // namespace juntora
