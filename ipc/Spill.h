// Texts that are too long for a slot: the sender leaves them in a file, and the slot carries its
// path.
#pragma once

#include "ipc/IpcMessage.h"

namespace juntora {

inline constexpr int SPILL_PATH_CAPACITY = 260;

/// What a text makes of itself in a slot.
class SlotText {
public:
    /// Writes the file where the text (null: none) is too long for a slot.
    explicit SlotText(const char* text);
    SlotText(const SlotText&) = delete;
    SlotText& operator=(const SlotText&) = delete;

    /// False when the file could not be written or the text is over IPC_SPILL_LIMIT.
    bool isSendable() const { return m_inSlot != nullptr; }
    /// Fills in the text and spillLength.
    void putInto(IpcMessage* record) const;
    /// Removes the file, if there is one and it still stands.
    void deleteFile() const;

private:
    char m_path[SPILL_PATH_CAPACITY];
    const char* m_inSlot = "";
    int m_bytes = 1;  ///< Of m_inSlot, with the NUL.
    int m_spillLength = 0;
};

/// Makes the heap copy of a slot's record with the text that its file holds, an empty one where the
/// file cannot be read or is said to be longer than IPC_SPILL_LIMIT, and deletes the file. `link`
/// is left to the caller. Null when the heap has no room.
IpcMessage* newExpandedCopy(const IpcMessage* slot);
bool isExpandedCopy(const IpcMessage* record);
void deleteExpandedCopy(IpcMessage* copy);

}  // namespace juntora
