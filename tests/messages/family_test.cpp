// That every way to call the family of message functions compiles, and no other. The lists are what
// the suite's tools call them with: a letter a parameter, S for the framework's string by value.
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "messages/messageFamily.h"

namespace juntora {
namespace {

template <char Letter>
auto typeOf() {
    if constexpr (Letter == 'c') {
        return char{};
    } else if constexpr (Letter == 'i') {
        return int{};
    } else if constexpr (Letter == 'l') {
        return long{};
    } else if constexpr (Letter == 'k') {
        return static_cast<unsigned long>(0);
    } else if constexpr (Letter == 'd') {
        return double{};
    } else if constexpr (Letter == 's') {
        return static_cast<const char*>(nullptr);
    } else if constexpr (Letter == 'S') {
        return CString();
    }
}
template <char Letter>
using TypeOf = decltype(typeOf<Letter>());

template <class... Types>
constexpr bool isTextOffered = requires(std::string* out, NvStatus* status,
                                        const Types&... parameters) {
    { getMessageText(out, "", 0UL, parameters...) } -> std::same_as<int>;
    { getMessageBody(out, "", 0UL, parameters...) } -> std::same_as<int>;
    { addStatusMessage(status, "", 0UL, nullptr, parameters...) } -> std::same_as<nvm_error_code>;
};
template <class... Types>
constexpr bool isBoxOffered = requires(const DnsButtonLabels* labels, const Types&... parameters) {
    { showMessageBox("", 0UL, 0U, 0U, parameters...) } -> std::same_as<int>;
    { showMessageDialog("", 0UL, 0U, 0U, 0U, 1, parameters...) } -> std::same_as<int>;
    { showMessageDialog("", 0UL, 0U, 0U, 0U, 1, labels, parameters...) } -> std::same_as<int>;
};

/// A list of signatures between blanks as a template's argument.
template <std::size_t Size>
struct List {
    constexpr List(const char (&text)[Size]) { std::copy_n(text, Size, characters); }
    char characters[Size]{};

    constexpr std::size_t endOf(std::size_t start) const {
        while (characters[start] != ' ' && characters[start] != '\0') {
            ++start;
        }
        return start;
    }
};

/// Whether `isOffered` holds for each signature of the list from `Start` on.
template <template <class...> class IsOffered, List list, std::size_t Start = 0>
constexpr bool allOffered() {
    constexpr std::size_t end = list.endOf(Start);
    constexpr bool isOffered = []<std::size_t... Index>(std::index_sequence<Index...>) {
        return IsOffered<TypeOf<list.characters[Start + Index]>...>::value;
    }
    (std::make_index_sequence<end - Start>());
    if constexpr (list.characters[end] == '\0') {
        return isOffered;
    } else {
        return isOffered && allOffered<IsOffered, list, end + 1>();
    }
}

template <class... Types>
struct Text : std::bool_constant<isTextOffered<Types...>> {};
template <class... Types>
struct Box : std::bool_constant<isBoxOffered<Types...>> {};

static_assert(
    allOffered<Text,
               "c d i k l s ci cs dd ds id ii is ll sc sd si sk ss ddd dds dii dsd dss idd iic iid "
               "iii iis iss lls sdd sds sii sis ski skk sks sll ssd ssi sss dddd iiii isss sdds "
               "siii sksk ssii sssd ssss dddds iiiii iissi iisss illll sssss kkkkkk sidiii skksll "
               "ssssii ssssll ssssss ssssiii ssssllll ssssssss">());
static_assert(allOffered<Box,
                         "d i k l s dd ds ii is ll ls sd si sk ss ddd dds dsd dss lss sdd sds sks "
                         "ssd sss siss ssss">());
static_assert(allOffered<Box, "dS iS lS Sd SS ddS dSd dSS Sdd SdS SiS SSd SSS sS Ss lS S ssS">());
static_assert(isTextOffered<> && isBoxOffered<>);
static_assert(isTextOffered<char[5]> && isBoxOffered<char*>, "a literal, an array, a buffer");

template <class... Types>
constexpr bool areNone = (!MessageParameter<Types> && ...);
static_assert(areNone<float, bool, unsigned, short, long long, unsigned char, signed char*,
                      char32_t, std::nullptr_t, const void*, std::string, std::string_view>);
static_assert(!isTextOffered<float> && !isBoxOffered<float>);

TEST(FamilyTest, HandsEachParameterOnInOrderAndByItsType) {
    tvErrorManager::getInstance()->loadModuleCatalogs("TVCOMMN");
    NvStatus status(false);
    EXPECT_EQ(addStatusMessage(&status, "TVCOMMN", 11077, nullptr, 'x', 5), NVM_OK);
    EXPECT_EQ(addStatusMessage(&status, "TVCOMMN", 11077, nullptr, -1L, ~0UL), NVM_OK);
    EXPECT_EQ(addStatusMessage(&status, "TVCOMMN", 11077, nullptr, 0.25, CString("s")), NVM_OK);
    EXPECT_EQ(addStatusMessage(&status, "TVCOMMN", 11077, nullptr, "s"), NVM_WRONG_PARAMETERS);
    EXPECT_EQ(addStatusMessage(&status, "TVCOMMN", 9, nullptr), NVM_NO_SUCH_MESSAGE);
    std::string texts;
    NvString text;
    status.initPosition(nullptr);
    while (const auto* message = static_cast<const NvMessage*>(status.getNext(nullptr))) {
        message->getSubstitutedDesc(&text, false);
        texts += std::string(text) + "\n";
    }
    EXPECT_EQ(texts,
              "Registration done for x: 5\nRegistration done for -1: 18446744073709551615\n"
              "Registration done for 0.25: s\nRegistration done for s: %2\n");
}

}  // namespace
}  // namespace juntora
