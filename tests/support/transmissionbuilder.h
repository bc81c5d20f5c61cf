// Builds a transmission: TransmissionBuilder(start).Block(3, 7).Text(0, "alpha", Quality(70)).Xml()
// A text's time stamp lies as many seconds behind the start as its stream position says, so that
// equal streams have equal times however they are cut.
#ifndef TRANSMISSIONBUILDER_H
#define TRANSMISSIONBUILDER_H

#include "datablock.h"
#include "transmission.h"
#include "userdata.h"

#include <QSharedPointer>
#include <QStringList>

struct Quality
{
    explicit Quality(int v) { value = v; }
    int value;
};

inline QDateTime UtcTime(qint64 msecs)
{
    QDateTime time;
    time.setTimeSpec(Qt::UTC);
    time.setMSecsSinceEpoch(msecs);
    return time;
}

/// Midday in 2026, the start that tests use.
inline QDateTime TestStart()
{
    return UtcTime(Q_INT64_C(1769860800000));
}

class TransmissionBuilder
{
public:
    typedef SorvinResultDataXml::UserData UserData;

    explicit TransmissionBuilder(const QDateTime& start = TestStart())
        : transmission(new SorvinResultDataXml::Transmission)
    {
        transmission->SetStartTime(start);
    }
    /// Begins a data block; what follows goes into it.
    TransmissionBuilder& Block(int channel, int id = 1)
    {
        transmission->AddDataBlock(new SorvinResultDataXml::DataBlock(channel, 0, id));
        return *this;
    }
    /// A time stamp at \a streamPos with the text behind it, which may be empty.
    TransmissionBuilder& Text(int streamPos, const QString& text, Quality quality = Quality(100))
    {
        return Text(streamPos, text, quality, transmission->GetStartTime().addSecs(streamPos));
    }
    TransmissionBuilder& Text(int streamPos, const QString& text, Quality quality,
                              const QDateTime& time)
    {
        SorvinResultDataXml::TimeStamp stamp;
        stamp.time = time;
        stamp.position = streamPos;
        stamp.quality = quality.value;
        Last()->GetTimeStamp().append(stamp);
        Last()->AppendData(text);
        return *this;
    }
    /// An annotation at stream positions [from, to); \a text is its comment or new text.
    TransmissionBuilder& Annotation(const QString& type, int from, int to, const QString& text)
    {
        UserData* annotation = new UserData;
        annotation->type = type;
        annotation->start = from;
        annotation->end = to;
        (type == UserData::CommentType ? annotation->comment : annotation->text) = text;
        Last()->AddUserData(annotation);
        return *this;
    }
    /// A data block from its short form "position:text,position:text", "~" for a line feed.
    TransmissionBuilder& Pieces(int channel, const QString& pieces, int id = 1)
    {
        Block(channel, id);
        for (const QString& piece : pieces.trimmed().split(QLatin1Char(','))) {
            const int colon = static_cast<int>(piece.indexOf(QLatin1Char(':')));
            Text(piece.left(colon).toInt(),
                 piece.mid(colon + 1).replace(QLatin1Char('~'), QLatin1Char('\n')));
        }
        return *this;
    }
    /// The data block begun last, owned by the builder.
    SorvinResultDataXml::DataBlock* Last() { return transmission->GetDataBlock().last(); }
    QString Xml() const { return transmission->GetXmlString(); }

private:
    QSharedPointer<SorvinResultDataXml::Transmission> transmission;
};

#endif
