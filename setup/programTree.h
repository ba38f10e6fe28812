// Where the suite's programs lie, and this one among them.
#pragma once

#include <string>

namespace juntora {

/// The install root as the installation's library has it, in the platform's form; empty without
/// one.
std::string GetInstallRoot();

/// The folder of the running program, in the platform's form, with a separator at its end.
std::string RunningProgramFolder();

struct ProgramTree {
    std::string root;  ///< The install root, without a separator at its end.
    std::string
        development;  ///< The folder of a development tree's programs; empty outside of one.

    /// Where a tool's files are installed, with a separator at its end.
    std::string installedFolder(const std::string& toolDir) const;
    /// The same, or the development tree's folder in the place of all of them.
    std::string folderOf(const std::string& toolDir) const;
};

/// As the environment is now. Without an install root the root is two levels above the running
/// program ("C:\a\b\bin\..\.."). A development tree is in use when the running program lies in the
/// folder "wint" of what BINROOTDIR names.
ProgramTree LocateProgramTree();

}  // namespace juntora
