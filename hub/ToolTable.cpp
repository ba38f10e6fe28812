#include "hub/ToolTable.h"

namespace juntora {

const ToolEntry ToolTable[] = {
    {"VoltaraAD", "Voltara"},   {"Voltara", "Voltara"},     {"Gatrel", "Gatrel"},
    {"Scopel", "Scopel"},       {"Dorvane", "Dorvane"},     {"Wavend", "Wavend"},
    {"Borealt", "Borealt"},     {"Tunara", "Tunara"},       {"Tracel", "Tracel"},
    {"Xlatra", "Xlatra"},       {"Kalset", "Kalset"},       {"Kaldo", "Kalset Module"},
    {"Kalpe", "Kalset Module"}, {"Kalir", "Kalset Module"}, {"Kalum", "Kalset Module"},
    {"Kalvo", "Kalset Module"}, {"Kalze", "Kalset Module"}, {"Kalbi", "Kalset Module"},
    {nullptr, nullptr},
};

int findTool(std::string_view name) {
    for (int index = 0; ToolTable[index].name; ++index) {
        if (name == ToolTable[index].name) {
            return index;
        }
    }
    return -1;
}

}  // namespace juntora
