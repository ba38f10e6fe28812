#include "registration/dataFile.h"

#include <algorithm>

#include "platform/automation/Utf8.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/errorOutput.h"
#include "platform/kernel/printable.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"
#include "setup/programTree.h"

namespace juntora {
namespace {

constexpr std::string_view BLANKS = " \t\r";
constexpr char FOLDER[] = "\\share\\voltara\\registration\\";
constexpr std::size_t LARGEST_FILE = 1 << 20;

void complain(const std::string& where, const std::string& what) {
    kernel::WriteToErrors(PrintableText(where + ": " + what) + "\n");
}

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

/// Takes a word in quotes, of which the first has been taken. False where its end is missing.
bool takeQuoted(std::string_view* line, std::string* word) {
    while (!line->empty()) {
        const char c = line->front();
        line->remove_prefix(1);
        if (c != '"') {
            *word += c;
        } else if (line->starts_with('"')) {
            *word += c;
            line->remove_prefix(1);
        } else {
            return true;
        }
    }
    return false;
}

/// The lines of a text that comes from `file`.
bool readLines(std::string_view text, const std::string& file, const TakeLine& take) {
    bool isGood = true;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        Words words;
        std::string wrong = splitDataLine(line, &words);
        if (wrong.empty() && !words.empty()) {
            wrong = take(words);
        }
        if (!wrong.empty()) {
            complain(file + ":" + std::to_string(number), wrong + "; the line is left out.");
            isGood = false;
        }
    }
    return isGood;
}

}  // namespace

bool isPlainName(std::string_view word) {
    return !word.empty() && word != "." && word != ".." &&
           word.find_first_of("/\\\":%") == word.npos;
}

std::string splitDataLine(std::string_view line, Words* words) {
    for (;;) {
        line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
        if (line.empty() || line.front() == '#') {
            return "";
        }
        std::string word;
        if (line.front() == '"') {
            line.remove_prefix(1);
            if (!takeQuoted(&line, &word)) {
                return "a quote is not closed";
            }
            if (!line.empty() && BLANKS.find(line.front()) == BLANKS.npos) {
                return "a blank is missing behind a closing quote";
            }
        } else {
            word = line.substr(0, line.find_first_of(BLANKS));
            line.remove_prefix(word.size());
        }
        if (std::ranges::any_of(word, isControl) || !automation::isBusText(word)) {
            return "there is a control character in it, or it is no UTF-8";
        }
        words->push_back(word);
    }
}

bool readDataFile(const char* name, const TakeLine& take) {
    const std::string file = LocateProgramTree().root + FOLDER + name;
    std::string text;
    if (!ReadWholeFile(file.c_str(), LARGEST_FILE, &text)) {
        complain(file, GetLastError() == ERROR_FILE_TOO_LARGE
                           ? "the file is larger than 1 MiB, and none of it is taken."
                           : "the file cannot be read, so nothing of it is registered. Install it "
                             "there, or name the suite's folder in JUNTORA_ROOT.");
        return false;
    }
    return readLines(text, file, take);
}

}  // namespace juntora
