#include "messages/NvMessageManager.h"

#include <algorithm>
#include <utility>

#include "messages/catalogueFiles.h"

namespace juntora {
namespace {

std::string& productName() {
    static std::string name;
    return name;
}

void tell(const Complaints& complaints, const std::string& file, NvStatus* status) {
    for (const std::string& complaint : complaints.kept()) {
        status->addFailure(complaint);
    }
    if (const std::size_t more = complaints.count() - complaints.kept().size(); more > 0) {
        status->addFailure(file + ": and " + std::to_string(more) +
                           (more == 1 ? " mistake more." : " mistakes more."));
    }
}

}  // namespace

void NvMrdUtil::mrdUtilInit(const char* product) { productName() = product; }
const std::string& NvMrdUtil::product() { return productName(); }

NvMessageCatalog* NvMessageModule::registerCatalog(const char* file, NvStatus* status) {
    std::string bytes;
    std::string path;
    const std::string failure = readCatalogueFile(file, &bytes, &path);
    if (!failure.empty()) {
        status->addFailure(failure);
        return nullptr;
    }
    Complaints complaints;
    m_catalogues.push_back(Catalogue::read(bytes, path, m_name, &complaints));
    add(*m_catalogues.back(), path, &complaints);
    tell(complaints, path, status);
    return m_catalogues.back().get();
}

void NvMessageModule::add(const Catalogue& catalogue, const std::string& path,
                          Complaints* complaints) {
    m_messages.reserve(m_messages.size() + catalogue.messages().size());
    for (const CataloguedMessage& message : catalogue.messages()) {
        if (!m_messages.emplace(message.number, &message).second) {
            complaints->add([&] {
                return path + ": message " + std::to_string(message.number) +
                       " is in another catalogue of " + m_name + " already.";
            });
        }
    }
}

const CataloguedMessage* NvMessageModule::find(unsigned long number) const {
    const auto at = m_messages.find(number);
    return at == m_messages.end() ? nullptr : at->second;
}

std::vector<const CataloguedMessage*> NvMessageModule::messages() const {
    std::vector<const CataloguedMessage*> all;
    all.reserve(m_messages.size());
    for (const auto& [number, message] : m_messages) {
        all.push_back(message);
    }
    std::ranges::sort(all, {}, &CataloguedMessage::number);
    return all;
}

void NvMessageManager::initMS() { getInstance(); }
void NvMessageManager::exitMS() { getInstance()->m_modules.clear(); }

NvMessageManager* NvMessageManager::getInstance() {
    static NvMessageManager manager;
    return &manager;
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
