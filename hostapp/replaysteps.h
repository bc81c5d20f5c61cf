#ifndef REPLAYSTEPS_H
#define REPLAYSTEPS_H

#include "transmissionqueue.h"

namespace SorvinResultDataXml {
class Transmission;
}

/// When \a transmission was complete: its newest time stamp, else its stop time, else its start
/// time; UTC, null when it has none of them.
QDateTime TimeOf(const SorvinResultDataXml::Transmission& transmission);

/// The channels of its data blocks in their order, each once.
QVector<int> ChannelsOf(const SorvinResultDataXml::Transmission& transmission);

/// Cuts a transmission into steps of one time stamp each, in the order of the times, so that a
/// recording which holds it whole can be replayed as it was received. Fed one after the other the
/// steps give the same text, times and annotations as the whole. Data blocks that can't be cut
/// (time stamps that go backwards or lie outside the text) are steps of their own. Only xml, time
/// and channels of the items are filled in. Empty for a transmission without data blocks.
QList<ReplayItem> StepsOf(const SorvinResultDataXml::Transmission& transmission);

#endif
