// A file path as a value.
//
// Two ways of writing a file's path give one text here, the normal form: absolute, backslashes
// only, no doubled separators but for the two in front of a server's name, no `.` and `..`.
// Comparing two paths is comparing two texts. Case is kept, and never counts in comparisons.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "framework/CString.h"

namespace juntora {

/// Which of a file's times is meant.
enum class FileTime { ACCESS, MODIFY, CREATE };

/// A file's path in normal form, and the text that it was made from. An empty path names no file:
/// each part of it is empty. Paths may be of any length; a text ends at a NUL.
///
/// Nothing here throws or complains: what the platform refuses leaves the text as far as it got.
/// Out arguments may be the object itself. Objects are independent of each other; one object is for
/// one thread at a time.
class PathName {
public:
    PathName() = default;
    PathName(const PathName& other) = default;
    PathName(PathName&& other) noexcept = default;
    /// From any text. A relative one is taken from the current directory.
    explicit PathName(CString path);
    /// The path `path` below the directory `base`, by the text alone: absolute only if `base` is. A
    /// null `base` stands for the current directory.
    PathName(const char* path, const char* base);
    ~PathName() = default;

    /// Takes the other's normal form for both texts: what it was made from isn't carried over.
    PathName& operator=(const PathName& other);
    /// Exchanges both texts; cannot fail.
    void swap(PathName& other) noexcept {
        std::swap(m_strPath, other.m_strPath);
        std::swap(m_strEntered, other.m_strEntered);
    }

    void clear();
    /// Takes the normal form of `path`; what the object was made from stays.
    void setPath(const CString& path);

    // Parts ---------------------------------------------------------------------------------------

    bool isEmpty() const { return m_strPath.IsEmpty(); }
    /// Whether the path begins with a server: `\\server\share\...`.
    bool isUnc() const;
    int length() const { return m_strPath.GetLength(); }
    /// The normal form; it belongs to the object and lives until the object changes.
    const char* c_str() const { return m_strPath; }
    CString getPath() const { return m_strPath; }
    /// What the path was made from.
    CString getEntered() const { return m_strEntered; }

    /// For `C:\work\board.v2.opj`:
    void getExtension(CString& out, bool keepDot) const;  ///< `opj`, or `.opj` with `keepDot`
    void getBaseName(CString& out) const;                 ///< `board.v2`
    void getFileName(CString& out) const;                 ///< `board.v2.opj`
    void getDirectory(CString& out) const;                ///< `C:\work\`
    void getDirOnly(CString& out) const;                  ///< `\work\`
    void getDrive(CString& out) const;                    ///< `C:`
    void getStem(CString& out) const;                     ///< `C:\work\board.v2`
    void getParent(PathName& out) const;                  ///< `C:\work`, made from `C:\work\`
    /// The stretch number `index` between the backslashes, from 0: the drive, or the server of a
    /// UNC path, is number 0. Empty beyond the last and for a negative index.
    void getComponent(CString& out, int index) const;
    /// `\\server\share`; empty for any other path.
    void getUncRoot(CString& out) const;

    /// Index of the dot in front of the extension; -1 if there is none.
    int extensionPosition() const;
    /// 1 if the path begins with a letter and a colon, 0 if not, -1 if it is empty or a UNC path.
    int hasDriveLetter() const;

    // Changes -------------------------------------------------------------------------------------

    /// Puts `ext`, with or without its dot, in the place of the extension; empty takes it away.
    /// `old` gets what stood there, without its dot.
    void setExtension(CString& old, const CString& ext);
    /// The same for the base name.
    void setBaseName(CString& old, const CString& name);
    /// Goes down by `component`, which may be several.
    void append(const CString& component);
    /// Moves the file name to another directory, which may also be given as a `const char*`. `old`
    /// gets the parent.
    void setDirectory(PathName& old, const CString& dir);
    void setDirectory(PathName& old, const PathName& dir);

    // Comparison and forms for others -------------------------------------------------------------

