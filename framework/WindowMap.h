// Which window of the calling thread is which object.
#pragma once

#include "platform/types.h"

namespace juntora {

class CWnd;

CWnd* FindWindowObject(HWND window);
void AddWindowObject(HWND window, CWnd* object);
void RemoveWindowObject(HWND window);

}  // namespace juntora
