#ifndef DECODEDTEXTVIEW_H
#define DECODEDTEXTVIEW_H

#include "decodedtextglobal.h"
#include "orvelappstartup/savecomponentif.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QVector>
#include <QWidget>

class DecodedTextChannel;
class DecodedTextClock;
class DecodedTextData;
class QLabel;
class QSplitter;
class QStyle;

namespace SorvinResultDataXml {
class SorvinResultData;
}

/// The widget that a host embeds: shows the text of received transmissions, one panel per channel,
/// stacked in ascending order of the channel numbers, and lets the operator annotate it.
///
/// Feed it with AddTransmission, take what the operator did from the signal SaveUserData or by
/// GetData. Everything happens on the GUI thread. Nothing reports an error: numbers out of range
/// are brought into range, unknown channels ignored, text that can't be read dropped. Any member
/// may be called from a slot connected to one of the signals, and the view may be destroyed there.
/// A panel that is removed while a menu or dialog of its text area is open disappears at once and
/// is deleted when that has returned. Text areas are up to date when AddTransmission returns; in a
/// burst of data the one-line tickers follow when control is back in the event loop.
///
/// Keeps five display settings in the host's configuration: loads them when it is built, registers
/// as a save component, and saves them, if they changed, when it is destroyed. A configuration that
/// throws costs the settings only, with a trace line.
class DECODEDTEXT_EXPORT DecodedTextView : public QWidget, public SaveComponentIf
{
    Q_OBJECT

public:
    explicit DecodedTextView(QWidget* parent);
    ~DecodedTextView() override;

    /// \name Ingest
    /// @{

    /// Takes a transmission as result-data XML whose channels are renumbered by \a channelMap
    /// (others are skipped), and also merges its text into channel 0. \a channels collects the
    /// channel numbers met, each once. Ends no transmission.
    void AddTransmission(const QMap<int, int>& channelMap, QVector<int>& channels,
                         const QString& xml);
    /// Time of the channel's newest text in UTC, null when there is none. Makes the channel and its
    /// panel if they don't exist.
    QDateTime GetLastTimestamp(int channel) const;
    /// @}

    /// \name Settings
    /// @{

    int GetBufferSize() const; ///< characters kept per channel
    bool UserDataEnabled() const;
    /// Borrows \a clock, which must live until another one is set; null: the system clock.
    void SetClock(DecodedTextClock* clock);
    /// Offline, annotations wait to be fetched instead of being sent at once. Panels made later are
    /// made for it.
    void SetOffline(bool on);
    /// Sends the operator's "clear all channels" to \a member (a SLOT or SIGNAL) of \a receiver
    /// instead of Reset, queued. A handler set before is replaced, also when the new one can't be
    /// connected: then false is returned, and the request goes nowhere.
    bool SetResetHandler(const QObject* receiver, const char* member);
    /// @}

    /// \name Channels
    /// @{

    /// Drops the channel's panel and data. Nothing for a channel without a panel.
    void RemoveChannel(int channel);
    /// Names a channel, also one to come. The names of channels above 0 are offered as call signs.
    void DefineChannelName(int channel, const QString& name);
    const QMap<int, QString>& GetChannelNames() const;
    /// Text put between the runs of different channels in the merged channel.
    void SetChannelSeparator(QString separator);
    /// The panels, ascending by channel number. Borrowed until the next call of any member.
    const QList<DecodedTextChannel*>& GetPanels() const { return panels; }
    /// @}

    /// \name Annotations
    /// @{

    /// Channel of every open block that carries annotations, one entry per block.
    QVector<int> GetChannelsWithActiveUserData() const;
    /// Whether the channel holds anything that GetData did not fetch yet.
    bool IsChanged(int channel) const;
    /// Appends the channel's text and annotations to \a result, which owns what it gets. \a
    /// skipClosed: only of transmissions that still go on.
    void GetData(int channel, SorvinResultDataXml::SorvinResultData& result, bool skipClosed);
    /// @}

    /// \name The host's saving of settings
    /// @{

    /// Writes the settings if they changed since they were last saved or asked for. Passes on what
    /// the configuration throws.
    void Save() override;
    /// Reads the settings; those that are missing stay as they are. Passes on what the
    /// configuration throws.
    void Load() override;
    /// Nothing to do.
    void CommitData() override;
    /// @}

    // The order of the methods and their parameter names are part of the interface.
Q_SIGNALS:
    /// Never emitted.
    void NewTransmission();
    /// An annotation that the operator stored, or the collected edits of the user channel, as one
    /// data block of result-data XML. Direct; the text area shows it already or will when the
    /// receiver returns.
    void SaveUserData(int channel, QString xmlText);
    /// Never emitted.
    void ApplyAlphabet(QString alphabet);

public Q_SLOTS:
    /// Takes a transmission as result-data XML. One without data blocks ends the present
    /// transmission of every channel.
    void AddTransmission(QString xmlText);
    /// Makes the channel's panel, if it has none.
    void ChannelCreated(int channel);
    /// Expands the channel's panel.
    void ShowChannel(int channel);
    /// Shows or removes the line that stands for panels without text.
    void UpdateLayout();
    /// Characters to keep per channel, at least 1000.
    void SetBufferSize(int maxChars);
    /// Without effect.
    void SetMorse(bool bMorse);
    /// Allows or forbids annotations; forbidding them removes the user channel.
    void EnableUserData(bool enable);
    /// Text of a quality below \a threshold (0..100) counts as poor.
    void SetQualityThreshold(int threshold);
    /// Closes the present transmission of every channel.
    void EndTransmission();
    /// Adds a call sign to those offered to the operator.
    void DefineCallSign(QString sign);
    /// Gives \a sign (empty: the one given last) to the text selected, or if none is, to the last
    /// word of every shown channel.
    void SelectCallSign(QString sign);
    /// Opens the view's own menu at \a pt (its coordinates); returns when it is closed.
    void ShowContextMenu(const QPoint& pt);
    /// Drops all panels and their data. Names, call signs and settings stay.
    void Reset();
    /// Applies pending edits of the user channel now. \a bAutoApply: only where that would happen
    /// by itself after a pause.
    void ApplyUserChannel(bool bAutoApply);

private:
    Q_DISABLE_COPY(DecodedTextView)

    void ConnectModel();
    void OrderFocus(int index);
    void MakePlaceholder();
    void RemovePlaceholder();
    void LoadOrTrace();
    void SaveOrTrace();
    QString NameOf(int channel) const;

    DecodedTextData* model;            ///< owned
    QSplitter* splitter;               ///< owned as a child
    QLabel* placeholder;               ///< owned by the splitter; null while not needed
    QStyle* style;                     ///< owned
    QList<DecodedTextChannel*> panels; ///< owned by the splitter
    QString lastCallSign;
};

#endif
