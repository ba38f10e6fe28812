// registry: reading and changing the registry. No hub takes part.
#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/messages.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"
#include "tools/juntoractl/RegistryKey.h"
#include "tools/juntoractl/RegistryValue.h"

namespace juntora {
namespace {

constexpr char NUMBER_TYPE[] = "number";
constexpr char STRING_TYPE[] = "string";
constexpr char DEFAULT_NAME[] = "(default)";

struct Options {
    std::string key;
    std::string name;
    std::string value;
    std::string type = STRING_TYPE;
    bool hasName = false;
    bool json = false;

    /// The key, which has been checked.
    KeyName keyName() const {
        KeyName parsed;
        parseKeyName(key, &parsed);
        return parsed;
    }
};

int refuse(const KeyName& key, DWORD error) {
    complain(key.text() + ": " + registryErrorText(error));
    return EXIT_CODE_REFUSED;
}

Json jsonOf(const RegistryValue& value) {
    return {{"name", value.name}, {"type", value.typeName()}, {"value", value.json()}};
}

void printValue(const Options& options, const KeyName& key, const RegistryValue& value) {
    if (options.json) {
        Json object{{"key", key.text()}};
        object.update(jsonOf(value));
        printJson(object);
        return;
    }
    for (const std::string& line : value.lines()) {
        printLine(line);
    }
}

int get(const Options& options) {
    const KeyName key = options.keyName();
    OpenRegistryKey open;
    DWORD error = RegOpenKeyExA(key.root, key.path.c_str(), KEY_QUERY_VALUE, open.out());
    RegistryValue value;
    error = error == ERROR_SUCCESS ? readRegistryValue(open, options.name, &value) : error;
    if (error != ERROR_SUCCESS) {
        return refuse(key, error);
    }
    printValue(options, key, value);
    return EXIT_CODE_DONE;
}

/// False when the text is no number of 32 bits.
bool parseNumber(std::string text, std::string* data) {
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.erase(0, isHexadecimal ? 2 : 0);
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number, isHexadecimal ? 16 : 10);
    if (error != std::errc() || behind != end) {
        return false;
    }
    for (int shift = 0; shift < 32; shift += 8) {
        *data += static_cast<char>(number >> shift);
    }
    return true;
}

int set(const Options& options) {
    const KeyName key = options.keyName();
    RegistryValue value{options.name, REG_SZ, options.value + '\0'};
    if (options.type == NUMBER_TYPE) {
        value = {options.name, REG_DWORD, ""};
        if (!parseNumber(options.value, &value.data)) {
            complain("\"" + options.value + "\" is no number from 0 to 4294967295 or 0xffffffff");
            return EXIT_CODE_USAGE;
        }
    }
    OpenRegistryKey open;
    DWORD error = RegCreateKeyA(key.root, key.path.c_str(), open.out());
    if (error == ERROR_SUCCESS) {
        error = RegSetValueExA(open, value.name.c_str(), value.type, value.data.data(),
                               static_cast<DWORD>(value.data.size()));
    }
    if (error != ERROR_SUCCESS) {
        return refuse(key, error);
    }
    if (options.json) {
        printValue(options, key, value);
    }
    return EXIT_CODE_DONE;
}

DWORD deleteValue(const KeyName& key, const std::string& name) {
    OpenRegistryKey open;
    const DWORD error = RegOpenKeyExA(key.root, key.path.c_str(), KEY_SET_VALUE, open.out());
    return error == ERROR_SUCCESS ? RegDeleteValueA(open, name.c_str()) : error;
}

int remove(const Options& options) {
    const KeyName key = options.keyName();
    if (!options.hasName && key.path.empty()) {
        complain(key.rootName + " itself cannot be deleted; name a key below it");
        return EXIT_CODE_USAGE;
    }
    const DWORD error = options.hasName ? deleteValue(key, options.name)
                                        : RegDeleteTreeA(key.root, key.path.c_str());
    if (error != ERROR_SUCCESS) {
        return refuse(key, error);
    }
    if (options.json) {
        Json object{{"deleted", key.text()}};
        if (options.hasName) {
            object["name"] = options.name;
        }
        printJson(object);
    }
    return EXIT_CODE_DONE;
}

struct Listing {
    std::string key;
    std::vector<RegistryValue> values;
};

/// Appends a key and all below it; one that is deleted meanwhile is left out.
DWORD readTree(const KeyName& key, std::vector<Listing>* listings) {
    std::vector<KeyName> waiting{key};
    while (!waiting.empty()) {
        const KeyName next = std::move(waiting.back());
        waiting.pop_back();
        OpenRegistryKey open;
        Listing listing{next.text(), {}};
        std::vector<std::string> names;
        DWORD error = RegOpenKeyExA(next.root, next.path.c_str(), KEY_READ, open.out());
        error = error == ERROR_SUCCESS ? readRegistryValues(open, &listing.values) : error;
        error = error == ERROR_SUCCESS ? readSubkeyNames(open, &names) : error;
        const bool isGone = error == ERROR_FILE_NOT_FOUND || error == ERROR_KEY_DELETED;
        if (isGone && !listings->empty()) {
            continue;
        }
        if (error != ERROR_SUCCESS) {
            return error;
        }
        listings->push_back(std::move(listing));
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            waiting.push_back(
                {next.root, next.rootName, next.path.empty() ? *name : next.path + "\\" + *name});
        }
    }
    return ERROR_SUCCESS;
}

