// Painting the columns beside the text: they cost what is seen, however many lines a paragraph has
// and however many call signs its block.

#include "bench_rows.h"
#include "benchmark.h"
#include "datablock.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextinfoarea.h"
#include "decodedtexttimearea.h"
#include "timestamp.h"
#include "transmission.h"
#include "userdata.h"

#include <QImage>
#include <QScrollBar>

using SorvinResultDataXml::UserData;

namespace {

const int kStampLength = 10; ///< characters under one time stamp
const int kSignEvery = 20;   ///< characters from call sign to call sign

/// A text area with one paragraph without line feeds, scrolled to its middle.
class LongParagraph
{
public:
    explicit LongParagraph(int characters)
    {
        model.SetBufferSize(10 * characters);
        Fill(characters);
        const DecodedTextBlockPtr block = model.GetChannelData(1)->GetLastBlock();
        for (int pos = 0; pos < characters; pos += kSignEvery) {
            UserData* sign = new UserData;
            sign->type = UserData::CallSignType;
            sign->start = pos;
            sign->end = pos + 5;
            sign->callSign = QLatin1String("QB3AA");
            block->InsertUserData(sign);
        }
        content.reset(new DecodedTextContent(1, false, &model, nullptr));
        content->resize(800, 600);
        content->show();
        content->RefreshContent();
        QImage text(content->size(), QImage::Format_RGB32);
        content->render(&text); // lays it out
        content->verticalScrollBar()->setValue(content->verticalScrollBar()->maximum() / 2);
    }

    double Paint(QWidget* column)
    {
        QImage image(column->size(), QImage::Format_RGB32);
        return Benchmark::Cost(1, [&]() { column->render(&image); });
    }

    QScopedPointer<DecodedTextContent> content;

private:
    void Fill(int characters)
    {
        SorvinResultDataXml::Transmission transmission;
        const QDateTime start = QDateTime::currentDateTime().toUTC();
        transmission.SetStartTime(start);
        SorvinResultDataXml::DataBlock* block = new SorvinResultDataXml::DataBlock(1, 0, 0);
        transmission.AddDataBlock(block);
        block->SetContent(QString(characters, QLatin1Char('x')));
        for (int pos = 0; pos < characters; pos += kStampLength) {
            SorvinResultDataXml::TimeStamp stamp;
            stamp.time = start.addSecs(pos);
            stamp.position = pos;
            block->GetTimeStamp().append(stamp);
        }
        model.AddTransmission(transmission.GetXmlString());
    }

    DecodedTextData model;
};

} // namespace

void RunColumnRows()
{
    if (!Benchmark::IsWanted(QLatin1String("13 columns"))) {
        return;
    }
    LongParagraph paragraph(1000000);
    DecodedTextContent& content = *paragraph.content;
    const auto text = [&]() { return paragraph.Paint(content.viewport()); };
    Benchmark::Compare(
        QLatin1String("13a times beside a paragraph of 1,000,000"), QLatin1String("its text"), 0.25,
        41, [&]() { return paragraph.Paint(content.GetTimeArea()); }, text);
    Benchmark::Compare(
        QLatin1String("13b call signs, 50,000 in that paragraph"), QLatin1String("its text"), 0.25,
        41, [&]() { return paragraph.Paint(content.GetInfoArea()); }, text);
}
