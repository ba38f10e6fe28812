// The hash by which the segment's buckets are found. Programs of different builds search the same
// buckets, so that it must not depend on a library: FNV-1a.
#pragma once

#include <cstdint>
#include <string_view>

namespace juntora::desktop {

inline constexpr std::uint32_t HASH_START = 2166136261U;

/// The hash of a text of which `hash` is that of all bytes before this one.
constexpr std::uint32_t hashOn(std::uint32_t hash, char byte) {
    return (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
}

constexpr std::uint32_t hashOf(std::string_view text) {
    std::uint32_t hash = HASH_START;
    for (const char c : text) {
        hash = hashOn(hash, c);
    }
    return hash;
}

}  // namespace juntora::desktop
