#include "base/json_text.h"

#include "base/text.h"

namespace hl {

namespace {

std::string base64(std::string_view bytes) {
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        unsigned three = 0;
        for (std::size_t i = 0; i < 3; ++i)
            three = three << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            out += at + i <= bytes.size() ? kDigits[three >> (18 - 6 * i) & 63U] : '=';
    }
    return out;
}

}  // namespace

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
