#include "framework/WindowMap.h"

#include <unordered_map>

namespace juntora {
namespace {

// A thread alone ever runs the procedures of its windows, so that each has a map of its own.
thread_local std::unordered_map<HWND, CWnd*> t_objects;

}  // namespace

CWnd* FindWindowObject(HWND window) {
    const auto found = t_objects.find(window);
    return found == t_objects.end() ? nullptr : found->second;
}

void AddWindowObject(HWND window, CWnd* object) { t_objects[window] = object; }

void RemoveWindowObject(HWND window) { t_objects.erase(window); }

}  // namespace juntora
