// The model's side of annotations: known call signs, storing into a block, and the hand-over to the
// host by SaveUserData.

#include "datablock.h"
#include "decodedtextdata.h"
#include "decodedtexttrace.h"
#include "userdata.h"
#include "vrtbase/activeuserproxy.h"

#include <QPointer>

using SorvinResultDataXml::DataBlock;
using SorvinResultDataXml::UserData;

void DecodedTextData::RememberCallSign(const QString& sign)
{
    if (!callSigns.contains(sign)) {
        callSigns.append(sign);
        callSigns.sort();
    }
}

int DecodedTextData::IndexOfCallSign(const QString& sign)
{
    RememberCallSign(sign);
    return static_cast<int>(callSigns.indexOf(sign));
}

QString DecodedTextData::GetModifier() const
{
    QString name;
    // A host that can't tell who works there must not keep anybody from working.
    try {
        name = VRT::ActiveUserProxy::instance().GetActiveUserName();
    } catch (...) {
    }
    return name.isEmpty() ? QString::fromLatin1("unknown") : name;
}

bool DecodedTextData::SetUserData(DecodedTextBlockPtr block, UserData* userData,
                                  const QString& type, int from, int to)
{
    if (!block || block->closed || !block->CanStore(userData, type, from, to)) {
        return false;
    }
    DataBlock scratch(-1, 0, 0);
    block->ReplaceUserData(&scratch, userData, type, from, to);
    block->changed = true;
    if (offline || block->channel == UserChannelID) {
        block->MarkEdited(from);
        return true;
    }
    Q_EMIT SaveUserData(block->channel, scratch.GetXmlString());
    return true;
}

void DecodedTextData::ShowUserChannel()
{
    const QPointer<DecodedTextData> self(this);
    GetChannelData(UserChannelID);
    if (self) {
        Q_EMIT ShowChannel(UserChannelID);
    }
}

void DecodedTextData::ApplyUserChannel()
{
    DecodedTextBuffer* buffer = buffersByChannel.value(UserChannelID, nullptr);
    const DecodedTextBlockPtr newest = buffer ? buffer->GetLastBlock() : DecodedTextBlockPtr();
    if (!newest) {
        return;
    }
    const QString xml = newest->TakeEditedData();
    if (!xml.isEmpty()) {
        Q_EMIT SaveUserData(newest->channel, xml);
    }
}

QVector<int> DecodedTextData::GetChannelsWithActiveUserData() const
{
    QVector<int> channels;
    for (const DecodedTextBufferPtr& buffer : buffers) {
        for (const DecodedTextBlockPtr& block : buffer->blocks) {
            if (!block->closed && block->userDataCount > 0) {
                channels.append(block->channel);
            }
        }
    }
    return channels;
}

bool DecodedTextData::IsChanged(int channel) const
{
    const DecodedTextBuffer* buffer = buffersByChannel.value(channel, nullptr);
    if (buffer) {
        for (const DecodedTextBlockPtr& block : buffer->blocks) {
            if (block->changed) {
                return true;
            }
        }
    }
    return false;
}
