// The way of a transmission into the model: XML -> transmission -> per data block: buffer, trim,
// block, append, signal, merge.
//
// Every signal may be answered by anything, the destruction of the model included: after each one
// the model is asked for through a guarded pointer, and buffers and blocks are held by shared
// pointers.

#include "datablock.h"
#include "decodedtextdata.h"
#include "decodedtexttime.h"
#include "decodedtexttrace.h"
#include "transmission.h"

#include <QPointer>

#include <limits>

using SorvinResultDataXml::DataBlock;
using SorvinResultDataXml::Transmission;

namespace {

const int kOfflineAggregationSize = 1000; ///< characters
const char kSource[] = "controls/decodedtextview/decodedtextdata_ingest";

/// False when nothing at all could be read, which is then said in a trace line.
bool Read(Transmission& transmission, const QString& xml)
{
    if (transmission.SetXmlString(xml) || !transmission.GetDataBlock().isEmpty()) {
        return true;
    }
    DecodedTextTrace::Write(QString::fromLatin1("AddTransmission: nothing could be read"), kSource,
                            31);
    return false;
}

/// IDs come from the outside too, so that counting on from one may reach the highest.
int NextId(int id)
{
    return id < std::numeric_limits<int>::max() ? id + 1 : 1;
}

} // namespace

void DecodedTextData::AddTransmission(const QString& xml)
{
    // Whatever is thrown, here or by a receiver, the host's feed must go on: what was taken in
    // stays.
    try {
        Transmission transmission;
        if (!Read(transmission, xml)) {
            return;
        }
        const QVector<DataBlock*>& dataBlocks = transmission.GetDataBlock();
        if (dataBlocks.isEmpty()) {
            EndTransmission();
            return;
        }
        const QPointer<DecodedTextData> self(this);
        const QDateTime start = DecodedTextTime::ToUtc(transmission.GetStartTime());
        for (DataBlock* dataBlock : dataBlocks) {
            AddData(dataBlock, start, DecodedTextBlockPtr());
            if (!self) {
                return;
            }
        }
    } catch (...) { // a receiver's; what was taken in stays, and the next transmission is read
    }
}

DecodedTextBlockPtr DecodedTextData::OpenAggregationBlock(const QDateTime& start)
{
    const DecodedTextBufferPtr buffer = GetChannelData(AggregationChannelID);
    const DecodedTextBlockPtr newest = buffer->GetLastBlock();
    if (!newest) {
        return buffer->GetBlock(start, 1);
    }
    return newest->closed ? buffer->GetBlock(start, NextId(newest->id)) : newest;
}

void DecodedTextData::AddTransmission(const QMap<int, int>& channelMap, QVector<int>& channels,
                                      const QString& xml)
{
    try {
        Transmission transmission;
        if (!Read(transmission, xml)) {
            return;
        }
        const QPointer<DecodedTextData> self(this);
        // Copies: a receiver may change what the host passed in.
        const QMap<int, int> map = channelMap;
        const QDateTime start = DecodedTextTime::ToUtc(transmission.GetStartTime());
        const DecodedTextBlockPtr aggregation = OpenAggregationBlock(start);
        for (DataBlock* dataBlock : transmission.GetDataBlock()) {
            const int incoming = dataBlock->GetChannel();
            const QMap<int, int>::const_iterator mapped = map.constFind(incoming);
            if (!self || mapped == map.constEnd() || mapped.value() == AggregationChannelID) {
                continue;
            }
            dataBlock->SetChannel(mapped.value());
            AddData(dataBlock, start, aggregation);
            if (self && !channels.contains(incoming)) {
                channels.append(incoming);
            }
        }
    } catch (...) { // a receiver's; what was taken in stays, and the next transmission is read
    }
}

