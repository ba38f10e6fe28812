// A list box control.
#pragma once

#include "framework/CWnd.h"

namespace juntora {

/// Positions count from 0; LB_ERR where there is no such line.
class CListBox : public CWnd {
public:
    /// Returns the position that the line got.
    int AddString(const char* line);
    /// Returns how many lines are left.
    int DeleteString(int index);
    int GetCount() const;
    /// Copies a line to `buffer`, which has room for GetTextLen(index) + 1 bytes. Returns its
    /// length.
    int GetText(int index, char* buffer) const;
    int GetTextLen(int index) const;
    /// The first line behind `after` (-1: from the top) that is the same without regard to case;
    /// the search goes on at the top when it comes to the end.
    int FindStringExact(int after, const char* line) const;

private:
    int Send(UINT message, int index, const void* text) const;
};

}  // namespace juntora
