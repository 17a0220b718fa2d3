#include "output/ncdu_export.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <utility>

#include "app/product.h"
#include "base/date_format.h"
#include "base/size_text.h"
#include "base/text.h"
#include "robustness/api_error_text.h"
#include "scan/file_system_calls.h"
#include "scan/left_out.h"

namespace hl {

namespace {

class EveryFile final : public FileChoice {
  public:
    bool mayTake(std::string_view /*name*/, FileType /*type*/) const override { return true; }
    bool takes(std::string_view /*name*/, FileType /*type*/, const Entry& /*file*/,
               const EntryDetails& /*details*/) const override {
        return true;
    }
};

bool needsEscape(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

// Other bytes than those below 0x20 stay as they are, also such as are no UTF-8.
void appendEscaped(std::string& out, std::string_view text) {
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') out += '\\';
        if (code >= 0x20) {
            out += c;
        } else {
            out.append("\\u00") += kHexDigits[code >> 4];
            out += kHexDigits[code & 15U];
        }
    }
}

/// What stands behind the name of an entry. It has room for all that an entry can have.
class Fields {
  public:
    Fields& text(std::string_view text) {
        end_ = std::ranges::copy(text, end_).out;
        return *this;
    }
    /// `key` has its comma, quotes and colon.
    Fields& number(std::string_view key, std::int64_t value) {
        text(key);
        end_ = std::to_chars(end_, end_ + kMostDigits, value).ptr;
        return *this;
    }
    std::string_view all() const { return {bytes_.data(), static_cast<std::size_t>(end_ - bytes_.data())}; }

  private:
    static constexpr std::size_t kMostDigits = 20;
    static constexpr std::size_t kMostBytes = 320;  // Eight numbers, and 160 bytes of keys and words.

