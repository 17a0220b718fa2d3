// Name and addresses of the product: the one place to change them.
#pragma once

#include <string_view>

namespace hl {

inline constexpr std::string_view kProductName = "Harborlantern";
/// As error reports and the mails about them name the program.
inline constexpr std::string_view kReportName = kProductName;

inline constexpr std::string_view kHomepageGerman = "https://harborlantern.example.org/de/";
inline constexpr std::string_view kHomepage = "https://harborlantern.example.org/en/";
inline constexpr std::string_view kForumGerman = "https://forum.harborlantern.example.org/de/";
inline constexpr std::string_view kForum = "https://forum.harborlantern.example.org/en/";
inline constexpr std::string_view kDonationGerman = "https://harborlantern.example.org/de/spenden/";
inline constexpr std::string_view kDonation = "https://harborlantern.example.org/en/donate/";
inline constexpr std::string_view kReportAddress = "reports@harborlantern.example.org";

// Files in the program's folder.
inline constexpr std::string_view kIniName = "Harborlantern.ini";
inline constexpr std::string_view kProtocolName = "Harborlantern.log";
inline constexpr std::string_view kErrorLogName = "error.log";
inline constexpr std::string_view kDebugLogName = "debug.log";
inline constexpr std::string_view kTranslatorFileName = "HarborlanternTL.txt";

/// Behind the version, where the program is not installed.
inline constexpr std::string_view kPortableEdition = " (Portable Edition)";
/// Beside the executable: a package put the program there, and this one puts the window beside it.
inline constexpr std::string_view kInstalledName = "installed";
inline constexpr std::string_view kWindowPackage = "harborlantern-gui";
/// In a user's folder of settings, and in share/.
inline constexpr std::string_view kUserFolderName = "harborlantern";

}  // namespace hl
