// A message with its parameters.
#pragma once

#include <optional>
#include <string>

#include "messages/NvParamList.h"
#include "messages/NvString.h"

namespace juntora {

struct CataloguedMessage;

/// What kind of message it is. A catalogue names it by the word behind it.
enum nvm_msg_type {
    NVM_PLAIN = 0,        ///< "plain"
    NVM_ERROR = 1,        ///< "error"
    NVM_WARNING = 4,      ///< "warning"
    NVM_INFORMATION = 5,  ///< "information"
    NVM_QUESTION = 7,     ///< "question"
};

/// What a status holds.
class NvObject {
public:
    virtual ~NvObject() = default;
};

/// Belongs to the status that holds it. The text is made when it is asked for.
class NvMessage : public NvObject {
public:
    /// `source` outlives the object.
    NvMessage(const char* module, const CataloguedMessage& source, const NvList& parameters);
    /// A message of the service's own, which stands in no catalogue.
    NvMessage(nvm_msg_type type, std::string text);

    /// The text with its parameters filled in. With `isNamed` the kind, the module and the number
    /// stand before it: "ERROR(TVCOMMN-1802):  The file ...". A placeholder for which no parameter
    /// was given stays as it is.
    void getSubstitutedDesc(NvString* text, bool isNamed) const;
    /// The page of extended help; empty if the message has none.
    const NvString& getExtHelp() const;
    nvm_msg_type getType() const { return m_type; }

private:
    const CataloguedMessage* const m_source;  ///< Null for one of the service's own.
    const nvm_msg_type m_type;
    const std::string m_module;
    const std::string m_text;  ///< Where there is no source.
    const NvList m_parameters;
    mutable std::optional<NvString> m_help;
};

}  // namespace juntora
