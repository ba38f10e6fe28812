#include "framework/CException.h"

#include <memory>

namespace juntora {

void AfxThrowOleException(HRESULT result) {
    auto exception = std::make_unique<COleException>();
    exception->m_sc = result;
    throw exception.release();
}

}  // namespace juntora
