// The transmission: a start and a stop time and the data blocks it owns, from a host or from XML.
#include "transmission.h"

#include "ownedvector.h"
#include "xmlreader.h"
#include "xmlwriter.h"

namespace SorvinResultDataXml {

Transmission::~Transmission()
{
    DeleteAll(dataBlocks);
}

bool Transmission::SetXmlString(const QString& xml)
{
    startTime = QDateTime();
    stopTime = QDateTime();
    DeleteAll(dataBlocks);
    const ReadError error = ReadXml(xml, *this);
    SetError(error.text, error.line, error.column);
    return !error.text;
}

QString Transmission::GetXmlString() const
{
    return WriteXml(*this);
}

void Transmission::AddDataBlock(DataBlock* dataBlock)
{
    AppendOwned(dataBlocks, dataBlock);
}

bool Transmission::operator==(const Transmission& other) const
{
    return CompareTimes(startTime, other.startTime) == 0 &&
           CompareTimes(stopTime, other.stopTime) == 0 &&
           EqualObjects(dataBlocks, other.dataBlocks);
}

} // namespace SorvinResultDataXml
