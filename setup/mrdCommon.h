// The installation's own library: where the suite is installed, and where its setup files are
// looked for. A deployment may have one of its own; this one stands in its place.
//
// The install root is platform/files/installRoot.h's. Setup files are looked for in three places,
// in this order:
//   1. the user's home, HOME;
//   2. the install root;
//   3. the machine's settings, /etc/juntora or what JUNTORA_SITE names.
// Each may have a tree "mrdsetup": for every product a folder, and in that one for every version.
// A place that is not set is passed over. Environment and folders are looked at in each call.
//
// Any thread may call, but for mrdInit beside another call.
#pragma once

#include <cstddef>

namespace juntora {

/// The install root in the platform's form, without a separator at its end: a text from malloc, to
/// be released with free. Null before mrdInit, and where the program lies outside of an
/// installation and JUNTORA_ROOT names none.
char* mrdGetInstallRoot();
/// Who asks, as main's arguments. Nothing here depends on them.
void mrdInit(int* argc, char** argv);

/// What a search goes by; 0 is none.
using mrfHandle = int;

inline constexpr int MRF_DONE = 0;
inline constexpr int MRF_NOT_INITIALISED = 1;
inline constexpr int MRF_NOT_FOUND = 2;
inline constexpr int MRF_NO_ROOM = 3;

/// Makes a handle. MRF_DONE.
int mrfInitialize(mrfHandle* handle);

/// Looks for a file or folder by its name in the trees, "Tarvex_Voltara/16.6.0/Voltara.ini", and
/// writes the path of the first that is there to `buffer` of `size` bytes: the place as it is set,
/// "/mrdsetup/" and the name. MRF_DONE, or one of the others; the buffer is untouched then.
int mrfSearch(mrfHandle handle, const char* name, char* buffer, std::size_t size);

/// Looks for folders `name` in two folders of each place ("mrdsetup/…"): in all of the first place
/// before the next, in the order of `folders`. MRF_DONE and all that are there, as texts from
/// malloc in an array from malloc that a null ends, for the caller to free; null if there are none.
int mrfFullSearchDirList(mrfHandle handle, const char* name, const char* const folders[2],
                         char*** result);

}  // namespace juntora
