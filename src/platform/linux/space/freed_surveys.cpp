#include "platform/linux/space/freed_surveys.h"

#include <time.h>

#include <chrono>
#include <cstddef>
#include <set>
#include <span>
#include <utility>

#include "platform/linux/change/opened_place.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/space/freed_walk.h"

namespace hl {

namespace {

using SurveyClock = std::chrono::steady_clock;
constexpr std::chrono::seconds kSurveySilent{1};

/// What the thread of a survey uses.
struct SurveyWork {
    std::shared_ptr<DirectoryCalls> calls;
    std::shared_ptr<const OpenFiles> openFiles;
    std::shared_ptr<SurveyDesk> desk;
    std::vector<FilePlace> places;  ///< Those on disks that may not answer come last.
    std::size_t answering = 0;      ///< The number of the others.
    std::size_t silentPlaces = 0;   ///< More, which are not looked at.
    std::size_t budget = 0;

    void run(Whereabouts& whereabouts) const {
        AwaitedOpenFiles open(openFiles);
        FreedWalk walk(*calls, whereabouts, *desk, open, budget);
        for (std::size_t i = 0; i < silentPlaces; ++i) walk.addSilent();
        const std::span<const FilePlace> all(places);
        for (const auto part : {all.first(answering), all.subspan(answering)}) {
            for (const FilePlace& place : part) walk.expect(place);
            for (const FilePlace& place : part) walk.add(place);
        }
        walk.end();
    }
};

class LinuxFreedSurvey final : public FreedSurvey {
  public:
    LinuxFreedSurvey(const SurveyWork& work, SilentDisks* disks, std::set<std::uint64_t> mayHang)
        : desk_(work.desk),
          disks_(disks),
          mayHang_(std::move(mayHang)),
          helper_(Helper::start([work](Whereabouts& whereabouts) { work.run(whereabouts); }, true)),
          heard_(SurveyClock::now()) {
        if (helper_) return;
        FreedSpace none;
        none.foldersUnknown = work.places.size() + work.silentPlaces;
        none.state = SurveyState::kEnded;
        none.asOf = ::time(nullptr);
        desk_->put(none);
    }
    // A disk that may not answer is remembered if it has not answered for a while, so that nobody asks it
    // again.
    ~LinuxFreedSurvey() override {
        if (!helper_ || !helper_->leave() || !isSilent()) return;
        for (const std::uint64_t disk : mayHang_) disks_->leaveBehind(disk, helper_);
    }
    LinuxFreedSurvey(const LinuxFreedSurvey&) = delete;
    LinuxFreedSurvey& operator=(const LinuxFreedSurvey&) = delete;

    FreedSpace figures() override {
        if (helper_ && helper_->endsWithin(std::chrono::milliseconds(0))) helper_->rethrow();
        FreedSpace figures = desk_->get();
        if (figures.state == SurveyState::kRuns && isSilent()) figures.state = SurveyState::kSilent;
        return figures;
    }

  private:
    bool isSilent() {
        bool isNew = false;
        helper_->whereabouts().now(isNew);
        if (isNew) heard_ = SurveyClock::now();
        return !mayHang_.empty() && SurveyClock::now() - heard_ >= kSurveySilent;
    }

    std::shared_ptr<SurveyDesk> desk_;
    SilentDisks* disks_;
    std::set<std::uint64_t> mayHang_;  ///< The disks of the places that may not answer.
    std::shared_ptr<Helper> helper_;   ///< Null if there was no thread or no slot.
    SurveyClock::time_point heard_;
};

}  // namespace

LinuxFreedSurveys::LinuxFreedSurveys(std::shared_ptr<DirectoryCalls> calls,
                                     std::shared_ptr<const OpenFiles> openFiles, SilentDisks* disks,
                                     std::size_t budget)
    : calls_(std::move(calls)), openFiles_(std::move(openFiles)), disks_(disks), budget_(budget) {}

std::unique_ptr<FreedSurvey> LinuxFreedSurveys::begin(std::vector<FilePlace> places) {
    SurveyWork work{calls_, openFiles_, std::make_shared<SurveyDesk>(), {}, 0, 0, budget_};
    std::set<std::uint64_t> mayHang;
    std::vector<FilePlace> late;
    for (FilePlace& place : places) {
        const std::uint64_t disk = disks_ != nullptr ? disks_->of(pathOf(place), LastName::kItself) : 0;
        if (disk == 0) {
            work.places.push_back(std::move(place));
        } else if (disks_->isSilent(disk)) {
            ++work.silentPlaces;
        } else {
            late.push_back(std::move(place));
            mayHang.insert(disk);
        }
    }
    work.answering = work.places.size();
    for (FilePlace& place : late) work.places.push_back(std::move(place));
    return std::make_unique<LinuxFreedSurvey>(work, disks_, std::move(mayHang));
}

}  // namespace hl
