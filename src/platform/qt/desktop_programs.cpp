#include "platform/qt/desktop_programs.h"

namespace hl {

OpenResult DesktopPrograms::open(const std::string&) {
    return OpenResult::kFailed;
}
std::vector<DesktopProgram> DesktopPrograms::programsFor(const std::vector<std::string>&, std::size_t) {
    return {};
}
std::vector<DesktopProgram> DesktopPrograms::allPrograms() {
    return {};
}
bool DesktopPrograms::openWith(const std::string&, const std::vector<std::string>&) {
    return false;
}
bool DesktopPrograms::runsWhenOpened(const std::string&) {
    return false;
}
bool DesktopPrograms::showInFolder(const std::vector<std::string>&) {
    return false;
}
bool DesktopPrograms::showProperties(const std::vector<std::string>&) {
    return false;
}
void DesktopPrograms::copyFiles(const std::vector<std::string>&) {}

}  // namespace hl
