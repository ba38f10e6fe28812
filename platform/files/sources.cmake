# The files part of the platform's target, relative to platform/.
set(PLATFORM_FILES_SOURCES
    files/DriveLinks.cpp
    files/FileState.cpp
    files/FullPath.cpp
    files/HostPath.cpp
    files/MountTable.cpp
    files/Wildcard.cpp
    files/drives.cpp
    files/installRoot.cpp
    files/paths.cpp
    files/search.cpp
    files/shell.cpp
    files/status.cpp
    files/temporaryFiles.cpp
    files/wholeFile.cpp)
