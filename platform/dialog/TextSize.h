// How much room a text takes in the font that dialogs are laid out for, without any display.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace juntora::dialog {

/// Average width and height in pixels of "MS Sans Serif" at 8 points, of which a dialog unit is a
/// quarter and an eighth. All templates are laid out for this font, and a screen that shows them in
/// another one scales what it reads here.
inline constexpr int FONT_WIDTH = 6;
inline constexpr int FONT_HEIGHT = 13;

/// The width of a line in pixels. An ampersand that marks a mnemonic counts as any other sign.
int TextWidth(std::string_view line);

/// The lines of a text, broken at blanks, and inside of words that are longer than a line, so that
/// none is wider than `width` pixels. Line ends of the text stay ("\n", "\r\n").
std::vector<std::string> BreakLines(std::string_view text, int width);

/// A text for a box of which the buttons are to stay on the display: as it is, or the first 40 of
/// its lines and "...".
std::string ShortenForBox(std::string_view text, int width);

/// Lines that one control can show: it keeps a bounded text (window.h).
struct TextPiece {
    std::string text;  ///< With "\n" between the lines.
    int firstLine;     ///< From 0.
    int lineCount;
};
std::vector<TextPiece> PiecesOfLines(const std::vector<std::string>& lines);

}  // namespace juntora::dialog

namespace juntora {

/// The room that a text takes, broken into lines at blanks so that none is wider than `rect`, in
/// pixels of the dialog font: sets the bottom, and for a single line the right edge. Returns the
/// height.
int CalculateTextRect(const char* text, RECT* rect);

}  // namespace juntora
