// Rows of a data-driven test as one text each: name and cells, separated by " ;; ". The test
// fetches them as QStringList "row".
#ifndef ROWTABLE_H
#define ROWTABLE_H

#include "testcompat.h"

#include <QStringList>

template <int count> void AddRows(const char* const (&rows)[count])
{
    QTest::addColumn<QStringList>("row");
    for (const char* const text : rows) {
        const QStringList cells = QString::fromUtf8(text).split(QLatin1String(" ;; "));
        QTest::newRow(cells.first().toLatin1().constData()) << QStringList(cells.mid(1));
    }
}

/// Number of seeds of a random test: the environment variable DTV_RANDOM_RUNS, or \a usual.
inline quint32 RandomRuns(quint32 usual)
{
    const quint32 runs = qgetenv("DTV_RANDOM_RUNS").toUInt();
    return runs > 0 ? runs : usual;
}

#endif
