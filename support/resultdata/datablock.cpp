// The data block: text of one channel, built by frames (a host's decoder, an export) or read from
// XML. Invariant: frameStart is -1 or a length that the content had.
#include "datablock.h"

#include "ownedvector.h"
#include "xmlreader.h"
#include "xmlwriter.h"

#include <limits>

namespace SorvinResultDataXml {

namespace {

const int kFrameQuality = 100;

/// The code of text that is not coded: one text for all blocks, so that making a block copies no
/// characters. Never destroyed, because blocks of static duration may outlive anything that is.
const QString& Uncoded()
{
    static const QString* const code = new QString(QLatin1String("None"));
    return *code;
}

} // namespace

DataBlock::DataBlock(int channelNumber, int position, int blockId)
    : channel(channelNumber)
    , id(blockId)
    , characterPosition(position)
    , frameStart(-1)
    , contentDirectionRTL(false)
    , contentCode(Uncoded())
{
}

DataBlock::~DataBlock()
{
    DeleteAll(userData);
}

void DataBlock::Clear()
{
    channel = -1;
    id = 0;
    characterPosition = 0;
    frameStart = -1;
    contentDirectionRTL = false;
    content = QString();
    contentCode = Uncoded();
    frameTime = QDateTime();
    timeStamps.clear();
    DeleteAll(userData);
}

bool DataBlock::SetXmlString(const QString& xml)
{
    Clear();
    const ReadError error = ReadXml(xml, *this);
    SetError(error.text, error.line, error.column);
    return !error.text;
}

QString DataBlock::GetXmlString() const
{
    return WriteXml(*this);
}

void DataBlock::BeginFrame()
{
    EndFrame();
    frameStart = static_cast<int>(content.size());
}

void DataBlock::EndFrame()
{
    if (frameStart < 0)
        return;
    const qint64 position = static_cast<qint64>(characterPosition) + frameStart;
    TimeStamp stamp;
    stamp.time = frameTime;
    stamp.position = static_cast<int>(qMin<qint64>(position, std::numeric_limits<int>::max()));
    stamp.quality = kFrameQuality;
    timeStamps.append(stamp);
    frameStart = -1;
}

void DataBlock::AddUserData(UserData* annotation)
{
    AppendOwned(userData, annotation);
}

bool DataBlock::operator==(const DataBlock& other) const
{
    return channel == other.channel && id == other.id &&
           characterPosition == other.characterPosition &&
           contentDirectionRTL == other.contentDirectionRTL && content == other.content &&
           contentCode == other.contentCode && timeStamps == other.timeStamps &&
           EqualObjects(userData, other.userData);
}

} // namespace SorvinResultDataXml
