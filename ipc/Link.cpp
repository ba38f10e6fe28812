// The class ipc: a process's link to the hub.
#include <cstring>

#include "ipc/ipc.h"

namespace juntora {
namespace {

constexpr int OWN_CAPACITY = 60;

char* copyOf(const char* text, std::size_t length) {
    char* copy = new char[length + 1];
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

}  // namespace

ipc::ipc(const char* name, HWND window, std::uint32_t, char* nameBuffer, std::uint32_t nameCapacity,
         int showErrors) {
    if (nameBuffer == nullptr || nameCapacity == 0) {
        m_pName = new char[OWN_CAPACITY + 1]();
        int capacity = OWN_CAPACITY;
        ipcAttach(name, window, m_pName, &capacity, showErrors);
        m_nNameLength = static_cast<std::uint32_t>(capacity);
        return;
    }
    nameBuffer[0] = '\0';
    int capacity = static_cast<int>(nameCapacity);
    ipcAttach(name, window, nameBuffer, &capacity, showErrors);
    const std::size_t length = strnlen(nameBuffer, nameCapacity);
    m_nNameLength = static_cast<std::uint32_t>(length);
    m_pName = copyOf(nameBuffer, length);
}

ipc::~ipc() {
    ipcDetach();
    delete[] m_pName;
}

}  // namespace juntora
