// A text area on a model of its own, told of new data as a channel's open panel tells it.
#ifndef TEXTAREA_H
#define TEXTAREA_H

#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"

#include <QApplication>

class TextArea
{
public:
    explicit TextArea(int ofChannel = 1)
        : channel(ofChannel)
        , content(channel, channel == DecodedTextData::UserChannelID, &model, nullptr)
        , modelSignals(&model)
    {
        content.resize(400, 200);
        modelSignals.onSignal = [this](const QString& call) {
            if (call == QString::fromLatin1("DataChanged(%1,false)").arg(channel)) {
                content.UpdateContent();
            } else if (call == QString::fromLatin1("DataChanged(%1,true)").arg(channel)) {
                content.RefreshContent();
            } else if (call == QString::fromLatin1("TransmissionChanged(%1)").arg(channel)) {
                content.UpdateView();
            }
        };
    }
    /// Feeds data blocks, separated by ";": "id position:text,position:text", "~" for a line feed;
    /// "end" ends the transmission.
    void Feed(const QString& data)
    {
        for (const QString& one : data.split(QLatin1Char(';'))) {
            TransmissionBuilder builder;
            if (one.contains(QLatin1Char(' '))) {
                builder.Pieces(channel, one.section(QLatin1Char(' '), 1),
                               one.section(QLatin1Char(' '), 0, 0).toInt());
            }
            model.AddTransmission(builder.Xml());
        }
    }
    /// \a count numbered lines in one data block, each of \a length characters and its line feed.
    void FeedLines(int count, int length = 20, int id = 1)
    {
        const int at = Newest() && Newest()->id == id ? Newest()->nextPosition : 0;
        QStringList lines;
        for (int i = 0; i < count; ++i) {
            lines.append(QString::fromLatin1("%1:%2~")
                             .arg(at + i * (length + 1))
                             .arg(fedLines++, length, 10, QLatin1Char('.')));
        }
        Feed(QString::number(id) + QLatin1Char(' ') + lines.join(QLatin1String(",")));
    }
    DecodedTextBlockPtr Newest() { return model.GetChannelData(channel)->GetLastBlock(); }
    void Show()
    {
        content.show();
        QApplication::setActiveWindow(&content);
    }

    int channel;
    DecodedTextData model;
    DecodedTextContent content;
    SignalRecorder modelSignals;

private:
    int fedLines = 0;
};

#endif
