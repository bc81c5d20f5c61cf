#ifndef DOCUMENTS_H
#define DOCUMENTS_H

#include <QString>
#include <QVector>

/// Small transmissions as a decoder sends them, one after the other on one channel: 20 to 60
/// characters under one to four time stamps, about 450 characters of XML. The same seed gives the
/// same documents.
class DocumentStream
{
public:
    explicit DocumentStream(int channel, unsigned int seed = 1);

    /// What is sent next. The text is kept for Text().
    QString Next();
    /// The text of the document made last.
    const QString& Text() const { return text; }

    /// A transmission consists of \a count documents; 0: of all that follow.
    void SetDocumentsPerTransmission(int count) { perTransmission = count; }
    /// Percent of the stamps that are late by up to \a ms, and percent of the snippets below
    /// quality 50.
    void SetLate(int percent, int ms);
    void SetLow(int percent) { lowPercent = percent; }
    /// Milliseconds between two documents.
    void SetInterval(int ms) { interval = ms; }
    /// The stream is one of \a count that send in turn, the one with index \a turn: its times lie
    /// in its share of the interval.
    void SetTurn(int turn, int count);

private:
    unsigned int Random(unsigned int below);
    QString Words(int length);

    int channel;
    unsigned int state;
    QString text;
    int perTransmission;
    int sent;
    int latePercent;
    int lateMs;
    int lowPercent;
    int interval;
    int shares;
    int position;
    int id;
    qint64 time;
};

/// \a count documents of \a stream.
QVector<QString> TakeDocuments(DocumentStream& stream, int count);
/// Their texts alone.
QVector<QString> TakeTexts(DocumentStream& stream, int count);

#endif
