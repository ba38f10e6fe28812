#include "bench/Library.h"

#include <filesystem>
#include <string>
#include <vector>

#include "bench/Interleave.h"
#include "bench/Statistics.h"
#include "common/PathName.h"
#include "common/TextTokens.h"
#include "framework/CString.h"

namespace juntora::bench {
namespace {

void benchPaths() {
    const char* const paths[] = {"/home/me/boards/amplifier/../power supply/rev 4/output.opj",
                                 "boards/amplifier/../power supply/./rev 4/output stage.opj.b"};
    for (const char* path : paths) {
        Samples own;
        Samples standard;
        interleave(
            own, standard, [&] { keep(PathName(path)); },
            [&] { keep(std::filesystem::absolute(path).lexically_normal()); });
        std::printf("A path of 60 characters, %s\n", path[0] == '/' ? "absolute" : "relative");
        printRow("PathName", own.median(), "us");
        printRow("std::filesystem, absolute and lexically normal", standard.median(), "us");
        printRatio("of the standard library's", own.median() / standard.median(), 1, true);
    }
}

/// The same by hand: one pass, and a copy of each token.
std::vector<std::string> splitByHand(const std::string& text) {
    std::vector<std::string> tokens;
    std::string token;
    bool isQuoted = false;
    for (const char c : text) {
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && (c == ' ' || c == '\t')) {
            if (!token.empty()) {
                tokens.push_back(token);
            }
            token.clear();
        } else {
            token += c;
        }
    }
    if (!token.empty()) {
        tokens.push_back(token);
    }
    return tokens;
}

std::string textOfTokens(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += i % 8 == 0 ? "\"net number\" " : "component" + std::to_string(i) + ' ';
    }
    return text;
}

void benchTokens() {
    double each[2]{};
    for (const int count : {100, 10'000}) {
        const std::string text = textOfTokens(count);
        Samples own;
        Samples byHand;
        const int calls = 20'000 / count;
        for (int round = 0; round < ROUNDS; ++round) {
            auto start = Clock::now();
            for (int i = 0; i < calls; ++i) {
                keep(TextTokens(text.c_str(), " \t", 1, "\""));
            }
            own.add(microsecondsSince(start) / (calls * count));
            start = Clock::now();
            for (int i = 0; i < calls; ++i) {
                keep(splitByHand(text));
            }
            byHand.add(microsecondsSince(start) / (calls * count));
        }
        std::printf("A text of %d tokens, for each token\n", count);
        printRow("TextTokens", own.median(), "us");
        printRow("a loop that copies each token", byHand.median(), "us");
        printRatio("of the loop's", own.median() / byHand.median(), 1, true);
        each[count == 100 ? 0 : 1] = own.median();
    }
    printRatio("for each token, 10,000 tokens to 100", each[1] / each[0], 1.5, true);
}

}  // namespace

void benchLibrary() {
    benchPaths();
    benchTokens();
}

}  // namespace juntora::bench
