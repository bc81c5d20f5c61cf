// The methods that a class declares, in the order of its meta-object: "Name(types) parameter,names;
// ...".
#ifndef METAOBJECT_H
#define METAOBJECT_H

#include "testcompat.h"

#include <QStringList>

inline QString DeclaredMethods(const QMetaObject& meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QByteArray names;
        for (const QByteArray& name : meta.method(i).parameterNames()) {
            names += (names.isEmpty() ? " " : ",") + name;
        }
        methods.append(
            QString::fromLatin1((MethodSignature(meta.method(i), 0) + names).constData()));
    }
    return methods.join(QLatin1String("; "));
}

#endif
