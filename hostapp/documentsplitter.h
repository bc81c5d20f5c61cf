#ifndef DOCUMENTSPLITTER_H
#define DOCUMENTSPLITTER_H

#include <QByteArray>
#include <QList>
#include <QString>

/// Cuts a growing stream of UTF-8 bytes into transmissions, wherever its pieces end: recordings
/// (transmissions in a ResultData element, on one line or on many), streams of one transmission per
/// line, and any mixture of the two. What it cuts out is not checked for being well-formed; that is
/// the XML reader's work.
///
/// Recovers from damage: a transmission that begins inside another one shows that the other one was
/// cut off, and a line that holds no result data is passed over. Memory is that of the transmission
/// in hand.
class DocumentSplitter
{
public:
    /// Either a transmission (no error) or something that is wrong with the input.
    struct Piece
    {
        QByteArray xml; ///< one Transmission element, perhaps cut off at its end
        qint64 end;     ///< bytes of the input up to its end
        int line;       ///< the line of the input in which it begins, the first being 1
        QString error;
    };

    DocumentSplitter();

    /// Takes the next \a size bytes. Linear.
    void Add(const char* data, int size);
    /// The input is over: what is unfinished becomes a piece that is cut off.
    void Finish();
    /// What was found since it was last asked for, in the order of the input.
    QList<Piece> TakePieces();
    /// Whether any element of result data was seen.
    bool HasFoundAny() const { return foundAny; }

private:
    enum State { Text, Tag, Quote, Comment, CData, Instruction, Junk };

    void Step(char c);
    void StepTag(char c);
    void StepPlainTag(char c);
    void BeginTag();
    void EndTag();
    void EndTagBetween(const QByteArray& name, bool isEnd, bool isWhole);
    void EndTagInTransmission(const QByteArray& name, bool isEnd);
    void EndInstruction();
    void EmitTransmission(int length);
    void EmitError(const QString& text, int atLine);
    void RejectLine(int atLine);
    bool TokenBegins(const char* text) const;
    bool TokenEnds(const char* text, int minLength) const;

    State state;
    char quote;
    qint64 byteCount; ///< up to and with the byte in hand
    int line;         ///< line of the byte in hand
    int tokenLine;    ///< line of the markup in hand
    int transmissionLine;
    int containerLine;
    int token;        ///< where in `held` the markup in hand begins
    bool inContainer; ///< inside a ResultData element
    bool inTransmission;
    bool foundAny;
    int foreignDepth;   ///< elements of the name below that are open
    QByteArray foreign; ///< name of an element, unknown here, that is being passed over
    QByteArray held;    ///< the transmission in hand and the markup in hand
    QList<Piece> pieces;
};

#endif
