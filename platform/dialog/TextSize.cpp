#include "platform/dialog/TextSize.h"

#include <algorithm>

namespace juntora::dialog {
namespace {

constexpr std::size_t MOST_BOX_LINES = 40;
constexpr std::size_t LONGEST_CONTROL_TEXT = 500;

constexpr int NARROW = 3;
constexpr int SLIM = 4;
constexpr int USUAL = 6;
constexpr int BROAD = 7;
constexpr int WIDE = 9;

/// Four widths of signs are enough to lay a box out: the error evens out over a line, and a label
/// takes the room that its text needs in the end.
int widthOf(char c) {
    if (std::string_view("ijl.,:;'!|`").find(c) != std::string_view::npos) {
        return NARROW;
    }
    if (std::string_view(" frt()[]{}/\\-\"I").find(c) != std::string_view::npos) {
        return SLIM;
    }
    if (std::string_view("mwMW@%").find(c) != std::string_view::npos) {
        return WIDE;
    }
    return c >= 'A' && c <= 'Z' ? BROAD : USUAL;
}

/// Takes off the front of a word what fits into a line, at least one sign and no half of one.
std::string_view takeFitting(std::string_view* word, int width) {
    std::size_t end = 0;
    for (int used = 0; end < word->size() && (end == 0 || used + widthOf((*word)[end]) <= width);
         ++end) {
        used += widthOf((*word)[end]);
    }
    constexpr unsigned char CONTINUES_MASK = 0xC0;
    constexpr unsigned char CONTINUES = 0x80;
    while (end < word->size() && end > 1 &&
           (static_cast<unsigned char>((*word)[end]) & CONTINUES_MASK) == CONTINUES) {
        --end;
    }
    const std::string_view taken = word->substr(0, end);
    word->remove_prefix(end);
    return taken;
}

/// Looks no further than it must: a word may be as long as a file.
bool fits(std::string_view line, int width) {
    int used = 0;
    for (const char c : line) {
        used += widthOf(c);
        if (used > width) {
            return false;
        }
    }
    return true;
}

void breakLine(std::string_view line, int width, std::vector<std::string>* lines) {
    std::string current;
    while (!line.empty()) {
        const std::size_t blanks = std::min(line.find_first_not_of(' '), line.size());
        const std::size_t end = std::min(line.find(' ', blanks), line.size());
        const std::string_view piece = line.substr(0, end);
        if (!current.empty() && !fits(piece, width - TextWidth(current))) {
            lines->push_back(std::move(current));
            current = piece.substr(std::min(blanks, piece.size()));
        } else {
            current += piece;
        }
        line.remove_prefix(end);
        std::string_view rest(current);
        while (!fits(rest, width)) {
            lines->emplace_back(takeFitting(&rest, width));
        }
        current.erase(0, current.size() - rest.size());
    }
    lines->push_back(std::move(current));
}

}  // namespace

int TextWidth(std::string_view line) {
    int width = 0;
    for (const char c : line) {
        width += widthOf(c);
    }
    return width;
}

std::vector<std::string> BreakLines(std::string_view text, int width) {
    std::vector<std::string> lines;
    for (;;) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        breakLine(line, width, &lines);
        if (end == std::string_view::npos) {
            return lines;
        }
        text.remove_prefix(end + 1);
    }
}

std::string ShortenForBox(std::string_view text, int width) {
    std::vector<std::string> lines = BreakLines(text, width);
    if (lines.size() <= MOST_BOX_LINES) {
        return std::string(text);
    }
    lines.resize(MOST_BOX_LINES);
    std::string shortened;
    for (const std::string& line : lines) {
        shortened += line + '\n';
    }
    return shortened + "...";
}

std::vector<TextPiece> PiecesOfLines(const std::vector<std::string>& lines) {
    std::vector<TextPiece> pieces;
    int number = 0;
    for (const std::string& line : lines) {
        if (pieces.empty() || pieces.back().text.size() + line.size() >= LONGEST_CONTROL_TEXT) {
            pieces.push_back({line, number, 1});
        } else {
            pieces.back().text += '\n' + line;
            ++pieces.back().lineCount;
        }
        ++number;
    }
    return pieces;
}

}  // namespace juntora::dialog

namespace juntora {

int CalculateTextRect(const char* text, RECT* rect) {
    const std::vector<std::string> lines = dialog::BreakLines(text, rect->right - rect->left);
    const int height = static_cast<int>(lines.size()) * dialog::FONT_HEIGHT;
    rect->bottom = rect->top + height;
    if (lines.size() == 1) {
        rect->right = rect->left + dialog::TextWidth(lines.front());
    }
    return height;
}

}  // namespace juntora
