#pragma once

#include <QTest>

/// The table of a data-driven test: constructed with the columns' names, called once for each row.
template <typename... Values> class Rows {
public:
    template <typename... Names> explicit Rows(Names... columns)
    {
        (QTest::addColumn<Values>(columns), ...);
    }
    void operator()(const char *name, const Values &...values) const
    {
        (QTest::newRow(name) << ... << values);
    }
};
