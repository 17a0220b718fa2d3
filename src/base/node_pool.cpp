#include "base/node_pool.h"

#include "base/fault.h"

namespace hl {

std::int32_t grownSize(std::int32_t size, float growth, std::int32_t atLeast) {
    const double wanted = static_cast<double>(size) * static_cast<double>(growth);
    if (!(wanted > atLeast)) return atLeast;  // NaN, too, ends here.
    return wanted < INT32_MAX ? static_cast<std::int32_t>(wanted) : INT32_MAX;
}

void CNode::Init(std::int32_t size, float growth) {
    growth_ = growth;
    next_.assign(static_cast<std::size_t>(size) + 1, 0);
    linkFree(1);
}

std::int32_t CNode::Alloc() {
    if (head_ == 0) grow();
    const std::int32_t number = head_;
    head_ = entry(number);
    return number;
}

void CNode::Free(std::int32_t number) {
    entry(number) = head_;
    head_ = number;
}

void CNode::grow() {
    const auto last = static_cast<std::int32_t>(next_.size() - 1);
    if (last == INT32_MAX) raiseOverflow("CNode.Alloc");
    const auto elements = static_cast<std::size_t>(grownSize(last, growth_, last + 1)) + 1;
    next_.reserve(elements);  // Without this the vector would double, whatever the factor.
    next_.resize(elements);
    linkFree(last + 1);
}

// Makes the numbers from `first` to the end of the array the whole list of free ones.
void CNode::linkFree(std::int32_t first) {
    const auto last = static_cast<std::int32_t>(next_.size() - 1);
    for (std::int32_t number = first; number < last; ++number) entry(number) = number + 1;
    entry(last) = 0;
    head_ = first;
}

}  // namespace hl
