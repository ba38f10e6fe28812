// A list of folders that is given back, merged with what its setting held.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "common/CaseBlind.h"

namespace juntora {

/// The rules are told at WritePathList (setup/pathList.h).
class PathListMerge {
public:
    /// `present`: the setting as it stands in the file.
    explicit PathListMerge(std::string_view present);

    /// The text to be written for a caller's list. To be called once.
    std::string mergedWith(std::string_view list, bool quote);

private:
    using Forms = std::unordered_map<std::string, std::string, CaseBlindHash, CaseBlindEqual>;

    void part(const std::vector<std::string>& newPaths);
    std::string itemFor(const std::string& path, bool quote);

    Forms m_oldForms;                        ///< By expanded path: what it had in the file.
    Forms m_kept;                            ///< Those of them that are in the new list.
    std::unordered_set<std::string> m_gone;  ///< Forms that are not to be written, or not again.
};

}  // namespace juntora
