// Room made beforehand, so that what follows cannot run out of memory halfway.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace hl {

/// The next `more` elements need no memory. The room grows by half of itself at least, so that many calls
/// cost no more than as many push_back.
template <class T>
void makeRoom(std::vector<T>& elements, std::size_t more) {
    if (elements.capacity() - elements.size() >= more) return;
    elements.reserve(std::max(elements.size() + more, elements.capacity() + elements.capacity() / 2));
}

}  // namespace hl
