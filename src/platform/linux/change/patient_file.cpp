#include "platform/linux/change/patient_file.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

/// A helper that uses the file shares it, because it may be abandoned with it.
using Held = std::shared_ptr<std::unique_ptr<ReplacingFile>>;

class PatientFile final : public ReplacingFile {
  public:
    PatientFile(Patience& patience, std::string path, Held held, bool isTerminal)
        : patience_(patience), path_(std::move(path)), held_(std::move(held)), isTerminal_(isTerminal) {}
    PatientFile(const PatientFile&) = delete;
    PatientFile& operator=(const PatientFile&) = delete;

    // A helper that hangs with the file closes it in the end. If no helper could begin, the file stays open,
    // because closing it here could hang.
    ~PatientFile() override {
        bool closed = false;
        try {
            closed = patience_.run(path_, [held = held_] { held->reset(); });
        } catch (...) {
            closed = false;
        }
        if (!closed && held_.use_count() == 1) static_cast<void>(held_->release());
    }

    Result<> write(std::string_view bytes) override {
        if (state_)
            state_ =
                ask<Result<>>(&patience_, path_, systemError(ETIMEDOUT),
                              [held = held_, text = std::string(bytes)] { return (*held)->write(text); });
        return state_;
    }

    Result<> commit() override {
        if (state_.failedAs(ErrorKind::kNoAnswer)) return state_;
        struct Outcome {
            Result<> result;
            std::string leftBehind = {};
        };
        const auto outcome = ask<Outcome>(&patience_, path_, Outcome{systemError(ETIMEDOUT)}, [held = held_] {
            Result<> committed = (*held)->commit();
            return Outcome{std::move(committed), (*held)->leftBehind()};
        });
        leftBehind_ = outcome.leftBehind;
        return state_ = outcome.result;
    }

    // This only notes what commit() does.
    void makePrivate() override {
        if (state_) (*held_)->makePrivate();
    }

    bool isTerminal() const override { return isTerminal_; }
    std::string leftBehind() const override { return leftBehind_; }

  private:
    Patience& patience_;
    const std::string path_;
    const Held held_;
    const bool isTerminal_;
    std::string leftBehind_;
    Result<> state_;
};

}  // namespace

Result<std::unique_ptr<ReplacingFile>> replacePatiently(
    Patience& patience, const std::string& path,
    std::function<Result<std::unique_ptr<ReplacingFile>>()> make) {
    using Made = Result<Held>;
    Made held = ask<Made>(&patience, path, systemError(ETIMEDOUT), [make = std::move(make)]() -> Made {
        auto file = make();
        if (!file) return file.error();
        return std::make_shared<std::unique_ptr<ReplacingFile>>(*std::move(file));
    });
    if (!held) return held.error();
    const bool isTerminal = (**held)->isTerminal();
    return {std::make_unique<PatientFile>(patience, path, *std::move(held), isTerminal)};
}

}  // namespace hl
