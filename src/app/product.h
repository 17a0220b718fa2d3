// The names of the product; they are to be changed only here. Its addresses are options of the build
// (addresses.h).
#pragma once

#include <string_view>

namespace hl {

inline constexpr std::string_view kProductName = "Harborlantern";
/// The name of the program in error reports and in the mails about them.
inline constexpr std::string_view kReportName = kProductName;

// The files in the program's folder.
inline constexpr std::string_view kIniName = "Harborlantern.ini";
inline constexpr std::string_view kProtocolName = "Harborlantern.log";
inline constexpr std::string_view kErrorLogName = "error.log";
inline constexpr std::string_view kDebugLogName = "debug.log";
inline constexpr std::string_view kTranslatorFileName = "HarborlanternTL.txt";

/// Follows the version where the program is not installed.
inline constexpr std::string_view kPortableEdition = " (Portable Edition)";
/// The first is a file beside the executable, which tells that a package installed the program; the second is
/// the package that installs the window.
inline constexpr std::string_view kInstalledName = "installed";
inline constexpr std::string_view kWindowPackage = "harborlantern-gui";
/// The name of the program's folder below a user's configuration folder and below share/.
inline constexpr std::string_view kUserFolderName = "harborlantern";

}  // namespace hl
