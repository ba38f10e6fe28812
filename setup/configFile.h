// The file of the suite's settings, "Voltara.ini". For one thread, as setup/setupSearch.h tells.
#pragma once

#include <string>

namespace juntora {

/// The user's own copy of the settings that all share, made if it is not there yet
/// (setup/userCopy.h), with a folder "backup" beside the folder of its version. The settings that
/// all share are
///   the text value VoltaraConfigFile of
///   HKLM\SOFTWARE\Meridan\Interchange\16.6.0\ProductConfiguration\Shared, if that key is there,
///   and nothing else then;
///   else what VOLTARAINIPATH names; else tools\voltara\Voltara.ini of the installation;
///   without an installation Voltara.ini of the machine's settings (/etc/juntora).
///
/// Looked for anew in each call. The shared file where no copy can be made; empty where there is no
/// shared file.
std::string GetConfigFilePath();

}  // namespace juntora
