// Any bytes as a catalogue file: what is read of it is whole, and what is wrong is told with its
// place.
#include <set>

#include "messages/Catalogue.h"
#include "tests/fuzz/Fuzz.h"

using namespace juntora;

static void fillIn(const CataloguedMessage& message) {
    NvParamList list;
    for (std::uint32_t i = 0; i < message.parameters; ++i) {
        list.addParameterToList("\t");
    }
    NvString text;
    NvMessage("TVX", message, *list.getParameterList()).getSubstitutedDesc(&text, false);
    const std::string_view filledIn(text);
    const auto shown = std::count(filledIn.begin(), filledIn.end(), '\t');
    const auto own = std::count(message.text.begin(), message.text.end(), '\t');
    mustHold(shown >= own + message.parameters, "each parameter is shown");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Complaints complaints;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto catalogue = Catalogue::read(std::string(bytes), "TVX", &complaints);
    std::set<std::uint32_t> numbers;
    for (const CataloguedMessage& message : catalogue->messages()) {
        mustHold(numbers.insert(message.number).second, "a number comes once");
        mustHold(!message.text.empty(), "a message has a text");
        fillIn(message);
    }
    const auto told = complaints.told("file", bytes);
    for (const std::string& complaint : told) {
        mustHold(complaint.starts_with("file:") && complaint.ends_with('.'), "a place and a point");
    }
    mustHold(told.size() <= Complaints::MOST_KEPT + 1, "no more than are read");
    return 0;
}
