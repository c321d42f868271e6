#pragma once

#include <QTest>
#include <cstddef>

// A data table of rows with a name, for tests whose rows are a constant array of structs: the
// _data function adds one row per element, the test reads its element back by index.
template <class T, std::size_t N> void AddRows(const T (&rows)[N]) {
    QTest::addColumn<int>("row");
    for (std::size_t i = 0; i < N; ++i)
        QTest::newRow(rows[i].name) << int(i);
}
template <class T, std::size_t N> const T& Row(const T (&rows)[N]) {
    QFETCH(int, row);
    return rows[row];
}
