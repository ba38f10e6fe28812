// The list of folders in which programs are looked for, in both its forms: "C:\bin;C:\usr\bin" and
// "/bin:/usr/bin".
#pragma once

#include <string>
#include <string_view>

namespace juntora::kernel {

std::string platformSearchPath(std::string_view hostForm);
/// What has no place on this machine is left out; the list is empty if none of its folders is
/// there. A list in this machine's own form is taken as it is.
std::string hostSearchPath(std::string_view platformForm);

}  // namespace juntora::kernel
