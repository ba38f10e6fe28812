#include "registration/desktopTypes.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "platform/files/search.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/hostEnvironment.h"
#include "registration/boundedRun.h"
#include "registration/paths.h"
#include "setup/programTree.h"

namespace juntora {
namespace {

constexpr char PACKAGE[] = "voltara-documents.xml";
constexpr char ENTRY_PREFIX[] = "voltara-";
constexpr char ENTRY_EXTENSION[] = ".desktop";
constexpr std::string_view MARK = "Written by Voltara Juntora's registration";
constexpr std::size_t LARGEST_OWN_FILE = 1 << 20;

std::string replaceAll(std::string_view text,
                       std::initializer_list<std::pair<char, const char*>> replacements) {
    std::string result;
    for (const char c : text) {
        const auto* const found = std::ranges::find_if(
            replacements, [c](const auto& replacement) { return replacement.first == c; });
        if (found == replacements.end()) {
            result += c;
        } else {
            result += found->second;
        }
    }
    return result;
}

std::string xmlText(std::string_view text) {
    return replaceAll(text, {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}});
}

/// An argument in quotes, inside a value of an entry, where a backslash counts once more.
std::string commandWord(std::string_view text) {
    return '"' +
           replaceAll(
               text,
               {{'"', "\\\\\""}, {'`', "\\\\`"}, {'$', "\\\\$"}, {'\\', "\\\\\\\\"}, {'%', "%%"}}) +
           '"';
}

std::string nameOf(const DesktopType& type) { return type.extension.substr(1); }

std::string mimeType(const DesktopType& type) { return "application/x-voltara-" + nameOf(type); }

/// The folders, each with a separator at its end.
struct Places {
    std::string mime;
    std::string packages;
    std::string applications;
};

Places placesBelow(const std::string& data) {
    return {data + "/mime/", data + "/mime/packages/", data + "/applications/"};
}

/// Its path; empty where nothing is there, and for one that no entry could hold.
std::string programFile(const std::string& path) {
    std::string own = ownPath(path);
    return own.find('\n') == own.npos ? own : "";
}

enum class Owner { NOBODY, US, SOMEBODY_ELSE };

Owner ownerOf(const std::string& file, std::string* text) {
    if (!ReadWholeFile(file.c_str(), LARGEST_OWN_FILE, text)) {
        return isThere(file) ? Owner::SOMEBODY_ELSE : Owner::NOBODY;
    }
    return text->find(MARK) == text->npos ? Owner::SOMEBODY_ELSE : Owner::US;
}

/// Our files in one folder, and what becomes of them.
class Changes {
public:
    /// Writes the file, unless it is that already.
    void write(const std::string& file, const std::string& text) {
        std::string now;
        const Owner owner = ownerOf(file, &now);
        if (owner == Owner::SOMEBODY_ELSE) {
            m_problems.push_back(file + " is somebody else's and has been left alone.");
        } else if (now != text) {
            tell(ReplaceWholeFile(file.c_str(), text.data(), text.size()), file, "written");
        }
    }
    void remove(const std::string& file) {
        std::string now;
        if (ownerOf(file, &now) == Owner::US) {
            tell(DeleteFileA(file.c_str()), file, "removed");
        }
    }
    /// Has the desktop's program, where it is installed, make its index of the files in `files`.
    /// Whether they have changed does not matter: a run that was killed may have changed them.
    void update(const char* program, const std::string& folder, const std::string& files) {
        if (!isThere(files)) {
            return;
        }
        const BoundedRun run = runBounded(std::string(program) + " \"" + folder + '"');
        const std::string problem = std::string(program) + " has failed for " + folder + ". ";
        if (!run.why.empty() && !run.isMissing) {
            m_problems.push_back(problem + run.why);
        } else if (run.exitCode != 0) {
            m_problems.push_back(problem + "It ended with " + std::to_string(run.exitCode) + ".");
        }
    }
    std::vector<std::string> problems() const { return m_problems; }

private:
    void tell(bool isDone, const std::string& file, const char* what) {
        if (!isDone) {
            m_problems.push_back(file + " could not be " + what + ". See to the rights of it.");
        }
    }

