#include "platform/kernel/errorText.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

#include "platform/messages.h"

namespace juntora {
namespace {

struct ErrorText {
    DWORD error;
    const char* text;
};

constexpr ErrorText TEXTS[] = {
    {ERROR_SUCCESS, "There was no error."},
    {ERROR_FILE_NOT_FOUND, "The file was not found."},
    {ERROR_PATH_NOT_FOUND, "A folder on the way to the file was not found."},
    {ERROR_TOO_MANY_OPEN_FILES, "Too many files are open."},
    {ERROR_ACCESS_DENIED, "Access was denied."},
    {ERROR_INVALID_HANDLE, "The handle does not stand for anything of this kind."},
    {ERROR_NOT_ENOUGH_MEMORY, "There is not enough memory."},
    {ERROR_INVALID_DATA, "The file's text is of a kind that is not understood."},
    {ERROR_WRITE_PROTECT, "The file system may only be read."},
    {ERROR_GEN_FAILURE, "The system failed in a way that has no number here."},
    {ERROR_BAD_NETPATH, "The share is not mounted."},
    {ERROR_INVALID_PARAMETER, "What was asked for makes no sense to the system."},
    {ERROR_DISK_FULL, "There is no room left on the disk."},
    {ERROR_INVALID_NAME, "This cannot be a name of a file."},
    {ERROR_LOCK_FAILED, "Another program keeps it locked."},
    {ERROR_ALREADY_EXISTS, "It is there already."},
    {ERROR_BAD_EXE_FORMAT, "The file is no program that can be run."},
    {ERROR_FILENAME_EXCED_RANGE, "The name is too long."},
    {ERROR_FILE_TOO_LARGE, "The file is too large."},
    {ERROR_NOT_OWNER, "It is held by somebody else."},
    {ERROR_TOO_MANY_POSTS, "There are too many already."},
    {ERROR_BAD_DEVICE, "There is no such drive."},
    {ERROR_CONNECTION_UNAVAIL, "The drive's link leads nowhere."},
    {ERROR_TIMEOUT, "There was no answer in time."},
};

std::string textOf(DWORD error) {
    const auto* found = std::ranges::find(TEXTS, error, &ErrorText::error);
    return found != std::end(TEXTS) ? found->text
                                    : "The system failed with error " + std::to_string(error) + ".";
}

}  // namespace

DWORD FormatMessageA(DWORD flags, DWORD error, DWORD, char** buffer) {
    *buffer = flags == (FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM)
                  ? strdup(textOf(error).c_str())
                  : nullptr;
    return *buffer ? static_cast<DWORD>(std::strlen(*buffer)) : 0;
}

void LocalFree(void* buffer) { std::free(buffer); }

}  // namespace juntora
