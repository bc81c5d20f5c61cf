// The annotation index and deleting annotations by a rule, for the sources of DecodedTextBlock.
#ifndef DECODEDTEXTBLOCK_USERDATA_H
#define DECODEDTEXTBLOCK_USERDATA_H

#include "decodedtextblock.h"
#include "userdata.h"

#include <algorithm>

/// Annotations of more positions are listed apart from the index over their starts.
const int kLongAnnotation = 1024;

inline bool IsLongAnnotation(const SorvinResultDataXml::UserData& annotation)
{
    return static_cast<qint64>(annotation.end) - annotation.start > kLongAnnotation;
}

/// Whether the annotation is the name that a merge put in front of a channel's text.
inline bool IsLabel(const SorvinResultDataXml::UserData& annotation)
{
    return annotation.type == SorvinResultDataXml::UserData::CallSignType &&
           annotation.channel >= 1;
}

inline bool StartsEarlier(const SorvinResultDataXml::UserData* a,
                          const SorvinResultDataXml::UserData* b)
{
    return a->start < b->start;
}

/// Deletes the annotations with start <= \a to and end >= \a from for which \a goes answers true.
/// Costs what lies in the range.
template <typename Predicate>
void DecodedTextBlock::DeleteUserDataIf(int from, int to, Predicate goes)
{
    LearnUserData();
    const QVector<UserData*> apart = longUserData;
    const int low = FirstWithin(from);
    const int high = BehindStart(to);
    int kept = low;
    for (int i = low; i < high; ++i) {
        UserData* annotation = userData.at(i);
        if (annotation->end >= from && annotation->start <= to && goes(*annotation)) {
            const int place = static_cast<int>(longUserData.indexOf(annotation));
            if (place >= 0) {
                longUserData.remove(place);
            }
            appliedShares.remove(annotation);
            delete annotation;
        } else {
            userData[kept++] = annotation;
        }
    }
    if (kept < high) {
        userData.erase(userData.begin() + kept, userData.begin() + high);
        UserDataChanged();
    }
    // The long ones that begin too far in front for the search.
    for (UserData* annotation : apart) {
        const bool stillThere = longUserData.contains(annotation);
        if (stillThere && annotation->end >= from && annotation->start <= to && goes(*annotation)) {
            delete TakeUserData(annotation);
        }
    }
}

#endif
