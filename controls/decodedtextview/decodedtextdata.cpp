// The model's channels and settings. Ingest is in decodedtextdata_ingest.cpp, annotations in
// decodedtextdata_annotations.cpp, the export in decodedtextdata_export.cpp. Invariant:
// buffersByChannel names exactly the buffers in `buffers`, at most one for a channel.

#include "decodedtextdata.h"

#include "decodedtextclock.h"
#include "userdata.h"

#include <QPointer>

namespace {
const int kMinBufferSize = 1000;
const int kDefaultBufferSize = 10000;
const int kDefaultQualityThreshold = 80;
const int kDefaultInfoAreaWidth = 50;

QString DefaultForeground()
{
    return QString::fromLatin1("Black");
}

QString DefaultBackground()
{
    return QString::fromLatin1("White");
}
} // namespace

DecodedTextData::DecodedTextData(QObject* parent)
    : QObject(parent)
    , foregroundColor(DefaultForeground())
    , backgroundColor(DefaultBackground())
    , userDataEnabled(true)
    , configurationChanged(false)
    , offline(false)
    , qualityThreshold(kDefaultQualityThreshold)
    , bufferSize(kDefaultBufferSize)
    , infoAreaWidth(kDefaultInfoAreaWidth)
    , clock(nullptr)
{
}

DecodedTextData::~DecodedTextData() {}

DecodedTextBufferPtr DecodedTextData::GetChannelData(int channel)
{
    DecodedTextBuffer* known = buffersByChannel.value(channel, nullptr);
    if (known) {
        return DecodedTextBufferPtr(known);
    }
    const DecodedTextBufferPtr buffer(new DecodedTextBuffer(channel));
    buffers.append(buffer);
    buffersByChannel.insert(channel, buffer.data());
    Q_EMIT ChannelCreated(channel);
    return buffer;
}

bool DecodedTextData::ChannelExists(int channel) const
{
    return buffersByChannel.contains(channel);
}

bool DecodedTextData::Holds(const DecodedTextBufferPtr& buffer) const
{
    return buffersByChannel.value(buffer->channel, nullptr) == buffer.data();
}

void DecodedTextData::RemoveChannelData(int channel)
{
    if (buffersByChannel.remove(channel) == 0) {
        return;
    }
    for (int i = 0; i < buffers.size(); ++i) {
        if (buffers.at(i)->channel == channel) {
            buffers.remove(i);
            return;
        }
    }
}

void DecodedTextData::Clear()
{
    buffers.clear();
    buffersByChannel.clear();
}

void DecodedTextData::ResetView()
{
    Q_EMIT ResetRequest();
}

void DecodedTextData::DefineChannelName(int channel, const QString& name)
{
    channelNames[channel] = name;
    if (channel > 0) {
        RememberCallSign(name);
    }
    const QPointer<DecodedTextData> self(this);
    const DecodedTextBufferPtr merged = GetChannelData(AggregationChannelID);
    const DecodedTextBlockPtr newest = merged->GetLastBlock();
    if (!self || !newest || channel < 1) {
        return; // only labels carry a channel, and none below 1
    }
    for (SorvinResultDataXml::UserData* annotation : newest->userData) {
        if (annotation->type == SorvinResultDataXml::UserData::CallSignType &&
            annotation->channel == channel) {
            annotation->callSign = name;
        }
    }
}

void DecodedTextData::SetChannelSeparator(QString separator)
{
    if (separator == channelSeparator) {
        return;
    }
    const QPointer<DecodedTextData> self(this);
    const DecodedTextBufferPtr merged = GetChannelData(AggregationChannelID);
    if (!self) {
        return;
    }
    const DecodedTextBlockPtr newest = merged->GetLastBlock();
    const QString old = channelSeparator;
    // Stored before the signal, so that a receiver that asks or merges finds the text that stands
    // in the block.
    channelSeparator = separator;
    if (!newest) {
        return;
    }
    if (!old.isEmpty()) {
        newest->ApplySeparator(0, old, false);
    }
    if (!separator.isEmpty()) {
        newest->ApplySeparator(0, separator, true);
    }
    Q_EMIT DataChanged(newest->channel, true);
}

void DecodedTextData::SetBufferSize(int size)
{
    const int clamped = qMax(size, kMinBufferSize);
    if (clamped != bufferSize) {
        bufferSize = clamped;
        configurationChanged = true;
    }
}

void DecodedTextData::SetQualityThreshold(int threshold)
{
    const int clamped = qBound(0, threshold, 100);
    if (clamped != qualityThreshold) {
        qualityThreshold = clamped;
        configurationChanged = true;
        Q_EMIT PropertiesChanged();
    }
}

void DecodedTextData::SetInfoAreaWidth(int width)
{
    const int clamped = qMax(width, 0);
    if (clamped != infoAreaWidth) {
        infoAreaWidth = clamped;
        configurationChanged = true;
    }
}

void DecodedTextData::SetProperties(int newBufferSize, int newQualityThreshold,
                                    int newInfoAreaWidth, QString foreground, QString background)
{
    const int size = qMax(newBufferSize, kMinBufferSize);
    const int threshold = qBound(0, newQualityThreshold, 100);
    const QString front = foreground.isEmpty() ? DefaultForeground() : foreground;
    const QString back = background.isEmpty() ? DefaultBackground() : background;
    if (size == bufferSize && threshold == qualityThreshold && newInfoAreaWidth == infoAreaWidth &&
        front == foregroundColor && back == backgroundColor) {
        return;
    }
    bufferSize = size;
    qualityThreshold = threshold;
    infoAreaWidth = newInfoAreaWidth;
    foregroundColor = front;
    backgroundColor = back;
    configurationChanged = true;
    Q_EMIT PropertiesChanged();
}

bool DecodedTextData::GetConfigurationChanged()
{
    const bool was = configurationChanged;
    configurationChanged = false;
    return was;
}

void DecodedTextData::EnableUserData(bool on)
{
    userDataEnabled = on;
}

void DecodedTextData::SetOffline(bool on)
{
    offline = on;
}

void DecodedTextData::SetClock(DecodedTextClock* newClock)
{
    clock = newClock;
}

QDateTime DecodedTextData::GetTickCount() const
{
    return clock ? clock->CurrentTime() : QDateTime::currentDateTimeUtc();
}
