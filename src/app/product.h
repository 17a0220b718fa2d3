// Names of the product: the one place to change them. Its addresses are options of the build (addresses.h).
#pragma once

#include <string_view>

namespace hl {

inline constexpr std::string_view kProductName = "Harborlantern";
/// As error reports and the mails about them name the program.
inline constexpr std::string_view kReportName = kProductName;

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
