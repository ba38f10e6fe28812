// A place among the tokens of a text.
#pragma once

#include "framework/CString.h"

namespace juntora {

class TextTokens;
struct TokenSpan;

/// Goes through the tokens of a TextTokens, which it doesn't own and may outlive. A new cursor
/// stands before the first token. Each read goes to a token, copies it and says true; where there
/// is none, it says false with an empty text, and the cursor stays where it was. False as well once
/// the tokens were reset or are gone. For the thread of the tokens.
class TokenCursor {
public:
    /// On no tokens, until one that is on some is assigned.
    TokenCursor() = default;
    explicit TokenCursor(TextTokens& tokens);
    TokenCursor(const TokenCursor& other);
    /// Moves to the other's tokens and to its place among them.
    TokenCursor& operator=(const TokenCursor& other);
    ~TokenCursor();

    bool first(CString& out);
    bool last(CString& out);
    bool next(CString& out);
    /// The token where the cursor stands, once more.
    bool current(CString& out);
    /// The token of a number, counted from 0.
    bool at(int index, CString& out);

private:
    friend class TextTokens;

    enum class State { STALE = 0, READING = 1, WITHOUT_TOKENS = 2 };

    bool mayRead() const { return m_state == State::READING; }
    bool goTo(TokenSpan* span, CString& out);
    void lookAt(TextTokens* tokens);
    void goStale();
    void loseTokens();

    TokenSpan* m_pCurrent = nullptr;
    State m_state = State::WITHOUT_TOKENS;
    TextTokens* m_pTokens = nullptr;
};

}  // namespace juntora
