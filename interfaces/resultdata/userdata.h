#ifndef USERDATA_H
#define USERDATA_H

#include "resultdataexport.h"

#include <QDateTime>
#include <QString>

namespace SorvinResultDataXml {

/// An annotation of an operator: a call sign, a comment or a change of the decoded text. A value
/// that can be copied; the fields are used directly. Which positions start and end count is up to
/// who fills them in.
class RESULTDATA_EXPORT UserData
{
public:
    /// The three kinds. Compare `type` with these, never with their text.
    static const QString CallSignType;
    static const QString CommentType;
    static const QString ChangeType;

    UserData() = default;
    UserData(const UserData&) = default;
    UserData& operator=(const UserData&) = default;

    /// Who made the annotation and when; the time should be UTC.
    void SetModifier(const QString& user, const QDateTime& time);
    /// The name given to SetModifier; empty when there was none.
    QString GetModifier() const { return modifier; }
    /// The time given to SetModifier, unconverted; null when there was none.
    QDateTime GetModifierTime() const { return modifierTime; }

    /// Equal in all fields, the modifier included; times as instants.
    bool operator==(const UserData& other) const;
    bool operator!=(const UserData& other) const { return !(*this == other); }

    /// One of the three constants; empty in a new annotation.
    QString type;
    /// First position covered, and the position after the last one covered.
    int start = 0;
    int end = 0;
    /// Source channel of a channel label; -1: none.
    int channel = -1;
    /// Call sign and comment: the text annotated; change: the new text.
    QString text;
    /// The comment, or the remark on a change.
    QString comment;
    /// Change: the text that was replaced.
    QString oldText;
    /// Call sign: the call sign.
    QString callSign;

private:
    QString modifier;
    QDateTime modifierTime;
};

} // namespace SorvinResultDataXml

#endif
