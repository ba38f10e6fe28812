// Paths as texts: normal form, parts, changes, and the forms for others.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/PathName.h"
#include "platform/files/paths.h"

namespace juntora {
namespace {

using Texts = std::vector<std::string>;

std::string currentDirectory() {
    char current[1024];
    return CurrentDirectory(current, sizeof current);
}

PathName pathOf(const std::string& text) { return PathName(text.c_str()); }

std::string textOf(const CString& text) { return static_cast<const char*>(text); }

std::string part(const PathName& path, void (PathName::*read)(CString&) const) {
    CString out("left over");
    (path.*read)(out);
    return textOf(out);
}

std::string extension(const PathName& path, bool keepDot) {
    CString out("left over");
    path.getExtension(out, keepDot);
    return textOf(out);
}

TEST(PathTest, HasOneNormalForm) {
    const struct {
        const char* text;
        std::string path;
    } cases[] = {
        {"", ""},
        {"/home/me/x.opj", "C:\\home\\me\\x.opj"},
        {"C:/home//me\\\\\\x.opj", "C:\\home\\me\\x.opj"},
        {"C:\\home\\.\\you\\..\\me\\x.opj", "C:\\home\\me\\x.opj"},
        {"//server//share/a/../f", "\\\\server\\share\\f"},
        {"\\\\\\server\\share", "\\\\server\\share"},
        {"/..", "C:\\"},
        {"///", "\\\\"},
        {"C:\\a\\", "C:\\a\\"},
        {"d:\\A.b\xE4\x01 ", "d:\\A.b\xE4\x01 "},
        {"/a...b/.c./..d", "C:\\a...b\\.c.\\..d"},
        {"x/./y", currentDirectory() + "\\x\\y"},
        {".", currentDirectory()},
    };
    for (const auto& each : cases) {
        const PathName path(each.text);
        EXPECT_EQ(path.c_str(), each.path) << each.text;
        EXPECT_EQ(textOf(path.getEntered()), each.text);
        EXPECT_EQ(path.length(), static_cast<int>(each.path.size()));
        EXPECT_EQ(path.isEmpty(), each.path.empty());
        EXPECT_STREQ(PathName(path.c_str()).c_str(), path.c_str());
    }
    EXPECT_EQ(PathName("/home/me/A.opj"), PathName("C:\\HOME/ME\\.\\a.OPJ"));
    EXPECT_FALSE(PathName("/a") == PathName());
}

TEST(PathTest, TakesAnyLength) {
    for (const std::size_t length : {255, 259, 260, 519, 520, 521, 4096, 100'000}) {
        const std::string name(length - 3, 'n');
        const PathName path = pathOf("/" + name);
        EXPECT_EQ(path.length(), static_cast<int>(length));
        EXPECT_EQ(part(path, &PathName::getBaseName), name);
        EXPECT_EQ(pathOf("//" + std::string(length, '/') + "a/s/./b/../c").c_str(),
                  std::string("\\\\a\\s\\c"));
        EXPECT_EQ(pathOf(name).c_str(), currentDirectory() + "\\" + name);
        const PathName dots("x", std::string(length, '.').c_str());
        EXPECT_EQ(dots.c_str(), std::string(length, '.') + "\\x");
    }
    std::string steps;
    for (int i = 0; i < 50'000; ++i) {
        steps += "\\a\\..";
    }
    EXPECT_STREQ(PathName((steps + "\\x").c_str(), "C:").c_str(), "C:\\x");
}

TEST(PathTest, TakesATextBelowABase) {
    const struct {
        const char* path;
        const char* base;
        const char* expected;
    } cases[] = {
        {"x.opj", "C:/desk//a", "C:\\desk\\a\\x.opj"},
        {"..\\x", "C:\\a\\b", "C:\\a\\x"},
        {".\\x", "C:\\a", "C:\\a\\x"},
        {"...\\x", "C:\\a\\b\\c", "C:\\a\\x"},
        {"b\\..\\..\\c\\.\\d", "C:\\a", "C:\\c\\d"},
        {"..", "C:\\a", "C:\\a\\.."},
        {".", "C:\\a", "C:\\a\\."},
        {"..\\..\\.\\x", "a\\b", "a\\..\\.\\x"},
        {"..\\x", "a", "a\\..\\x"},
        {".hidden\\..x\\y", "C:\\a", "C:\\a\\.hidden\\..x\\y"},
        {"", "C:\\a", "C:\\a\\"},
        {"", "a\\", "a\\\\"},
        {"", "ab\\", "ab\\"},
        {"x", "", "\\x"},
    };
    for (const auto& each : cases) {
        const PathName path(each.path, each.base);
        EXPECT_STREQ(path.c_str(), each.expected);
        EXPECT_EQ(textOf(path.getEntered()), each.path);
    }
    EXPECT_EQ(PathName("x", nullptr).c_str(), currentDirectory() + "\\x");
    EXPECT_TRUE(PathName("", nullptr).isEmpty());
    EXPECT_TRUE(PathName(nullptr, nullptr).isEmpty());
}

TEST(PathTest, HasParts) {
    const struct {
        const char* path;
        Texts parts;  // Drive, directory alone, base name, extension.
        const char* parent;
        const char* uncRoot;
        int extensionAt;
        int driveLetter;
        Texts components;
    } cases[] = {
        {"C:\\desk\\board.v2.opj",
         {"C:", "\\desk\\", "board.v2", ".opj"},
         "C:\\desk",
         "",
         16,
         1,
         {"C:", "desk", "board.v2.opj"}},
        {"C:\\a.b\\c", {"C:", "\\a.b\\", "c", ""}, "C:\\a.b", "", -1, 1, {"C:", "a.b", "c"}},
        {"C:\\", {"C:", "\\", "", ""}, "C:", "", -1, 1, {"C:"}},
        {"1:\\.x.", {"1:", "\\", ".x", "."}, "1:", "", 5, 0, {"1:", ".x."}},
        {"\\\\s\\share\\d\\f.x",
         {"", "\\\\s\\share\\d\\", "f", ".x"},
         "\\\\s\\share\\d",
         "\\\\s\\share",
         13,
         -1,
         {"s", "share", "d", "f.x"}},
        {"\\\\s", {"", "\\\\", "s", ""}, "\\", "\\\\s\\", -1, -1, {"s"}},
        {"", {"", "", "", ""}, "", "", -1, -1, {}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.path);
        const PathName path(each.path);
        const Texts& expected = each.parts;
        const std::string directory = expected[0] + expected[1];
        EXPECT_EQ(part(path, &PathName::getDrive), expected[0]);
        EXPECT_EQ(part(path, &PathName::getDirOnly), expected[1]);
        EXPECT_EQ(part(path, &PathName::getBaseName), expected[2]);
        EXPECT_EQ(extension(path, true), expected[3]);
        EXPECT_EQ(extension(path, false), expected[3].empty() ? "" : expected[3].substr(1));
        EXPECT_EQ(part(path, &PathName::getFileName), expected[2] + expected[3]);
        EXPECT_EQ(part(path, &PathName::getDirectory), directory);
        EXPECT_EQ(part(path, &PathName::getStem), directory + expected[2]);
        EXPECT_EQ(part(path, &PathName::getUncRoot), each.uncRoot);
        EXPECT_EQ(path.extensionPosition(), each.extensionAt);
        EXPECT_EQ(path.hasDriveLetter(), each.driveLetter);
        EXPECT_EQ(path.isUnc(), each.uncRoot[0] != '\0');
        PathName parent("left over");
        path.getParent(parent);
        EXPECT_STREQ(parent.c_str(), each.parent);
        EXPECT_EQ(textOf(parent.getEntered()), directory);
        const int count = static_cast<int>(each.components.size());
        for (int i = -1; i < count + 2; ++i) {
            CString component("left over");
            path.getComponent(component, i);
            EXPECT_EQ(textOf(component), i >= 0 && i < count ? each.components[i] : "") << i;
        }
    }
}

TEST(PathTest, ChangesItsParts) {
    const struct {
        const char* path;
        const char* extension;
        const char* withExtension;
        const char* withName;  // With the base name "n".
        const char* appended;  // With "x//y".
        const char* moved;     // To "/other".
    } cases[] = {
        {"C:\\a\\b.opj", "dat", "C:\\a\\b.dat", "C:\\a\\n.opj", "C:\\a\\b.opj\\x\\y",
         "C:\\other\\b.opj"},
        {"C:\\a\\b.c.d", ".dat", "C:\\a\\b.c.dat", "C:\\a\\n.d", "C:\\a\\b.c.d\\x\\y",
         "C:\\other\\b.c.d"},
        {"C:\\a.b\\c", "", "C:\\a.b\\c", "C:\\a.b\\n", "C:\\a.b\\c\\x\\y", "C:\\other\\c"},
        {"C:\\a\\b.opj", "", "C:\\a\\b", "C:\\a\\n.opj", "C:\\a\\b.opj\\x\\y", "C:\\other\\b.opj"},
        {"C:\\", ".", "C:\\.", "C:\\n", "C:\\x\\y", "C:\\other\\"},
        {"", "e", ".e", "n", "\\x\\\\y", "C:\\other\\"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.path);
        const PathName start(each.path);
        CString old("left over");
        PathName path = start;
        path.setExtension(old, each.extension);
        EXPECT_STREQ(path.c_str(), each.withExtension);
        EXPECT_EQ(textOf(old), extension(start, false));
        EXPECT_EQ(textOf(path.getEntered()), each.path);

        path.setPath(each.path);
        path.setBaseName(old, "n");
        EXPECT_STREQ(path.c_str(), each.withName);
        EXPECT_EQ(textOf(old), part(start, &PathName::getBaseName));

        path.setPath(each.path);
        path.append("x//y");
        EXPECT_STREQ(path.c_str(), each.appended);
        EXPECT_STREQ(path.getEntered(), *each.path == '\0' ? each.appended : each.path);

        path.setPath(each.path);
        PathName parent;
        path.setDirectory(parent, "/other");
        EXPECT_STREQ(path.c_str(), each.moved);
        EXPECT_STREQ(path.getEntered(), each.moved);
        PathName expected;
        start.getParent(expected);
        EXPECT_STREQ(parent.c_str(), expected.c_str());
    }
    PathName own("/a/b.x");
    own.setDirectory(own, PathName("/other"));
    EXPECT_STREQ(own.c_str(), "C:\\other\\b.x");
    own.getParent(own);
    EXPECT_STREQ(own.c_str(), "C:\\other");
}

TEST(PathTest, CopiesWithWhatItWasMadeFromAndAssignsWithout) {
    const PathName made("/a/./b");
    EXPECT_STREQ(PathName(made).getEntered(), "/a/./b");
    PathName assigned("/x");
    assigned = made;
    EXPECT_STREQ(assigned.c_str(), "C:\\a\\b");
    EXPECT_STREQ(assigned.getEntered(), "C:\\a\\b");
    assigned.setPath("");
    EXPECT_TRUE(assigned.isEmpty());
    EXPECT_STREQ(assigned.getEntered(), "C:\\a\\b");
    assigned.clear();
    EXPECT_STREQ(assigned.getEntered(), "");
}

TEST(PathTest, IsSeenFromADirectory) {
    const struct {
        const char* path;
        const char* base;
        const char* below;    // Without the permission to go up.
        const char* through;  // With it.
    } cases[] = {
        {"C:\\desk\\a\\b\\c.x", "C:\\desk\\a", "b\\c.x", "b\\c.x"},
        {"c:\\DESK\\A\\b", "C:\\desk\\a", "b", "b"},
        {"C:\\desk\\abc", "C:\\desk\\a", "\\desk\\abc", "..\\abc"},
        {"C:\\other\\x\\", "C:\\desk\\a", "\\other\\x\\", "..\\..\\other\\x"},
        {"C:\\Desk\\x", "C:\\desk\\y", "\\Desk\\x", "..\\..\\Desk\\x"},
        {"C:\\desk", "C:\\desk\\a", "\\desk", "..\\"},
        {"C:\\desk\\A", "C:\\desk\\a", ".", "."},
        {"C:\\desk\\a", "C:\\desk\\a\\", "\\desk\\a", "."},
        {"C:\\x", "C:\\", "\\x", "x"},
        {"D:\\x", "C:\\desk", "D:\\x", "D:\\x"},
        {"\\\\s\\share\\x", "\\\\S\\SHARE\\y\\z", "\\\\s\\share\\x", "..\\..\\x"},
        {"\\\\s\\share\\x", "\\\\s\\shar\\y", "\\\\s\\share\\x", "\\\\s\\share\\x"},
        {"C:\\x", "", "C:\\x", "C:\\x"},
        {"", "C:\\", "", ""},
        {"", "", "", ""},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::string(each.path) + " from " + each.base);
        const PathName path(each.path);
        EXPECT_EQ(textOf(path.makeRelative(each.base, false)), each.below);
        EXPECT_EQ(textOf(path.makeRelative(each.base, true)), each.through);
    }
    EXPECT_EQ(textOf(PathName("a/b").makeRelative(nullptr, true)), "a\\b");
    // Made below a base that has no drive: there is no way from the drive of the other base.
    EXPECT_EQ(textOf(PathName("x", "Call").makeRelative("C", true)), "Call\\x");
}

TEST(PathTest, AbbreviatesFromTheFront) {
    const struct {
        const char* path;
        int maxLength;
        const char* expected;
        int length;
    } cases[] = {
        {"C:\\desk\\designs\\board.opj", 25, "C:\\desk\\designs\\board.opj", 25},
        {"C:\\desk\\designs\\board.opj", 24, "C:\\...\\designs\\board.opj", 24},
        {"C:\\desk\\designs\\board.opj", 23, "C:\\...\\board.opj", 16},
        {"C:\\desk\\designs\\board.opj", 16, "C:\\...\\board.opj", 16},
        {"C:\\desk\\designs\\board.opj", 15, "C:\\...\\board...", 15},
        {"C:\\desk\\designs\\board.opj", 14, "", -15},
        {"C:\\desk\\designs\\board.opj", 7, "", -15},
        {"C:\\desk\\designs\\board.opj", 6, "", -16},
        {"C:\\desk\\designs\\board.opj", -1, "", -16},
        {"C:\\desk\\designs\\board.opj", 0, "", 0},
        {"\\\\srv\\share\\dir\\file.txt", 23, "\\\\srv\\...\\dir\\file.txt", 22},
        {"\\\\srv", 3, "", -5},
        {"C:\\", 2, "", -7},
        {"", 5, "", 0},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::to_string(each.maxLength) + " of " + each.path);
        const PathName path(each.path);
        int length = 4711;
        EXPECT_EQ(textOf(path.abbreviate(each.maxLength, &length)), each.expected);
        EXPECT_EQ(length, each.length);
    }
    EXPECT_TRUE(PathName("/a").abbreviate(100, nullptr).IsEmpty());
}

TEST(PathTest, HasANameForDisplay) {
    const struct {
        bool withDirectory;
        bool limited;
        int maxLength;
        const char* expected;
        int length;
    } cases[] = {
        {false, false, 0, "my board.opj", 12},
        {false, true, 12, "my board.opj", 12},
        {false, true, 11, "my board...", 11},
        {false, true, 8, "my bo...", 8},
        {false, true, 7, "my board.opj", -8},
        {true, false, 0, "C:\\desk\\my board.opj", 20},
        {true, true, 19, "C:\\...\\my board.opj", 19},
    };
    const PathName path("/desk/my board.opj");
    for (const auto& each : cases) {
        int length = 4711;
        EXPECT_EQ(
            textOf(path.getDisplayName(each.withDirectory, each.limited, each.maxLength, &length)),
            each.expected);
        EXPECT_EQ(length, each.length) << each.expected;
    }
    EXPECT_EQ(textOf(path.getDisplayName(true, false, 0, nullptr)), path.c_str());
    const std::string longName(300, 'n');
    EXPECT_EQ(textOf(pathOf("/" + longName).getDisplayName(false, false, 0, nullptr)), longName);
    EXPECT_TRUE(PathName().getDisplayName(true, false, 0, nullptr).IsEmpty());
}

}  // namespace
}  // namespace juntora
