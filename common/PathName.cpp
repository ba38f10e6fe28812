#include "common/PathName.h"

#include "common/CaseBlind.h"

namespace juntora {

PathName::PathName(std::string_view path) : m_strPath(path), m_strEntered(path) {}

bool PathName::operator==(const PathName& other) const {
    return equalCaseBlind(m_strPath, other.m_strPath);
}

}  // namespace juntora
