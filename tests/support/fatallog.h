// Any warning that a test did not announce fails it: Start() in init(), Check() in cleanup().
#ifndef FATALLOG_H
#define FATALLOG_H

#include "testcompat.h"

#include <QStringList>

class FatalLog
{
public:
    void Start()
    {
        State() = Record();
        State().previous = Install(&Handle);
    }
    /// Lets messages that contain \a text pass until the end of the test function.
    static void Announce(const QString& text) { State().announced.append(text); }
    void Check()
    {
        Install(State().previous);
        QCOMPARE(State().unexpected.join(QLatin1String("\n")), QString());
    }

private:
#ifdef QT_MESSAGELOG_FILE // the kind of handler that gets its message as a QString
    typedef QtMessageHandler Handler;
    static Handler Install(Handler handler)
    {
        return qInstallMessageHandler(handler);
    }
    static void Handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
    {
        Take(type, message);
        State().previous(type, context, message);
    }
#else
    typedef QtMsgHandler Handler;
    static Handler Install(Handler handler)
    {
        return qInstallMsgHandler(handler);
    }
    static void Handle(QtMsgType type, const char* message)
    {
        Take(type, QString::fromLocal8Bit(message));
        State().previous(type, message);
    }
#endif
    struct Record
    {
        QStringList announced, unexpected;
        Handler previous = nullptr;
    };
    static Record& State()
    {
        static Record record;
        return record;
    }
    static void Take(QtMsgType type, const QString& message)
    {
        bool expected = type != QtWarningMsg && type != QtCriticalMsg;
        for (const QString& text : State().announced) {
            expected = expected || message.contains(text);
        }
        if (!expected) {
            State().unexpected.append(message);
        }
    }
};

#endif
