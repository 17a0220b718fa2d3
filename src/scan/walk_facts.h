// What a walk notes of the folders that it meets. It does nothing if nobody asks for it. For the thread of
// the logic.
#pragma once

#include "scan/scan_context.h"

namespace hl {

class WalkFacts {
  public:
    explicit WalkFacts(ScanContext& scan) : kept_(scan.facts) {}

    /// Sets what a reader is asked for besides what it is asked for already.
    void choose(ReadOptions& options) const {
        options.folderFacts = kept_ != nullptr && kept_->wantsIdentities();
    }

    /// The folder that is read into a row that was there before. Returns its disk.
    std::uint64_t begin(const Grid& report, Row row, const Listing& block) {
        if (kept_ == nullptr || row == kNoRow) return 0;
        const FolderFacts facts = block.facts.value_or(FolderFacts{.id = block.source});
        const std::uint64_t device = facts.id.device;
        kept_->begin(row, identityOf(facts));
        if (report.parent(row) == kNoRow) return kept_->source(row).device = device;
        for (Row above = report.parent(row); above != kNoRow; above = report.parent(above)) {
            const RareFacts* rare = kept_->rareOf(above);
            const SourceFacts* source = kept_->sourceOf(above);
            const std::uint64_t disk = rare != nullptr && rare->device != 0 ? rare->device
                                       : source != nullptr                  ? source->device
                                                                            : 0;
            if (disk == 0) continue;
            if (device != 0 && disk != device) kept_->rare(row).device = device;
            return device != 0 ? device : disk;
        }
        return device;
    }
    /// A row was added; it is kNoRow if it is folded into one above. `block` is its folder's first one; null
    /// if it is not entered. `above` is the disk of the folder above. Returns its disk.
    std::uint64_t rowAdded(Row row, const Entry& entry, const Listing* block, std::uint64_t above) {
        if (kept_ == nullptr) return 0;
        if (row == kNoRow) return above;
        const bool known = block != nullptr && block->facts.has_value();
        kept_->begin(row, known ? identityOf(*block->facts) : RowIdentity{.inode = entry.inode});
        if (!known || block->facts->id.device == above) return above;
        return kept_->rare(row).device = block->facts->id.device;
    }
    /// A rule leaves the row's folder out.
    void leftOut(Row row, std::int32_t rule) {
        if (kept_ != nullptr) kept_->rare(row).rule = rule;
    }
    /// Something of the row's folder could not be read.
    void notRead(Row row, const Error& error) {
        if (kept_ != nullptr && row != kNoRow) kept_->rare(row).error = error;
    }
    /// The reading was stopped while it was in the row's folder.
    void stopped(Row row) {
        if (kept_ != nullptr && row != kNoRow) kept_->rare(row).stopped = true;
    }

  private:
    static RowIdentity identityOf(const FolderFacts& facts) {
        return {facts.id.inode, facts.created.value_or(RowIdentity::kNoTime)};
    }

    RowFacts* const kept_;
};

}  // namespace hl
