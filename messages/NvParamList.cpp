#include "messages/NvParamList.h"

#include <charconv>
#include <cstdio>

namespace juntora {
namespace {

/// The signs of a number in decimal, in the object itself.
class Decimal {
public:
    template <class Number>
    explicit Decimal(Number value)
        : m_end(std::to_chars(m_text, m_text + sizeof m_text, value).ptr) {}
    operator std::string_view() const { return {m_text, static_cast<std::size_t>(m_end - m_text)}; }

private:
    char m_text[24];
    const char* m_end;
};

}  // namespace

void NvList::add(std::string_view text) {
    if (m_count < MOST_KEPT) {
        m_texts += text;
        m_ends[m_count] = m_texts.size();
    }
    ++m_count;
}

void NvParamList::addParameterToList(char value) { m_list.add({&value, value == '\0' ? 0U : 1U}); }
void NvParamList::addParameterToList(int value) { m_list.add(Decimal(value)); }
void NvParamList::addParameterToList(long value) { m_list.add(Decimal(value)); }
void NvParamList::addParameterToList(unsigned long value) { m_list.add(Decimal(value)); }

void NvParamList::addParameterToList(double value) {
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%g", value);
    m_list.add({text, static_cast<std::size_t>(length)});
}

void NvParamList::addParameterToList(const char* value) { m_list.add(value ? value : ""); }

}  // namespace juntora
