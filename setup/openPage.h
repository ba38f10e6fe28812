// Pages in the person's browser.
//
// For the user-interface thread: two of the three may show a box. None waits for the browser, whose
// own failures nobody tells.
#pragma once

namespace juntora {

/// Hands a page over: a file's path, or an address with a scheme ("https://...", "mailto:..."),
/// which reaches the browser as it is. By the desktop (ShellExecuteA); if that can't, by the
/// command in the registry, the default value of `htmlfile\shell\open\command` in
/// HKEY_CLASSES_ROOT.
///
/// 0 when the page was handed over, 1 otherwise; 1 also for null or an empty text, and where that
/// command couldn't take the page as one word that is no option.
int OpenPage(const char* address);

/// The same; a failure is reported in a box with a catalogued message (showMessageBox), whose
/// result is returned. 0 when the page was handed over.
int OpenPageOrReport(const char* address, const char* module, unsigned long number);

/// The same with a string of the table for a text (AfxMessageBox).
int OpenPageOrSay(const char* address, int stringId);

}  // namespace juntora
