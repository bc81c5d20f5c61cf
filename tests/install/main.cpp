// Embeds the installed widget, feeds it one transmission and finds the text in the channel's
// caption.
#include <QApplication>
#include <QLineEdit>

#include <datablock.h>
#include <decodedtextview.h>
#include <transmission.h>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    DecodedTextView view(nullptr);

    SorvinResultDataXml::Transmission transmission;
    transmission.SetStartTime(QDateTime::currentDateTimeUtc());
    auto* const block = new SorvinResultDataXml::DataBlock(1, 0, 0);
    block->SetTimeStamp(transmission.GetStartTime());
    block->BeginFrame();
    block->AppendData(QLatin1String("cq cq de station"));
    block->EndFrame();
    transmission.AddDataBlock(block);
    view.AddTransmission(transmission.GetXmlString());
    view.show();
    QApplication::processEvents();

    const QLineEdit* const ticker = view.findChild<QLineEdit*>(QLatin1String("TickerLine"));
    return ticker && ticker->text().contains(QLatin1String("cq de station")) ? 0 : 1;
}
