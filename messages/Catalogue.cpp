#include "messages/Catalogue.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
#include <unordered_set>
#include <utility>

#include <pugixml.hpp>

#include "messages/references.h"
#include "platform/automation/Utf8.h"

namespace juntora {
namespace {

constexpr std::size_t USUAL_MESSAGE = 250;  ///< In bytes of the file.
constexpr unsigned MOST_PARAMETERS = NvList::MOST_KEPT;
constexpr unsigned PARSING = pugi::parse_minimal | pugi::parse_cdata | pugi::parse_eol |
                             pugi::parse_trim_pcdata | pugi::parse_doctype;

constexpr char MODULE[] = "module";
constexpr char NUMBER[] = "number";
constexpr char KIND[] = "kind";

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

/// A part of the file as a complaint shows it.
std::string quoted(std::string_view text) {
    constexpr std::size_t MOST_SHOWN = 40;
    std::string result = "\"";
    result += text.substr(0, MOST_SHOWN);
    return result += text.size() > MOST_SHOWN ? "...\"" : "\"";
}

/// Reads what stands in an element that may hold text alone. Returns what is wrong with it.
std::string readText(const pugi::xml_node& element, std::string_view* text) {
    const pugi::xml_node first = element.first_child();
    const bool isCharacters = first.type() == pugi::node_pcdata;
    if (first && ((!isCharacters && first.type() != pugi::node_cdata) || first.next_sibling())) {
        return "is not one piece of text: characters, or one <![CDATA[...]]>";
    }
    std::string_view bytes = first.value();
    if (isCharacters) {
        // The parser has left them in the catalogue's own bytes.
        const auto decoded = decodeReferences({const_cast<char*>(bytes.data()), bytes.size()});
        if (!decoded) {
            return "has a \"&\" that is none of &amp;, &lt;, &gt;, &quot;, &apos; and &#NUMBER;";
        }
        bytes = *decoded;
    }
    *text = bytes;
    return automation::isBusText(bytes) ? "" : "is not UTF-8";
}

/// For nodes and attributes.
template <class Thing>
bool isNamed(const Thing& thing, const char* name) {
    return std::strcmp(thing.name(), name) == 0;
}

struct Naming {
    pugi::xml_attribute number;
    pugi::xml_attribute kind;
};

/// The attributes of a message; nothing unless it has these two and no other.
std::optional<Naming> namingOf(const pugi::xml_node& element) {
    Naming naming{element.first_attribute(), element.last_attribute()};
    if (isNamed(naming.number, KIND)) {
        std::swap(naming.number, naming.kind);
    }
    const bool areTwo = element.first_attribute().next_attribute() == element.last_attribute();
    return areTwo && isNamed(naming.number, NUMBER) && isNamed(naming.kind, KIND)
               ? std::optional(naming)
               : std::nullopt;
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
    for (unsigned i = 0; used != (1U << parameters) - 1; ++i) {
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
            readMessages(document.document_element(), catalogue->m_document->bytes.size(),
                         &catalogue->m_messages);
        }
        return catalogue;
    }

private:
    bool parse(Catalogue::Document* document) {
        std::string& bytes = document->bytes;
        if (const std::size_t at = bytes.find('\0'); at != std::string::npos) {
            complainAt(at, "there is a zero byte: this is not a text");
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
        if (!isNamed(root, "catalogue")) {
            complain(root, "the outermost element is no <catalogue>");
            return false;
        }
        const pugi::xml_attribute module = root.first_attribute();
        if (!isNamed(module, MODULE) || module.next_attribute() || module.value() != m_module) {
            complain(root, "this is a catalogue of the module " +
                               quoted(root.attribute("module").value()) + ", not of " +
                               quoted(m_module) + " alone");
            return false;
        }
        if (const pugi::xml_node second = root.next_sibling()) {
            complain(second, "there is a <" + std::string(second.name()).substr(0, 40) +
                                 "> behind the <catalogue>: a file has one, and nothing else");
        }
        return true;
    }

    void readMessages(const pugi::xml_node& root, std::size_t bytes,
                      std::vector<CataloguedMessage>* messages) {
        messages->reserve(bytes / USUAL_MESSAGE + 1);
        for (const pugi::xml_node& element : root.children()) {
            if (!isNamed(element, "message")) {
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
                complain(element,
                         "message " + quoted(element.attribute("number").value()) + ": " + mistake);
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
        const auto naming = namingOf(element);
        if (!naming) {
            return "its attributes are not number and kind, once each";
        }
        const auto number = numberOf(naming->number.value());
        if (!number) {
            return "its number is not one from 0 to 4294967295";
        }
        message->number = *number;
        const auto kind = kindOf(naming->kind.value());
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
        for (; isNamed(part, "parameter"); part = part.next_sibling()) {
            ++message->parameters;
        }
        if (message->parameters > MOST_PARAMETERS) {
            return "it has more than nine parameters";
        }
        if (!isNamed(part, "text")) {
            return "it has no <text> behind its parameters";
        }
        std::string mistake = readText(part, &message->text);
        if (!mistake.empty() || message->text.empty()) {
            return "its <text> " + (mistake.empty() ? "is empty" : mistake);
        }
        part = part.next_sibling();
        if (isNamed(part, "help")) {
            mistake = readText(part, &message->help);
            part = part.next_sibling();
        }
        if (!mistake.empty()) {
            return "its <help> " + mistake;
        }
        if (part) {
            return *part.name() != '\0' ? "there is a <" + std::string(part.name()).substr(0, 40) +
                                              "> that does not belong there"
                                        : "there is text outside of its elements";
        }
        return "";
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
