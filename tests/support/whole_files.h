// Reads and writes whole files for tests.
#pragma once

namespace hl::test {

/// Returns an empty text if there is no such file.
inline std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
    return names;
}

inline void writeFile(const std::string& path, std::string_view content) {
    std::ofstream(path, std::ios::binary) << content;
}

/// Writes a file and makes the folders above it.
inline void writeDeepFile(const fs::path& path, std::string_view content) {
    fs::create_directories(path.parent_path());
    writeFile(path.string(), content);
}

/// Writes a shell script that can be executed.
inline void writeScript(const std::string& path, const std::string& body) {
    writeFile(path, "#!/bin/sh\n" + body + "\n");
    fs::permissions(path, fs::perms::owner_all);
}

}  // namespace hl::test
