#ifndef SORVINRESULTDATA_H
#define SORVINRESULTDATA_H

#include "isorvinresultdata.h"
#include "transmission.h"

#include <QVector>

namespace SorvinResultDataXml {

/// Any number of transmissions: a recording or an export; XML element ResultData.
/// Owns its transmissions. Not copied: the vector below hands out the very objects.
class RESULTDATA_EXPORT SorvinResultData : public ISorvinResultData
{
public:
    SorvinResultData() = default;
    ~SorvinResultData() override;
    SorvinResultData(const SorvinResultData&) = delete;
    SorvinResultData& operator=(const SorvinResultData&) = delete;

    /// See the base class. A document whose root is a single Transmission is read too, as a
    /// recording of that one. After an error the transmission in which it lies is held with the
    /// data blocks in front of the error.
    bool SetXmlString(const QString& xml) override;
    QString GetXmlString() const override;

    /// In document order. Owned by this object: who takes one out of the vector takes it over.
    QVector<Transmission*>& GetTransmission() { return transmissions; }
    const QVector<Transmission*>& GetTransmission() const { return transmissions; }
    /// Takes over the heap object \a transmission; null is ignored.
    void AddTransmission(Transmission* transmission);

    /// Equal transmissions in the same order.
    bool operator==(const SorvinResultData& other) const;
    bool operator!=(const SorvinResultData& other) const { return !(*this == other); }

private:
    QVector<Transmission*> transmissions;
};

} // namespace SorvinResultDataXml

#endif
