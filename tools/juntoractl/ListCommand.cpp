// ls: what a directory holds, by attributes.
#include <algorithm>
#include <iterator>
#include <memory>
#include <sstream>

#include "common/PathName.h"
#include "platform/files/attributes.h"
#include "platform/files/status.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

constexpr std::size_t SIZE_COLUMN = 14;

struct Attribute {
    char letter;
    std::string_view name;
    DWORD bit;
};
constexpr Attribute ATTRIBUTES[] = {
    {'r', "read-only", FILE_ATTRIBUTE_READONLY}, {'h', "hidden", FILE_ATTRIBUTE_HIDDEN},
    {'s', "system", FILE_ATTRIBUTE_SYSTEM},      {'d', "directory", FILE_ATTRIBUTE_DIRECTORY},
    {'a', "archive", FILE_ATTRIBUTE_ARCHIVE},    {'c', "compressed", FILE_ATTRIBUTE_COMPRESSED},
};

struct Options {
    std::string directory;
    std::string pattern = "*";
    std::string must;
    std::string mustNot;
    bool json = false;
};

/// Reads one name of an attribute, or any number of letters. False if something is neither.
bool parseWord(std::string_view word, DWORD* bits) {
    for (const Attribute& each : ATTRIBUTES) {
        if (word == each.name) {
            *bits |= each.bit;
            return true;
        }
    }
    return std::all_of(word.begin(), word.end(), [bits](char letter) {
        const auto* const found =
            std::find_if(std::begin(ATTRIBUTES), std::end(ATTRIBUTES),
                         [letter](const Attribute& each) { return each.letter == letter; });
        *bits |= found == std::end(ATTRIBUTES) ? 0 : found->bit;
        return found != std::end(ATTRIBUTES);
    });
}

bool parseBits(const std::string& text, DWORD* bits) {
    std::istringstream words(text);
    for (std::string word; std::getline(words, word, ',');) {
        if (!parseWord(word, bits)) {
            return false;
        }
    }
    return true;
}

std::string checkAttributes(std::string& text) {
    DWORD bits = 0;
    return parseBits(text, &bits) ? "" : "\"" + text + "\" is no attribute";
}

DWORD bitsOf(const std::string& text) {
    DWORD bits = 0;
    parseBits(text, &bits);
    return bits;
}

std::string letters(DWORD bits) {
    std::string text;
    for (const Attribute& each : ATTRIBUTES) {
        text += (bits & each.bit) != 0 ? each.letter : '-';
    }
    return text;
}

Json names(DWORD bits) {
    Json array = Json::array();
    for (const Attribute& each : ATTRIBUTES) {
        if ((bits & each.bit) != 0) {
            array.push_back(each.name);
        }
    }
    return array;
}

/// An entry may have gone since the directory was read: it has no attributes then.
DWORD attributesOf(const PathName& path) {
    const DWORD bits = GetFileAttributesA(path.c_str());
    return bits == INVALID_FILE_ATTRIBUTES ? 0 : bits;
}

std::string fileName(const PathName& path) {
    CString name;
    path.getFileName(name);
    return static_cast<const char*>(name);
}

void printTable(const PathName* paths, int count) {
    for (const PathName* path = paths; path != paths + count; ++path) {
        const DWORD bits = attributesOf(*path);
        std::string line = letters(bits);
        const std::string size =
            (bits & FILE_ATTRIBUTE_DIRECTORY) != 0 ? "" : std::to_string(path->fileSize());
        line.append(SIZE_COLUMN - std::min(SIZE_COLUMN, size.size()), ' ').append(size);
        printLine(line.append("  ").append(fileName(*path)));
    }
}

void printArray(const PathName* paths, int count) {
    Json array = Json::array();
    for (const PathName* path = paths; path != paths + count; ++path) {
        array.push_back({{"name", fileName(*path)},
                         {"path", path->c_str()},
                         {"attributes", names(attributesOf(*path))},
                         {"size", path->fileSize()},
                         {"modified", path->modifyTime()}});
    }
    printJson(array);
}

int run(const Options& options) {
    const PathName directory(options.directory.c_str());
    PathName* list = nullptr;
    int count = 0;
    const int result = directory.listDirectory(options.pattern.c_str(), &list, &count,
                                               bitsOf(options.must), bitsOf(options.mustNot));
    const std::unique_ptr<PathName[]> paths(list);
    if (result < 0) {
        complain("\"" + options.directory + "\" is no directory that can be read");
        return EXIT_CODE_REFUSED;
    }
    if (options.json) {
        printArray(list, count);
    } else {
        printTable(list, count);
    }
    return result == 1 ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

}  // namespace

void addListCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        addCommand(app, "ls", "List what a directory holds, with attributes", options, run, action);
    command->add_option("DIR", options->directory, "The directory")->required();
    command->add_option("PATTERN", options->pattern, "Which names, with * and ?")
        ->capture_default_str();
    const std::string attributes =
        "the letters of read-only, hidden, system, directory, archive, compressed, or such names "
        "with commas between";
    command
        ->add_option("--must", options->must, "Attributes that an entry must have: " + attributes)
        ->check(CLI::Validator(checkAttributes, ""));
    command->add_option("--must-not", options->mustNot, "Attributes that it must not have")
        ->check(CLI::Validator(checkAttributes, ""));
    addJsonFlag(command, &options->json, "Print an array of objects");
}

}  // namespace juntora
