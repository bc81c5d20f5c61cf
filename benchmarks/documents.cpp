// Makes the documents that all rows are measured with.

#include "documents.h"

#include "datablock.h"
#include "transmission.h"

#include <QDateTime>

namespace {
const qint64 kStart = Q_INT64_C(1767225600000); // 2026-01-01 UTC
const int kLineLength = 60;

QDateTime Utc(qint64 ms)
{
    QDateTime time;
    time.setTimeSpec(Qt::UTC);
    time.setMSecsSinceEpoch(ms);
    return time;
}
} // namespace

DocumentStream::DocumentStream(int ofChannel, unsigned int seed)
    : channel(ofChannel)
    , state(seed * 2654435761u + 1)
    , perTransmission(0)
    , sent(0)
    , latePercent(0)
    , lateMs(0)
    , lowPercent(10)
    , interval(1000)
    , shares(1)
    , position(0)
    , id(1)
    , time(kStart)
{
}

void DocumentStream::SetLate(int percent, int ms)
{
    latePercent = percent;
    lateMs = ms;
}

void DocumentStream::SetTurn(int turn, int count)
{
    shares = count;
    time += turn * interval / count;
}

unsigned int DocumentStream::Random(unsigned int below)
{
    state = state * 1664525u + 1013904223u;
    return (state >> 8) % below;
}

QString DocumentStream::Words(int length)
{
    QString words;
    while (words.size() < length) {
        const int letters = 2 + static_cast<int>(Random(7));
        for (int i = 0; i < letters; ++i) {
            words += QChar(static_cast<ushort>('a' + Random(26)));
        }
        words += QLatin1Char((position + words.size()) % kLineLength < 9 ? '\n' : ' ');
    }
    return words.left(length);
}

QString DocumentStream::Next()
{
    if (perTransmission > 0 && sent++ % perTransmission == 0) {
        ++id;
        position = 0;
    }
    text = Words(20 + static_cast<int>(Random(41)));
    SorvinResultDataXml::Transmission transmission;
    transmission.SetStartTime(Utc(kStart));
    transmission.SetStopTime(Utc(time));
    SorvinResultDataXml::DataBlock* block = new SorvinResultDataXml::DataBlock(channel, 0, 0);
    block->SetID(id);
    block->SetContent(text);
    const int stamps = 1 + static_cast<int>(Random(4));
    for (int i = 0; i < stamps; ++i) {
        SorvinResultDataXml::TimeStamp stamp;
        const bool late = static_cast<int>(Random(100)) < latePercent;
        stamp.time = Utc(time + i * interval / (4 * shares) -
                         (late ? static_cast<int>(Random(static_cast<unsigned int>(lateMs))) : 0));
        stamp.position = position + i * static_cast<int>(text.size()) / stamps;
        stamp.quality = static_cast<int>(Random(100)) < lowPercent ? 20 : 90;
        block->GetTimeStamp().append(stamp);
    }
    transmission.AddDataBlock(block);
    position += static_cast<int>(text.size());
    time += interval;
    return transmission.GetXmlString();
}

QVector<QString> TakeDocuments(DocumentStream& stream, int count)
{
    QVector<QString> documents;
    documents.reserve(count);
    for (int i = 0; i < count; ++i) {
        documents.append(stream.Next());
    }
    return documents;
}

QVector<QString> TakeTexts(DocumentStream& stream, int count)
{
    QVector<QString> texts;
    texts.reserve(count);
    for (int i = 0; i < count; ++i) {
        stream.Next();
        texts.append(stream.Text());
    }
    return texts;
}
