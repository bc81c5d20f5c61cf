#ifndef XMLREADER_H
#define XMLREADER_H

#include "sorvinresultdata.h"

namespace SorvinResultDataXml {

/// Fill an empty object from \a xml. A true result means well-formed with the right root element;
/// otherwise \a error, \a line and \a column are set and the object holds what stood complete in
/// front of the error. Never throw.
struct ReadError
{
    const char* text = nullptr;
    int line = 0;
    int column = 0;
};
ReadError ReadXml(const QString& xml, DataBlock& dataBlock) noexcept;
ReadError ReadXml(const QString& xml, Transmission& transmission) noexcept;
ReadError ReadXml(const QString& xml, SorvinResultData& resultData) noexcept;

} // namespace SorvinResultDataXml

#endif
