// Names the entries of the bars as their widgets are named: "cbrMain.3".
#pragma once

#include "app/command.h"
#include "mainwindow/bars.h"

namespace hl {

/// Prints a command in messages of tests.
inline std::ostream& operator<<(std::ostream& out, Command command) {
    return out << Bars().of(barOf(command)).name() << "." << idOf(command);
}

namespace test {

inline QString entryName(Command command) {
    const Bars bars;
    return QString::fromStdString(bars.of(barOf(command)).name() + "." + std::to_string(idOf(command)));
}

}  // namespace test
}  // namespace hl
