// Feeding and annotating a model in one call, for the tests of changes and merging and the random
// sequences beside them.
#ifndef MODELACTS_H
#define MODELACTS_H

#include "decodedtextdata.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "userdata.h"

inline QDateTime At(int second)
{
    return TestStart().addSecs(second);
}

inline int Length(const QString& text)
{
    return static_cast<int>(text.size());
}

inline SorvinResultDataXml::UserData* Annotation(const QString& type, int from, int to,
                                                 const QString& comment)
{
    SorvinResultDataXml::UserData* annotation = new SorvinResultDataXml::UserData;
    annotation->type = type;
    annotation->start = from;
    annotation->end = to;
    (type == SorvinResultDataXml::UserData::CallSignType ? annotation->callSign
                                                         : annotation->comment) = comment;
    return annotation;
}

/// Adds a transmission that is merged too; returns the last signal.
inline QString AddMerged(DecodedTextData& model, const QString& xml)
{
    QMap<int, int> channelMap;
    for (int channel = 1; channel <= 9; ++channel) {
        channelMap.insert(channel, channel);
    }
    SignalRecorder recorder(&model);
    QVector<int> channels;
    model.AddTransmission(channelMap, channels, xml);
    return recorder.calls.isEmpty() ? QString() : recorder.calls.last();
}

/// Stores an annotation in the newest merged block; \a text is a change's new text.
inline void StoreMerged(DecodedTextData& model, const QString& type, int from, int to,
                        const QString& text)
{
    const DecodedTextBlockPtr merged = model.GetChannelData(0)->GetLastBlock();
    SorvinResultDataXml::UserData* annotation = new SorvinResultDataXml::UserData;
    annotation->type = type;
    annotation->start = from;
    annotation->end = to;
    annotation->callSign = type == SorvinResultDataXml::UserData::CallSignType ? text : QString();
    annotation->comment = type == SorvinResultDataXml::UserData::CommentType ? text : QString();
    if (type == SorvinResultDataXml::UserData::ChangeType) {
        annotation->text = text;
        annotation->oldText = merged->GetText(from, to);
        annotation->end = from + static_cast<int>(text.size());
    }
    if (!model.SetUserData(merged, annotation, type, from, to)) {
        delete annotation;
    }
}

#endif
