#pragma once

#include "tests/support/all_windows.h"

#include <QTest>

namespace mact {

/// Gives a test a row for each of the states, with its place as "row".
inline void AddRows(const std::vector<WindowState>& states) {
    QTest::addColumn<int>("row");
    for (std::size_t row = 0; row < states.size(); ++row)
        QTest::newRow(states[row].Name) << static_cast<int>(row);
}
} // namespace mact
