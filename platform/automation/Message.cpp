#include "platform/automation/Message.h"

#include <algorithm>
#include <iterator>

namespace juntora::automation {
namespace {

struct ErrorName {
    HRESULT result;
    const char* name;
};

constexpr ErrorName ERROR_NAMES[] = {
    {DISP_E_MEMBERNOTFOUND, "juntora.Error.MemberNotFound"},
    {DISP_E_TYPEMISMATCH, "juntora.Error.TypeMismatch"},
    {DISP_E_UNKNOWNNAME, "juntora.Error.UnknownName"},
    {DISP_E_BADPARAMCOUNT, "juntora.Error.ParameterCount"},
    {DISP_E_EXCEPTION, "juntora.Error.Exception"},
    {E_NOINTERFACE, "juntora.Error.NoInterface"},
    {E_FAIL, "juntora.Error.Failed"},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_UNKNOWN_OBJECT},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_NO_REPLY},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_DISCONNECTED},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_SERVICE_UNKNOWN},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_NAME_HAS_NO_OWNER},
    {RPC_E_TIMEOUT, SD_BUS_ERROR_TIMEOUT},
};

}  // namespace

const char* signatureOf(VariantKind kind) {
    constexpr const char* SIGNATURES[] = {"g", "b", "i", "d", "s", OBJECT_SIGNATURE};
    return SIGNATURES[static_cast<std::size_t>(kind)];
}

const char* errorNameOf(HRESULT result) {
    const auto* const found = std::ranges::find(ERROR_NAMES, result, &ErrorName::result);
    return found == std::end(ERROR_NAMES) ? "juntora.Error.Failed" : found->name;
}

HRESULT resultOfErrorName(const std::string& name) {
    for (const ErrorName& known : ERROR_NAMES) {
        if (name == known.name) {
            return known.result;
        }
    }
    return E_FAIL;
}

}  // namespace juntora::automation
