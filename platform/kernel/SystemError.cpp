#include "platform/kernel/SystemError.h"

#include <cerrno>

#include "platform/messages.h"

namespace juntora::kernel {

DWORD errorOf(int number) {
    switch (number) {
        case 0:
            return ERROR_SUCCESS;
        case ENOENT:
            return ERROR_FILE_NOT_FOUND;
        case ENOTDIR:
        case ELOOP:
            return ERROR_PATH_NOT_FOUND;
        case EACCES:
        case EPERM:
        case EISDIR:
            return ERROR_ACCESS_DENIED;
        case EROFS:
            return ERROR_WRITE_PROTECT;
        case EEXIST:
            return ERROR_ALREADY_EXISTS;
        case ENAMETOOLONG:
            return ERROR_FILENAME_EXCED_RANGE;
        case EMFILE:
        case ENFILE:
            return ERROR_TOO_MANY_OPEN_FILES;
        case ENOSPC:
        case EDQUOT:
            return ERROR_DISK_FULL;
        case ENOEXEC:
            return ERROR_BAD_EXE_FORMAT;
        case EINVAL:
            return ERROR_INVALID_PARAMETER;
        case ENOMEM:
        case EAGAIN:
        case E2BIG:
            return ERROR_NOT_ENOUGH_MEMORY;
        default:
            return ERROR_GEN_FAILURE;
    }
}

}  // namespace juntora::kernel