    /// Whether both name the same file: their normal forms differ at most in case.
    bool operator==(const PathName& other) const;

    /// The path as seen from the directory `base` (null: the current one), which is absolute and in
    /// normal form. With `allowUp` it may begin with `..\`; without, a path that doesn't lie below
    /// `base` only loses the drive, if `base` lies on the same. "." for the base itself.
    CString makeRelative(const char* base, bool allowUp) const;

    /// The path in at most `maxLength` characters, with "..." in the place of what was cut: the
    /// root and as many whole directories from the end as fit. `*length` is the result's length,
    /// or, where nothing sensible fits and the result is empty, minus the length that would be
    /// needed. Empty with a null `length`.
    CString abbreviate(int maxLength, int* length) const;
    /// The file as a person is to see it, with its directory or without; if `limited`, in at most
    /// `maxLength` characters and, with the directory, as `abbreviate` does it. Without directory
    /// at least 8 characters are needed: with fewer the result is whole, and `*length` is -8.
    CString getDisplayName(bool withDirectory, bool limited, int maxLength, int* length) const;

    /// 1 if the path lies on another machine, 0 if its drive isn't connected to one, -2 if there is
    /// no network, -1 if it can't be told.
    int networkState() const;
    /// The path by the names of server and share; empty if its drive stands for none.
    PathName getUncForm() const;

    // Checks: see PathCheck.h ---------------------------------------------------------------------

    /// What the path's volume allows: the longest component, in bytes, and the name of the file
    /// system. 1, or -1.
    int getVolumeInfo(unsigned long* maxComponent, CString* fileSystem) const;
    /// Whether the volume that the path points to allows such a path: 1, or 0, or -1 if that can't
    /// be told. With 0 the reason, a PathError, is written to `error` unless it is null; for some
    /// there is no number.
    int checkForVolume(unsigned long* error) const;
    /// The same by the rules of a kind of file system, a FileSystemKind.
    int checkForKind(int kind, unsigned long* error) const;

    // The file system -----------------------------------------------------------------------------

    /// The entries of the directory that match `pattern` (`*` and `?`), hold all attribute bits of
    /// `mustHave` and none of `mustNotHave`; a bit in both must be there. 1 with an array of
    /// `*count` paths in `*out`, which the caller frees with delete[]; 0 if there are none; -1 if
    /// the path is no directory or can't be read.
    int listDirectory(const CString& pattern, PathName** out, int* count, unsigned long mustHave,
                      unsigned long mustNotHave) const;

    bool exists() const;
    bool isFile() const;
    bool isDirectory() const;
    /// Bytes, -1 on failure.
    std::int64_t fileSize() const;
    /// Seconds since 1970, 0 on failure.
    std::int64_t accessTime() const;
    std::int64_t modifyTime() const;
    std::int64_t createTime() const;
    /// Sets the time of access or of modification, in seconds since 1970 (0: now), and leaves the
    /// other one. 0, or -1 on failure; a file's time of creation can't be set.
    int setTime(FileTime kind, std::int64_t time) const;
    /// 1, 0, or -1 on failure.
    int isReadOnly() const;
    int isHidden() const;
    int isSystem() const;
    int isArchive() const;
    int isCompressed() const;
    /// Deletes a file, but no directory. 0, or 1 on failure.
    int removeFile() const;
    /// Makes an empty file; one that is there stays as it is. 0, or 1 on failure.
    int createEmpty() const;
    /// 0, or 1 on failure.
    int makeDirectory() const;
    /// The path in names of 8 and 3 characters; empty on failure.
    PathName getShortForm() const;

private:
    std::string_view text() const {
        return {c_str(), static_cast<std::size_t>(m_strPath.GetLength())};
    }
    /// Takes a text that is in normal form but for its slashes.
    void store(std::string text);
    int hasAttribute(unsigned long bit) const;

    CString m_strPath;
    CString m_strEntered;
};

}  // namespace juntora
