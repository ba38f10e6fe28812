#include "ipc/Spill.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "ipc/ipc.h"
#include "platform/files/temporaryFiles.h"
#include "platform/files/wholeFile.h"

namespace juntora {
namespace {

constexpr std::size_t HEAD = offsetof(IpcMessage, text);
/// Behind the text there is always room for a NUL that its file may lack.
constexpr std::size_t COPY_EXTRA = 24;

/// The copies are strung together, so that a record can be told for one even after the block has
/// been closed under it.
struct ExpandedCopy {
    ExpandedCopy* next;
    IpcMessage record;  ///< The text goes on behind it.
};

ExpandedCopy* s_copies = nullptr;

}  // namespace

SlotText::SlotText(const char* text) {
    if (text == nullptr) {
        return;
    }
    const std::size_t bytes = std::strlen(text) + 1;
    if (bytes <= IPC_TEXT_LIMIT) {
        m_inSlot = text;
        m_bytes = static_cast<int>(bytes);
    } else if (bytes <= IPC_SPILL_LIMIT && ipcWriteSpill(m_path, text) != 0) {
        m_inSlot = m_path;
        m_bytes = static_cast<int>(std::strlen(m_path)) + 1;
        m_spillLength = static_cast<int>(bytes);
    } else {
        m_inSlot = nullptr;
    }
}

void SlotText::putInto(IpcMessage* record) const {
    record->spillLength = m_spillLength;
    std::memcpy(record->text, m_inSlot, static_cast<std::size_t>(m_bytes));
}

void SlotText::deleteFile() const {
    if (m_spillLength != 0) {
        DeleteFileA(m_path);
    }
}

int ipcWriteSpill(char* path, const char* text) {
    char folder[SPILL_PATH_CAPACITY];
    if (GetTempPathA(sizeof folder, folder) == 0) {
        std::strcpy(folder, ".");
    }
    if (GetTempFileNameA(folder, IPC_SPILL_PREFIX, path) == 0) {
        return 0;
    }
    if (!WriteWholeFile(path, text, std::strlen(text) + 1)) {
        DeleteFileA(path);
        return 0;
    }
    return 1;
}

IpcMessage* newExpandedCopy(const IpcMessage* slot) {
    const int claimed = slot->spillLength;
    const std::size_t bytes =
        claimed >= 1 && claimed <= IPC_SPILL_LIMIT ? static_cast<std::size_t>(claimed) : 0;
    // A small length doesn't make a small record: an answer still has the whole field.
    const std::size_t record = std::max(sizeof(IpcMessage), bytes + COPY_EXTRA);
    auto* copy = static_cast<ExpandedCopy*>(std::malloc(offsetof(ExpandedCopy, record) + record));
    if (copy == nullptr) {
        return nullptr;
    }
    copy->next = s_copies;
    s_copies = copy;
    std::memcpy(&copy->record, slot, HEAD);
    // The length once looked at: whoever is still writing to the slot must not stretch the text.
    copy->record.spillLength = std::max(static_cast<int>(bytes), 1);
    char path[IPC_TEXT_FIELD + 1];
    std::memcpy(path, slot->text, IPC_TEXT_FIELD);
    path[IPC_TEXT_FIELD] = '\0';
    // Through a plain pointer, as the text is longer than the field that it starts in.
    char* text = reinterpret_cast<char*>(&copy->record) + HEAD;
    const long got = ReadFileStart(path, text, bytes);
    if (got >= 0) {
        DeleteFileA(path);
    }
    text[std::max(got, 0L)] = '\0';
    return &copy->record;
}

bool isExpandedCopy(const IpcMessage* record) {
    const ExpandedCopy* copy = s_copies;
    while (copy != nullptr && &copy->record != record) {
        copy = copy->next;
    }
    return copy != nullptr;
}

void deleteExpandedCopy(IpcMessage* copy) {
    for (ExpandedCopy** at = &s_copies; *at != nullptr; at = &(*at)->next) {
        if (&(*at)->record == copy) {
            ExpandedCopy* gone = *at;
            *at = gone->next;
            std::free(gone);
            return;
        }
    }
}

}  // namespace juntora
