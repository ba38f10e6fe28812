#include "bench/Wildcards.h"

#include <fnmatch.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>

#include "bench/Interleave.h"
#include "bench/Statistics.h"
#include "setup/wildcards.h"

namespace juntora::bench {
namespace {

struct Case {
    const char* what;
    const char* pattern;
    std::string text;
};

}  // namespace

void benchWildcards() {
    const std::string path = "/home/me/boards/amplifier/power supply/rev 4/output stage.opj";
    const Case cases[] = {
        {"a name without wildcards", "Output Stage.OPJ", "output stage.opj"},
        {"an extension", "*.OPJ", "output stage.opj"},
        {"an extension that differs", "*.sch", "output stage.opj"},
        {"single characters", "r??_c?.n?t", "R12_C4.net"},
        {"a folder in a path", "*power*stage*", path},
        {"an extension behind a path", "*.opj", path},
        {"many stars in vain", "*a*e*i*o*u*x", path},
        {"a letter missing among 10,000", "*a*b*c", std::string(10'000, 'a')},
        {"four stars, 10,000 letters", "*a*a*a*a*b", std::string(10'000, 'a')},
    };
    std::printf("A pattern and a text, without regard to case\n");
    double worst = 0;
    for (const Case& each : cases) {
        const char* text = each.text.c_str();
        const bool matches = WildcardMatch(each.pattern, text) == 1;
        if (matches != (fnmatch(each.pattern, text, FNM_CASEFOLD) == 0)) {
            throw std::runtime_error(std::string("two answers for ") + each.what);
        }
        Samples own;
        Samples system;
        interleave(
            own, system, [&] { keep(WildcardMatch(each.pattern, text)); },
            [&] { keep(fnmatch(each.pattern, text, FNM_CASEFOLD)); });
        const double ratio = own.median() / system.median();
        std::printf("  %-32s %10.4f us, fnmatch %10.4f us, ratio %.2f\n", each.what, own.median(),
                    system.median(), ratio);
        worst = std::max(worst, ratio);
    }
    printRatio("the slowest of them, of fnmatch", worst, 1, true);
}

}  // namespace juntora::bench
