#ifndef HXEXCEPTION_H
#define HXEXCEPTION_H

#include "hxbase/hxbaseglobal.h"

#include <QString>

/// The host framework's exception: a message with the place that raised it. A value; copies share
/// their texts.
class HXBASE_EXPORT HXException
{
public:
    /// \a file, \a className and \a method name the place, \a line the line there; \a code is the
    /// raiser's own number (0xFFFFFFFF: unknown). All of them are kept as given.
    HXException(const QString& message, const QString& file, const QString& className,
                const QString& method, unsigned int line, unsigned int code);
    virtual ~HXException();

    QString GetMessage() const;
    QString GetFile() const;
    QString GetClassName() const;
    QString GetMethod() const;
    unsigned int GetLine() const;
    unsigned int GetCode() const;

private:
    QString message;
    QString file;
    QString className;
    QString method;
    unsigned int line;
    unsigned int code;
};

#endif
