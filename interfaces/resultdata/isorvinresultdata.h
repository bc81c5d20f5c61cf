#ifndef ISORVINRESULTDATA_H
#define ISORVINRESULTDATA_H

#include "resultdataexport.h"

#include <QString>

namespace SorvinResultDataXml {

/// What converts itself to and from result-data XML: a DataBlock, a Transmission, a
/// SorvinResultData. The format is described in docs/result-data.md. Objects of one class written
/// by GetXmlString and read by SetXmlString are equal. Not thread-safe; different objects may be
/// used in different threads.
class RESULTDATA_EXPORT ISorvinResultData
{
public:
    virtual ~ISorvinResultData();

    /// Replaces the content of the object by what \a xml says; the root element must be the one of
    /// the class. Returns true when \a xml is well-formed and has that root element. Otherwise
    /// false: the object then holds what stood complete in front of the error (whole data blocks;
    /// nothing at all for a foreign root), and the GetError functions tell where it is. "Nothing
    /// could be read" is false with an empty object; a transmission that merely has no data blocks
    /// is true. Never throws, whatever the input, also when memory runs out.
    virtual bool SetXmlString(const QString& xml) = 0;

    /// The object as XML on a single line without a trailing line feed and without an XML
    /// declaration. Throws SorvinResultDataException when the document would be too large.
    virtual QString GetXmlString() const = 0;

    /// Why the last SetXmlString returned false, in English; empty when it returned true or was
    /// never called.
    QString GetErrorText() const;
    /// Line of the error, the first line being 1; 0 without an error or without a place (memory ran
    /// out).
    int GetErrorLine() const { return errorLine; }
    /// UTF-16 code unit of the error in its line, the first being 1; 0 as for the line.
    int GetErrorColumn() const { return errorColumn; }

protected:
    ISorvinResultData() = default;
    ISorvinResultData(const ISorvinResultData&) = default;
    ISorvinResultData& operator=(const ISorvinResultData&) = default;

    /// \a text lives as long as the program (a literal), so that reporting lost memory needs none;
    /// null: no error.
    void SetError(const char* text, int line, int column) noexcept;

private:
    const char* errorText = nullptr;
    int errorLine = 0;
    int errorColumn = 0;
};

} // namespace SorvinResultDataXml

#endif
