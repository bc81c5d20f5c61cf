// The annotation: a value whose fields the operator's side fills in. The type constants are also
// what stands in the XML.
#include "userdata.h"

#include "comparetimes.h"

namespace SorvinResultDataXml {

const QString UserData::CallSignType = QLatin1String("CallSign");
const QString UserData::CommentType = QLatin1String("Comment");
const QString UserData::ChangeType = QLatin1String("Change");

void UserData::SetModifier(const QString& user, const QDateTime& time)
{
    modifier = user;
    modifierTime = time;
}

bool UserData::operator==(const UserData& other) const
{
    return start == other.start && end == other.end && channel == other.channel &&
           type == other.type && text == other.text && comment == other.comment &&
           oldText == other.oldText && callSign == other.callSign && modifier == other.modifier &&
           CompareTimes(modifierTime, other.modifierTime) == 0;
}

} // namespace SorvinResultDataXml
