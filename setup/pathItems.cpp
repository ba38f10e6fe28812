#include "setup/pathItems.h"

#include <algorithm>
#include <utility>

#include "platform/files/FullPath.h"
#include "platform/kernel/process.h"
#include "setup/configFile.h"

namespace juntora {
namespace {

constexpr char SEPARATOR = ';';
constexpr char QUOTE = '"';

std::string_view withoutQuotes(std::string_view item, bool isFirst) {
    const bool hasBoth = item.starts_with(QUOTE) && item.ends_with(QUOTE);
    if (isFirst && !hasBoth) {
        return item;
    }
    item.remove_prefix(std::min(item.find_first_not_of(QUOTE), item.size()));
    return item.substr(0, item.find_last_not_of(QUOTE) + 1);
}

/// What an item that begins with "$" names.
std::string variableOf(std::string_view item) {
    return std::string(item.substr(1, std::min(item.find('\\'), item.size()) - 1));
}

/// To what stands before the last "\"; one that has none stays.
void cutLast(std::string* path) { path->resize(std::min(path->rfind('\\'), path->size())); }

/// Takes the first step off an item if it is `step`.
bool takeStep(std::string_view* item, std::string_view step) {
    const bool isWhole = *item == step;
    if (!isWhole && !(item->starts_with(step) && item->substr(step.size()).starts_with('\\'))) {
        return false;
    }
    item->remove_prefix(step.size() + (isWhole ? 0 : 1));
    return true;
}

/// The file's path with "\", which are the ones that count. One that has some already is taken as
/// it is, whatever else is in it.
std::string settingsPath() {
    std::string path = GetConfigFilePath();
    const bool isHostForm = !path.empty() && path.find('\\') == std::string::npos;
    return isHostForm ? files::fullPath(path) : path;
}

}  // namespace

std::vector<std::string_view> splitPathItems(std::string_view list) {
    std::vector<std::string_view> items;
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find(SEPARATOR, at), list.size());
        items.push_back(withoutQuotes(list.substr(at, end - at), items.empty()));
        at = end + 1;
    }
    return items;
}

std::vector<std::string> unsetVariables(std::string_view list) {
    std::vector<std::string> names;
    for (const std::string_view item : splitPathItems(list)) {
        if (item.starts_with('$')) {
            std::string name = variableOf(item);
            if (!GetEnvironment(name.c_str())) {
                names.push_back(std::move(name));
            }
        }
    }
    return names;
}

void PathExpander::expandVariable(std::string_view item, const Taker& take) {
    const std::string_view form = item.substr(1);
    const std::string name = variableOf(item);
    const char* value = GetEnvironment(name.c_str());
    if (!value) {
        return;
    }
    const std::string elements = value;
    for (const std::string_view element : splitPathItems(elements)) {
        take(std::string(element).append(form.substr(name.size())), form);
    }
}

std::string PathExpander::resolve(std::string_view item) {
    if (!m_settings) {
        m_settings = settingsPath();
    }
    if (m_settings->empty()) {
        return "";
    }
    std::string path = *m_settings;
    cutLast(&path);
    for (;;) {
        if (takeStep(&item, "..")) {
            cutLast(&path);
        } else if (!takeStep(&item, ".")) {
            return path.append("\\").append(item);
        }
    }
}

void PathExpander::expand(std::string_view list, const Taker& take) {
    for (const std::string_view item : splitPathItems(list)) {
        if (item.starts_with('$')) {
            expandVariable(item, take);
        } else if (m_relative == Relative::AS_PLAIN || !isRelativeItem(item)) {
            take(std::string(item), PLAIN_FORM);
        } else if (std::string path = resolve(item); !path.empty()) {
            take(std::move(path), item);
        }
    }
}

}  // namespace juntora
