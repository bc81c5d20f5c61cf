#ifndef SORVINRESULTDATAEXCEPTION_H
#define SORVINRESULTDATAEXCEPTION_H

#include "resultdataexport.h"

#include <QString>

namespace SorvinResultDataXml {

/// Thrown by GetXmlString when the document cannot be made: it would be longer than a QString can
/// hold, or memory ran out. The object that was asked for its XML is unchanged. Nothing else in the
/// library throws it.
class RESULTDATA_EXPORT SorvinResultDataException
{
public:
    explicit SorvinResultDataException(const QString& text);

    /// What went wrong, in English, for a trace line. Stays the first field.
    QString message;
};

} // namespace SorvinResultDataXml

#endif
