// The door to the message service: which catalogues make up a module, and that they are read the
// first time a message of the module is asked for.
//
// All message operations of a process run on one thread at a time.
#pragma once

#include <list>
#include <map>
#include <string>

namespace juntora {

class tvErrorManager {
public:
    virtual ~tvErrorManager();
    /// Sees to it that the catalogues of a module have been offered to the service, once in the
    /// process's life, whether or not all can be registered. True if none of those registered by
    /// this call failed, and where there is nothing to do, as for a module that nobody knows.
    virtual bool loadModuleCatalogs(const char* module);
    /// Registers one file in one module. False after a failure, which the user has been shown.
    virtual bool registerCatalogFile(const char* module, const char* catalogue);

    /// The one instance, made at the first call, and the service started with it.
    static tvErrorManager* getInstance();

    /// Both together have everything read anew from the next request on: the first ends the service
    /// (NvMessageManager::exitMS), the second has getInstance make another. Nothing in the library
    /// calls them.
    static void exitService();
    static void forgetInstance();

    tvErrorManager(const tvErrorManager&) = delete;
    tvErrorManager& operator=(const tvErrorManager&) = delete;

protected:
    /// Starts the service and reads the table of modules; no catalogue.
    tvErrorManager();

    /// What is wrong with the table of modules; shown once, at the first request.
    std::string tableFailures;
    std::map<std::string, bool> loadedModules;  ///< Only the presence of a key counts.
    std::map<std::string, std::list<std::string>> moduleCatalogs;  ///< In order of registration.
};

}  // namespace juntora
