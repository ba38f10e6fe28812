// The template of the box that can be switched off, for programs to show it with.
#pragma once

namespace juntora {

inline constexpr int IDD_DNS = 60020;
inline constexpr int IDC_DNS_TEXT = 60021;
inline constexpr int IDC_DNS_CHECK = 60022;
inline constexpr int IDC_DNS_ICON = 60026;  ///< The default one.
inline constexpr int IDC_DNS_STOP = 60027;
inline constexpr int IDC_DNS_QUESTION = 60028;
inline constexpr int IDC_DNS_FIRST = 6;
inline constexpr int IDC_DNS_SECOND = 7;
inline constexpr int IDC_DNS_THIRD = 3;

/// The string of the table that is an application's title.
inline constexpr int IDS_APPLICATION_TITLE = 57344;

/// Makes the template known, unless the program has one of its own under that number.
void RegisterDnsResources();

}  // namespace juntora
