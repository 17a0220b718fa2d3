// Puts into words what a delete gives back. For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "app/texts.h"
#include "base/number_format.h"
#include "platform/form.h"
#include "platform/freed_space.h"

namespace hl {

class FreedTexts {
  public:
    /// Both must outlive it.
    FreedTexts(const Texts& texts, const NumberFormat& numbers) : texts_(texts), numbers_(numbers) {}

    /// Returns a line for each thing that becomes of some of the bytes: what, how many bytes, how many files.
    std::vector<TableBox::Line> lines(const FreedSpace& figures) const;
    std::vector<std::string> titles() const;
    /// Tells whether the figures still grow, and else when they were taken.
    std::string state(const FreedSpace& figures) const;
    /// Returns one or two lines for the question before a delete.
    std::string summary(const FreedSpace& figures) const;

  private:
    std::string bytes(std::uint64_t count) const;
    std::string count(std::uint64_t number) const;
    std::string holders(const FreedWhenClosed& closed) const;
    std::string soon(const FreedSpace& figures) const;
    TableBox::Line line(std::string caption, const FreedAmount& amount, std::string tooltip) const;
    void addNotes(const FreedSpace& figures, std::vector<TableBox::Line>& lines) const;

    const Texts& texts_;
    const NumberFormat& numbers_;
};

}  // namespace hl
