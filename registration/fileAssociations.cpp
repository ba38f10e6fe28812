#include "registration/fileAssociations.h"

#include "registration/registryKeys.h"

namespace juntora {

AssociationReport writeFileAssociations() {
    const AssociationTable table = readAssociations();
    AssociationReport report;
    report.isWhole = table.isWhole;
    for (const KeyWrite& write : associationWrites(table.rows)) {
        if (setUserKeyDefaultValue(write.key.c_str(), write.value.c_str()) != 0) {
            ++report.written;
        } else {
            report.failed.push_back(write);
        }
    }
    report.types = desktopTypes(table.rows);
    report.problems = writeDesktopTypes(report.types);
    return report;
}

int registerFileAssociations() {
    writeFileAssociations();
    return 1;
}

}  // namespace juntora
