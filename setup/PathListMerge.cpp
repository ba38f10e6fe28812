#include "setup/PathListMerge.h"

#include "setup/pathItems.h"

namespace juntora {

PathListMerge::PathListMerge(std::string_view present) {
    PathExpander(PathExpander::Relative::RESOLVED)
        .expand(present, [this](std::string path, std::string_view form) {
            // A reader gets no empty ones, so that none can come back.
            if (!path.empty()) {
                m_oldForms.try_emplace(std::move(path), form);
            }
        });
}

/// A form of which a path is missing from the new list is gone for its other paths, too.
void PathListMerge::part(const std::vector<std::string>& newPaths) {
    for (const std::string& path : newPaths) {
        if (auto entry = m_oldForms.extract(path)) {
            m_kept.insert(std::move(entry));
        }
    }
    for (auto& [path, form] : m_oldForms) {
        m_gone.insert(std::move(form));
    }
    m_oldForms.clear();
}

/// What is written for a path; empty for nothing.
std::string PathListMerge::itemFor(const std::string& path, bool quote) {
    const auto kept = m_kept.find(path);
    if (kept == m_kept.end() || kept->second == PLAIN_FORM) {
        return quote ? '"' + path + '"' : path;
    }
    const std::string& form = kept->second;
    if (!m_gone.insert(form).second) {
        return "";
    }
    return isRelativeItem(form) ? form : "$" + form;
}

std::string PathListMerge::mergedWith(std::string_view list, bool quote) {
    std::vector<std::string> newPaths;
    PathExpander(PathExpander::Relative::AS_PLAIN)
        .expand(list, [&newPaths](std::string path, std::string_view) {
            if (!path.empty()) {
                newPaths.push_back(std::move(path));
            }
        });
    part(newPaths);
    std::string text;
    for (const std::string& path : newPaths) {
        const std::string item = itemFor(path, quote);
        text.append(text.empty() || item.empty() ? "" : ";").append(item);
    }
    return text;
}

}  // namespace juntora
