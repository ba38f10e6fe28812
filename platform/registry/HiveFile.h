// The files of the two hives: where they lie, whether they can be trusted, and making them.
#pragma once

#include <string>

#include "platform/types.h"

namespace juntora::registry {

enum class HiveKind { USER, MACHINE };

/// Why a hive cannot be had, for a person: which file and what to do. Empty where the error says
/// all.
using Problem = std::string;

/// One file as the disk has it.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// Sets the path of a hive's file, by the environment of now.
DWORD locateHive(HiveKind kind, std::string* path, Problem* problem);

/// Looks at the file: ERROR_FILE_NOT_FOUND if none is there, an error with a problem if it or its
/// folder could have been written by others. Never opens the file: closing it again would drop the
/// locks that this process has on it.
DWORD checkHiveFile(HiveKind kind, const std::string& path, FileIdentity* identity,
                    Problem* problem);

/// Makes the folder of the file, where it is missing, with those above it.
DWORD makeHiveFolder(HiveKind kind, const std::string& path, Problem* problem);

/// Whether no program of this user can put anything beside the file.
bool isInReadOnlyFolder(const std::string& path);

/// A new, empty file of the hive's mode beside `path`, gone from the disk with this object.
class DraftFile {
public:
    DraftFile(HiveKind kind, const std::string& path);
    ~DraftFile();
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    /// Empty, with errno, if it could not be made.
    const std::string& path() const { return m_path; }
    /// Gives it the name `path` as well. True also if something has that name already.
    bool publish(const std::string& path) const;

private:
    std::string m_path;
};

}  // namespace juntora::registry
