// What the classes of the library have in common: the place of the last error.
#include "isorvinresultdata.h"

namespace SorvinResultDataXml {

ISorvinResultData::~ISorvinResultData() = default;

QString ISorvinResultData::GetErrorText() const
{
    return QLatin1String(errorText ? errorText : "");
}

void ISorvinResultData::SetError(const char* text, int line, int column) noexcept
{
    errorText = text;
    errorLine = line;
    errorColumn = column;
}

} // namespace SorvinResultDataXml
