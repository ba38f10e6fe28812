// The application: what a program is before and after its windows.
#pragma once

#include "framework/CCmdTarget.h"
#include "framework/CString.h"

namespace juntora {

class CWnd;

/// Below HKEY_CURRENT_USER: a key of each program's that keeps settings.
inline constexpr char PROFILES_KEY[] = "Software\\Voltara\\Settings";

/// The name of the program's file without folder and extension: what its settings are kept under,
/// and the caption of its boxes.
CString AfxGetAppName();

/// A program has exactly one, a static object.
class CWinApp : public CCmdTarget {
public:
    CWinApp();
    ~CWinApp() override;

    /// What stands behind the program's name on its command line; may be edited in place.
    char* m_lpCmdLine = nullptr;
    int m_nCmdShow = 0;          ///< The show state that the starter asked for.
    CWnd* m_pMainWnd = nullptr;  ///< Not owned.
    int m_nExitCode = 0;         ///< What the program ends with.

    /// The program's life, a modal dialog's loop for most. Returns false: there is no message loop
    /// of the framework's own to go on with.
    virtual bool InitInstance() = 0;

    /// Whether the program was started for the sake of an object, by "-Embedding" or "/Embedding"
    /// on its command line, or by "-Automation"; the switch is taken out.
    bool RunEmbedded();
    bool RunAutomated();

    /// The application's settings: texts by section and entry, in the registry under
    /// PROFILES_KEY, the program's name and the section. What cannot be read is `standard`.
    CString GetProfileString(const char* section, const char* entry,
                             const char* standard = "") const;
    /// False where the registry cannot be written.
    bool WriteProfileString(const char* section, const char* entry, const char* value);

protected:
    /// The command of that number, for which the framework has a handler.
    static constexpr int ID_HELP = 0xE146;
    /// Tells that there is no help.
    void OnHelp();

private:
    bool TakeSwitch(const char* name);
};

/// The program's application object, null in a program without one.
CWinApp* AfxGetApp();

/// The application's main window, null for none.
CWnd* AfxGetMainWnd();

/// What main does: hands the arguments to the application and runs it. Returns the exit code: 1
/// where the desktop cannot be used (standard error says why) or an exception came through.
int AfxWinMain(CWinApp& application, int argc, char** argv);

/// Shows a message box over the main window, with the program's name as its caption. Returns the
/// button. There is no help for a help context to stand for.
int AfxMessageBox(const char* text, unsigned flags = 0, unsigned helpContext = 0);
/// The same for a string of the table.
int AfxMessageBox(int stringId, unsigned flags = 0);

}  // namespace juntora
