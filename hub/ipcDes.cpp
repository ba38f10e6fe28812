#include "hub/ipcDes.h"

#include "hub/ActivityLine.h"

namespace juntora {
namespace {

ipcDes* hub = nullptr;

}  // namespace

ipcDes::ipcDes(HWND window, AppTable* table, CListBox* listBox, int* hadClient, int, int)
    : ipc("Planchet Manager", window, 0, nullptr, 0, 1),
      m_pHadClient(hadClient),
      m_pTable(table),
      m_lines(listBox) {
    if (m_pHadClient) {
        *m_pHadClient = 0;
    }
    hub = this;
}

ipcDes::~ipcDes() {
    m_pBridge.reset();
    hub = nullptr;
}

ipcDes* ipcDes::theHub() { return hub; }

void ipcDes::createBridge() {
    m_pBridge.reset();
    m_pBridge = makeBridge(this);
    if (m_pBridge && !m_pBridge->createAllWindows()) {
        m_pBridge.reset();
    }
}

void ipcDes::addActivityLine(const char* name, HWND window, const PathName* file,
                             std::uint32_t access, std::uint32_t flags) {
    const std::string shown = file ? displayName(*file) : std::string();
    m_lines.add(activityLine(name, window, shown, access, flags), window,
                file ? file->c_str() : "");
}

int ipcDes::removeActivityLine(HWND window, const PathName* file) {
    const std::string_view path(file ? file->c_str() : "");
    return m_lines.remove(window, file ? &path : nullptr) ? 0 : 1;
}

}  // namespace juntora
