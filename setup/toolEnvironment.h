// The environment of the helpers that tools run from the install tree.
#pragma once

namespace juntora {

/// Puts the folders of the Tcl and of the Java runtime, in this order, in front of `Path`, for this
/// process and those that it starts, and takes TCL_LIBRARY and TK_LIBRARY out of the environment.
/// The folders are "ROOT/tools/tcltk/8.4/bin", or what MRD_TARVEX_TCL_PATH names, and
/// "ROOT/tools/jre/bin/client"; they need not be there. A second call puts them in front once more.
///
/// `root` is the install root. Where it is null, or there is no `Path`, nothing changes. For one
/// thread, as the only one that uses the environment.
void PrepareToolPath(const char* root);

/// Whether the library "MSCorEE.dll" can be loaded.
bool IsDotNetPresent();

}  // namespace juntora
