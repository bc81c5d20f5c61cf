#ifndef DECODEDTEXTDATA_H
#define DECODEDTEXTDATA_H

#include "decodedtextbuffer.h"

#include <QHash>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVector>

class DecodedTextClock;

namespace SorvinResultDataXml {
class SorvinResultData;
}

/// The model behind a DecodedTextView: the text of every channel, the settings they share, and the
/// operator's annotations.
///
/// Fed with transmissions as XML; tells its views by signals, all of them emitted directly on the
/// GUI thread. A receiver may call any operation, remove channels, or destroy the view and with it
/// the model: loops that emit walk a snapshot and stop when the model is gone. Times are UTC. Costs
/// of ingest don't grow with the text already held.
class DECODEDTEXT_EXPORT DecodedTextData : public QObject
{
    Q_OBJECT

public:
    enum {
        AggregationChannelID = 0, ///< the channel into which the text of all channels can be merged
        UserChannelID = 1000      ///< the channel of the operator's own text
    };

    explicit DecodedTextData(QObject* parent = nullptr);
    ~DecodedTextData() override;

    /// \name Ingest
    /// @{

    /// Takes one transmission as XML. One without data blocks ends the current transmission of
    /// every channel. XML from which nothing can be read is dropped with a trace line. Never
    /// throws; what was taken in before an error stays.
    void AddTransmission(const QString& xml);
    /// The same, with data blocks renumbered through \a channelMap and also merged into channel
    /// AggregationChannelID. Blocks of a channel that is no key of the map, or that would map to
    /// AggregationChannelID itself, are skipped. \a channels collects the incoming channel numbers,
    /// each once. Ends no transmission.
    void AddTransmission(const QMap<int, int>& channelMap, QVector<int>& channels,
                         const QString& xml);
    /// Closes the current transmission of every channel, with TransmissionChanged for each that was
    /// open.
    void EndTransmission();
    /// @}

    /// \name Channels
    /// @{

    /// The channel's buffer, made with ChannelCreated on first use. Never null.
    DecodedTextBufferPtr GetChannelData(int channel);
    /// Whether the channel has a buffer; never makes one.
    bool ChannelExists(int channel) const;
    /// Drops the channel's buffer. No signal; widgets that still hold it keep a detached object.
    void RemoveChannelData(int channel);
    /// Drops all buffers. No signal.
    void Clear();
    /// Emits ResetRequest.
    void ResetView();
    /// Names a channel; a name of a channel above 0 joins the call signs. Labels of the newest
    /// merged block follow.
    void DefineChannelName(int channel, const QString& name);
    const QMap<int, QString>& GetChannelNames() const { return channelNames; }
    /// Text between the runs of different channels in the merged channel; applied to its newest
    /// block at once.
    void SetChannelSeparator(QString separator);
    const QString& GetChannelSeparator() const { return channelSeparator; }
    /// @}

    /// \name Settings
    /// Out-of-range values are clamped silently. A changed setting raises the flag of
    /// GetConfigurationChanged.
    /// @{

    const QString& GetForegroundColor() const { return foregroundColor; }
    const QString& GetBackgroundColor() const { return backgroundColor; }
    int GetQualityThreshold() const { return qualityThreshold; } ///< percent
    int GetBufferSize() const { return bufferSize; }             ///< characters kept per channel
    int GetInfoAreaWidth() const { return infoAreaWidth; }       ///< pixels
    bool UserDataEnabled() const { return userDataEnabled; }
    bool IsOffline() const { return offline; }
    /// At least 1000 characters. Buffers follow with their next data.
    void SetBufferSize(int size);
    /// 0..100; emits PropertiesChanged on a change.
    void SetQualityThreshold(int threshold);
    /// At least 0 pixels. No signal.
    void SetInfoAreaWidth(int width);
    /// All five at once, with one PropertiesChanged if any differs. The width is not clamped; empty
    /// colours become "Black" and "White".
    void SetProperties(int bufferSize, int qualityThreshold, int infoAreaWidth, QString foreground,
                       QString background);
    /// Whether a setting changed since this was last asked; clears the flag.
    bool GetConfigurationChanged();
    void EnableUserData(bool on);
    void SetOffline(bool on);
    /// Borrows \a clock until another one is set; null: the system clock in UTC.
    void SetClock(DecodedTextClock* clock);
    /// The present time by the clock.
    QDateTime GetTickCount() const;
    /// @}

