// The object by which other programs tell the hub that a library, or the list of libraries, has
// changed. The hub passes the notice on to "Sketchel", if that runs.
#pragma once

#include <memory>

#include "framework/CCmdTarget.h"

namespace juntora {

class CLibraryStatusWnd;

inline constexpr char LIBRARY_STATUS_PROGRAM_ID[] = "Voltara.JuntoraLibraryStatus.16.6.0";

/// The class, and the dispatch interface of its objects.
inline constexpr GUID CLSID_LibraryStatus{
    0x6C1E2F50, 0x3B7A, 0x4D0C, {0x9A, 0x41, 0x52, 0x7E, 0x0B, 0xC4, 0x8D, 0x16}};
inline constexpr GUID IID_LibraryStatus{
    0x6C1E2F51, 0x3B7A, 0x4D0C, {0x9A, 0x41, 0x52, 0x7E, 0x0B, 0xC4, 0x8D, 0x16}};

/// Its members by their numbers.
enum LibraryMember : LONG {
    LIBRARY_LIST_CHANGED_MEMBER = 1,  ///< No arguments.
    LIBRARY_CHANGED_MEMBER = 2,       ///< The library.
    CLOSE_FILE_MEMBER = 3,            ///< The file.
};

/// While one lives the hub stays up. Each member takes its notice and answers 0 at once; the record
/// goes out from the message loop, or, where nobody wants it, nowhere.
class CLibraryStatus : public CCmdTarget {
public:
    CLibraryStatus();
    /// Asks the main window to close; whether it does is for that to say.
    ~CLibraryStatus() override;

    static CCmdTarget* create() { return new CLibraryStatus; }
    static const AFX_DISPMAP* dispatchMap();

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return dispatchMap(); }
    std::span<const GUID> GetInterfaceMap() const override;

private:
    LONG LibraryListChanged();
    LONG LibraryChanged(const char* library);
    LONG CloseFile(const char* file);

    LONG post(int code, const char* text) const;

    std::unique_ptr<CLibraryStatusWnd> m_pWnd;  ///< Null when there was no main window.
};

}  // namespace juntora
