// The export: one data block for each block of a channel, sorted into the caller's transmissions by
// start time. Writing a block clears its export marks; nothing else of the model changes, and
// nothing in the caller's object is removed.

#include "datablock.h"
#include "decodedtextdata.h"
#include "decodedtexttime.h"
#include "sorvinresultdata.h"
#include "transmission.h"

#include <QHash>

using SorvinResultDataXml::DataBlock;
using SorvinResultDataXml::SorvinResultData;
using SorvinResultDataXml::Transmission;

namespace {

/// The caller's transmissions by start time; of equal ones the last, which is the one that takes
/// data.
QHash<qint64, Transmission*> IndexByStart(SorvinResultData& data)
{
    QHash<qint64, Transmission*> index;
    for (Transmission* transmission : data.GetTransmission()) {
        if (transmission) {
            index.insert(DecodedTextTime::Key(transmission->GetStartTime()), transmission);
        }
    }
    return index;
}

} // namespace

void DecodedTextData::GetData(int channel, SorvinResultData& data, bool skipClosed)
{
    const DecodedTextBuffer* buffer = buffersByChannel.value(channel, nullptr);
    if (!buffer) {
        return;
    }
    QHash<qint64, Transmission*> byStart = IndexByStart(data);
    for (const DecodedTextBlockPtr& block : buffer->blocks) {
        if (skipClosed && block->closed) {
            continue;
        }
        DataBlock* dataBlock = new DataBlock(channel, 0, 0);
        block->WriteFrames(dataBlock, 0, 0);
        if (channel == UserChannelID && dataBlock->GetContent().isEmpty()) {
            delete dataBlock;
            continue;
        }
        Transmission* transmission = byStart.value(DecodedTextTime::Key(block->startTime), nullptr);
        if (channel == UserChannelID && !data.GetTransmission().isEmpty()) {
            transmission = data.GetTransmission().last();
        }
        if (!transmission) {
            transmission = new Transmission;
            transmission->SetStartTime(block->startTime);
            transmission->SetStopTime(block->startTime);
            data.AddTransmission(transmission);
            byStart.insert(DecodedTextTime::Key(block->startTime), transmission);
        }
        transmission->AddDataBlock(dataBlock);
        if (!block->snippets.isEmpty() &&
            DecodedTextTime::Earlier(transmission->GetStopTime(), block->GetLastTimestamp())) {
            transmission->SetStopTime(block->GetLastTimestamp());
        }
    }
}
