// The base of the test objects: a warning that a test function did not announce fails it.
#ifndef WATCHEDTEST_H
#define WATCHEDTEST_H

#include "testcompat.h"

class WatchedTest : public QObject
{
    Q_OBJECT

public:
    /// Lets messages that contain \a text pass until the end of the test function.
    static void Announce(const QString& text);

protected Q_SLOTS:
    void init();
    void cleanup();
};

#endif
