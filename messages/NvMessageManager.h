// The message service: modules, and the catalogues that are registered in them.
//
// One thread at a time. Nothing is read before a catalogue is registered.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "messages/Catalogue.h"
#include "messages/NvStatus.h"

namespace juntora {

/// Names the product whose catalogues are read.
class NvMrdUtil {
public:
    /// The product whose catalogues are looked for; the suite has one, "voltara". Comes before
    /// NvMessageManager::initMS.
    static void mrdUtilInit(const char* product);
    static const std::string& product();
};

/// Handed out so that a caller may tell whether it got one; there is nothing to do with it.
using NvMessageCatalog = Catalogue;

class NvMessageModule {
public:
    explicit NvMessageModule(std::string name) : m_name(std::move(name)) {}

    /// Reads a catalogue, a bare file name that is looked for where catalogues are installed
    /// (catalogueFiles.h), and adds its messages to the module. Each mistake is a failure in
    /// `*status`; what is good of the file is added. A number that another catalogue of the module
    /// has already is a mistake too. A file that has been registered before is not read again.
    /// Returns the catalogue, null if no file could be read.
    NvMessageCatalog* registerCatalog(const char* file, NvStatus* status);

    /// Null if no catalogue has the number.
    const CataloguedMessage* find(unsigned long number) const;

    /// All that it has, by number.
    const std::vector<const CataloguedMessage*>& messages() const { return m_messages; }

private:
    void add(const Catalogue& catalogue, Complaints* complaints);

    const std::string m_name;
    NvMessageCatalog* readCatalog(const char* file, NvStatus* status);

    struct Registered {
        std::string file;
        std::unique_ptr<Catalogue> catalogue;
    };
    std::vector<Registered> m_catalogues;
    std::vector<const CataloguedMessage*> m_messages;  ///< By number, each once.
};

class NvMessageManager {
public:
    /// Starts the service, once.
    static void initMS();
    /// Ends it: all modules go. No status may hold a message of theirs by then. What a
    /// tvErrorManager has loaded it does not load again; its modules stay empty.
    static void exitMS();
    /// The manager, which is there at any time and empty before initMS.
    static NvMessageManager* getInstance();

    /// The module of that name (its case counts), made at the first call; modules have no parent.
    NvMessageModule* loadModule(const char* name, NvMessageModule* parent);
    const CataloguedMessage* find(std::string_view module, unsigned long number) const;

private:
    /// In no order, few.
    std::vector<std::pair<std::string, std::unique_ptr<NvMessageModule>>> m_modules;
};

}  // namespace juntora
