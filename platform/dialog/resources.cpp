// Dialog templates and the string table, as the program's modules have made them known.
#include <algorithm>
#include <cstring>
#include <mutex>
#include <vector>

#include "platform/dialog/dialog.h"

namespace juntora {
namespace {

struct Resources {
    std::mutex mutex;
    std::vector<std::span<const DialogTemplate>> templates;
    std::vector<std::span<const StringResource>> strings;
};

Resources& resources() {
    static Resources all;
    return all;
}

/// The first resource with this number, in the order in which they were made known.
template <typename Resource>
const Resource* find(const std::vector<std::span<const Resource>>& modules, int id) {
    for (const auto& module : modules) {
        const auto found = std::ranges::find(module, id, &Resource::id);
        if (found != module.end()) {
            return &*found;
        }
    }
    return nullptr;
}

}  // namespace

void RegisterResources(std::span<const DialogTemplate> templates,
                       std::span<const StringResource> strings) {
    Resources& all = resources();
    const std::lock_guard guard(all.mutex);
    all.templates.push_back(templates);
    all.strings.push_back(strings);
}

const DialogTemplate* FindDialogTemplate(int id) {
    Resources& all = resources();
    const std::lock_guard guard(all.mutex);
    return find(all.templates, id);
}

int LoadStringA(int id, char* buffer, int capacity) {
    if (capacity <= 0) {
        return 0;
    }
    Resources& all = resources();
    const std::lock_guard guard(all.mutex);
    const StringResource* found = find(all.strings, id);
    const char* text = found ? found->text : "";
    const std::size_t length = strnlen(text, static_cast<std::size_t>(capacity) - 1);
    std::memcpy(buffer, text, length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

}  // namespace juntora
