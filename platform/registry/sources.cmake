# The registry part of the platform's target, relative to platform/.
set(PLATFORM_REGISTRY_SOURCES
    registry/Database.cpp
    registry/Hive.cpp
    registry/HiveFile.cpp
    registry/KeyHandles.cpp
    registry/KeyPath.cpp
    registry/OpenKey.cpp
    registry/Patience.cpp
    registry/keys.cpp
    registry/text.cpp
    registry/values.cpp)
