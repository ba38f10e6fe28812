#include "common/PathName.h"

#include <algorithm>
#include <utility>

#include "common/CaseBlind.h"
#include "common/PathText.h"
#include "platform/files/paths.h"

namespace juntora {
namespace {

constexpr DWORD USUAL_CAPACITY = 520;

/// Makes a text absolute and takes its dots out, if the platform can.
void makeFull(std::string& text) {
    char usual[USUAL_CAPACITY];
    DWORD length = GetFullPathNameA(text.c_str(), sizeof usual, usual);
    if (length == 0) {
        return;
    }
    if (length < sizeof usual) {
        text.assign(usual, length);
        return;
    }
    // Longer than paths usually are: the answer was the room that it needs.
    std::string full(length, '\0');
    length = GetFullPathNameA(text.c_str(), length, full.data());
    if (length != 0 && length < full.size()) {
        full.resize(length);
        text = std::move(full);
    }
}

}  // namespace

PathName::PathName(CString path) : m_strEntered(std::move(path)) { setPath(m_strEntered); }

PathName::PathName(const char* path, const char* base) : m_strEntered(path) {
    if (base == nullptr) {
        setPath(m_strEntered);
        return;
    }
    std::string text = base;
    text.append("\\").append(m_strEntered);
    toBackslashes(text);
    collapseSeparators(text);
    removeDots(text);
    m_strPath = CString(std::move(text));
}

PathName& PathName::operator=(const PathName& other) {
    m_strPath = other.m_strPath;
    m_strEntered = m_strPath;
    return *this;
}

void PathName::clear() {
    m_strPath = CString();
    m_strEntered = CString();
}

void PathName::setPath(const CString& path) {
    std::string text = static_cast<const char*>(path);
    toBackslashes(text);
    collapseSeparators(text);
    if (!text.empty()) {
        makeFull(text);
    }
    m_strPath = CString(std::move(text));
}

void PathName::store(std::string text) {
    toBackslashes(text);
    m_strPath = CString(std::move(text));
}

bool PathName::operator==(const PathName& other) const {
    return equalCaseBlind(text(), other.text());
}

}  // namespace juntora