void printListing(const Listing& listing) {
    printLine(listing.key);
    for (const RegistryValue& value : listing.values) {
        std::string line = "    " + (value.name.empty() ? DEFAULT_NAME : value.name) + "  " +
                           value.typeName() + "  ";
        const char* separator = "";
        for (const std::string& part : value.lines()) {
            line += separator + part;
            separator = " | ";
        }
        printLine(line);
    }
}

int list(const Options& options) {
    const KeyName key = options.keyName();
    std::vector<Listing> listings;
    if (const DWORD error = readTree(key, &listings)) {
        return refuse(key, error);
    }
    Json array = Json::array();
    for (const Listing& listing : listings) {
        if (!options.json) {
            printListing(listing);
            continue;
        }
        Json values = Json::array();
        for (const RegistryValue& value : listing.values) {
            values.push_back(jsonOf(value));
        }
        array.push_back({{"key", listing.key}, {"values", values}});
    }
    if (options.json) {
        printJson(array);
    }
    return EXIT_CODE_DONE;
}

std::string checkKey(std::string& text) {
    KeyName name;
    return parseKeyName(text, &name) ? ""
                                     : "\"" + text + "\" does not begin with HKCU, HKLM or HKCR";
}

CLI::App* addRegistryCommand(CLI::App& group, const char* word, const char* description,
                             const std::shared_ptr<Options>& options, int (*run)(const Options&),
                             Action* action) {
    CLI::App* command = addCommand(group, word, description, options, run, action);
    command
        ->add_option("KEY", options->key,
                     "HKCU, HKLM or HKCR, and what is below: HKCU\\Software\\x, or with / where "
                     "there is no \\ in it")
        ->required()
        ->check(CLI::Validator(checkKey, ""));
    return command;
}

}  // namespace

void addRegistryCommands(CLI::App& app, Action* action) {
    CLI::App* group = app.add_subcommand("registry", "Read and change the registry");
    group->require_subcommand(1);

    auto options = std::make_shared<Options>();
    CLI::App* command = addRegistryCommand(
        *group, "get", "Print a value; a number in decimal, other data as hexadecimal digits",
        options, get, action);
    command->add_option("NAME", options->name, "The value; the key's default value if not given");
    addJsonFlag(command, &options->json, "Print an object: key, name, type, value");

    options = std::make_shared<Options>();
    command = addRegistryCommand(*group, "set", "Write a value, and make its key if need be",
                                 options, set, action);
    command->add_option("NAME", options->name, "The value; \"\" for the key's default value")
        ->required();
    command->add_option("VALUE", options->value, "The text or number")->required();
    command->add_option("--type", options->type, "string or number")
        ->check(CLI::IsMember({STRING_TYPE, NUMBER_TYPE}))
        ->capture_default_str();
    addJsonFlag(command, &options->json, "Print what has been written");

    options = std::make_shared<Options>();
    command = addRegistryCommand(*group, "delete", "Delete a value, or a key with all below it",
                                 options, remove, action);
    CLI::Option* name = command->add_option(
        "NAME", options->name, "The value, \"\" for the default value; the whole key if not given");
    command->callback([=] {
        options->hasName = name->count() > 0;
        *action = [=] { return remove(*options); };
    });
    addJsonFlag(command, &options->json, "Print what has been deleted");

    options = std::make_shared<Options>();
    command = addRegistryCommand(*group, "list", "List a key and all below it, with their values",
                                 options, list, action);
    addJsonFlag(command, &options->json, "Print an array of keys with their values");
}

}  // namespace juntora
