// An open file that is closed with its owner, and the calls on it that go on after an interruption.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace hl {

class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        close();
        number_ = std::exchange(other.number_, -1);
        return *this;
    }

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }
    /// System error code: a file system that writes behind tells of a failure only now.
    int close();

  private:
    int number_;
};

/// Opens `path` below the open folder `folder`, never as a controlling terminal. Not open, with errno set, if
/// it fails.
Descriptor openAt(int folder, const std::string& path, int flags, unsigned mode = 0);

/// Opens a file for a look that leaves no trace in its time of access (a column of the lists), where the
/// system lets it: with files of one's own. Never waits for a writer. As above.
Descriptor openToLook(const std::string& path, int flags = 0);

/// The path of an open folder, as the kernel tells it; empty if it is too long for that.
std::string pathOfFolder(const Descriptor& folder);

/// Writes all of `bytes`. System error code. A pipe without a reader is EPIPE, and no signal.
int writeAll(int file, std::string_view bytes);

/// Appends up to `limit` bytes of the file to `out`. System error code; EFBIG if there are more.
int readAll(int file, std::size_t limit, std::string& out);

}  // namespace hl
