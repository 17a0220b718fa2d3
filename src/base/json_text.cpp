#include "base/json_text.h"

#include "base/base64.h"
#include "base/text.h"

namespace hl {

void appendJsonString(std::string& out, std::string_view text) {
    constexpr std::string_view kHex = "0123456789abcdef";
    out += '"';
    for (const char c : decodable(text)) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out.append(1, '\\') += c;
        } else if (code < 0x20) {
            out.append("\\u00") += kHex[code >> 4];
            out += kHex[code & 15U];
        } else {
            out += c;
        }
    }
    out += '"';
}

void appendJsonPath(std::string& out, std::string_view name, std::string_view path) {
    appendJsonString(out, name);
    out += ':';
    appendJsonString(out, path);
    if (decodable(path) == path) return;
    out.append(",\"").append(name).append("64\":\"").append(base64(path)).append("\"");
}

}  // namespace hl
