// The exception's texts and numbers as they were given. Out of line, so that every library shares
// one type.
#include "hxbase/hxexception.h"

HXException::HXException(const QString& messageText, const QString& fileName,
                         const QString& nameOfClass, const QString& methodName,
                         unsigned int lineNumber, unsigned int codeNumber)
    : message(messageText)
    , file(fileName)
    , className(nameOfClass)
    , method(methodName)
    , line(lineNumber)
    , code(codeNumber)
{
}

HXException::~HXException() {}

QString HXException::GetMessage() const
{
    return message;
}

QString HXException::GetFile() const
{
    return file;
}

QString HXException::GetClassName() const
{
    return className;
}

QString HXException::GetMethod() const
{
    return method;
}

unsigned int HXException::GetLine() const
{
    return line;
}

unsigned int HXException::GetCode() const
{
    return code;
}
