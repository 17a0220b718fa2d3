// How something that was asked of the system failed: the one kind of failure that the interfaces of platform/
// tell. It is a value; nothing is thrown for it. Base never makes one: only the implementations know the
// system's numbers, and there one function turns a number into an Error.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace hl {

/// The failures that are treated in a way of their own. All others are only told to the user.
enum class ErrorKind : std::uint8_t {
    kOther,
    kNotFound,     ///< Nothing has that name.
    kNoFolder,     ///< What should be a folder is none.
    kNoAnswer,     ///< The disk does not answer.
    kOtherFolder,  ///< The place has become another folder than the one that was read.
    kUnsuited,     ///< It is a pipe, or another thing that must not be opened; it was not touched.
    kReaderGone,   ///< What reads a pipe has left.
    kNoTrash,      ///< The mount has no trash, and none can be made.
    kTaken,        ///< Something else has that name.
    kMovedOn,      ///< It is no longer where it was left, or something else is there now.
};

struct Error {
    int number = 0;         ///< The system's number, which the user sees; 0 if the system has none for it.
    std::string text = {};  ///< In English, whatever the language; empty if the system has no text for it.
    std::string name = {};  ///< The thing that failed; empty if it is the one that the caller named.
    ErrorKind kind = ErrorKind::kOther;
};

template <class U, class T>
concept ValueFor = std::is_convertible_v<U, T> && !std::is_convertible_v<U, Error>;

/// A value, or the reason why there is none.
template <class T = void>
class [[nodiscard]] Result {
  public:
    template <ValueFor<T> U = T>
    Result(U&& value)  // NOLINT(bugprone-forwarding-reference-overload): no Result is a ValueFor.
        : is_(std::in_place_index<0>, std::forward<U>(value)) {}
    Result(Error error) : is_(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return is_.index() == 0; }
    /// REQUIRES: there is a value.
    T& operator*() & { return *std::get_if<0>(&is_); }
    const T& operator*() const& { return *std::get_if<0>(&is_); }
    T&& operator*() && { return std::move(*std::get_if<0>(&is_)); }
    T* operator->() { return std::get_if<0>(&is_); }
    const T* operator->() const { return std::get_if<0>(&is_); }
    /// REQUIRES: there is no value.
    const Error& error() const { return *std::get_if<1>(&is_); }

    T valueOr(T other) const& { return *this ? **this : std::move(other); }
    T valueOr(T other) && { return *this ? *std::move(*this) : std::move(other); }
    bool failedAs(ErrorKind kind) const { return !*this && error().kind == kind; }

  private:
    std::variant<T, Error> is_;
};

/// Success, or the reason why there is none.
template <>
class [[nodiscard]] Result<void> {
  public:
    Result() = default;
    Result(Error error) : error_(std::move(error)) {}

    explicit operator bool() const { return !error_; }
    /// REQUIRES: it failed.
    const Error& error() const { return *error_; }
    bool failedAs(ErrorKind kind) const { return error_ && error_->kind == kind; }

  private:
    std::optional<Error> error_;
};

}  // namespace hl
