// Shows balances in the main window: finds the source, collects its figures, and leads from the lines to the
// rows that they count. For the thread of the logic only.
#pragma once

#include <optional>
#include <string>

#include "grid/grid.h"
#include "output/balance_text.h"

namespace hl {

struct MainForm;

class BalanceControl {
  public:
    explicit BalanceControl(MainForm& form) : form_(form) {}

    /// Shows the balance of the source that the row of the report belongs to.
    void showOf(Row row);
    /// Shows the balance of the drive of the current row of the drive list, if it is a source.
    void showOfDrive();

  private:
    std::optional<SourceBalance> collect(Row source);
    void show(Row source);
    void leadTo(BalanceLine line, Row source);
    void say(const std::string& text);
    void sayNotRead(const std::string& path);

    MainForm& form_;
};

}  // namespace hl
