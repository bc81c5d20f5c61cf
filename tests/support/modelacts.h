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

/// The newest block of a channel, null when it has none.
inline DecodedTextBlockPtr Newest(DecodedTextData& model, int channel)
{
    return model.GetChannelData(channel)->GetLastBlock();
}

/// Stores an annotation; \a text is a change's new text, \a old what it replaces unless that is
/// what stands there. False when it was refused.
inline bool Store(DecodedTextData& model, const DecodedTextBlockPtr& block, const QString& type,
                  int from, int to, const QString& text, const QString* old = nullptr)
{
    SorvinResultDataXml::UserData* annotation = Annotation(type, from, to, text);
    annotation->SetModifier(model.GetModifier(), TestStart());
    if (type == SorvinResultDataXml::UserData::ChangeType) {
        qSwap(annotation->comment, annotation->text);
        annotation->oldText = old ? *old : block->GetText(from, to);
        annotation->end = from + Length(text);
    }
    const bool stored = model.SetUserData(block, annotation, type, from, to);
    if (!stored) {
        delete annotation;
    }
    return stored;
}

/// Stores an annotation in the newest merged block.
inline bool StoreMerged(DecodedTextData& model, const QString& type, int from, int to,
                        const QString& text)
{
    return Store(model, Newest(model, 0), type, from, to, text);
}

#endif
