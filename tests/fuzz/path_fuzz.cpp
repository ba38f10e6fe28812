// Any bytes as a path: what must hold for all of them. The first line is the path, the second one
// a directory. Nothing is written to the file system.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/CaseBlind.h"
#include "common/PathCheck.h"
#include "common/PathName.h"

namespace juntora {
namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::string textOf(const CString& text) { return static_cast<const char*>(text); }

std::string part(const PathName& path, void (PathName::*read)(CString&) const) {
    CString out;
    (path.*read)(out);
    return textOf(out);
}

std::string withoutSeparator(std::string text) {
    if (text.ends_with('\\')) {
        text.pop_back();
    }
    return text;
}

void checkText(const PathName& path) {
    const std::string text = path.c_str();
    require(text.find('/') == std::string::npos);
    require(text.size() == static_cast<std::size_t>(path.length()));
    require(path.isEmpty() == text.empty() && path.isUnc() == text.starts_with("\\\\"));
    require(path == PathName(path));
}

void checkParts(const PathName& path) {
    const std::string text = path.c_str();
    CString extension;
    path.getExtension(extension, true);
    const std::string fileName = part(path, &PathName::getFileName);
    require(fileName == part(path, &PathName::getBaseName) + textOf(extension));
    require(text == part(path, &PathName::getDirectory) + fileName);
    require(text == part(path, &PathName::getStem) + textOf(extension));
    require(part(path, &PathName::getDirectory) ==
            part(path, &PathName::getDrive) + part(path, &PathName::getDirOnly));
    const int dot = path.extensionPosition();
    require(dot == -1 ? extension.IsEmpty() : text.substr(dot) == textOf(extension));
    PathName parent;
    path.getParent(parent);
    require(textOf(parent.getEntered()) == part(path, &PathName::getDirectory));
    require(parent.c_str() == withoutSeparator(part(path, &PathName::getDirectory)));
}

/// In normal form no stretch in between is empty.
void checkComponents(const PathName& path) {
    std::string joined = path.isUnc() ? "\\\\" : "";
    CString component;
    for (int i = 0; path.getComponent(component, i), !component.IsEmpty(); ++i) {
        joined.append(i == 0 ? "" : "\\").append(component);
    }
    require(joined == withoutSeparator(path.c_str()) || joined == path.c_str());
}

void checkForms(const PathName& path, int maxLength) {
    int length = 0;
    const CString form = path.abbreviate(maxLength, &length);
    if (!form.IsEmpty()) {
        require(form.GetLength() == length && length <= maxLength);
    } else if (!path.isEmpty() && maxLength != 0) {
        require(-length > maxLength);
        require(!path.abbreviate(-length, &length).IsEmpty());
    }
    for (const bool withDirectory : {false, true}) {
        path.getDisplayName(withDirectory, false, maxLength, &length);
        path.getDisplayName(withDirectory, true, maxLength, nullptr);
        const CString shown = path.getDisplayName(withDirectory, true, maxLength, &length);
        require(length < 0 || shown.GetLength() == length);
    }
}

/// The way from a directory to the path leads to the path. A server alone is no directory: what
/// comes behind it is a share, whatever it looks like.
void checkRelative(const PathName& path, const PathName& base) {
    CString share;
    base.getComponent(share, 1);
    if (base.isUnc() && share.IsEmpty()) {
        return;
    }
    for (const bool allowUp : {false, true}) {
        const std::string way = textOf(path.makeRelative(base.c_str(), allowUp));
        if (path.isEmpty() || way == path.c_str() || way.starts_with('\\')) {
            continue;
        }
        const PathName reached((std::string(base.c_str()) + "\\" + way).c_str());
        require(equalCaseBlind(withoutSeparator(reached.c_str()), withoutSeparator(path.c_str())));
    }
    path.makeRelative(nullptr, true);
}

void checkLegality(const PathName& path) {
    for (int kind = FILE_SYSTEM_FAT_SHORT; kind <= FILE_SYSTEM_POSIX; ++kind) {
        unsigned long error = 0;
        const int result = path.checkForKind(kind, &error);
        require(result == -1 ? path.isEmpty() : result == 0 || (result == 1 && error == 0));
        require(error == 0 ||
                (error >= PATH_ERROR_LONG_EXTENSION && error <= PATH_ERROR_LONG_PATH));
    }
    unsigned long error = 0;
    path.checkForVolume(&error);
}

void checkChanges(PathName path, const std::string& text) {
    CString old;
    path.setExtension(old, "x");
    path.getExtension(old, false);
    require(textOf(old) == "x");
    path.setBaseName(old, text.c_str());
    checkText(path);
    path.setExtension(old, text.c_str());
    checkText(path);
    path.append(text.c_str());
    checkText(path);
    checkParts(path);
    PathName parent;
    path.setDirectory(parent, text.c_str());
    checkText(path);
    checkParts(path);
}

void checkFiles(const PathName& path) {
    require(!path.isFile() || path.exists());
    require(!path.isEmpty() || !path.exists());
    path.isHidden();
    path.getShortForm();
    require(path.isEmpty() || !path.isUnc() || path.networkState() == 1);
    checkText(path.getUncForm());
}

}  // namespace
}  // namespace juntora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using juntora::CString;
    using juntora::PathName;
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t line = input.find('\n');
    const std::string text = input.substr(0, line);
    const std::string second = line == std::string::npos ? "" : input.substr(line + 1);

    const PathName path{CString(text)};
    juntora::require(std::string_view(path.getEntered(), text.size()) == text);
    juntora::require(std::string_view(PathName(path.c_str()).c_str()) == path.c_str());
    const PathName base(second.c_str());
    const PathName below(text.c_str(), second.c_str());
    for (const PathName& each : {path, base, below}) {
        juntora::checkText(each);
        juntora::checkParts(each);
        juntora::checkForms(each, static_cast<int>(size % 40));
        juntora::checkLegality(each);
        juntora::checkChanges(each, second);
        juntora::checkFiles(each);
    }
    juntora::checkComponents(path);
    juntora::checkRelative(path, base);
    return 0;
}
