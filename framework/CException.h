// What the framework throws: by pointer, so that whoever catches it says when it goes.
//
//     try { driver.notify(3); } catch (CException* exception) { exception->Delete(); }
#pragma once

#include <string>

#include "platform/automation/automation.h"

namespace juntora {

class CException {
public:
    virtual ~CException() = default;
    CException(const CException&) = delete;
    CException& operator=(const CException&) = delete;

    /// Ends the exception. It must have been made with new.
    void Delete() { delete this; }

protected:
    CException() = default;
};

/// A call of an object that has failed.
class COleException : public CException {
public:
    HRESULT m_sc = S_OK;  ///< What with.
};

/// In a handler of any exception: what it says of itself. One of the framework's ends here.
std::string WhatIsThrown();

[[noreturn]] void AfxThrowOleException(HRESULT result);

}  // namespace juntora