    std::array<char, kMostBytes> bytes_;  // Not set before it is written: an entry uses a part of it.
    char* end_ = bytes_.data();
};

ReadOptions optionsOf(const ScanContext& scan, const std::string& folder) {
    ReadOptions options;
    options.followLinks = scan.options.ScanHardlinks == 1;
    options.wantLinks = options.wantSpace = options.wantOwners = options.folderFacts = options.wantTypes =
        true;
    options.wantSubvolumes = options.putOffSnapshots = scan.options.CountSnapshots == 0;
    options.leaveOut = rulesOfFolder(scan, folder, folder);
    options.choice = std::make_shared<EveryFile>();
    return options;
}

}  // namespace

bool NcduExport::run(const std::string& source) {
    const std::string folder = AddTrailingSlash(source, scan_.paths);
    ReaderWait wait(yield_, scan_.pump, [this] { tellOfWait(scan_, path_); });
    reader_ = scan_.fileSystem.read(ToLongPath(folder, scan_.paths), optionsOf(scan_, folder), &wait);
    begin(folder);
    while (!levels_.empty() && !stopped_ && file_.isFine()) step();
    levels_.clear();
    reader_.reset();
    out() += "]\n";
    return !stopped_;
}

void NcduExport::begin(const std::string& source) {
    out().append("[1,2,{\"progname\":\"").append(kUserFolderName).append("\",\"progver\":\"");
    out().append(HARBORLANTERN_VERSION "\",\"timestamp\":").append(std::to_string(secondsNow())).append("}");
    path_ = source;
    scan_.host.folderEntered(path_);
    if (std::unique_ptr<Listing> block = nextBlock())
        openFolder(source.size() > 1 ? std::string_view(source).substr(0, source.size() - 1) : source,
                   std::move(block), 0);
}

std::unique_ptr<Listing> NcduExport::nextBlock() {
    std::unique_ptr<Listing> block = scan_.state.CancelState == kCancelStop ? nullptr : reader_->next();
    stopped_ = block == nullptr;
    return block;
}

// Writes files until a folder is entered, or the level ends.
void NcduExport::step() {
    Level& level = levels_.back();
    while (level.next < level.block->count) {
        yield_.perEntry();
        const std::size_t index = level.next++;
        const Entry& entry = level.block->entries[index];
        const std::string_view name = level.block->name(entry);
        if (entry.isEntered() || entry.isLeftOutByRule()) {
            if (folderEntry(entry, name)) return;
        } else {
            appendFile(entry, level.block->detailsOf(index), name);
        }
    }
    if (level.block->more) {
        if (std::unique_ptr<Listing> block = nextBlock()) take(level, std::move(block));
        return;
    }
    out() += ']';
    levels_.pop_back();
    if (!levels_.empty()) path_.resize(levels_.back().pathLength);
}

void NcduExport::take(Level& level, std::unique_ptr<Listing> block) {
    level.block = std::move(block);
    level.next = 0;
    Unshown& leftOut = scan_.state.leaving.ofSearch;
    leftOut.files += level.block->filesLeftOut;
    for (const Error& disk : level.block->silentMounts) tellOfSilence(scan_, disk, true);
    notRead(level, level.block->error);
    notRead(level, level.block->entryError);
    notRead(level, level.block->endError);
    scan_.host.entriesCame(*this);
    if (level.block->failure != nullptr) std::rethrow_exception(level.block->failure);
}

// Returns true if the level is another one now, or nothing more is to be read.
bool NcduExport::folderEntry(const Entry& entry, std::string_view name) {
    const std::uint64_t device = levels_.back().device;
    if (entry.isLeftOutByRule()) {
        ++scan_.state.leaving.ofSearch.folders;
        out() += ",\n{\"name\":\"";
        appendName(name);
        out() += ",\"excluded\":\"pattern\"}";
        file_.endLine();
        return false;
    }
    ++counts_.folders;
    path_.append(name).push_back(scan_.paths.separator);
    scan_.host.folderEntered(path_);
    std::unique_ptr<Listing> block = nextBlock();
    if (block == nullptr) return true;
    const bool isPattern = block->isCache || block->putOff;
    if (!isPattern && !block->leftOut) return openFolder(name, std::move(block), device), true;
    if (block->isCache) ++scan_.state.leaving.ofSearch.folders;
    appendFolder(name, *block, device, isPattern ? "pattern" : "othfs");
    path_.resize(levels_.back().pathLength);
    return false;
}

void NcduExport::openFolder(std::string_view name, std::unique_ptr<Listing> block,
                            std::uint64_t deviceAbove) {
    out() += ",\n[";
    appendFolder(name, *block, deviceAbove, {});
    Level& level = levels_.emplace_back();
    level.pathLength = path_.size();
    level.device = block->facts && block->facts->id.device != 0 ? block->facts->id.device : deviceAbove;
    take(level, std::move(block));
}

void NcduExport::appendFolder(std::string_view name, const Listing& block, std::uint64_t deviceAbove,
                              std::string_view excluded) {
    out() += excluded.empty() ? "{\"name\":\"" : ",\n{\"name\":\"";
    appendName(name);
    Fields fields;
    if (const FolderFacts* facts = block.facts ? &*block.facts : nullptr) {
        fields.number(",\"asize\":", static_cast<std::int64_t>(facts->size));
        fields.number(",\"dsize\":", static_cast<std::int64_t>(facts->blocks * kBlockBytes));
        if (facts->id.device != deviceAbove)
            fields.number(",\"dev\":", static_cast<std::int64_t>(facts->id.device));
        fields.number(",\"uid\":", facts->owner).number(",\"mtime\":", facts->written);
    }
    if (block.error || block.endError || block.entryError) fields.text(",\"read_error\":true");
    if (!excluded.empty()) fields.text(",\"excluded\":\"").text(excluded).text("\"");
    out().append(fields.text("}").all());
    file_.endLine();
}

void NcduExport::appendFile(const Entry& entry, const EntryDetails& details, std::string_view name) {
    ++counts_.files;
    counts_.bytes += static_cast<double>(entry.size);
    out() += ",\n{\"name\":\"";
    appendName(name);
    Fields fields;
    fields.number(",\"asize\":", static_cast<std::int64_t>(entry.size));
    fields.number(",\"dsize\":", static_cast<std::int64_t>(details.blocks * kBlockBytes));
    if (entry.links > 1) {
        fields.number(",\"ino\":", static_cast<std::int64_t>(entry.inode)).number(",\"nlink\":", entry.links);
        fields.text(",\"hlnkc\":true");
    }
    fields.number(",\"uid\":", details.owner).number(",\"mtime\":", details.written);
    if (entry.tag != kTagNone || (entry.attributes & kSpecialFile) != 0) fields.text(",\"notreg\":true");
    out().append(fields.text("}").all());
    file_.endLine();
}

// Hardly any name has a byte that has to be escaped.
void NcduExport::appendName(std::string_view name) {
    if (std::ranges::none_of(name, needsEscape))
        out().append(name);
    else
        appendEscaped(out(), name);
    out() += '"';
}

// One line for a folder is enough, as for the report.
void NcduExport::notRead(Level& level, const std::optional<Error>& error) {
    if (!error || std::exchange(level.told, true)) return;
    scan_.host.notRead(path_, ApiErrorText(true, *error));
}

}  // namespace hl
