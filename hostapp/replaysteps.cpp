// Cuts transmissions at their time stamps. A step carries the text from its time stamp up to the
// next one under the same start time, channel and ID, so that the view appends it to the same
// block; positions stay those of the whole. Annotations travel with a block's last step, when all
// the text that they stand on is there.
#include "replaysteps.h"

#include "transmission.h"

#include <QMap>

#include <algorithm>

using namespace SorvinResultDataXml;

namespace {

/// Steps of one channel keep their order: text that was sent again carries its first times, but
/// came later.
void KeepOrderOfChannels(QList<ReplayItem>& steps)
{
    QMap<int, QDateTime> newest;
    for (ReplayItem& step : steps) {
        QDateTime& time = newest[step.channels.value(0)];
        if (CompareTimes(step.time, time) < 0) {
            step.time = time;
        }
        time = step.time;
    }
}

bool IsEarlier(const ReplayItem& a, const ReplayItem& b)
{
    return CompareTimes(a.time, b.time) < 0;
}

bool CanBeCut(const DataBlock& block)
{
    const QVector<TimeStamp>& stamps = block.GetTimeStamp();
    if (stamps.size() < 2) {
        return false;
    }
    const qint64 end = qint64(stamps.at(0).position) + block.GetContent().size();
    for (int i = 1; i < stamps.size(); ++i) {
        if (stamps.at(i).position <= stamps.at(i - 1).position || stamps.at(i).position >= end ||
            CompareTimes(stamps.at(i).time, stamps.at(i - 1).time) < 0) {
            return false;
        }
    }
    return true;
}

/// A step with the time stamps [from, to) of \a block.
ReplayItem StepOf(const Transmission& whole, const DataBlock& block, int from, int to)
{
    const QVector<TimeStamp>& stamps = block.GetTimeStamp();
    const bool isLast = to == stamps.size();
    DataBlock* const part =
        new DataBlock(block.GetChannel(), block.GetCharacterPosition(), block.GetID());
    part->SetContentCode(block.GetContentCode());
    part->SetContentDirectionRTL(block.GetContentDirectionRTL());
    if (stamps.isEmpty()) {
        part->SetContent(block.GetContent());
    } else {
        const int first = stamps.at(0).position;
        const int begin = from == 0 ? 0 : stamps.at(from).position - first;
        part->SetContent(
            block.GetContent().mid(begin, isLast ? -1 : stamps.at(to).position - first - begin));
    }
    for (int i = from; i < to; ++i) {
        part->GetTimeStamp().append(stamps.at(i));
    }
    if (isLast) {
        for (const UserData* annotation : block.GetUserData()) {
            part->AddUserData(new UserData(*annotation));
        }
    }
    Transmission step;
    step.SetStartTime(whole.GetStartTime());
    step.AddDataBlock(part);
    ReplayItem item;
    item.time = TimeOf(step);
    step.SetStopTime(item.time);
    item.channels = ChannelsOf(step);
    item.xml = step.GetXmlString();
    return item;
}

} // namespace

QDateTime TimeOf(const Transmission& transmission)
{
    QDateTime newest;
    for (const DataBlock* block : transmission.GetDataBlock()) {
        for (const TimeStamp& stamp : block->GetTimeStamp()) {
            if (CompareTimes(stamp.time, newest) > 0) {
                newest = stamp.time;
            }
        }
    }
    if (!newest.isValid()) {
        newest = transmission.GetStopTime();
    }
    if (!newest.isValid()) {
        newest = transmission.GetStartTime();
    }
    return newest.isValid() ? newest.toUTC() : QDateTime();
}

QVector<int> ChannelsOf(const Transmission& transmission)
{
    QVector<int> channels;
    for (const DataBlock* block : transmission.GetDataBlock()) {
        if (!channels.contains(block->GetChannel())) {
            channels.append(block->GetChannel());
        }
    }
    return channels;
}

QList<ReplayItem> StepsOf(const Transmission& transmission)
{
    QList<ReplayItem> steps;
    for (const DataBlock* block : transmission.GetDataBlock()) {
        const int stampCount = static_cast<int>(block->GetTimeStamp().size());
        if (!CanBeCut(*block)) {
            steps.append(StepOf(transmission, *block, 0, stampCount));
            continue;
        }
        for (int i = 0; i < stampCount; ++i) {
            steps.append(StepOf(transmission, *block, i, i + 1));
        }
    }
    KeepOrderOfChannels(steps);
    std::stable_sort(steps.begin(), steps.end(), IsEarlier);
    return steps;
}
