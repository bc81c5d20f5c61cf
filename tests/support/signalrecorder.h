// Keeps all signals that an object's class declares in one ordered list, as texts such as
// "DataChanged(1,true)". Works on the meta-object alone, so that it needs none of its own.
#ifndef SIGNALRECORDER_H
#define SIGNALRECORDER_H

#include "testcompat.h"

#include <QStringList>

#include <functional>

class SignalRecorder : public QObject
{
public:
    /// Records the signals of \a sender's class, not those of its bases. \a sender may go first.
    explicit SignalRecorder(const QObject* sender)
    {
        const QMetaObject* meta = sender->metaObject();
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            if (meta->method(i).methodType() == QMetaMethod::Signal) {
                QMetaObject::connect(sender, i, this,
                                     FirstSlot() + static_cast<int>(methods.size()),
                                     Qt::DirectConnection, nullptr);
                methods.append(meta->method(i));
            }
        }
    }
    /// What was recorded since the last call, separated by blanks.
    QString Take()
    {
        const QString all = calls.join(QLatin1String(" "));
        calls.clear();
        return all;
    }

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id >= 0 && call == QMetaObject::InvokeMetaMethod && id < methods.size()) {
            calls.append(Print(methods.at(id), arguments));
            const std::function<void(const QString&)> action = onSignal;
            if (action) {
                action(QString(calls.last()));
            }
        }
        return -1;
    }

    QStringList calls;
    std::function<void(const QString&)> onSignal; ///< called inside each signal, with its text

private:
    static int FirstSlot() { return QObject::staticMetaObject.methodCount(); }
    static QString Print(const QMetaMethod& method, void** arguments)
    {
        QStringList values;
        for (const QByteArray& type : method.parameterTypes()) {
            ++arguments;
            values.append(type == "int"       ? QString::number(*static_cast<int*>(*arguments))
                          : type == "bool"    ? QVariant(*static_cast<bool*>(*arguments)).toString()
                          : type == "QString" ? *static_cast<QString*>(*arguments)
                                              : QString::fromLatin1(type.constData()));
        }
        const QByteArray signature = MethodSignature(method, 0);
        return QString::fromLatin1(signature.left(signature.indexOf('(') + 1).constData()) +
               values.join(QLatin1String(",")) + QLatin1Char(')');
    }

    QList<QMetaMethod> methods;
};

#endif
