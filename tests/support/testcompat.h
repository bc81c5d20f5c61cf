// What the tests use of QtTest beyond the oldest Qt, filled in where it is missing.
#ifndef TESTCOMPAT_H
#define TESTCOMPAT_H

#include <QCoreApplication>
#include <QMetaMethod>
#include <QtTest>

#ifndef QTEST_GUILESS_MAIN
#define QTEST_GUILESS_MAIN(TestClass)                                                              \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        QCoreApplication application(argc, argv);                                                  \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
#endif

#ifndef QTRY_COMPARE
#define QTRY_COMPARE(actual, expected)                                                             \
    do {                                                                                           \
        for (int waited = 0; waited < 5000 && !((actual) == (expected)); waited += 20)             \
            QTest::qWait(20);                                                                      \
        QCOMPARE(actual, expected);                                                                \
    } while (0)
#define QTRY_VERIFY(condition) QTRY_COMPARE(bool(condition), true)
#endif

#ifndef QT_MESSAGELOG_FILE // the oldest Qt compares equal types only
namespace QTest {
template <int size>
bool qCompare(const QString& actual, const char (&expected)[size], const char* actualText,
              const char* expectedText, const char* file, int line)
{
    return qCompare(actual, QString::fromUtf8(expected), actualText, expectedText, file, line);
}
} // namespace QTest
#endif

/// "name(types)" of a signal or slot, by the older spelling where the newer one does not exist.
template <typename Method>
auto MethodSignature(const Method& method, int) -> decltype(method.methodSignature())
{
    return method.methodSignature();
}
template <typename Method> QByteArray MethodSignature(const Method& method, long)
{
    return method.signature();
}

/// Pseudo-random numbers, the same in every build; a seed in a failure message brings a case back.
class Random
{
public:
    explicit Random(quint32 seed) { state = seed * 2654435761u + 1u; }
    /// A number in [0, below).
    int operator()(qint64 below)
    {
        state = state * 1664525u + 1013904223u;
        return static_cast<int>((state >> 8) % static_cast<quint32>(below));
    }

private:
    quint32 state;
};

#endif
