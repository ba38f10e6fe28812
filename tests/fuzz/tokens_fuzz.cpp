// TextTokens against a walk over the text that builds each token character by character.
// An input: a byte, whose lowest bit has empty tokens skipped, then texts that end at a NUL: the
// delimiters, the quote marks, a text, and another one to reset to.
#include <string>
#include <vector>

#include "common/TextTokens.h"
#include "common/TokenCursor.h"
#include "tests/fuzz/Fuzz.h"

namespace juntora {
namespace {

std::vector<std::string> cut(const std::string& text, const std::string& delimiters, bool skipEmpty,
                             const std::string& quotes) {
    std::vector<std::string> tokens;
    if (text.empty() || delimiters.empty()) {
        return tokens;
    }
    std::string token;
    bool isEmpty = true;
    bool inQuote = false;
    const auto end = [&] {
        if (!isEmpty || !skipEmpty) {
            tokens.push_back(token);
        }
        token.clear();
        isEmpty = true;
    };
    for (const char c : text) {
        const bool isQuote = quotes.find(c) != std::string::npos;
        if (!isQuote && !inQuote && delimiters.find(c) != std::string::npos) {
            end();
            continue;
        }
        isEmpty = false;
        if (isQuote) {
            inQuote = !inQuote;
        } else {
            token += c;
        }
    }
    end();
    return tokens;
}

void compare(TextTokens& tokens, const std::vector<std::string>& expected) {
    const int count = static_cast<int>(expected.size());
    mustHold(tokens.count() == count, "the number of tokens");
    TokenCursor cursor(tokens);
    CString token;
    for (int i = 0; i < count; ++i) {
        const char* text = expected[static_cast<std::size_t>(i)].c_str();
        mustHold(cursor.next(token) && token == text, "the token of a walk");
        mustHold(tokens.get(i, token) == 1 && token == text, "the token of a number");
    }
    mustHold(!cursor.next(token) && token.IsEmpty(), "the end of a walk");
    mustHold(tokens.get(count, token) == 0 && token.IsEmpty(), "none behind the last");
    mustHold(tokens.get(-1, token) == 0, "none before the first");
    mustHold(cursor.last(token) == (count > 0) && (count == 0 || token == expected.back().c_str()),
             "the last token");
}

}  // namespace
}  // namespace juntora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace juntora;
    FuzzInput input(data, size);
    const bool skipEmpty = (input.byte() & 1) != 0;
    const std::string delimiters = input.text();
    const std::string quotes = input.text();
    const std::string text = input.text();
    const std::string other = input.text();

    TextTokens tokens(text.c_str(), delimiters.c_str(), skipEmpty, quotes.c_str());
    compare(tokens, cut(text, delimiters, skipEmpty, quotes));
    TokenCursor old(tokens);
    // The other way round, so that what was stored before the reset shows if it is left over.
    tokens.reset(other.c_str(), quotes.c_str(), !skipEmpty, delimiters.c_str());
    compare(tokens, cut(other, quotes, !skipEmpty, delimiters));
    CString token;
    mustHold(!old.next(token), "an old cursor reads nothing");
    return 0;
}
