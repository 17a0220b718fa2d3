// Walks over a reader of folders and records what it saw.
#pragma once

#include "base/size_text.h"
#include "platform/linux/scan/read_ahead.h"

namespace hl::test {

/// What a walk over a reader saw, in order.
struct Seen {
    std::string text;  ///< One line for each entry: depth, kind, name, size.
    std::uint64_t folders = 0, files = 0, bytes = 0, blocks = 0;
    std::vector<int> errors;
    std::vector<std::string> silent;  ///< The mounts that links lead to and that did not answer.
};

/// Calls `act` at the n-th call of a waiting reader; if it returns false, that is Stop.
struct Waiting final : WaitCallback {
    explicit Waiting(std::function<bool(int)> what) : act(std::move(what)) {}
    bool goOnWaiting() override { return act(++looks); }
    std::function<bool(int)> act;
    int looks = 0;
};

struct Walked {
    std::unique_ptr<Listing> block;
    std::size_t next = 0;
};

inline void noteBlock(const Listing& block, Seen& seen) {
    ++seen.blocks;
    for (const Error& mount : block.silentMounts) seen.silent.push_back(mount.name);
    for (const auto* error : {&block.error, &block.entryError, &block.endError})
        if (*error) seen.errors.push_back((*error)->number);
}

inline Seen walk(FolderReader& reader, bool withText = true) {
    Seen seen;
    std::vector<Walked> levels;
    const auto enter = [&] {
        levels.push_back({reader.next()});
        noteBlock(*levels.back().block, seen);
    };
    enter();
    while (!levels.empty()) {
        Walked& level = levels.back();
        if (level.next == level.block->count && level.block->more) {
            level.block = reader.next();
            level.next = 0;
            noteBlock(*level.block, seen);
        } else if (level.next == level.block->count) {
            levels.pop_back();
        } else {
            const Entry& entry = level.block->entries[level.next++];
            const bool folder = (entry.attributes & kAttributeDirectory) != 0;
            (folder ? seen.folders : seen.files) += 1;
            seen.bytes += entry.size;
            if (withText)
                seen.text += std::to_string(levels.size()) + (folder ? " d " : " f ") +
                             std::string(level.block->name(entry)) + " " + std::to_string(entry.size) + "\n";
            if (entry.isEntered()) enter();
        }
    }
    return seen;
}

inline ReadAheadLimits limits(unsigned helpers, std::size_t openFolders = 64) {
    return {helpers, helpers, 1 << 20, openFolders};
}

/// Shares calls that outlive every reader of the test.
inline std::shared_ptr<DirectoryCalls> shared(DirectoryCalls& calls) {
    return {std::shared_ptr<DirectoryCalls>(), &calls};
}

inline Seen walkOnce(DirectoryCalls& calls, const std::string& root, const ReadAheadLimits& limits,
                     const ReadOptions& options = {}) {
    ReadAhead reader(shared(calls), root, options, limits, nullptr);
    return walk(reader);
}

}  // namespace hl::test
