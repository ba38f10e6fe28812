#include "messages/Catalogue.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <unordered_set>
#include <utility>

#include <pugixml.hpp>

#include "platform/automation/Utf8.h"

namespace juntora {
namespace {

constexpr unsigned MOST_PARAMETERS = NvList::MOST_KEPT;
constexpr unsigned PARSING = pugi::parse_minimal | pugi::parse_escapes | pugi::parse_cdata |
                             pugi::parse_eol | pugi::parse_trim_pcdata | pugi::parse_doctype;

struct Kind {
    std::string_view word;
    nvm_msg_type type;
};
constexpr Kind KINDS[] = {{"plain", NVM_PLAIN},
                          {"error", NVM_ERROR},
                          {"warning", NVM_WARNING},
                          {"information", NVM_INFORMATION},
                          {"question", NVM_QUESTION}};

std::optional<nvm_msg_type> kindOf(std::string_view word) {
    for (const Kind& kind : KINDS) {
        if (kind.word == word) {
            return kind.type;
        }
    }
    return std::nullopt;
}

std::optional<std::uint32_t> numberOf(std::string_view text) {
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && behind == end ? std::optional(number) : std::nullopt;
}

/// Where a reference to the character zero stands, which would end a text early; npos for nowhere.
std::size_t findZeroReference(std::string_view bytes) {
    for (std::size_t sign = bytes.find('#'); sign != std::string_view::npos;
         sign = bytes.find('#', sign + 1)) {
        const std::size_t digits = sign + (bytes.substr(sign + 1, 1) == "x" ? 2 : 1);
        const std::size_t end = std::min(bytes.find_first_not_of('0', digits), bytes.size());
        if (end > digits && bytes.substr(end, 1) == ";" && sign > 0 && bytes[sign - 1] == '&') {
            return sign - 1;
        }
    }
    return std::string_view::npos;
}

/// What stands in an element that may hold text alone; nothing where it holds anything else.
std::optional<std::string_view> textIn(const pugi::xml_node& element) {
    const pugi::xml_node first = element.first_child();
    if (!first) {
        return "";
    }
    const bool isText = first.type() == pugi::node_pcdata || first.type() == pugi::node_cdata;
    return isText && !first.next_sibling() ? std::optional(first.value()) : std::nullopt;
}

/// What is wrong with the placeholders of a text, empty if nothing is. Each parameter must be shown
/// and each placeholder have one.
std::string placeholderMistake(std::string_view text, unsigned parameters) {
    unsigned used = 0;
    for (std::size_t at = text.find('%'); at != std::string_view::npos;) {
        const char sign = at + 1 < text.size() ? text[at + 1] : '\0';
        if (sign >= '1' && sign <= '9') {
            used |= 1U << (sign - '1');
        } else if (sign != '%') {
            return "its text has a \"%\" that is neither one of \"%1\" to \"%9\" nor doubled";
        }
        at = text.find('%', at + 2);
    }
    for (unsigned i = 0; i < MOST_PARAMETERS; ++i) {
        const bool isUsed = (used >> i & 1U) != 0;
        if (isUsed != (i < parameters)) {
            std::string mistake = isUsed ? "its text has the placeholder %" : "its parameter ";
            mistake += std::to_string(i + 1);
            mistake += isUsed ? ", and there are " : " is not in its text: %";
            mistake += std::to_string(isUsed ? parameters : i + 1);
            mistake += isUsed ? " parameters" : " is missing";
            return mistake;
        }
    }
    return "";
}

}  // namespace

std::string_view kindWord(nvm_msg_type type) {
    return std::ranges::find(KINDS, type, &Kind::type)->word;
}

/// The texts are where they were in the file's bytes, which the parser has worked over.
struct Catalogue::Document {
    std::string bytes;
    pugi::xml_document xml;
};

Catalogue::Catalogue() : m_document(std::make_unique<Document>()) {}
Catalogue::~Catalogue() = default;

/// One reading: what it reads, and what it has to say of it.
class CatalogueReader {
public:
    CatalogueReader(const std::string& module, Complaints* complaints)
        : m_module(module), m_complaints(complaints) {}

