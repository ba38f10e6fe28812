# The files part of the platform's target, relative to platform/.
set(PLATFORM_FILES_SOURCES
    files/paths.cpp
    files/temporaryFiles.cpp
    files/wholeFile.cpp)
