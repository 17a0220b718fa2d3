// Feeds any text as a translator's file: each translation must be a piece of it, and a list of what was read
// must be read the same again.
#include "app/translator_file.h"
#include "require.h"

using hl::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string content(reinterpret_cast<const char*>(data), size);
    const auto records = hl::parseTranslatorFile(content);
    require(records.size() <= size / 2 + 1);
    std::string written;
    std::vector<hl::TranslatorRecord> quotable;
    for (const hl::TranslatorRecord& record : records) {
        require(content.find(record.text) != std::string::npos);
        if (record.text.find('"') != std::string::npos) continue;  // It cannot be quoted.
        quotable.push_back(record);
        written += std::to_string(record.id) + ",,\"" + record.text + "\"\r\n";
    }
    require(hl::parseTranslatorFile(written) == quotable);
    return 0;
}