    std::vector<std::string> m_problems;
};

std::vector<std::string> entryFiles(const std::string& folder) {
    std::vector<std::string> files;
    WIN32_FIND_DATAA found{};
    const std::string pattern = folder + ENTRY_PREFIX + "*" + ENTRY_EXTENSION;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &found);
    for (bool isOne = search != INVALID_HANDLE_VALUE; isOne;
         isOne = FindNextFileA(search, &found) != 0) {
        files.push_back(folder + found.cFileName);
    }
    if (search != INVALID_HANDLE_VALUE) {
        FindClose(search);
    }
    return files;
}

std::vector<std::string> changeEntries(const std::string& folder,
                                       const std::vector<DesktopType>& types) {
    Changes changes;
    std::map<std::string, const DesktopType*> wanted;
    for (const DesktopType& type : types) {
        wanted[folder + ENTRY_PREFIX + nameOf(type) + ENTRY_EXTENSION] = &type;
    }
    for (const std::string& file : entryFiles(folder)) {
        if (!wanted.contains(file)) {
            changes.remove(file);
        }
    }
    for (const auto& [file, type] : wanted) {
        changes.write(file, desktopEntryText(*type));
    }
    changes.update("update-desktop-database", folder, folder);
    return changes.problems();
}

std::vector<std::string> changePackage(const Places& places,
                                       const std::vector<DesktopType>& types) {
    Changes changes;
    if (types.empty()) {
        changes.remove(places.packages + PACKAGE);
    } else {
        changes.write(places.packages + PACKAGE, mimePackageText(types));
    }
    changes.update("update-mime-database", places.mime, places.packages);
    return changes.problems();
}

}  // namespace

std::vector<DesktopType> desktopTypes(const std::vector<AssociationRow>& rows) {
    const ProgramTree tree = LocateProgramTree();
    std::map<std::string, const AssociationRow*> openers;  // By class.
    std::map<std::string, const AssociationRow*> classes;  // By extension.
    for (const AssociationRow& row : rows) {
        if (!row.program.empty()) {
            openers[row.className()] = &row;
        }
        if (row.kind == AssociationKind::SYSTEM) {
            classes.erase(row.extension);
        } else if (!row.extension.empty()) {
            classes[row.extension] = &row;
        }
    }
    std::vector<DesktopType> types;
    for (const auto& [extension, row] : classes) {
        const auto opener = openers.find(row->className());
        if (opener != openers.end()) {
            const AssociationRow& by = *opener->second;
            types.push_back({extension, by.display, by.program.substr(0, by.program.find('.')),
                             programFile(tree.folderOf(by.toolDir) + by.program)});
        }
    }
    return types;
}

std::vector<std::string> writeDesktopTypes(const std::vector<DesktopType>& types) {
    const std::string data = kernel::userDataFolder();
    if (data.empty() && types.empty()) {
        return {};
    }
    if (data.empty()) {
        return {"The desktop learns of no document types: there is no place for them. Set HOME."};
    }
    std::vector<DesktopType> opened;
    std::ranges::copy_if(types, std::back_inserter(opened),
                         [](const DesktopType& type) { return !type.program.empty(); });
    const Places places = placesBelow(data);
    std::vector<std::string> problems = changePackage(places, opened);
    std::ranges::move(changeEntries(places.applications, opened), std::back_inserter(problems));
    return problems;
}

std::vector<std::string> removeDesktopTypes() { return writeDesktopTypes({}); }

std::string mimePackageText(const std::vector<DesktopType>& types) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- " + std::string(MARK) +
                       ", which also removes it. -->\n"
                       "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\""
                       ">\n";
    for (const DesktopType& type : types) {
        text += "  <mime-type type=\"" + xmlText(mimeType(type)) + "\">\n    <comment>" +
                xmlText(type.display) + "</comment>\n    <glob pattern=\"*" +
                xmlText(type.extension) + "\"/>\n  </mime-type>\n";
    }
    return text + "</mime-info>\n";
}

std::string desktopEntryText(const DesktopType& type) {
    return "# " + std::string(MARK) + ", which also removes it.\n" +
           "[Desktop Entry]\nType=Application\nName=" + type.tool +
           "\nExec=" + commandWord(type.program) + " %f\nMimeType=" + mimeType(type) +
           ";\nNoDisplay=true\nTerminal=false\n";
}

}  // namespace juntora
