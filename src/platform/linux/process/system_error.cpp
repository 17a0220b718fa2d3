#include "platform/linux/process/system_error.h"

#include <string.h>

#include <cerrno>
#include <utility>

namespace hl {

namespace {

ErrorKind kindOf(int number) {
    switch (number) {
        case ENOENT:
            return ErrorKind::kNotFound;
        case ENOTDIR:
            return ErrorKind::kNoFolder;
        case EEXIST:
            return ErrorKind::kTaken;
        case ETIMEDOUT:
            return ErrorKind::kNoAnswer;
        case ESTALE:
            return ErrorKind::kOtherFolder;
        case ESPIPE:
            return ErrorKind::kUnsuited;
        case EPIPE:
            return ErrorKind::kReaderGone;
        default:
            return ErrorKind::kOther;
    }
}

}  // namespace

Error systemError(int number, std::string name) {
    const char* text = strerrordesc_np(number);  // Not translated by the locale, as strerror's is.
    return {number, text != nullptr ? text : "", std::move(name), kindOf(number)};
}

Result<> systemResult(int number, std::string name) {
    if (number == 0) return {};
    return systemError(number, std::move(name));
}

}  // namespace hl
