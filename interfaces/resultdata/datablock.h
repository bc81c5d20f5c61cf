#ifndef DATABLOCK_H
#define DATABLOCK_H

#include "isorvinresultdata.h"
#include "timestamp.h"
#include "userdata.h"

#include <QVector>

namespace SorvinResultDataXml {

/// A piece of one channel's decoded text with its time stamps and annotations; XML element
/// DataBlock. Owns its annotations. Not copied: the vectors below hand out the very objects.
class RESULTDATA_EXPORT DataBlock : public ISorvinResultData
{
public:
    /// \a channel -1 marks a scratch block that is used only to make XML. \a characterPosition is
    /// the offset of the block's first character in the channel's running text, in characters; the
    /// frame calls count on from it. \a id: see SetID.
    explicit DataBlock(int channel = -1, int characterPosition = 0, int id = 0);
    ~DataBlock() override;
    DataBlock(const DataBlock&) = delete;
    DataBlock& operator=(const DataBlock&) = delete;

    /// Attributes missing in \a xml get the values of DataBlock(); see the base class.
    bool SetXmlString(const QString& xml) override;
    QString GetXmlString() const override;

    int GetChannel() const { return channel; }
    void SetChannel(int number) { channel = number; }
    /// Tells transmissions of the same start time apart.
    int GetID() const { return id; }
    void SetID(int number) { id = number; }
    int GetCharacterPosition() const { return characterPosition; }
    void SetCharacterPosition(int position) { characterPosition = position; }

    /// The text, exactly as it was set, appended or read.
    QString GetContent() const { return content; }
    void SetContent(const QString& text) { content = text; }
    /// How the text was coded; "None", the text of a new block, for uncoded text.
    QString GetContentCode() const { return contentCode; }
    void SetContentCode(const QString& code) { contentCode = code; }
    /// True for text that runs from right to left.
    bool GetContentDirectionRTL() const { return contentDirectionRTL; }
    void SetContentDirectionRTL(bool rightToLeft) { contentDirectionRTL = rightToLeft; }

    /// The time of the frame that is open, or of the frames to come.
    void SetTimeStamp(const QDateTime& time) { frameTime = time; }
    /// Starts a frame; one that is still open is ended.
    void BeginFrame();
    /// Appends \a text to the content. Outside a frame it belongs to whatever time stamp stands
    /// before it.
    void AppendData(const QString& text) { content += text; }
    /// Ends the frame: adds a time stamp of quality 100 that stands at the character position plus
    /// the length of the content when the frame began (at most INT_MAX). An empty frame adds its
    /// time stamp as well. Without a frame: nothing.
    void EndFrame();

    /// In document order; the caller may change the vector.
    QVector<TimeStamp>& GetTimeStamp() { return timeStamps; }
    const QVector<TimeStamp>& GetTimeStamp() const { return timeStamps; }

    /// The annotations in document order. Owned by the block: who takes one out of the vector takes
    /// it over.
    QVector<UserData*>& GetUserData() { return userData; }
    const QVector<UserData*>& GetUserData() const { return userData; }
    /// Takes over the heap object \a annotation; null is ignored.
    void AddUserData(UserData* annotation);

    /// Equal in all that the XML carries, annotations compared by value; an open frame and the last
    /// error don't count.
    bool operator==(const DataBlock& other) const;
    bool operator!=(const DataBlock& other) const { return !(*this == other); }

private:
    void Clear();

    int channel;
    int id;
    int characterPosition;
    /// Length of the content when the open frame began; -1: no frame is open.
    int frameStart;
    bool contentDirectionRTL;
    QString content;
    QString contentCode;
    QDateTime frameTime;
    QVector<TimeStamp> timeStamps;
    QVector<UserData*> userData;
};

} // namespace SorvinResultDataXml

#endif
