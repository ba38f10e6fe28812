// A catalogue file: the messages of a module, or a part of them (docs/catalogues.md).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "messages/Complaints.h"
#include "messages/NvMessage.h"

namespace juntora {

/// A message as its catalogue has it. The texts belong to the catalogue.
struct CataloguedMessage {
    std::uint32_t number;
    nvm_msg_type type;
    std::uint32_t parameters;  ///< How many it has.
    std::uint32_t offset;      ///< Of its element in the file, in bytes.
    std::string_view text;     ///< With "%1" to "%9" for the parameters, and "%%" for a "%".
    std::string_view help;     ///< An HTML page; empty for none.
};

/// The word by which a catalogue names a kind.
std::string_view kindWord(nvm_msg_type type);

class Catalogue {
public:
    /// The largest file that is read, in bytes; what is larger is no catalogue that anyone wrote.
    static constexpr std::size_t LARGEST_FILE = 32u << 20;

    ~Catalogue();
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;

    /// Reads a catalogue of `module` from the bytes of a file. What is wrong is told in
    /// `*complaints`. A message with a mistake is left out, a file that is no catalogue of the
    /// module has none. Never null.
    static std::unique_ptr<Catalogue> read(std::string bytes, const std::string& module,
                                           Complaints* complaints);

    /// In the file's order, each number once.
    const std::vector<CataloguedMessage>& messages() const { return m_messages; }

private:
    struct Document;
    friend class CatalogueReader;
    Catalogue();

    const std::unique_ptr<Document> m_document;  ///< Holds the texts.
    std::vector<CataloguedMessage> m_messages;
};

}  // namespace juntora
