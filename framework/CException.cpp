#include "framework/CException.h"

#include <cstdio>
#include <exception>
#include <memory>

namespace juntora {

std::string WhatIsThrown() {
    try {
        throw;
    } catch (const std::exception& error) {
        return error.what();
    } catch (COleException* exception) {
        char text[64];
        std::snprintf(text, sizeof text, "a call of an object failed, 0x%08X",
                      static_cast<DWORD>(exception->m_sc));
        exception->Delete();
        return text;
    } catch (CException* exception) {
        exception->Delete();
    } catch (...) {
    }
    return "an exception of no known kind came out";
}

void AfxThrowOleException(HRESULT result) {
    auto exception = std::make_unique<COleException>();
    exception->m_sc = result;
    throw exception.release();
}

}  // namespace juntora
