// Identifiers of classes and interfaces.
#pragma once

#include <array>
#include <compare>
#include <optional>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace juntora {

struct GUID {
    DWORD Data1 = 0;
    WORD Data2 = 0;
    WORD Data3 = 0;
    std::array<BYTE, 8> Data4{};

    friend auto operator<=>(const GUID&, const GUID&) = default;
};

/// "{01234567-89AB-CDEF-0123-456789ABCDEF}", in capitals.
std::string TextOfGuid(const GUID& guid);

/// The identifier in such a text, in letters of either case; nothing for any other text.
std::optional<GUID> GuidOfText(std::string_view text);

/// What every object offers that can be called by name or number.
inline constexpr GUID IID_IDispatch{0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

}  // namespace juntora
