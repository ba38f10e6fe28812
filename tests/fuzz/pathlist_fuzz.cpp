// Path lists in a file of settings, read and written, against the rules carried out item by item
// without any look-up. An input: a byte, whose lowest bit asks for quotes and whose others for a
// buffer's size; then texts that end at a NUL: the variables X and Y, the value that is stored, and
// the list that is given back.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/CaseFolding.h"
#include "platform/files/privateProfile.h"
#include "setup/configFile.h"
#include "setup/pathList.h"
#include "tests/fuzz/Fuzz.h"

namespace juntora {
namespace {

using Paths = std::vector<std::string>;

/// A home with a file of settings in it, that goes with the process.
class Home {
public:
    Home() {
        std::string name = std::filesystem::temp_directory_path() / "juntora-fuzz-XXXXXX";
        m_folder = mkdtemp(name.data());
        std::ofstream(m_folder + "/shared.ini") << "";
        setenv("HOME", m_folder.c_str(), 1);
        setenv("JUNTORA_REGISTRY", m_folder.c_str(), 1);
        setenv("VOLTARAINIPATH", (m_folder + "/shared.ini").c_str(), 1);
        m_file = GetConfigFilePath();
    }
    ~Home() { std::filesystem::remove_all(m_folder); }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    const std::string& file() const { return m_file; }

private:
    std::string m_folder;
    std::string m_file;
};

Paths cut(const std::string& text, char separator) {
    Paths parts{""};
    for (const char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

Paths split(const std::string& list) {
    Paths items = cut(list, ';');
    for (std::size_t i = 0; i < items.size(); ++i) {
        std::string& item = items[i];
        const bool hasBoth = !item.empty() && item.front() == '"' && item.back() == '"';
        while ((i > 0 || hasBoth) && !item.empty() && item.front() == '"') {
            item.erase(0, 1);
        }
        while ((i > 0 || hasBoth) && !item.empty() && item.back() == '"') {
            item.pop_back();
        }
    }
    return items;
}

bool isRelative(const std::string& item) {
    return item.rfind(".\\", 0) == 0 || item.rfind("..\\", 0) == 0;
}

std::string resolve(std::string item, const std::string& file) {
    Paths steps = cut("C:" + file, '/');
    steps.pop_back();
    for (std::string step; step = item.substr(0, item.find('\\')), step == "." || step == "..";) {
        if (step == ".." && steps.size() > 1) {
            steps.pop_back();
        }
        item.erase(0, step.size() + 1);
        if (item.empty()) {
            break;
        }
    }
    std::string path;
    for (const std::string& step : steps) {
        path += step + "\\";
    }
    return path + item;
}

/// Expansions with their forms: "" of a plain item.
std::vector<std::pair<std::string, std::string>> expand(const std::string& list,
                                                        const std::string* file) {
    std::vector<std::pair<std::string, std::string>> found;
    for (const std::string& item : split(list)) {
        if (!item.empty() && item[0] == '$') {
            const std::string name = item.substr(1, item.find('\\') - 1);
            const bool isX = files::equalIgnoringCase(name, "x");
            const char* value = isX || files::equalIgnoringCase(name, "y")
                                    ? std::getenv(isX ? "X" : "Y")
                                    : std::getenv(name.c_str());
            for (const std::string& element : value ? split(value) : Paths()) {
                found.emplace_back(element + item.substr(name.size() + 1), item);
            }
        } else if (file && isRelative(item)) {
            found.emplace_back(resolve(item, *file), item);
        } else {
            found.emplace_back(item, "");
        }
    }
    return found;
}

std::string join(const Paths& items) {
    std::string list;
    for (const std::string& item : items) {
        list += (list.empty() || item.empty() ? "" : ";") + item;
    }
    return list;
}

Paths expectedPaths(const std::string& stored, bool quote, const std::string& file) {
    Paths paths;
    std::string before;
    bool isFirst = true;
    for (const auto& [path, form] : expand(stored, &file)) {
        if (!path.empty() && (isFirst || path != before)) {
            paths.push_back(quote ? '"' + path + '"' : path);
        }
        before = path;
        isFirst = false;
    }
    return paths;
}

std::string expectedText(const std::string& stored, const std::string& given, bool quote,
                         const std::string& file) {
    Paths newPaths;
    for (const auto& [path, form] : expand(given, nullptr)) {
        newPaths.push_back(path);
    }
    const auto old = expand(stored, &file);
    const auto isGiven = [&](const std::string& path) {
        return std::any_of(newPaths.begin(), newPaths.end(), [&](const std::string& each) {
            return files::equalIgnoringCase(each, path);
        });
    };
    const auto firstOf = [&](const std::string& path) {
        return std::find_if(old.begin(), old.end(), [&](const auto& each) {
            return files::equalIgnoringCase(each.first, path);
        });
    };
    Paths gone;
    for (auto each = old.begin(); each != old.end(); ++each) {
        if (!each->first.empty() && firstOf(each->first) == each && !isGiven(each->first)) {
            gone.push_back(each->second);
        }
    }
    Paths items;
    for (const std::string& path : newPaths) {
        const auto entry = firstOf(path);
        if (path.empty()) {
            continue;
        }
        if (entry == old.end() || entry->second.empty()) {
            items.push_back(quote ? '"' + path + '"' : path);
        } else if (std::find(gone.begin(), gone.end(), entry->second) == gone.end()) {
            items.push_back(entry->second);
            gone.push_back(entry->second);
        }
    }
    return join(items);
}

std::string storedValue(const std::string& file) {
    std::string value(1 << 20, '\0');
    value.resize(GetPrivateProfileStringA("s", "k", "", value.data(), 1 << 20, file.c_str()));
    return value;
}

void checkRead(const std::string& stored, DWORD size, bool quote, const std::string& file) {
    const Paths paths = expectedPaths(stored, quote, file);
    std::string expected;
    for (const std::string& path : paths) {
        std::string longer = expected;
        longer.append(expected.empty() ? "" : ";").append(path);
        if (longer.size() >= size) {
            break;
        }
        expected = std::move(longer);
    }
    if (expected.empty()) {
        expected = stored.substr(0, size == 0 ? 0 : size - 1);
    }
    std::vector<char> buffer(size);  // Of that size on the heap, for the sanitizers.
    const int result = ReadPathList("s", "k", "", buffer.data(), size, file.c_str(), quote);
    mustHold(result == (size > 1 && !stored.empty()), "the result of a read");
    mustHold(size == 0 || expected == buffer.data(), "the list that is read");
}

}  // namespace
}  // namespace juntora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace juntora;
    static const Home home;
    FuzzInput input(data, size);
    const std::uint8_t flags = input.byte();
    for (const char* name : {"X", "Y"}) {
        const std::string value = input.text();
        value.empty() ? unsetenv(name) : setenv(name, value.c_str(), 1);
    }
    std::ofstream(home.file()) << "[s]\nk=" << input.text() << "\n";
    const std::string given = input.text();

    const bool quote = (flags & 1) != 0;
    const std::string stored = storedValue(home.file());
    checkRead(stored, flags / 2, quote, home.file());
    checkRead(stored, 1 << 16, quote, home.file());
    mustHold(WritePathList("s", "k", given.c_str(), home.file().c_str(), quote) == 1, "a write");
    const std::string text = expectedText(stored, given, quote, home.file());
    if (text.find_first_of("\r\n") == std::string::npos) {
        std::ofstream(home.file() + ".expected") << "[s]\nk=" << text << "\n";
        mustHold(storedValue(home.file()) == storedValue(home.file() + ".expected"),
                 "the list that is written");
    }
    return 0;
}