void DecodedTextData::AddData(DataBlock* dataBlock, const QDateTime& start,
                              DecodedTextBlockPtr aggregation)
{
    const QPointer<DecodedTextData> self(this);
    const int channel = dataBlock->GetChannel();
    const DecodedTextBufferPtr buffer = GetChannelData(channel);
    if (!self || !Holds(buffer)) {
        return;
    }
    if (channel == UserChannelID) {
        AddUserChannelData(buffer, *dataBlock, start);
        return;
    }
    if (buffer->overflow && buffer->hold) {
        return;
    }
    const bool afterOverflow = buffer->overflow;
    bool refresh = true;
    if (afterOverflow) {
        buffer->overflow = false;
    } else {
        refresh = buffer->Trim(bufferSize);
    }
    const DecodedTextBlockPtr block = buffer->GetBlock(start, dataBlock->GetID());
    const int firstNew = block->AppendData(dataBlock, buffer->overflow, refresh);
    if (firstNew < 0) {
        if (refresh && !afterOverflow) {
            Q_EMIT DataChanged(channel, true);
        }
        return;
    }
    // A view that only extends its newest block would never show text that an older one got.
    refresh = refresh || block != buffer->GetLastBlock();
    Q_EMIT DataChanged(channel, refresh);
    if (self && aggregation) {
        MergeData(block, aggregation, firstNew);
    }
}

/// The user channel shows the operator's own text: data only opens a block for its transmission.
/// Edits of the block before it, which is closed by that, are handed over first.
void DecodedTextData::AddUserChannelData(const DecodedTextBufferPtr& buffer,
                                         const DataBlock& dataBlock, const QDateTime& start)
{
    const DecodedTextBlockPtr newest = buffer->GetLastBlock();
    if (newest && !offline && userDataEnabled && !buffer->blocks.Find(start, dataBlock.GetID()) &&
        newest->HasEditedData()) {
        ApplyUserChannel();
    }
    buffer->GetBlock(start, dataBlock.GetID());
}

void DecodedTextData::MergeData(const DecodedTextBlockPtr& block,
                                const DecodedTextBlockPtr& aggregation, int firstNewSnippetIndex)
{
    block->closed = true;
    const bool newText = firstNewSnippetIndex < block->snippets.size();
    const DecodedTextBuffer* merged = buffersByChannel.value(AggregationChannelID, nullptr);
    const bool stillHeld =
        merged && merged->blocks.Find(aggregation->startTime, aggregation->id) == aggregation;
    if (!stillHeld || (!newText && block->GetCutPosition() < 0)) {
        return;
    }
    bool refresh = false;
    if (aggregation->Merge(block.data(), this, firstNewSnippetIndex, refresh)) {
        Q_EMIT DataChanged(aggregation->channel, refresh);
    } else {
        DecodedTextTrace::Write(
            QString::fromLatin1("Merged channel is full: text of channel %1 left out")
                .arg(block->channel),
            kSource, 163);
    }
}

void DecodedTextData::EndTransmission()
{
    const QPointer<DecodedTextData> self(this);
    const QVector<DecodedTextBufferPtr> snapshot = buffers;
    for (const DecodedTextBufferPtr& buffer : snapshot) {
        if (Holds(buffer)) {
            EndTransmissionOf(buffer);
        }
        if (!self) {
            return;
        }
    }
}

void DecodedTextData::EndTransmissionOf(const DecodedTextBufferPtr& buffer)
{
    const DecodedTextBlockPtr newest = buffer->GetLastBlock();
    if (!newest || newest->closed) {
        return;
    }
    newest->closed = true;
    if (buffer->channel == UserChannelID) {
        const QPointer<DecodedTextData> self(this);
        if (!offline && userDataEnabled) {
            ApplyUserChannel();
        }
        if (!self || !Holds(buffer)) {
            return;
        }
        buffer->KeepLastBlock();
        buffer->GetBlock(DecodedTextTime::ToUtc(GetTickCount()), NextId(newest->id));
        Q_EMIT DataChanged(UserChannelID, true);
    } else if (buffer->channel == AggregationChannelID && offline) {
        buffer->Trim(kOfflineAggregationSize);
        Q_EMIT DataChanged(AggregationChannelID, true);
    } else {
        Q_EMIT TransmissionChanged(buffer->channel);
    }
}
