// A text cut into tokens at delimiters, with quotes that hide them.
#pragma once

#include <cstdlib>
#include <memory>

#include "framework/CString.h"

namespace juntora {

class TokenCursor;

/// Where a token lies. Quote marks lie inside it.
struct TokenSpan {
    int start;     ///< Offset in the text; -1 for an empty token.
    int length;    ///< In bytes.
    int hadQuote;  ///< Whether a quote mark stands in it.
    TokenSpan* next;
    TokenSpan* prev;
};

struct TokenChainDeleter {
    void operator()(TokenSpan* spans) const { std::free(spans); }
};
/// All spans of a text, in one block from malloc, the first one first.
using TokenChain = std::unique_ptr<TokenSpan[], TokenChainDeleter>;

/// Holds a copy of a text and knows where its tokens lie; a token is copied when it is read. Any
/// quote mark opens a stretch in which delimiters count as text, and any closes it; one that is
/// left open runs to the end. There is no escape. A read token is without its quote marks, wherever
/// they stood. A character that is both delimiter and quote mark is a quote mark. For one thread.
class TextTokens {
public:
    /// Each character of `delimiters` ends a token, and each of `quotes`, which may be empty, is a
    /// quote mark. Tokens of no characters count unless `skipEmpty` is set; the quotes of a pair
    /// are characters. Without a text or delimiters, by a null address or an empty text, there are
    /// no tokens.
    TextTokens(const char* text, const char* delimiters, int skipEmpty, const char* quotes);
    /// Cursors on the tokens may outlive them; they read nothing then.
    ~TextTokens();
    TextTokens(const TextTokens&) = delete;
    TextTokens& operator=(const TextTokens&) = delete;

    /// Takes another text, as the constructor does. Cursors that looked at the old one read nothing
    /// until a new one is assigned to them.
    void reset(const char* text, const char* delimiters, int skipEmpty, const char* quotes);

    int count() const { return m_nCount; }
    /// Reads a token, counted from 0: 1. 0 and an empty text if there is none of that number.
    int get(int index, CString& out);
    /// Where the token of that number begins in the text, at its quote mark if it has one there; -1
    /// for an empty token, and if there is none of that number.
    int start(int index);

private:
    friend class TokenCursor;

    struct CursorCell {
        TokenCursor* cursor;
        std::unique_ptr<CursorCell> next;
    };

    void parse();
    TokenSpan* spanAt(int index);
    void read(const TokenSpan& span, CString& out) const;
    void attach(TokenCursor* cursor);
    void detach(const TokenCursor* cursor);

    CString m_strText;
    CString m_strDelimiters;
    CString m_strQuotes;
    int m_bSkipEmpty = 0;
    int m_nLength = 0;
    int m_nCount = 0;
    TokenChain m_pFirst;
    std::unique_ptr<CursorCell> m_pCursors;   ///< Those that look at this object, not owned.
    std::unique_ptr<TokenSpan*[]> m_ppIndex;  ///< Null until a token is read by its number.
};

}  // namespace juntora
