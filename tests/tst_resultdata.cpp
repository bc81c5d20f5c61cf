// Result data to XML and back: every field of every class, input that is broken, foreign or
// hostile, documents cut at every character, and the schema, against which xmllint checks whatever
// the library writes here.
#include "sorvinresultdata.h"
#include "testcompat.h"
#include "transmissionbuilder.h"

#include <QFile>
#include <QProcess>

using namespace SorvinResultDataXml;

namespace {

const char* const kSchema = DTV_SOURCE_DIR "/docs/result-data.xsd";

QString Units(std::initializer_list<ushort> units)
{
    QString text;
    for (const ushort unit : units)
        text += QChar(unit);
    return text;
}

/// What xmllint says about \a xml; empty when it is valid.
QString Validate(const QString& xml)
{
    QProcess lint;
    const QStringList options = QString("--nonet --noout --huge - --schema").split(' ');
    lint.start("xmllint", QStringList(options) << kSchema);
    lint.write(xml.toUtf8());
    lint.closeWriteChannel();
    if (!lint.waitForFinished())
        return "xmllint cannot be run: " + lint.errorString();
    return lint.exitCode() == 0 ? QString() : QString::fromUtf8(lint.readAllStandardError());
}

/// A block that carries \a text, \a time and \a number in every field that can hold them.
DataBlock* MakeBlock(const QString& text, const QDateTime& time, int number)
{
    DataBlock* block = new DataBlock(number, number, number);
    block->SetContent(text);
    block->SetContentCode(text);
    block->SetContentDirectionRTL(number < 0);
    TimeStamp stamp = {time, number, number, number, number};
    block->GetTimeStamp().append(stamp);
    block->GetTimeStamp().append(TimeStamp());
    UserData annotation;
    annotation.type = text;
    annotation.start = annotation.end = annotation.channel = number;
    annotation.text = annotation.comment = annotation.oldText = annotation.callSign = text;
    annotation.SetModifier(text, time);
    block->AddUserData(new UserData(annotation));
    block->AddUserData(new UserData);
    return block;
}

/// Result, start time in milliseconds if it is known, and each block's channel, stamps and content.
QString Print(const QString& xml)
{
    Transmission t;
    t.SetStartTime(UtcTime(1));
    t.AddDataBlock(new DataBlock(99));
    QString line = QLatin1String(t.SetXmlString(xml) ? "true" : "false");
    if (t.GetStartTime().isValid())
        line += QString(" %1ms").arg(TestStart().msecsTo(t.GetStartTime()));
    for (const DataBlock* block : t.GetDataBlock()) {
        line += QString(" %1").arg(block->GetChannel());
        for (const TimeStamp& stamp : block->GetTimeStamp())
            line += QString("@%1").arg(stamp.position);
        line += ':' + block->GetContent();
    }
    return line;
}

} // namespace

