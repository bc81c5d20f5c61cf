// Feeds arbitrary bytes to the three readers of result-data XML. Whatever they accept must be
// written and read back as an equal object; nothing may crash, hang or throw. Runs under libFuzzer,
// or, built with DTV_FUZZ_REPLAY, once over the files that are named on the command line.
#include "sorvinresultdata.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdint>
#include <cstdlib>

using namespace SorvinResultDataXml;

namespace {

template <typename Object> void Check(const QString& xml)
{
    Object object;
    object.SetXmlString(xml);
    Object copy;
    if (!copy.SetXmlString(object.GetXmlString()) || copy != object)
        std::abort();
}

void CheckCut(const QString& xml, int cut)
{
    Transmission whole;
    if (!whole.SetXmlString(xml))
        return;
    Transmission part;
    part.SetXmlString(xml.left(cut));
    if (part.GetDataBlock().size() > whole.GetDataBlock().size())
        std::abort();
    for (int i = 0; i < part.GetDataBlock().size(); ++i) {
        if (*part.GetDataBlock().at(i) != *whole.GetDataBlock().at(i))
            std::abort();
    }
}

void CheckAll(const QString& xml)
{
    for (int cut = 0; cut < xml.size(); cut += 7)
        CheckCut(xml, cut);
    Check<SorvinResultData>(xml);
    Check<Transmission>(xml);
    Check<DataBlock>(xml);
    DataBlock block;
    block.SetContent(xml);
    block.SetContentCode(xml);
    Check<DataBlock>(block.GetXmlString());
    DataBlock copy;
    if (!copy.SetXmlString(block.GetXmlString()) || copy != block)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CheckAll(QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    // As UTF-16 the same bytes hold surrogates and control characters that UTF-8 cannot.
    QString units;
    for (size_t i = 0; i + 1 < size; i += 2)
        units += QChar(static_cast<ushort>(data[i] | data[i + 1] << 8));
    CheckAll(units);
    return 0;
}

#ifdef DTV_FUZZ_REPLAY
int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        QFile file(QString::fromLocal8Bit(argv[i]));
        if (!file.open(QIODevice::ReadOnly))
            return 2;
        const QByteArray bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()),
                               static_cast<size_t>(bytes.size()));
    }
    return 0;
}
#endif
