#include "registration/paths.h"

#include "platform/files/paths.h"
#include "platform/files/status.h"

namespace juntora {
namespace {

constexpr DWORD LONGEST_PATH = 4096;

}  // namespace

std::string fullPath(const std::string& path) {
    char full[LONGEST_PATH];
    const DWORD length = GetFullPathNameA(path.c_str(), sizeof full, full);
    return length < sizeof full ? std::string(full, length) : "";
}

std::string ownPath(const std::string& path) {
    char own[LONGEST_PATH];
    const DWORD length = GetLongPathNameA(path.c_str(), own, sizeof own);
    return length < sizeof own ? std::string(own, length) : "";
}

}  // namespace juntora
