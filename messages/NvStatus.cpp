#include "messages/NvStatus.h"

#include <utility>

#include "messages/Catalogue.h"
#include "messages/NvMessageManager.h"

namespace juntora {

nvm_error_code NvStatus::addMessage(const char* module, unsigned long number, void*,
                                    const NvList* params) {
    const CataloguedMessage* source = NvMessageManager::getInstance()->find(module, number);
    if (!source) {
        return NVM_NO_SUCH_MESSAGE;
    }
    static const NvList none;
    const NvList& parameters = params ? *params : none;
    m_messages.emplace_back(module, *source, parameters);
    return parameters.count() == source->parameters ? NVM_OK : NVM_WRONG_PARAMETERS;
}

void NvStatus::addFailure(std::string text) {
    m_hasFailed = true;
    m_messages.emplace_back(NVM_ERROR, std::move(text));
}

NvObject* NvStatus::getCurrent(NvPosition*) const {
    return m_next != m_messages.end() ? &*m_next : nullptr;
}

NvObject* NvStatus::getNext(NvPosition* position) const {
    NvObject* message = getCurrent(position);
    if (message) {
        ++m_next;
    }
    return message;
}

void NvStatus::flushMessages(bool andResult) {
    m_messages.clear();
    m_next = m_messages.begin();
    m_hasFailed = m_hasFailed && !andResult;
}

}  // namespace juntora
