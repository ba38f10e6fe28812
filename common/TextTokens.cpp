#include "common/TextTokens.h"

#include <bitset>
#include <new>
#include <utility>

#include "common/StringOperations.h"
#include "common/TokenCursor.h"

namespace juntora {
namespace {

// A set of characters that is asked for every character of a text.
class ByteSet {
public:
    void add(const char* members) {
        for (; *members; ++members) {
            m_bits.set(static_cast<unsigned char>(*members));
        }
    }
    bool has(char c) const { return m_bits[static_cast<unsigned char>(c)]; }

private:
    std::bitset<256> m_bits;
};

// The spans while their number is not known: they move as the block grows, and are linked when it
// has stopped growing.
class SpanBlock {
public:
    void add(int start, int length, bool hadQuote) {
        if (m_count == m_capacity) {
            grow();
        }
        m_spans[m_count++] = {start, length, hadQuote, nullptr, nullptr};
    }
    int count() const { return m_count; }
    TokenChain linked() {
        for (int i = 1; i < m_count; ++i) {
            m_spans[i].prev = &m_spans[i - 1];
            m_spans[i - 1].next = &m_spans[i];
        }
        return std::move(m_spans);
    }

private:
    // A large block is moved by its pages, not copied; touching new ones is what costs most in the
    // cutting of a large text.
    void grow() {
        const int capacity = m_capacity ? 2 * m_capacity : ENOUGH_FOR_MOST;
        void* larger =
            std::realloc(m_spans.get(), static_cast<std::size_t>(capacity) * sizeof(TokenSpan));
        if (!larger) {
            throw std::bad_alloc();
        }
        static_cast<void>(m_spans.release());
        m_spans.reset(static_cast<TokenSpan*>(larger));
        m_capacity = capacity;
    }

    static constexpr int ENOUGH_FOR_MOST = 8;  // A request has a handful of tokens.

    TokenChain m_spans;
    int m_count = 0;
    int m_capacity = 0;
};

}  // namespace

TextTokens::TextTokens(const char* text, const char* delimiters, int skipEmpty,
                       const char* quotes) {
    reset(text, delimiters, skipEmpty, quotes);
}

TextTokens::~TextTokens() {
    while (m_pCursors) {
        m_pCursors->cursor->loseTokens();
        m_pCursors = std::move(m_pCursors->next);
    }
}

void TextTokens::reset(const char* text, const char* delimiters, int skipEmpty,
                       const char* quotes) {
    m_pFirst.reset();
    m_ppIndex.reset();
    m_nCount = 0;
    m_nLength = 0;
    for (const CursorCell* cell = m_pCursors.get(); cell; cell = cell->next.get()) {
        cell->cursor->goStale();
    }
    if (!text || !*text || !delimiters || !*delimiters) {
        m_strText.Empty();
        return;
    }
    m_strText = text;
    m_strDelimiters = delimiters;
    m_strQuotes = quotes;
    m_bSkipEmpty = skipEmpty;
    m_nLength = m_strText.GetLength();
    parse();
}

int TextTokens::get(int index, CString& out) {
    const TokenSpan* span = spanAt(index);
    if (!span) {
        out.Empty();
        return 0;
    }
    read(*span, out);
    return 1;
}

int TextTokens::start(int index) {
    const TokenSpan* span = spanAt(index);
    return span ? span->start : -1;
}

void TextTokens::parse() {
    ByteSet quotes;
    quotes.add(m_strQuotes);
    ByteSet separators = quotes;
    separators.add(m_strDelimiters);

    SpanBlock spans;
    int begin = 0;
    bool inQuote = false;
    bool hadQuote = false;
    const auto addUpTo = [&](int end) {
        if (end != begin) {
            spans.add(begin, end - begin, hadQuote);
            hadQuote = false;
        } else if (!m_bSkipEmpty) {
            spans.add(-1, 0, false);
        }
    };
    const char* text = m_strText;
    for (int at = 0; at < m_nLength; ++at) {
        const char c = text[at];
        if (!separators.has(c)) {
            continue;
        }
        if (quotes.has(c)) {
            inQuote = !inQuote;
            hadQuote = true;
        } else if (!inQuote) {
            addUpTo(at);
            begin = at + 1;
        }
    }
    addUpTo(m_nLength);

    m_nCount = spans.count();
    m_pFirst = spans.linked();
}

TokenSpan* TextTokens::spanAt(int index) {
    if (index < 0 || index >= m_nCount) {
        return nullptr;
    }
    if (!m_ppIndex) {
        m_ppIndex =
            std::make_unique_for_overwrite<TokenSpan*[]>(static_cast<std::size_t>(m_nCount));
        TokenSpan** entry = m_ppIndex.get();
        for (TokenSpan* span = m_pFirst.get(); span; span = span->next) {
            *entry++ = span;
        }
    }
    return m_ppIndex[index];
}

void TextTokens::read(const TokenSpan& span, CString& out) const {
    if (span.start < 0) {
        out.Empty();
        return;
    }
    out.SetString(static_cast<const char*>(m_strText) + span.start, span.length);
    if (span.hadQuote) {
        removeChars(out, m_strQuotes);
    }
}

void TextTokens::attach(TokenCursor* cursor) {
    m_pCursors = std::make_unique<CursorCell>(CursorCell{cursor, std::move(m_pCursors)});
}

void TextTokens::detach(const TokenCursor* cursor) {
    auto* link = &m_pCursors;
    while ((*link)->cursor != cursor) {
        link = &(*link)->next;
    }
    *link = std::move((*link)->next);
}

}  // namespace juntora
