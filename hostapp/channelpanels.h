#ifndef CHANNELPANELS_H
#define CHANNELPANELS_H

#include "decodedtextdata.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class DecodedTextView;
class QWidget;

/// Knows the channels that a view holds and opens and closes their panels. The view opens the first
/// one by itself; this opens further new ones as long as all open texts stay readable in the view's
/// height.
class ChannelPanels : public QObject
{
    Q_OBJECT

public:
    /// \a decodedTextView is borrowed and must outlive this object. Channels that were made before
    /// are known by their names only.
    ChannelPanels(DecodedTextView* decodedTextView, QObject* parent);

    /// The view's model, which it owns.
    DecodedTextData* GetModel() const { return model; }
    /// The channels that exist, ascending, the user's own at the end.
    QList<int> GetChannels() const;
    /// "Channel 3", or its name if it has one.
    QString GetTitle(int channel) const;
    /// The panels from top to bottom.
    QList<QWidget*> GetPanels() const;
    /// The channel that \a panel shows; -1 when it is no panel of the view.
    int GetChannelOf(const QWidget* panel) const;

public Q_SLOTS:
    void ExpandAll();
    void CollapseAll();

private Q_SLOTS:
    void ChannelCreated(int channel);
    void ExpandNew();

private:
    void ShareHeight();

    DecodedTextView* view;           ///< borrowed
    QPointer<DecodedTextData> model; ///< borrowed from the view
    QList<int> channels;             ///< ever seen
    QList<int> newChannels;          ///< wait for being opened, if there is room
    QTimer expandTimer;
};

#endif
