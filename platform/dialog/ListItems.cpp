#include "platform/dialog/ListItems.h"

#include <algorithm>
#include <array>
#include <ranges>

namespace juntora::dialog {
namespace {

constexpr bool isDigit(unsigned byte) { return byte >= '0' && byte <= '9'; }
constexpr bool isLower(unsigned byte) { return byte >= 'a' && byte <= 'z'; }
constexpr bool isUpper(unsigned byte) { return byte >= 'A' && byte <= 'Z'; }

/// A byte's place in the collating order; the same for both cases of a letter.
constexpr std::array<std::uint16_t, 256> WEIGHTS = [] {
    std::array<std::uint16_t, 256> weights{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        const unsigned folded = isUpper(byte) ? byte - 'A' + 'a' : byte;
        const unsigned kind = folded > 127 ? 3 : isLower(folded) ? 2 : isDigit(folded) ? 1 : 0;
        weights[byte] = static_cast<std::uint16_t>(kind << 8 | folded);
    }
    return weights;
}();

std::uint16_t weightOf(char character) { return WEIGHTS[static_cast<unsigned char>(character)]; }

bool standsBefore(std::string_view left, std::string_view right) {
    const int order = CollateCaseBlind(left, right);
    return order != 0 ? order < 0 : left < right;
}

}  // namespace

int CollateCaseBlind(std::string_view left, std::string_view right) {
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t at = 0; at < common; ++at) {
        const int difference = weightOf(left[at]) - weightOf(right[at]);
        if (difference != 0) {
            return difference;
        }
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

std::size_t ListItems::add(std::string_view text) {
    std::size_t index = count();
    if (m_wantsSorted) {
        const auto place = std::ranges::upper_bound(
            m_order, text, standsBefore,
            [this](std::uint32_t at) { return std::string_view(m_texts[at]); });
        index = static_cast<std::size_t>(place - m_order.begin());
    }
    const bool wasSorted = m_isSorted;
    insert(index, text);
    m_isSorted = wasSorted;
    return index;
}

void ListItems::insert(std::size_t index, std::string_view text) {
    std::string copy(text);
    // Room first, so that nothing is half added when there is no memory.
    if (m_order.size() == m_order.capacity()) {
        m_order.reserve(m_order.size() * 2 + 8);
    }
    std::uint32_t place = static_cast<std::uint32_t>(m_texts.size());
    if (m_free.empty()) {
        m_texts.push_back(std::move(copy));
    } else {
        place = m_free.back();
        m_free.pop_back();
        m_texts[place] = std::move(copy);
    }
    m_order.insert(m_order.begin() + static_cast<std::ptrdiff_t>(index), place);
    m_isSorted = false;
}

void ListItems::remove(std::size_t index) {
    const std::uint32_t place = m_order[index];
    m_free.push_back(place);
    m_texts[place] = std::string();
    m_order.erase(m_order.begin() + static_cast<std::ptrdiff_t>(index));
}

void ListItems::clear() {
    m_order.clear();
    m_texts.clear();
    m_free.clear();
    m_isSorted = m_wantsSorted;
}

std::optional<std::size_t> ListItems::findExact(std::optional<std::size_t> after,
                                                std::string_view text) const {
    const std::size_t start = after && *after + 1 < count() ? *after + 1 : 0;
    return m_isSorted ? findSorted(start, text) : findInWalk(start, text);
}

std::optional<std::size_t> ListItems::findSorted(std::size_t start, std::string_view text) const {
    const auto isBefore = [](std::string_view left, std::string_view right) {
        return CollateCaseBlind(left, right) < 0;
    };
    const auto textAt = [this](std::uint32_t at) { return std::string_view(m_texts[at]); };
    const auto first = std::ranges::lower_bound(m_order, text, isBefore, textAt);
    const auto behind = std::ranges::upper_bound(m_order, text, isBefore, textAt);
    if (first == behind) {
        return std::nullopt;
    }
    const auto from = m_order.begin() + static_cast<std::ptrdiff_t>(start);
    return static_cast<std::size_t>((first < from && from < behind ? from : first) -
                                    m_order.begin());
}

std::optional<std::size_t> ListItems::findInWalk(std::size_t start, std::string_view text) const {
    for (std::size_t step = 0; step < count(); ++step) {
        const std::size_t index = (start + step) % count();
        if (CollateCaseBlind(at(index), text) == 0) {
            return index;
        }
    }
    return std::nullopt;
}

}  // namespace juntora::dialog
