// Feeds any text as a language library: the ids must be in range, each text must be one line of the file, and
// the texts written out again must be read back.
#include "app/catalogue.h"
#include "require.h"

using hl::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string content(reinterpret_cast<const char*>(data), size);
    const hl::Catalogue catalogue(content, "en");
    std::string written;
    for (const auto& [id, text] : catalogue.texts()) {
        require(id > 0 && id <= hl::Catalogue::kHighestId);
        require(text.find('\n') == std::string::npos && content.find("=" + text) != std::string::npos);
        require(catalogue.text(id) == text);
        written += "[" + std::to_string(id) + "]\r\nen=" + text + "\r\n";
    }
    require(hl::Catalogue(written, "en").texts() == catalogue.texts());
    require(hl::Catalogue(written, "de").empty());
    return 0;
}
