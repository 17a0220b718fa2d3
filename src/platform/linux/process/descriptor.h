// An open file that is closed with its owner, and calls on it that continue after an interruption. From any
// thread.
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
    /// Closes it. Returns a system error code: a file system that delays writing reports a failure only now.
    int close();
    /// Gives it up without closing it.
    int release() { return std::exchange(number_, -1); }

  private:
    int number_;
};

/// Opens `path` below the open folder `folder`, never as a controlling terminal. On failure the result is not
/// open, and errno is set.
Descriptor openAt(int folder, const std::string& path, int flags, unsigned mode = 0);

/// Opens a file without changing its time of access (a column of the lists), if the system allows that: for
/// the user's own files. Never waits for a writer. On failure the result is not open, and errno is set.
Descriptor openToLook(const std::string& path, int flags = 0);

/// Returns the path of an open folder, as the kernel tells it; empty if it is too long for that.
std::string pathOfFolder(const Descriptor& folder);

/// Writes all of `bytes`. Returns a system error code; a pipe without a reader gives EPIPE and no signal.
int writeAll(int file, std::string_view bytes);

/// Appends up to `limit` bytes of the file to `out`. Returns a system error code; EFBIG if there are more.
int readAll(int file, std::size_t limit, std::string& out);

/// Returns the first `limit` bytes of a file; empty if it cannot be read.
std::string contentOf(const std::string& path, std::size_t limit);

}  // namespace hl
