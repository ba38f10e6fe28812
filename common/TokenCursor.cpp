#include "common/TokenCursor.h"

#include "common/TextTokens.h"

namespace juntora {

TokenCursor::TokenCursor(TextTokens& tokens) : m_state(State::READING) { lookAt(&tokens); }

TokenCursor::TokenCursor(const TokenCursor& other)
    : m_pCurrent(other.m_pCurrent), m_state(other.m_state) {
    lookAt(other.m_pTokens);
}

TokenCursor& TokenCursor::operator=(const TokenCursor& other) {
    if (this != &other) {
        m_pCurrent = other.m_pCurrent;
        m_state = other.m_state;
        lookAt(other.m_pTokens);
    }
    return *this;
}

TokenCursor::~TokenCursor() { lookAt(nullptr); }

bool TokenCursor::first(CString& out) {
    return goTo(mayRead() ? m_pTokens->m_pFirst.get() : nullptr, out);
}

bool TokenCursor::last(CString& out) {
    return goTo(mayRead() ? m_pTokens->spanAt(m_pTokens->count() - 1) : nullptr, out);
}

bool TokenCursor::next(CString& out) {
    if (!m_pCurrent) {
        return first(out);
    }
    return goTo(mayRead() ? m_pCurrent->next : nullptr, out);
}

bool TokenCursor::current(CString& out) { return goTo(mayRead() ? m_pCurrent : nullptr, out); }

bool TokenCursor::at(int index, CString& out) {
    return goTo(mayRead() ? m_pTokens->spanAt(index) : nullptr, out);
}

bool TokenCursor::goTo(TokenSpan* span, CString& out) {
    if (!span) {
        out.Empty();
        return false;
    }
    m_pCurrent = span;
    m_pTokens->read(*span, out);
    return true;
}

void TokenCursor::lookAt(TextTokens* tokens) {
    if (tokens == m_pTokens) {
        return;
    }
    if (m_pTokens) {
        m_pTokens->detach(this);
    }
    m_pTokens = tokens;
    if (tokens) {
        tokens->attach(this);
    }
}

void TokenCursor::goStale() {
    m_pCurrent = nullptr;
    m_state = State::STALE;
}

void TokenCursor::loseTokens() {
    m_pCurrent = nullptr;
    m_state = State::WITHOUT_TOKENS;
    m_pTokens = nullptr;
}

}  // namespace juntora
