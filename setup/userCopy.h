// A user's own writable copy of a file that all share: "HOME/mrdsetup/PRODUCT/VERSION/FILE". For
// one thread, as setup/setupSearch.h tells.
#pragma once

#include <string>

namespace juntora {

/// Finds or makes the file that the user may write for the shared file `source`. That is, in this
/// order: a file of its name that FindSetupFile finds for the product, or SearchFile for the
/// product and version, and that can be read and written; a new copy in the user's tree. Where that
/// cannot be written, the copy goes to the folder VERSION among the temporary files, if it is this
/// user's alone. A copy that is there is never written over; where none can be made, the file is
/// empty.
///
/// True with the file's path. False where there is no home (HOME or HOMEPATH), `source` names no
/// file, or the user's file cannot be opened for writing.
bool EnsureUserCopy(const std::string& product, const std::string& version,
                    const std::string& source, std::string* out);

/// Whether the user can write `source` itself, or has a copy: one that SearchFile finds and that
/// can be read and written, or "HOME/PRODUCT/VERSION/FILE", without a "mrdsetup". HOME must be set.
bool HasUserCopy(const std::string& product, const std::string& version, const std::string& source);

}  // namespace juntora
