#include "messages/storedAnswers.h"

#include "framework/CWinApp.h"

namespace juntora {
namespace {

/// "TVCOMMN-1821". Those who ask for an answer have the number as an int.
std::string keyOf(const char* module, unsigned long number) {
    return module + ("-" + std::to_string(static_cast<int>(number)));
}

}  // namespace

std::string storedAnswer(const char* module, unsigned long number) {
    const CWinApp* application = AfxGetApp();
    return application ? static_cast<const char*>(application->GetProfileString(
                             ANSWERS_SECTION, keyOf(module, number).c_str(), NO_ANSWER))
                       : NO_ANSWER;
}

void storeAnswer(const char* module, unsigned long number, const std::string& answer) {
    if (CWinApp* application = AfxGetApp()) {
        application->WriteProfileString(ANSWERS_SECTION, keyOf(module, number).c_str(),
                                        answer.c_str());
    }
}

}  // namespace juntora
