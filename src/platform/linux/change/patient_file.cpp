#include "platform/linux/change/patient_file.h"

#include <cerrno>
#include <string_view>
#include <tuple>
#include <utility>

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

    int write(std::string_view bytes) override {
        if (error_ == 0)
            error_ = ask<int>(&patience_, path_, ETIMEDOUT,
                              [held = held_, text = std::string(bytes)] { return (*held)->write(text); });
        return error_;
    }

    int commit() override {
        if (error_ == ETIMEDOUT) return error_;
        using Outcome = std::pair<int, std::string>;
        std::tie(error_, leftBehind_) =
            ask<Outcome>(&patience_, path_, Outcome(ETIMEDOUT, ""), [held = held_] {
                const int error = (*held)->commit();
                return Outcome(error, (*held)->leftBehind());
            });
        return error_;
    }

    bool isTerminal() const override { return isTerminal_; }
    std::string leftBehind() const override { return leftBehind_; }

  private:
    Patience& patience_;
    const std::string path_;
    const Held held_;
    const bool isTerminal_;
    std::string leftBehind_;
    int error_ = 0;
};

}  // namespace

std::unique_ptr<ReplacingFile> replacePatiently(
    Patience& patience, const std::string& path,
    std::function<std::unique_ptr<ReplacingFile>(int& error)> make, int& error) {
    using Made = std::pair<Held, int>;
    auto [held, code] = ask<Made>(&patience, path, Made(nullptr, ETIMEDOUT), [make = std::move(make)] {
        int failed = 0;
        auto file = make(failed);
        return Made(file ? std::make_shared<std::unique_ptr<ReplacingFile>>(std::move(file)) : nullptr,
                    failed);
    });
    error = code;
    if (!held) return nullptr;
    const bool isTerminal = (*held)->isTerminal();
    return std::make_unique<PatientFile>(patience, path, std::move(held), isTerminal);
}

}  // namespace hl
