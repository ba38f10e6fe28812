#include "platform/files/FileState.h"

#include "platform/files/attributes.h"

namespace juntora::files {

DWORD attributesOf(const struct statx& state, std::string_view name) {
    constexpr unsigned ANY_WRITE = S_IWUSR | S_IWGRP | S_IWOTH;
    DWORD attributes = 0;
    if ((state.stx_mode & ANY_WRITE) == 0) {
        attributes |= FILE_ATTRIBUTE_READONLY;
    }
    if (name.starts_with('.') && name != "." && name != "..") {
        attributes |= FILE_ATTRIBUTE_HIDDEN;
    }
    if (S_ISDIR(state.stx_mode)) {
        attributes |= FILE_ATTRIBUTE_DIRECTORY;
    } else if (S_ISREG(state.stx_mode)) {
        attributes |= FILE_ATTRIBUTE_ARCHIVE;
    }
    return attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
}

}  // namespace juntora::files
