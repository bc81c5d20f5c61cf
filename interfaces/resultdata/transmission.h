#ifndef TRANSMISSION_H
#define TRANSMISSION_H

#include "datablock.h"
#include "isorvinresultdata.h"

#include <QDateTime>
#include <QVector>

namespace SorvinResultDataXml {

/// A received transmission, or a part of it: data blocks of any channels under one start time; XML
/// element Transmission. Owns its data blocks. Not copied: the vector below hands out the very
/// objects.
class RESULTDATA_EXPORT Transmission : public ISorvinResultData
{
public:
    Transmission() = default;
    ~Transmission() override;
    Transmission(const Transmission&) = delete;
    Transmission& operator=(const Transmission&) = delete;

    /// See the base class. After an error only data blocks that were closed by their end tag are
    /// held, each of them whole.
    bool SetXmlString(const QString& xml) override;
    QString GetXmlString() const override;

    /// Null when not known. Times keep the time spec they were set or written with.
    QDateTime GetStartTime() const { return startTime; }
    void SetStartTime(const QDateTime& time) { startTime = time; }
    QDateTime GetStopTime() const { return stopTime; }
    void SetStopTime(const QDateTime& time) { stopTime = time; }

    /// In document order. Owned by the transmission: who takes one out of the vector takes it over.
    QVector<DataBlock*>& GetDataBlock() { return dataBlocks; }
    const QVector<DataBlock*>& GetDataBlock() const { return dataBlocks; }
    /// Takes over the heap object \a dataBlock; null is ignored.
    void AddDataBlock(DataBlock* dataBlock);

    /// Equal times (as instants) and equal data blocks in the same order.
    bool operator==(const Transmission& other) const;
    bool operator!=(const Transmission& other) const { return !(*this == other); }

private:
    QDateTime startTime;
    QDateTime stopTime;
    QVector<DataBlock*> dataBlocks;
};

} // namespace SorvinResultDataXml

#endif
