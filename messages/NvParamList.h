// The parameters of a message, in the order of its placeholders.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace juntora {

/// Texts by position, from 0: what a message keeps of its parameters. One allocation for all of
/// them: a text is got where a person waits, but also where a tool logs.
class NvList {
public:
    /// As many as placeholders can be told apart. Further ones are counted and not kept.
    static constexpr std::size_t MOST_KEPT = 9;

    std::size_t count() const { return m_count; }
    /// `index` is below count() and MOST_KEPT. Good until the list changes.
    std::string_view at(std::size_t index) const {
        const std::size_t start = index == 0 ? 0 : m_ends[index - 1];
        return std::string_view(m_texts).substr(start, m_ends[index] - start);
    }
    void add(std::string_view text);

private:
    std::string m_texts;  ///< One behind the other.
    std::size_t m_ends[MOST_KEPT]{};
    std::size_t m_count = 0;
};

/// Takes each parameter as the type that it has, and keeps it as the message will show it: numbers
/// in decimal, a double as printf's "%g" does, a text up to its NUL (null: empty).
class NvParamList {
public:
    /// For a message without parameters.
    void addParameterToList() {}
    void addParameterToList(char value);
    void addParameterToList(int value);
    void addParameterToList(long value);
    void addParameterToList(unsigned long value);
    void addParameterToList(double value);
    void addParameterToList(const char* value);

    /// Belongs to this object.
    const NvList* getParameterList() const { return &m_list; }

private:
    NvList m_list;
};

}  // namespace juntora
