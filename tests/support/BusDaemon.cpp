#include "tests/support/BusDaemon.h"

#include <fstream>

namespace juntora::test {
namespace {

std::string configurationIn(const std::string& folder) {
    std::string file = folder + "/bus.conf";
    std::ofstream(file) << "<busconfig><type>session</type><listen>unix:path=" << folder
                        << "/bus</listen><policy context=\"default\"><allow send_destination=\"*\" "
                           "eavesdrop=\"true\"/>"
                           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";
    return file;
}

}  // namespace

BusDaemon::BusDaemon(const std::string& folder)
    : m_daemon("/usr/bin/dbus-daemon",
               {"--config-file=" + configurationIn(folder), "--nofork", "--print-address=1"},
               {{}, "", true}),  // It complains of limits that a session's bus would like to have.
      m_address(m_daemon.readLine().value_or("")) {}

}  // namespace juntora::test
