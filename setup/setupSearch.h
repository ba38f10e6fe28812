// Where a tool finds its setup files: in the user's tree, in the installation's, in the machine's
// (setup/mrdCommon.h tells the order). A product's files lie there in "mrdsetup/PRODUCT/16.6.0".
//
// Results alone tell of failures. For one thread, which is to be the only one that uses the
// environment: where HOME is not set, it is made of HOMEDRIVE and HOMEPATH and stays set.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace juntora {

/// The version of the suite's own files.
inline constexpr char SETUP_VERSION[] = "16.6.0";

/// Looks for a relative name, "PRODUCT/16.6.0/FILE". True with the path of the first that is there.
/// A path of 2,048 bytes and more is not found.
bool SearchFile(const char* name, std::string* out);

/// The folder of the tools, "ROOT\tools"; without an install root that of the running program, and
/// no "tools" behind it. In the platform's form, without a separator at its end. Always true.
bool GetToolsDir(std::string* out);

/// Looks for a file of a product's, or with a null `file` for the product's folder. HOME is made
/// with the drive C:, whatever HOMEDRIVE says.
bool FindSetupFile(const char* product, const char* file, std::string* out);

/// Appends all folders `name` that are there in two folders, the first one first, of each place.
/// False, and nothing is appended, where the search fails; none that is there is no failure.
bool FullSearchDirList(const char* name, std::vector<std::string>* out,
                       const std::array<std::string, 2>& dirs);

/// Appends the folders in which a tool looks for what is called `name`: "mrdsetup/PRODUCT/16.6.0"
/// and "mrdsetup/PRODUCT" of each place, then "SUBDIR" of the tools, as far as they are there and
/// have it. False, and nothing is appended, for a null or empty name.
bool CollectSearchDirs(const std::string& product, const std::string& subDir, const char* name,
                       std::vector<std::string>* out);

/// The first of these; empty if there is none.
std::string FirstSearchDir(const std::string& product, const std::string& subDir, const char* name);

}  // namespace juntora
