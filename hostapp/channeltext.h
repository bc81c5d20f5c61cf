#ifndef CHANNELTEXT_H
#define CHANNELTEXT_H

#include <QDateTime>
#include <QString>
#include <QVector>

class ChannelPanels;
class QTextDocument;

/// The text of every channel of \a panels, to be read by people: a heading for each channel and
/// each of its transmissions, and in front of each line the local time of its first character. Lost
/// characters show as "[n characters lost]"; lines of the merged channel name the channel that they
/// come from. Doesn't touch the model's export marks.
QString TextOfChannels(const ChannelPanels& panels);

/// What stands in front of a line: the local time of its first character, or as many blanks.
QString LineStart(const QDateTime& time);

/// For each paragraph of \a document, which a text area shows for \a channel, the time of its first
/// character, UTC; of the paragraph with document position \a fromDocPos the time of the character
/// there. Null for empty paragraphs between transmissions and for gaps.
QVector<QDateTime> TimesOfParagraphs(const ChannelPanels& panels, int channel,
                                     const QTextDocument& document, int fromDocPos);

#endif
