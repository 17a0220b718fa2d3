#include "app/log.h"

#include <chrono>

#include "app/product.h"
#include "base/text.h"
#include "robustness/attempt.h"

namespace hl {

LocalTime Log::now() {
    return localTime(std::chrono::system_clock::now());
}

void Log::LogProtokoll(std::string_view text) noexcept {
    attempt([&] { add(kProtocolName, visible(text), true); });
}

void Log::LogError(std::string_view text, bool blankLine, bool stamp) noexcept {
    attempt([&] { add(kErrorLogName, std::string(text) + (blankLine ? "\r\n" : ""), stamp); });
}

void Log::LogDebug(std::string_view text, const std::vector<SimpleValue>& details) noexcept {
    attempt([&] {
        std::string entry(text);
        for (const SimpleValue& detail : details) entry += ", " + detail.text();
        add(kDebugLogName, visible(entry), true);
    });
}

void Log::add(std::string_view file, std::string_view entry, bool stamp) {
    std::string line = stamp ? formatDate(clock_(), dates_.general()) + " - " : std::string();
    line += decodable(entry) + "\r\n";
    // There is nowhere left to tell that the log cannot be written.
    static_cast<void>(files_.append(folder_ + "/" + std::string(file), line));
}

}  // namespace hl
