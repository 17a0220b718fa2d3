// Makes room in a vector beforehand, so that what follows cannot run out of memory halfway.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace hl {

/// Makes room for `more` elements. The capacity grows by at least half of itself, so that many calls cost no
/// more than as many push_back.
template <class T>
void makeRoom(std::vector<T>& elements, std::size_t more) {
    if (elements.capacity() - elements.size() >= more) return;
    elements.reserve(std::max(elements.size() + more, elements.capacity() + elements.capacity() / 2));
}

}  // namespace hl