    /// \name Annotations
    /// @{

    /// A copy of the known call signs, sorted.
    QStringList GetCallSigns() const { return callSigns; }
    /// Index of \a sign in the sorted list, to which it is added if it is missing.
    int IndexOfCallSign(const QString& sign);
    /// The active user's name; "unknown" when the host has none.
    QString GetModifier() const;
    /// Stores \a userData (may be null: only remove) as the one annotation of \a type for positions
    /// [from, to) of \a block. False, with nothing changed and \a userData still the caller's, when
    /// the block is closed or the block's text can't take it. True: the block owns it; SaveUserData
    /// was emitted unless the block waits for a hand-over (user channel, offline).
    bool SetUserData(DecodedTextBlockPtr block, SorvinResultDataXml::UserData* userData,
                     const QString& type, int from, int to);
    /// Channel of every open block that holds annotations of the operator or labels, in creation
    /// order; one entry per block.
    QVector<int> GetChannelsWithActiveUserData() const;
    /// Whether the channel holds anything that was not exported yet.
    bool IsChanged(int channel) const;
    /// Appends the channel's blocks with their annotations to \a data, which owns what it gets, and
    /// marks them as exported. \a skipClosed leaves out finished transmissions. No effect for a
    /// channel without a buffer.
    void GetData(int channel, SorvinResultDataXml::SorvinResultData& data, bool skipClosed);
    /// @}

    // The order of signals and slots and their parameter names are part of the interface.
Q_SIGNALS:
    /// Text of \a channel changed; \a refresh: earlier text too, so that extending what is shown is
    /// not enough.
    void DataChanged(int channel, bool refresh);
    /// The current transmission of \a channel ended; its newest block is closed already.
    void TransmissionChanged(int channel);
    /// A buffer for \a channel exists now. Receivers may fetch it.
    void ChannelCreated(int channel);
    /// The channel's panel should be opened.
    void ShowChannel(int channel);
    /// An annotation, or the collected edits of the user channel, as one data block of result-data
    /// XML.
    void SaveUserData(int channel, QString xmlText);
    /// Colours, quality threshold or info area width changed.
    void PropertiesChanged();
    /// The operator asks for all channels to be cleared.
    void ResetRequest();

public Q_SLOTS:
    /// Makes the user channel if it doesn't exist and asks for its panel to be opened.
    void ShowUserChannel();
    /// Hands the edits of the user channel's newest block to the host, if there are any.
    void ApplyUserChannel();

private:
    DecodedTextData(const DecodedTextData&);
    DecodedTextData& operator=(const DecodedTextData&);

    void AddData(SorvinResultDataXml::DataBlock* dataBlock, const QDateTime& start,
                 DecodedTextBlockPtr aggregation);
    void AddUserChannelData(const DecodedTextBufferPtr& buffer,
                            const SorvinResultDataXml::DataBlock& dataBlock,
                            const QDateTime& start);
    void MergeData(const DecodedTextBlockPtr& block, const DecodedTextBlockPtr& aggregation,
                   int firstNewSnippetIndex);
    DecodedTextBlockPtr OpenAggregationBlock(const QDateTime& start);
    void EndTransmissionOf(const DecodedTextBufferPtr& buffer);
    bool Holds(const DecodedTextBufferPtr& buffer) const;
    void RememberCallSign(const QString& sign);

    QVector<DecodedTextBufferPtr> buffers;
    QStringList callSigns;
    QString foregroundColor;
    QString backgroundColor;
    QString channelSeparator;
    bool userDataEnabled;
    bool configurationChanged;
    bool offline;
    qint32 qualityThreshold;
    qint32 bufferSize;
    qint32 infoAreaWidth;
    DecodedTextClock* clock; ///< borrowed
    QMap<int, QString> channelNames;
    QHash<int, DecodedTextBuffer*> buffersByChannel; ///< borrowed from buffers
};

#endif