class tst_resultdata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roundTrip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<int>("number");
        const QDateTime now = UtcTime(1769860800123);
        const QDateTime offset = QDateTime::fromString("2026-01-31T12:00:00+09:30", Qt::ISODate);
        QString all;
        for (int unit = 0; unit <= 0xFFFF; ++unit)
            all += QChar(static_cast<ushort>(unit));

        QTest::newRow("empty-null-zero") << QString() << QDateTime() << 0;
        QTest::newRow("blanks-around") << "  a\t b  " << now << -1;
        QTest::newRow("line-breaks") << "\na\r\nb\rc\n\n" << now << INT_MAX;
        QTest::newRow("markup") << "<a b=\"c\" d='e'>&amp;]]><!--?></Content>" << now << INT_MIN;
        QTest::newRow("escapes-in-text") << "\\u0041 \\u004 \\\\u0041 \\u00e4 \\" << now << 1;
        QTest::newRow("backslash-then-null")
            << Units({'\\', 0, '\\', 'u', '0', 0xFFFF}) << now << 1;
        QTest::newRow("lone-surrogates") << Units({0xD83D, 'x', 0xDE00, 0xD83D}) << now << 1;
        QTest::newRow("byte-order-marks") << Units({0xFEFF, 0xFEFF, 'x', 0xFEFF}) << now << 1;
        QTest::newRow("every-code-unit") << all << now << 1;
        QTest::newRow("beyond-bmp-and-rtl")
            << QString::fromUtf8("\xF0\x9F\x98\x80 \xD7\xA9\xD7\x9C") << now << -7;
        QTest::newRow("beyond-year-9999") << "alpha" << UtcTime(Q_INT64_C(253402300800001)) << 1;
        QTest::newRow("offset-from-utc") << "alpha" << offset << 1;
        QTest::newRow("invalid-time") << "alpha" << QDateTime(QDate(2026, 2, 30), QTime(1, 0)) << 1;
    }

    void roundTrip()
    {
        QFETCH(QString, text);
        QFETCH(QDateTime, time);
        QFETCH(int, number);
        SorvinResultData data;
        for (int i = 0; i < 2; ++i) {
            Transmission* transmission = new Transmission;
            transmission->SetStartTime(time);
            transmission->SetStopTime(i == 0 ? time : QDateTime());
            transmission->AddDataBlock(MakeBlock(text, time, number));
            transmission->AddDataBlock(new DataBlock);
            data.AddTransmission(transmission);
        }
        data.AddTransmission(new Transmission);
        const QString xml = data.GetXmlString();
        QVERIFY(!xml.contains('\n') && !xml.contains('\r'));
        QCOMPARE(Validate(xml), QString());

        SorvinResultData copy;
        QVERIFY2(copy.SetXmlString(xml), qPrintable(copy.GetErrorText()));
        QCOMPARE(copy.GetXmlString(), xml);
        QVERIFY(copy == data);
        const DataBlock& block = *copy.GetTransmission().at(1)->GetDataBlock().at(0);
        QCOMPARE(block.GetContent(), text);
        QCOMPARE(CompareTimes(block.GetUserData().at(0)->GetModifierTime(), time), 0);
        DataBlock own;
        QVERIFY(own.SetXmlString(block.GetXmlString()));
        QVERIFY(own == block);
        own.GetUserData().at(1)->SetModifier(QString(), UtcTime(1));
        QVERIFY(own != block);
    }

    void exampleOfTheDocumentation()
    {
        QFile page(DTV_SOURCE_DIR "/docs/result-data.md");
        QVERIFY(page.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(page.readAll());
        const QString example = text.section("```xml\n", 1).section("```", 0, 0);
        QCOMPARE(Validate(example), QString());
        SorvinResultData data;
        QVERIFY(data.SetXmlString(example));
        QCOMPARE(data.GetTransmission().size(), 2);
        QCOMPARE(data.GetTransmission().at(0)->GetStopTime(), UtcTime(1769860804250));
        const DataBlock& block = *data.GetTransmission().at(0)->GetDataBlock().at(0);
        QCOMPARE(block.GetContent(), "CQ CQ DE TEST1 <AR>\n");
        QCOMPARE(block.GetUserData().at(1)->oldText, "EQ");
    }

    void input_data()
    {
        QTest::addColumn<QString>("xml");
        QTest::addColumn<QString>("printed");
        const QString block = "<Transmission><DataBlock channel='1'/>";
        const QString end = "</Transmission>";
        const QDateTime midnight(QDate(2026, 1, 31), QTime(0, 0));
        const QString start = "<Transmission start='%1'/>";
        // clang-format off
        QTest::newRow("unknown-names") << block + "<New a='1'><DataBlock/></New><DataBlock new='1'><Content>a<b>x</b>c</Content></DataBlock>" + end << "true 1: -1:ac";
        QTest::newRow("any-order") << block + "<DataBlock><Content>a</Content><TimeStamp position='3'/><Content>b</Content></DataBlock>" + end << "true 1: -1@3:ab";
        QTest::newRow("pieces-of-text") << block + "<DataBlock><Content> <![CDATA[<&]]><!-- &x; -->&#x41;\r\n</Content></DataBlock>" + end << "true 1: -1: <&A\n";
        QTest::newRow("numbers-out-of-range") << block + "<DataBlock channel='99999999999999999999'><TimeStamp position='-2147483649'/></DataBlock>" + end << "true 1: 2147483647@-2147483648:";
        QTest::newRow("unknown-entity") << block + "<DataBlock>&x;</DataBlock>" + end << "false 1:";
        QTest::newRow("wrong-end-tag") << block + "<DataBlock><Content>a</DataBlock>" + end << "false 1:";
        QTest::newRow("null-character") << block + QChar(0) + end << "false 1:";
        QTest::newRow("error-behind-a-whole-block") << block + "<!--x--><a" << "false 1:";
        QTest::newRow("declaration-and-mark") << QString(QChar(0xFEFF)) + "<?xml version='1.0' encoding='UTF-16'?>\n<Transmission start='2026-01-31'/>\n" << QString("true %1ms").arg(TestStart().msecsTo(midnight));
        QTest::newRow("document-type") << "<!DOCTYPE a [<!ENTITY x 'y'>]><Transmission/>" << "false";
        QTest::newRow("offset-west") << start.arg("2026-01-31T08:30:00.007-0330") << "true 7ms";
        // clang-format on
        for (const char* bad : {"", "2026-02-29T00:00:00.000Z", "2026-01-31T24:00:00.000Z",
                                "2026-01-31T12:00:00.000Zx", "999999999-01-01T00:00:00.000Z"}) {
            QTest::newRow(qPrintable(QString("no-time-") + bad)) << start.arg(bad) << "true";
        }
    }
    void input()
    {
        QFETCH(QString, xml);
        QTEST(Print(xml), "printed");
    }

    void cutAnywhere()
    {
        SorvinResultData whole;
        for (int i = 0; i < 3; ++i) {
            whole.AddTransmission(new Transmission);
            whole.GetTransmission().at(i)->SetStartTime(UtcTime(i));
            for (int j = 0; j < 2; ++j) {
                whole.GetTransmission().at(i)->AddDataBlock(
                    MakeBlock(QString::fromUtf8("\xC3\xA4</>\""), UtcTime(j), j));
            }
        }
        const QString xml = whole.GetXmlString();
        for (int cut = 0; cut < xml.size(); ++cut) {
            const QString part = xml.left(cut);
            SorvinResultData read;
            QVERIFY(!read.SetXmlString(part));
            QCOMPARE(read.GetErrorLine(), 1);
            QVERIFY(read.GetErrorColumn() >= part.lastIndexOf('<') &&
                    read.GetErrorColumn() <= cut + 1);
            int blocks = 0;
            for (int i = 0; i < read.GetTransmission().size(); ++i) {
                const Transmission& transmission = *read.GetTransmission().at(i);
                QCOMPARE(transmission.GetStartTime(), UtcTime(i));
                for (int j = 0; j < transmission.GetDataBlock().size(); ++j, ++blocks) {
                    QVERIFY(*transmission.GetDataBlock().at(j) ==
                            *whole.GetTransmission().at(i)->GetDataBlock().at(j));
                }
            }
            QCOMPARE(blocks, static_cast<int>(part.count("</DataBlock>")));
        }
    }

    void deepAndLong()
    {
        const int kDepth = 300000;
        const QString open = QString("<a>").repeated(kDepth);
        const QString block = "<DataBlock><Content>x</Content></DataBlock>";
        Transmission t;
        QVERIFY(!t.SetXmlString("<Transmission>" + block + open));
        QCOMPARE(t.GetDataBlock().size(), 1);
        QVERIFY(t.SetXmlString("<Transmission>" + open + QString("</a>").repeated(kDepth) +
                               block.repeated(20000) + "</Transmission>"));
        QCOMPARE(t.GetDataBlock().size(), 20000);
    }

    void frames()
    {
        DataBlock block(5, 100, 0);
        block.EndFrame();
        for (int i = 0; i < 3; ++i) {
            block.SetTimeStamp(UtcTime(i));
            block.BeginFrame();
            block.AppendData(QString(i, 'x') + "y");
            block.EndFrame();
        }
        QCOMPARE(block.GetContent(), "yxyxxy");
        const TimeStamp last = {UtcTime(2), 103, 0, 0, 100};
        QCOMPARE(block.GetTimeStamp().size(), 3);
        QVERIFY(block.GetTimeStamp().at(2) == last);
    }
};

QTEST_GUILESS_MAIN(tst_resultdata)
#include "tst_resultdata.moc"
