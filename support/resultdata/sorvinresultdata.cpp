// Many transmissions in one object: what a recording holds and what an export is collected in.
#include "sorvinresultdata.h"

#include "ownedvector.h"
#include "xmlreader.h"
#include "xmlwriter.h"

namespace SorvinResultDataXml {

SorvinResultData::~SorvinResultData()
{
    DeleteAll(transmissions);
}

bool SorvinResultData::SetXmlString(const QString& xml)
{
    DeleteAll(transmissions);
    const ReadError error = ReadXml(xml, *this);
    SetError(error.text, error.line, error.column);
    return !error.text;
}

QString SorvinResultData::GetXmlString() const
{
    return WriteXml(*this);
}

void SorvinResultData::AddTransmission(Transmission* transmission)
{
    AppendOwned(transmissions, transmission);
}

bool SorvinResultData::operator==(const SorvinResultData& other) const
{
    return EqualObjects(transmissions, other.transmissions);
}

} // namespace SorvinResultDataXml
