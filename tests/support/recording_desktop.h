// A desktop that can open everything.
#pragma once

#include "platform/desktop.h"

namespace hl::test {

struct RecordingDesktop final : Desktop {
    std::vector<std::string> opened;
    std::vector<std::string> terminals;  ///< The folders that terminals were opened in.
    bool hasTerminal = true;
    std::map<std::string, FileFacts> known;  ///< By the path.
    bool runs = false;                       ///< All files count as programs.
    OpenResult result = OpenResult::kStarted;
    std::vector<DesktopProgram> programs;  ///< All programs of the desktop.

    OpenResult open(const std::string& path) override {
        opened.push_back(path);
        return result;
    }
    std::vector<DesktopProgram> programsFor(const std::vector<std::string>&, std::size_t) override {
        return {{"editor.desktop", "Editor"}};
    }
    std::vector<DesktopProgram> allPrograms() override { return programs; }
    bool openWith(const std::string&, const std::vector<std::string>&) override { return true; }
    bool runsWhenOpened(const std::string&) override { return runs; }
    bool showInFolder(const std::vector<std::string>&) override { return true; }
    bool showProperties(const std::vector<std::string>&) override { return false; }
    /// No digest, but another text for other bytes.
    std::string sha256(std::string_view bytes) override {
        std::string digits;
        for (std::size_t hash = std::hash<std::string_view>()(bytes); digits.size() < 64; hash /= 3)
            digits += "0123456789abcdef"[hash % 16];
        return digits;
    }
    bool openTerminal(const std::string& folder) override {
        terminals.push_back(folder);
        return hasTerminal;
    }
    std::optional<FileFacts> facts(const std::string& path) override {
        const auto found = known.find(path);
        return found == known.end() ? std::nullopt : std::optional(found->second);
    }
    std::vector<std::optional<int>> progress;  ///< What showProgress was told.
    void showProgress(std::optional<int> percent) override { progress.push_back(percent); }
};

}  // namespace hl::test
