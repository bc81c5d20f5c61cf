// Takes the messages of the running test function, passes them on, and keeps those that nobody
// announced.
#include "watchedtest.h"

#include <QStringList>

namespace {

QStringList announced, unexpected;

void Take(QtMsgType type, const QString& message)
{
    bool expected = type != QtWarningMsg && type != QtCriticalMsg;
    for (const QString& text : announced) {
        expected = expected || message.contains(text);
    }
    if (!expected) {
        unexpected.append(message);
    }
}

#ifdef QT_MESSAGELOG_FILE // the kind of handler that gets its message as a QString
QtMessageHandler previous = nullptr;

void Handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    Take(type, message);
    previous(type, context, message);
}

QtMessageHandler Install(QtMessageHandler handler)
{
    return qInstallMessageHandler(handler);
}
#else
QtMsgHandler previous = nullptr;

void Handle(QtMsgType type, const char* message)
{
    Take(type, QString::fromLocal8Bit(message));
    previous(type, message);
}

QtMsgHandler Install(QtMsgHandler handler)
{
    return qInstallMsgHandler(handler);
}
#endif

} // namespace

void WatchedTest::Announce(const QString& text)
{
    announced.append(text);
}

void WatchedTest::init()
{
    unexpected.clear();
    announced = QStringList(QString::fromLatin1("This plugin does not support")); // offscreen's
    previous = Install(&Handle);
}

void WatchedTest::cleanup()
{
    Install(previous);
    QCOMPARE(unexpected.join(QString::fromLatin1("\n")), QString());
}
