#include "scan/scan_options_text.h"

#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "base/crc32.h"
#include "base/json_reader.h"
#include "base/json_text.h"

namespace hl {

namespace {

// The head of a saved scan is limited, and it holds more than the rules.
constexpr std::size_t kMostRuleBytes = std::size_t{16} << 10;

void appendRules(std::string& out, const ScanContext& scan) {
    Crc32 crc;
    std::size_t bytes = 0;
    bool cut = false;
    bool first = true;
    out += "\"rules\":[";
    const std::vector<std::string>* const both[] = {&scan.options.Exclude, &scan.state.leaving.rules};
    for (const auto* lines : both)
        for (const std::string& line : *lines) {
            crc.add(line);
            crc.add(std::string_view("\n", 1));
            bytes += line.size();
            cut |= bytes > kMostRuleBytes;
            if (cut) continue;
            if (!std::exchange(first, false)) out += ',';
            appendJsonString(out, line);
        }
    out += ']';
    if (cut) out.append(",\"rules_crc\":").append(std::to_string(crc.value()));
}

// Returns the text of each value by its name.
std::map<std::string, std::string> optionsIn(std::string_view object) {
    std::map<std::string, std::string> values;
    JsonReader json(object);
    if (json.next() != JsonReader::Piece::kObject) return values;
    while (json.next() == JsonReader::Piece::kKey) {
        const std::string name = json.string();
        const auto value = json.rawValue();
        if (!value) break;
        values[name] = *value;
    }
    return values;
}

}  // namespace

std::string scanOptionsJson(const ScanContext& scan) {
    const Options& options = scan.options;
    std::string out = "{";
    const auto flag = [&](std::string_view name, bool on) {
        out.append("\"").append(name).append(on ? "\":true," : "\":false,");
    };
    flag("follow_links", options.ScanHardlinks == 1);
    flag("links_shown", options.NoHardlinks == 0);
    flag("hardlinks_once", options.AddHardlinksOnlyOnce == 1);
    flag("snapshots", options.CountSnapshots != 0);
    flag("caches_left_out", scan.state.leaving.caches);
    appendRules(out, scan);
    return out + "}";
}

std::string differingOptions(std::string_view one, std::string_view other) {
    const auto first = optionsIn(one), second = optionsIn(other);
    std::set<std::string> names;
    for (const auto* both : {&first, &second})
        for (const auto& [name, value] : *both) {
            const auto is = first.find(name), was = second.find(name);
            if (is == first.end() || was == second.end() || is->second != was->second) names.insert(name);
        }
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
    return text;
}

}  // namespace hl
