// What values count as.
#include <cmath>
#include <limits>

#include "platform/automation/automation.h"

namespace juntora {

std::optional<VARIANT> ValueAs(VariantKind kind, const VARIANT& value) {
    const auto own = static_cast<VariantKind>(value.index());
    if (own == kind) {
        return value;
    }
    if (kind == VariantKind::NUMBER && own == VariantKind::WHOLE) {
        return static_cast<double>(std::get<LONG>(value));
    }
    if (kind == VariantKind::WHOLE && own == VariantKind::NUMBER) {
        const double number = std::get<double>(value);
        const bool isWhole = std::trunc(number) == number &&
                             number >= std::numeric_limits<LONG>::min() &&
                             number <= std::numeric_limits<LONG>::max();
        return isWhole ? std::optional<VARIANT>(static_cast<LONG>(number)) : std::nullopt;
    }
    return std::nullopt;
}

HRESULT CheckArguments(const DispatchMember& member, std::span<const VARIANT> arguments) {
    if (arguments.size() != member.parameters.size()) {
        return DISP_E_BADPARAMCOUNT;
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (!ValueAs(member.parameters[i], arguments[i])) {
            return DISP_E_TYPEMISMATCH;
        }
    }
    return S_OK;
}

}  // namespace juntora
