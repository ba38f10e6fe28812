#include "messages/tvErrorManager.h"

#include <utility>

#include "framework/CWinApp.h"
#include "messages/NvMessageManager.h"
#include "messages/catalogueFiles.h"

namespace juntora {
namespace {

constinit tvErrorManager* g_instance = nullptr;

}  // namespace

tvErrorManager* tvErrorManager::getInstance() {
    if (!g_instance) {
        g_instance = new tvErrorManager;
    }
    return g_instance;
}

void tvErrorManager::exitService() { NvMessageManager::exitMS(); }
void tvErrorManager::forgetInstance() { g_instance = nullptr; }

tvErrorManager::tvErrorManager() {
    NvMrdUtil::mrdUtilInit("voltara");
    NvMessageManager::initMS();
    tableFailures = readModuleTable([this](std::string_view module, std::string_view file) {
        moduleCatalogs[std::string(module)].emplace_back(file);
    });
}

tvErrorManager::~tvErrorManager() = default;

bool tvErrorManager::loadModuleCatalogs(const char* module) {
    if (!tableFailures.empty()) {
        // Not in the making of the instance: a box serves what may ask for messages in turn.
        AfxMessageBox(std::exchange(tableFailures, {}).c_str());
    }
    bool result = true;
    const std::string key = module;
    if (loadedModules.contains(key)) {
        return result;
    }
    const std::list<std::string> catalogues = moduleCatalogs[key];
    for (const std::string& catalogue : catalogues) {
        result = registerCatalogFile(module, catalogue.c_str()) && result;
    }
    loadedModules[key] = true;
    return result;
}

bool tvErrorManager::registerCatalogFile(const char* module, const char* catalogue) {
    NvMessageModule* object = NvMessageManager::getInstance()->loadModule(module, nullptr);
    NvStatus status(false);
    object->registerCatalog(catalogue, &status);
    if (status.isOK(1) != 0) {
        return true;
    }
    NvString collected;
    NvString text;
    status.initPosition(nullptr);
    while (const auto* message = static_cast<const NvMessage*>(status.getNext(nullptr))) {
        message->getSubstitutedDesc(&text, true);
        collected.append(static_cast<const char*>(text));
        collected.append("\n\n");
    }
    status.flushMessages(true);
    AfxMessageBox(collected, 0, 0);
    return false;
}

}  // namespace juntora
