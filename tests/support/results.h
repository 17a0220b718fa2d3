// What a Result says, as tests compare it.
#pragma once

#include "base/result.h"

namespace hl::test {

/// Returns the number of the error; 0 for success.
template <class T>
int numberOf(const Result<T>& result) {
    return result ? 0 : result.error().number;
}

}  // namespace hl::test