    std::unique_ptr<Catalogue> read(std::string bytes) {
        std::unique_ptr<Catalogue> catalogue(new Catalogue);
        const pugi::xml_document& document = catalogue->m_document->xml;
        catalogue->m_document->bytes = std::move(bytes);
        if (parse(catalogue->m_document.get()) && isOfModule(document.document_element())) {
            readMessages(document.document_element(), &catalogue->m_messages);
        }
        return catalogue;
    }

private:
    bool parse(Catalogue::Document* document) {
        std::string& bytes = document->bytes;
        const std::size_t zero = std::min(bytes.find('\0'), findZeroReference(bytes));
        if (zero != std::string::npos) {
            complainAt(zero, "there is a character zero, which no text may have");
            return false;
        }
        const pugi::xml_parse_result result = document->xml.load_buffer_inplace(
            bytes.data(), bytes.size(), PARSING, pugi::encoding_utf8);
        if (result) {
            return hasNoDocumentType(document->xml);
        }
        complainAt(static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0)),
                   std::string("this is not well-formed XML: ") + result.description());
        return false;
    }

    /// It could name entities, which nothing here would put into the texts.
    bool hasNoDocumentType(const pugi::xml_document& document) {
        for (const pugi::xml_node& node : document.children()) {
            if (node.type() == pugi::node_doctype) {
                complain(node,
                         "a catalogue has no <!DOCTYPE>: what its entities stand for is to be "
                         "written where they are");
                return false;
            }
        }
        return true;
    }

    bool isOfModule(const pugi::xml_node& root) {
        if (root.name() != std::string_view("catalogue")) {
            complain(root, "the outermost element is no <catalogue>");
            return false;
        }
        if (root.attribute("module").value() != m_module) {
            complain(root, std::string("this is a catalogue of the module \"") +
                               root.attribute("module").value() + "\", not of \"" + m_module +
                               "\"");
            return false;
        }
        return true;
    }

    void readMessages(const pugi::xml_node& root, std::vector<CataloguedMessage>* messages) {
        const auto elements = root.children();
        messages->reserve(
            static_cast<std::size_t>(std::distance(elements.begin(), elements.end())));
        for (const pugi::xml_node& element : elements) {
            if (element.name() != std::string_view("message")) {
                complain(element, "only <message> elements may stand here");
                continue;
            }
            CataloguedMessage message{};
            message.offset = offsetOf(element);
            std::string mistake = readMessage(element, &message);
            if (mistake.empty() && isRepeated(message.number, *messages)) {
                mistake = "its number is there already";
            }
            if (mistake.empty()) {
                messages->push_back(message);
            } else {
                complain(element, std::string("message \"") + element.attribute("number").value() +
                                      "\": " + mistake);
            }
        }
    }

    /// Files are written in the order of their numbers; one that is not costs a set of them.
    bool isRepeated(std::uint32_t number, const std::vector<CataloguedMessage>& messages) {
        if (m_numbers.empty()) {
            if (messages.empty() || messages.back().number < number) {
                return false;
            }
            for (const CataloguedMessage& message : messages) {
                m_numbers.insert(message.number);
            }
        }
        return !m_numbers.insert(number).second;
    }

    /// Returns what is wrong.
    static std::string readMessage(const pugi::xml_node& element, CataloguedMessage* message) {
        const auto number = numberOf(element.attribute("number").value());
        if (!number) {
            return "its number is not one from 0 to 4294967295";
        }
        message->number = *number;
        const auto kind = kindOf(element.attribute("kind").value());
        if (!kind) {
            return "its kind is not one of plain, error, warning, information, question";
        }
        message->type = *kind;
        const std::string mistake = readParts(element, message);
        return mistake.empty() ? placeholderMistake(message->text, message->parameters) : mistake;
    }

    /// The elements of a message, in this order: parameters, the text, perhaps a help page.
    static std::string readParts(const pugi::xml_node& element, CataloguedMessage* message) {
        pugi::xml_node part = element.first_child();
        for (; part.name() == std::string_view("parameter"); part = part.next_sibling()) {
            ++message->parameters;
        }
        if (message->parameters > MOST_PARAMETERS) {
            return "it has more than nine parameters";
        }
        const auto text = part.name() == std::string_view("text") ? textIn(part) : std::nullopt;
        if (!text || text->empty()) {
            return "it has no <text> with one piece of text behind its parameters";
        }
        message->text = *text;
        part = part.next_sibling();
        if (part.name() == std::string_view("help")) {
            const auto help = textIn(part);
            if (!help) {
                return "its <help> is not one piece of text: a page stands in one <![CDATA[...]]>";
            }
            message->help = *help;
            part = part.next_sibling();
        }
        if (part) {
            return *part.name() != '\0'
                       ? std::string("there is a <") + part.name() + "> that does not belong there"
                       : "there is text outside of its elements";
        }
        return automation::isBusText(message->text) && automation::isBusText(message->help)
                   ? ""
                   : "its text or its help is not UTF-8";
    }

    static std::uint32_t offsetOf(const pugi::xml_node& node) {
        return static_cast<std::uint32_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
    }

    void complain(const pugi::xml_node& node, const std::string& what) {
        complainAt(offsetOf(node), what);
    }

    void complainAt(std::size_t offset, const std::string& what) {
        m_complaints->add(offset, what);
    }

    const std::string& m_module;
    Complaints* const m_complaints;
    std::unordered_set<std::uint32_t> m_numbers;  ///< Empty while they come in order.
};

std::unique_ptr<Catalogue> Catalogue::read(std::string bytes, const std::string& module,
                                           Complaints* complaints) {
    return CatalogueReader(module, complaints).read(std::move(bytes));
}

}  // namespace juntora
