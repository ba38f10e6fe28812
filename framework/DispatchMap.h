// Dispatch maps: which member functions of a class other programs may call.
//
//     const AFX_DISPMAP* CMyObject::GetDispatchMap() const {
//         static const AFX_DISPMAP_ENTRY entries[] = {
//             DISP_FUNCTION<&CMyObject::Changed>("Changed"),
//         };
//         static const AFX_DISPMAP map("My.Object", entries);
//         return &map;
//     }
//
// Members are numbered from 1 in their order. A function takes bool, LONG, double, const char* and
// IDispatch* (null is allowed; AddRef what is kept), and LONG* for a number that it may change; it
// returns one of these but the last, or nothing. Numbers are given as one another where nothing is
// lost. What a function throws fails the call and goes no further.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/automation/automation.h"

namespace juntora {

class CCmdTarget;

struct AFX_DISPMAP_ENTRY {
    /// Calls the member; DISP_E_TYPEMISMATCH and DISP_E_BADPARAMCOUNT without having called it.
    using Handler = HRESULT (*)(CCmdTarget& target, std::span<VARIANT> arguments, VARIANT* result);

    const char* name;
    Handler handler;
    VariantKind result;
    std::vector<VariantKind> parameters;
};

class AFX_DISPMAP {
public:
    /// `interfaceName`: under which the members can be called as plain ones on the bus.
    AFX_DISPMAP(const std::string& interfaceName, std::span<const AFX_DISPMAP_ENTRY> entries);

    const DispatchDescription& description() const { return m_description; }
    /// By a member's number; null for none.
    AFX_DISPMAP_ENTRY::Handler find(LONG id) const;

private:
    DispatchDescription m_description;
    std::span<const AFX_DISPMAP_ENTRY> m_entries;
};

namespace detail {

template <class Type>
constexpr VariantKind kindOf() {
    if constexpr (std::is_void_v<Type>) {
        return VariantKind::EMPTY;
    } else if constexpr (std::is_same_v<Type, bool>) {
        return VariantKind::TRUTH;
    } else if constexpr (std::is_same_v<Type, LONG> || std::is_same_v<Type, LONG*>) {
        return VariantKind::WHOLE;
    } else if constexpr (std::is_same_v<Type, double>) {
        return VariantKind::NUMBER;
    } else if constexpr (std::is_same_v<Type, const char*> || std::is_same_v<Type, std::string>) {
        return VariantKind::TEXT;
    } else {
        static_assert(std::is_same_v<Type, IDispatch*>, "a member cannot have this type");
        return VariantKind::OBJECT;
    }
}

/// What a parameter's type takes of a value: nothing where it does not fit.
template <class Type>
std::optional<Type> takeAs(VARIANT& value) {
    if constexpr (std::is_same_v<Type, const char*>) {
        const auto* text = std::get_if<std::string>(&value);
        return text ? std::optional(text->c_str()) : std::nullopt;
    } else if constexpr (std::is_same_v<Type, LONG*>) {
        auto* number = std::get_if<LONG>(&value);
        return number ? std::optional(number) : std::nullopt;
    } else {
        const std::optional<VARIANT> fit = ValueAs(kindOf<Type>(), value);
        return fit ? std::optional(std::get<Type>(*fit)) : std::nullopt;
    }
}

template <class Class, class Result, class... Parameters>
struct Member {
    using Function = Result (Class::*)(Parameters...);

    static VariantKind result() { return kindOf<Result>(); }
    static std::vector<VariantKind> parameters() { return {kindOf<Parameters>()...}; }

    template <Function function>
    static HRESULT call(CCmdTarget& target, std::span<VARIANT> arguments, VARIANT* result) {
        if (arguments.size() != sizeof...(Parameters)) {
            return DISP_E_BADPARAMCOUNT;
        }
        return callWith<function>(static_cast<Class&>(target), arguments, result,
                                  std::index_sequence_for<Parameters...>());
    }

private:
    template <Function function, std::size_t... Index>
    static HRESULT callWith(Class& target, [[maybe_unused]] std::span<VARIANT> arguments,
                            VARIANT* result, std::index_sequence<Index...>) {
        const std::tuple taken(takeAs<Parameters>(arguments[Index])...);
        if (!(true && ... && std::get<Index>(taken).has_value())) {
            return DISP_E_TYPEMISMATCH;
        }
        if constexpr (std::is_void_v<Result>) {
            (target.*function)(*std::get<Index>(taken)...);
        } else {
            *result = (target.*function)(*std::get<Index>(taken)...);
        }
        return S_OK;
    }
};

template <class Class, class Result, class... Parameters>
Member<Class, Result, Parameters...> memberOf(Result (Class::*)(Parameters...));

}  // namespace detail

template <auto Function>
AFX_DISPMAP_ENTRY DISP_FUNCTION(const char* name) {
    using Member = decltype(detail::memberOf(Function));
    return {name, &Member::template call<Function>, Member::result(), Member::parameters()};
}

}  // namespace juntora
