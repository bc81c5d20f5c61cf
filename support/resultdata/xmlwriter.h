#ifndef XMLWRITER_H
#define XMLWRITER_H

#include "sorvinresultdata.h"

#include <QVarLengthArray>

namespace SorvinResultDataXml {

/// Collects one XML document. Throws SorvinResultDataException when it gets too large,
/// std::bad_alloc when memory runs out.
class XmlWriter
{
public:
    XmlWriter() = default;
    XmlWriter(const XmlWriter&) = delete;
    XmlWriter& operator=(const XmlWriter&) = delete;

    /// Element with everything in it.
    void Write(const TimeStamp& stamp);
    void Write(const UserData& userData);
    void Write(const DataBlock& dataBlock);
    void Write(const Transmission& transmission);
    void Write(const SorvinResultData& resultData);

    QString ToString() const;

private:
    /// Markup as it stands, a literal.
    template <size_t size> void Raw(const char16_t (&literal)[size])
    {
        Append(literal, static_cast<int>(size) - 1);
    }
    template <size_t size> void NumberAttribute(const char16_t (&markup)[size], int number);
    template <size_t size>
    void TimeAttribute(const char16_t (&markup)[size], const QDateTime& time);
    template <size_t size> void TextAttribute(const char16_t (&markup)[size], const QString& text);
    template <size_t openSize, size_t closeSize>
    void TextElement(const char16_t (&open)[openSize], const QString& text,
                     const char16_t (&close)[closeSize]);
    void Text(const QString& text);
    const QChar* Special(const QChar* p, const QChar* end);
    void Append(const char16_t* units, int count);

    QVarLengthArray<char16_t, 1024> buffer;
};

/// The XML of \a object. Throws nothing but SorvinResultDataException.
QString WriteXml(const DataBlock& object);
QString WriteXml(const Transmission& object);
QString WriteXml(const SorvinResultData& object);

} // namespace SorvinResultDataXml

#endif
