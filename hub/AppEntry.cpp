#include "hub/AppEntry.h"

namespace juntora {

void FreeWatchers::operator()(AppList* watchers) const {
    watchers->forEach([](void* word) { delete static_cast<HWND*>(word); });
    delete watchers;
}

AppEntry::AppEntry(std::string_view rowName, std::int32_t rowInstance, HWND rowWindow,
                   std::uint32_t rowPrimary, std::int32_t rowToolIndex, std::uint32_t rowAccess,
                   const char* fileText)
    : name(rowName),
      instance(rowInstance),
      window(rowWindow),
      primary(rowPrimary),
      access(fileText ? rowAccess : 0),
      flags(0),
      file(fileText ? PathName(fileText) : PathName()),
      toolIndex(rowToolIndex) {}

std::string_view AppEntry::baseName() const { return baseNameOf(name); }

void AppEntry::addWatcher(HWND watcher) {
    if (!watchers) {
        watchers.reset(new AppList);
    }
    auto word = std::make_unique<HWND>(watcher);
    AppNode* node = watchers->pushFront(nullptr);
    node->value = word.release();
}

std::string_view baseNameOf(std::string_view name) { return name.substr(0, name.rfind(';')); }

std::string uniqueName(std::string_view baseName, std::int32_t instance) {
    return std::string(baseName) + ';' + std::to_string(instance);
}

}  // namespace juntora
