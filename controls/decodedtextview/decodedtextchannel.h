#ifndef DECODEDTEXTCHANNEL_H
#define DECODEDTEXTCHANNEL_H

#include "decodedtextbuffer.h"

#include <QBasicTimer>
#include <QPointer>
#include <QWidget>

class DecodedTextCaption;
class DecodedTextContent;
class DecodedTextData;
class DecodedTextDispatcher;
class QStyle;
class QVBoxLayout;

/// The panel of one channel: a caption over the channel's text area. Collapsed (caption only) at
/// first; the text area is made when the panel is expanded for the first time, and only hidden when
/// it is collapsed again.
///
/// The ticker line of the caption follows the channel's newest text, collapsed or not. In a burst
/// of data (more updates than a few, over all panels, between two passes of the event loop) it is
/// brought up to date once, when control is back in the event loop or when the ticker is painted or
/// the caption resized, whichever is first. The text area is up to date at once.
///
/// The model is borrowed and may die first.
class DecodedTextChannel : public QWidget
{
    Q_OBJECT

public:
    DecodedTextChannel(const QString& name, int channel, DecodedTextData* model, QWidget* parent);
    ~DecodedTextChannel() override;

    /// The name shown in the caption and told to screen readers. The object name stays what it was.
    void SetName(const QString& newName);
    /// Puts this panel's controls behind those of \a before for the Tab key.
    void FollowInFocus(const DecodedTextChannel& before);
    /// Sets the ticker line now if its update was put off.
    void ShowTicker();
    /// Offers \a sign to the text area if it is shown; whether it was taken. See
    /// DecodedTextContent::SelectCallSign.
    bool SelectCallSign(const QString& sign, bool selectionOnly);
    /// Takes the panel out of use: hidden, without parent, deaf to the model, pending edits
    /// dropped. Deletes it, at once or, if its text area is still on the stack (in a menu, dialog,
    /// drag or signal), when that has come back to the event loop.
    void Retire();

    const QString& GetName() const { return name; }
    int GetChannel() const { return channel; }
    bool IsUserChannel() const { return userChannel; }
    bool IsExpanded() const { return expanded; }
    DecodedTextCaption* GetCaption() const { return caption; }
    /// Null before the first expansion.
    DecodedTextContent* GetContent() const { return content; }

    // The order of the methods and their parameter names are part of the interface.
Q_SIGNALS:
    /// The panel was expanded or collapsed. Direct; the panel shows its new state already.
    void TextAreaChanged();

public Q_SLOTS:
    void ToggleTextArea();
    void ExpandTextArea(bool expand);
    /// News for another channel are ignored. \a refresh: earlier text changed too.
    void DataChanged(int channel, bool refresh);
    void TransmissionChanged(int channel);
    void PropertiesChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    Q_DISABLE_COPY(DecodedTextChannel)
    friend class DecodedTextChannelCall;

    void MakeContent();
    void NameParts();
    void ShowContent();
    void SetTickerText();
    bool IsOnStack() const;

    QString name;
    int channel;
    bool userChannel;
    bool expanded;
    QStyle* style;                   ///< owned
    QPointer<DecodedTextData> model; ///< borrowed
    DecodedTextCaption* caption;     ///< owned as a child
    DecodedTextContent* content;     ///< owned as a child
    QVBoxLayout* layout;             ///< owned

    QPointer<DecodedTextDispatcher> dispatcher; ///< borrowed, the model's
    bool tickerDue;                             ///< the ticker line is behind; the dispatcher knows
    int calls;                                  ///< of this panel's operations on the stack
    QBasicTimer retireTimer;
    DecodedTextBufferPtr retiredBuffer; ///< what a menu of the text area may still hold
};

#endif
