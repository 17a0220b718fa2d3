// Feeds any text as an INI file: what is set must be found, nothing else may change, and what is removed must
// be gone.
#include <fuzzer/FuzzedDataProvider.h>

#include "app/ini_file.h"
#include "app/settings.h"
#include "base/text.h"
#include "require.h"

using hl::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::string section = input.ConsumeRandomLengthString(8);
    const std::string key = input.ConsumeRandomLengthString(8);
    const std::string value = input.ConsumeRandomLengthString(40);
    hl::IniText ini(input.ConsumeRemainingBytesAsString());

    require(hl::decodeIniValue(hl::encodeIniValue(value)) == value);
    require(hl::encodeIniValue(value).find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos);

    const std::string before = ini.text();
    auto expected = ini.section(section);
    if (!ini.set(section, key, value)) {
        require(ini.text() == before);
        return 0;
    }
    expected[hl::lowerCase(key)] = value;
    require(ini.find(section, key) == value);
    require(ini.section(section) == expected);
    const std::string after = ini.text();
    require(ini.set(section, key, value) && ini.text() == after);

    for (const std::string& item : hl::readNumberedList(ini, section, key)) require(item != hl::kEndOfList);
    ini.removeSection(section);
    require(ini.find(section, key) == std::nullopt && ini.section(section).empty());
    return 0;
}
