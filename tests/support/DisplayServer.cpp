#include "tests/support/DisplayServer.h"

namespace juntora::test {

DisplayServer::DisplayServer()
    : m_server("/usr/bin/Xvfb",
               {"-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"},
               {{}, "", true}) {  // It complains of each number that another one has taken.
    if (const auto number = m_server.readLine()) {
        m_name = ":" + *number;
    }
}

void DisplayServer::end() {
    m_server.kill(SIGTERM);
    m_server.wait();
}

}  // namespace juntora::test
