// The files of programs and libraries, under the names that the platform has for them.
#pragma once

#include <string_view>

#include "platform/files/HostPath.h"

namespace juntora::files {

/// As locate(). Where nothing is there and the name ends in ".exe", what is left of it without that
/// stands for it; for ".dll" and ".ocx" the same with ".so". Case does not count in these.
Located locateModule(std::string_view path);

}  // namespace juntora::files
