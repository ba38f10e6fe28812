// The requests about files that tools hold.
#include <cstdio>

#include "ipc/RequestText.h"
#include "ipc/ipc.h"

namespace juntora {
namespace {

RequestText& addFile(RequestText& text, const char* file, int number) {
    return text.addQuoted(file).add(" ").addDecimal(number);
}

int sendFile(int opcode, const char* file, int number) {
    RequestText text;
    return sendRequest(opcode, addFile(text, file, number));
}

/// 0 means that the file may be had, so a request that cannot be sent must not come to that.
int askForFile(int opcode, const char* file, int access, int* isFree, HWND* holder) {
    RequestText text;
    const bool fits = addFile(text, file, access).get() != nullptr;
    const int result = fits ? sendRequest(opcode, text) : static_cast<int>(IPC_NO_IDENTITY);
    *isFree = result == 0 ? 1 : 0;
    if (result != 0 && holder != nullptr) {
        *holder = static_cast<HWND>(result);
    }
    return result;
}

}  // namespace

int ipcFileOpen(const char* file, int access, int* isFree, HWND* holder) {
    return askForFile(IPC_FILE_OPEN, file, access, isFree, holder);
}

int ipcFileQuery(const char* file, int access, int* isFree, HWND* holder) {
    return askForFile(IPC_FILE_QUERY, file, access, isFree, holder);
}

int ipcFileClose(const char* file, int access) { return sendFile(IPC_FILE_CLOSE, file, access); }

int ipcFileSetFlags(const char* file, int bits) { return sendFile(IPC_FILE_SET_FLAGS, file, bits); }

int ipcFileClearFlags(const char* file, int bits) {
    return sendFile(IPC_FILE_CLEAR_FLAGS, file, bits);
}

HWND ipcFileFindFlags(const char* file, int* flags, HWND* window) {
    RequestText text;
    const char* whole = addFile(text, file, *flags).add(" ").addHex(*window).get();
    char answer[IPC_TEXT_LIMIT + 1] = "";
    int capacity = IPC_TEXT_LIMIT;
    const int result =
        whole != nullptr ? ipcSend(IPC_FILE_FIND_FLAGS, whole, 0, answer, &capacity) : 0;
    if (result == 0) {
        *flags = 0;
        return 0;
    }
    answer[IPC_TEXT_LIMIT] = '\0';
    std::sscanf(answer, "%*[ \"] %*[^\"] %*c %i %x", flags, window);
    return static_cast<HWND>(result);
}

}  // namespace juntora
