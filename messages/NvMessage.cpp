#include "messages/NvMessage.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "messages/Catalogue.h"

namespace juntora {
namespace {

const char* wordOf(nvm_msg_type type) {
    switch (type) {
        case NVM_ERROR:
            return "ERROR";
        case NVM_WARNING:
            return "WARNING";
        case NVM_INFORMATION:
            return "INFO";
        case NVM_QUESTION:
            return "QUESTION";
        default:
            return "MESSAGE";
    }
}

/// The two blanks are what a reader of the bare text counts on.
void appendName(NvString* out, const std::string& module, const CataloguedMessage& source) {
    char number[10];
    const char* end = std::to_chars(number, number + sizeof number, source.number).ptr;
    out->append(wordOf(source.type));
    out->append("(");
    out->append(std::string_view(module));
    out->append("-");
    out->append(std::string_view(number, static_cast<std::size_t>(end - number)));
    out->append("):  ");
}

/// In one pass, so that a parameter may hold what looks like a placeholder.
void appendFilledIn(NvString* out, std::string_view text, const NvList& parameters) {
    for (;;) {
        const std::size_t mark = text.find('%');
        out->append(text.substr(0, mark));
        if (mark == std::string_view::npos) {
            return;
        }
        text.remove_prefix(mark);
        const char sign = text.size() > 1 ? text[1] : '\0';
        const auto index = static_cast<std::size_t>(sign - '1');  // Large for what is no digit.
        if (sign == '%') {
            out->append("%");
        } else if (index < std::min(parameters.count(), NvList::MOST_KEPT)) {
            out->append(parameters.at(index));
        } else {
            out->append(text.substr(0, 2));
        }
        text.remove_prefix(sign == '\0' ? 1 : 2);
    }
}

}  // namespace

NvMessage::NvMessage(const char* module, const CataloguedMessage& source, const NvList& parameters)
    : m_source(&source), m_type(source.type), m_module(module), m_parameters(parameters) {}

NvMessage::NvMessage(nvm_msg_type type, std::string text)
    : m_source(nullptr), m_type(type), m_text(std::move(text)) {}

void NvMessage::getSubstitutedDesc(NvString* text, bool isNamed) const {
    text->clear();
    if (!m_source) {
        text->append(std::string_view(m_text));
        return;
    }
    text->reserve(m_source->text.size() + 64);
    if (isNamed) {
        appendName(text, m_module, *m_source);
    }
    appendFilledIn(text, m_source->text, m_parameters);
}

const NvString& NvMessage::getExtHelp() const {
    if (!m_help) {
        m_help.emplace(m_source ? m_source->help : std::string_view());
    }
    return *m_help;
}

}  // namespace juntora
