// Result data to XML and back: every field of every class, input that is broken, foreign or
// hostile, documents cut at every character, and the schema, against which xmllint checks whatever
// the library writes here.
#include "sorvinresultdata.h"
#include "sorvinresultdataexception.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QtTest>

using namespace SorvinResultDataXml;

namespace {

const char* const kSchema = DTV_SOURCE_DIR "/docs/result-data.xsd";
const char* const kPage = DTV_SOURCE_DIR "/docs/result-data.md";

QDateTime Utc(qint64 ms)
{
    QDateTime time;
    time.setTimeSpec(Qt::UTC);
    time.setMSecsSinceEpoch(ms);
    return time;
}

QDateTime Local(int year, int month, int day, int hour)
{
    return QDateTime(QDate(year, month, day), QTime(hour, 30, 15, 7));
}

QString Units(std::initializer_list<ushort> units)
{
    QString text;
    for (const ushort unit : units)
        text += QChar(unit);
    return text;
}

/// The example of the documentation.
QString Example()
{
    QFile page(QString::fromUtf8(kPage));
    if (!page.open(QIODevice::ReadOnly))
        return QString();
    const QString text = QString::fromUtf8(page.readAll());
    const QString fence = QLatin1String("```xml\n");
    const auto begin = text.indexOf(fence) + fence.size();
    return text.mid(begin, text.indexOf(QLatin1String("```"), begin) - begin);
}

/// What xmllint says about \a xml; empty when it is valid.
QString Validate(const QString& xml)
{
    QProcess lint;
    lint.start(QLatin1String("xmllint"), QStringList()
                                             << QLatin1String("--nonet") << QLatin1String("--noout")
                                             << QLatin1String("--huge") << QLatin1String("--schema")
                                             << QString::fromUtf8(kSchema) << QLatin1String("-"));
    lint.write(xml.toUtf8());
    lint.closeWriteChannel();
    if (!lint.waitForFinished())
        return QLatin1String("xmllint cannot be run: ") + lint.errorString();
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

} // namespace

class TestResultData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void RoundTrip_data();
    void RoundTrip();
    void ExampleOfTheDocumentation();
    void Input_data();
    void Input();
    void ErrorPlace_data();
    void ErrorPlace();
    void CutAnywhere();
    void DeepAndLong();
    void HourThatRepeats();
    void Frames();
    void Times_data();
    void Times();
};

void TestResultData::RoundTrip_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<int>("number");
    const QDateTime now = Utc(1769860800123);
    const QString word = QLatin1String("alpha");
    const QDateTime offset =
        QDateTime::fromString(QLatin1String("2026-01-31T12:00:00+09:30"), Qt::ISODate);
    QString all;
    for (int unit = 0; unit <= 0xFFFF; ++unit)
        all += QChar(static_cast<ushort>(unit));

    QTest::newRow("empty-null-zero") << QString() << QDateTime() << 0;
    QTest::newRow("blanks-around") << QString::fromUtf8("  a\t b  ") << now << -1;
    QTest::newRow("blanks-only") << QString::fromUtf8("  ") << now << 1;
    QTest::newRow("line-breaks") << QString::fromUtf8("\na\r\nb\rc\n\n") << now << INT_MAX;
    QTest::newRow("markup") << QString::fromUtf8("<a b=\"c\" d='e'>&amp;]]><!--?></Content>") << now
                            << INT_MIN;
    QTest::newRow("escapes-in-text")
        << QString::fromUtf8("\\u0041 \\u004 \\\\u0041 \\u00e4 \\") << now << 1;
    QTest::newRow("backslash-then-null") << Units({'\\', 0, '\\', 'u', '0', 0xFFFF}) << now << 1;
    QTest::newRow("lone-surrogates") << Units({0xD83D, 'x', 0xDE00, 0xD83D}) << now << 1;
    QTest::newRow("byte-order-marks") << Units({0xFEFF, 0xFEFF, 'x', 0xFEFF}) << now << 1;
    QTest::newRow("every-code-unit") << all << now << 1;
    QTest::newRow("beyond-bmp-and-rtl")
        << QString::fromUtf8("\xF0\x9F\x98\x80 \xD7\xA9\xD7\x9C") << now << -7;
    QTest::newRow("before-1970") << word << Utc(-1) << 1;
    QTest::newRow("day-before-leap-day") << word << Utc(951782399999) << 1;
    QTest::newRow("beyond-year-9999") << word << Utc(Q_INT64_C(253402300800001)) << 1;
    QTest::newRow("before-christ") << word << Utc(Q_INT64_C(-62198755200001)) << 1;
    QTest::newRow("far-future") << word << Utc(Q_INT64_C(9000000000000000000)) << 1;
    QTest::newRow("local") << word << Local(2026, 7, 1, 12) << 1;
    QTest::newRow("local-long-ago") << word << Local(1831, 7, 1, 12) << 1;
    QTest::newRow("offset-from-utc") << word << offset << 1;
    QTest::newRow("invalid-time") << word << QDateTime(QDate(2026, 2, 30), QTime(1, 0)) << 1;
}

void TestResultData::RoundTrip()
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
    QVERIFY(!xml.contains(QLatin1Char('\n')) && !xml.contains(QLatin1Char('\r')));
    QCOMPARE(Validate(xml), QString());

    SorvinResultData copy;
    QVERIFY2(copy.SetXmlString(xml), qPrintable(copy.GetErrorText()));
    QCOMPARE(copy.GetXmlString(), xml);
    QVERIFY(copy == data);
    const DataBlock& block = *copy.GetTransmission().at(1)->GetDataBlock().at(0);
    QCOMPARE(block.GetContent(), text);
    QCOMPARE(block.GetTimeStamp().at(0).spare2, number);
    QCOMPARE(CompareTimes(block.GetUserData().at(0)->GetModifierTime(), time), 0);
    QVERIFY(block.GetTimeStamp().at(0).time.timeSpec() == time.timeSpec() || !time.isValid());

    // Equality looks at the innermost fields, and each class reads its own element.
    Transmission transmission;
    QVERIFY(transmission.SetXmlString(data.GetTransmission().at(0)->GetXmlString()));
    QVERIFY(transmission == *data.GetTransmission().at(0));
    DataBlock own;
    QVERIFY(own.SetXmlString(block.GetXmlString()));
    QVERIFY(own == block);
    own.GetUserData().at(1)->SetModifier(QString(), Utc(1));
    QVERIFY(own != block);
}

void TestResultData::ExampleOfTheDocumentation()
{
    const QString example = Example();
    QCOMPARE(Validate(example), QString());
    SorvinResultData data;
    QVERIFY(data.SetXmlString(example));
    QCOMPARE(data.GetTransmission().size(), 2);
    const Transmission& first = *data.GetTransmission().at(0);
    QCOMPARE(first.GetStopTime(), Utc(1769860804250));
    QVERIFY(data.GetTransmission().at(1)->GetDataBlock().isEmpty());
    const DataBlock& block = *first.GetDataBlock().at(0);
    QCOMPARE(block.GetContent(), QString::fromUtf8("CQ CQ DE TEST1 <AR>\n"));
    QCOMPARE(block.GetTimeStamp().at(1).quality, 35);
    QVERIFY(block.GetUserData().at(0)->type == UserData::CallSignType);
    QVERIFY(block.GetUserData().at(1)->type == UserData::ChangeType);
    QCOMPARE(block.GetUserData().at(1)->oldText, QString::fromUtf8("EQ"));
    QCOMPARE(block.GetUserData().at(1)->GetModifier(), QString::fromUtf8("operator"));
    QVERIFY(UserData::CommentType != UserData::CallSignType &&
            UserData::CommentType != UserData::ChangeType);
}

/// What a document gives, in one line: result, start time known or not, and each block's channel,
/// stamps and content.
static QString Print(const QString& xml)
{
    Transmission t;
    t.SetStartTime(Utc(1));
    t.AddDataBlock(new DataBlock(99));
    QString line = QLatin1String(t.SetXmlString(xml) ? "true" : "false");
    if (t.GetStartTime().isValid())
        line += QLatin1String(" started");
    for (const DataBlock* block : t.GetDataBlock()) {
        line += QString::fromUtf8(" %1").arg(block->GetChannel());
        for (const TimeStamp& stamp : block->GetTimeStamp())
            line += QString::fromUtf8("@%1").arg(stamp.position);
        line += QLatin1Char(':') + block->GetContent();
    }
    return line;
}

void TestResultData::Input_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("printed");
    const auto row = [](const char* name, const char* body, const char* printed) {
        QTest::newRow(name)
            << QString::fromUtf8("<Transmission>%1</Transmission>").arg(QString::fromUtf8(body))
            << QString::fromUtf8(printed);
    };
    const auto whole = [](const char* name, const QString& xml, const char* printed) {
        QTest::newRow(name) << xml << QString::fromUtf8(printed);
    };
    row("no-blocks", "", "true");
    row("nothing-but-defaults", "<DataBlock/>", "true -1:");
    row("unknown-names",
        "<New a='1'><DataBlock/></New><DataBlock new='1' "
        "channel='2'><Content>a<b>x</b>c</Content></DataBlock>",
        "true 2:ac");
    row("any-order",
        "<DataBlock channel='2'><Content>a</Content><TimeStamp "
        "position='3'/><Content>b</Content></DataBlock>",
        "true 2@3:ab");
    row("pieces-of-text",
        "<DataBlock><Content> <![CDATA[<&]]><!-- &x; -->&#x41;\r\n</Content></DataBlock>",
        "true -1: <&A\n");
    row("numbers-out-of-range",
        "<DataBlock channel='99999999999999999999'><TimeStamp position='-2147483649'/></DataBlock>",
        "true 2147483647@-2147483648:");
    row("no-numbers", "<DataBlock channel='2x'><TimeStamp position=''/></DataBlock>", "true -1@0:");
    row("unknown-entity", "<DataBlock channel='1'/><DataBlock>&x;</DataBlock>", "false 1:");
    row("reference-to-null", "<DataBlock channel='1'/><DataBlock code='&#0;'/>", "false 1:");
    row("end-tag-too-short", "<DataBlock channel='1'/><DataBlock channel='2'></DataBloc>",
        "false 1:");
    row("wrong-end-tag", "<DataBlock channel='1'/><DataBlock channel='2'><Content>a</DataBlock>",
        "false 1:");
    row("error-behind-a-whole-block", "<DataBlock channel='1'></DataBlock><!--x--><a", "false 1:");
    whole("declaration-and-mark",
          QString(QChar(0xFEFF)) +
              QString::fromUtf8(
                  "<?xml version='1.0' encoding='UTF-16'?>\n<Transmission start='2026-01-31'/>\n"),
          "true started");
    whole("empty", QString(), "false");
    whole("no-markup", QString::fromUtf8("hello"), "false");
    whole("foreign-root", QString::fromUtf8("<html><DataBlock/></html>"), "false");
    whole("other-root", QString::fromUtf8("<ResultData><Transmission/></ResultData>"), "false");
    whole("two-roots", QString::fromUtf8("<Transmission/><Transmission/>"), "false");
    whole("text-behind-the-root", QString::fromUtf8("<Transmission start='2026-01-31'/>x"),
          "false started");
    whole("start-tag-cut-off", QString::fromUtf8("<Transmission start='2026-01-31' stop='20"),
          "false");
    whole("document-type", QString::fromUtf8("<!DOCTYPE a [<!ENTITY x 'y'>]><Transmission/>"),
          "false");
    whole("null-character",
          QString::fromUtf8("<Transmission><DataBlock/>") + QChar(0) +
              QString::fromUtf8("</Transmission>"),
          "false -1:");
    whole("lone-surrogate",
          QString::fromUtf8("<Transmission><DataBlock/>") + QChar(0xDC00) +
              QString::fromUtf8("</Transmission>"),
          "false -1:");
}

void TestResultData::Input()
{
    QFETCH(QString, xml);
    QFETCH(QString, printed);
    QCOMPARE(Print(xml), printed);
}

void TestResultData::ErrorPlace_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::newRow("no-error") << QString::fromUtf8("<DataBlock/>") << 0 << 0;
    QTest::newRow("end-is-missing") << QString::fromUtf8("<DataBlock>\n<Content>") << 2 << 10;
    QTest::newRow("wrong-end-tag")
        << QString::fromUtf8("<DataBlock>\n\xF0\x9F\x98\x80\xC3\xA4</Block>") << 2 << 6;
    QTest::newRow("bad-entity") << QString::fromUtf8("\n\n<DataBlock> &x;") << 3 << 13;
    QTest::newRow("foreign-root") << QString::fromUtf8("\n <html/>") << 2 << 3;
}

void TestResultData::ErrorPlace()
{
    QFETCH(QString, xml);
    QFETCH(int, line);
    QFETCH(int, column);
    DataBlock block;
    QCOMPARE(block.SetXmlString(xml), line == 0);
    QCOMPARE(block.GetErrorText().isEmpty(), line == 0);
    QCOMPARE(block.GetErrorLine(), line);
    QCOMPARE(block.GetErrorColumn(), column);
    QVERIFY(block.SetXmlString(QLatin1String("<DataBlock/>")) && block.GetErrorLine() == 0);
}

void TestResultData::CutAnywhere()
{
    SorvinResultData whole;
    for (int i = 0; i < 3; ++i) {
        whole.AddTransmission(new Transmission);
        whole.GetTransmission().at(i)->SetStartTime(Utc(i));
        for (int j = 0; j < 2; ++j)
            whole.GetTransmission().at(i)->AddDataBlock(
                MakeBlock(QString::fromUtf8("\xC3\xA4</>\""), Utc(j), j));
    }
    const QString xml = whole.GetXmlString();
    const QString blockEnd = QLatin1String("</DataBlock>");
    for (int cut = 0; cut < xml.size(); ++cut) {
        const QString part = xml.left(cut);
        SorvinResultData read;
        QVERIFY(!read.SetXmlString(part));
        QCOMPARE(read.GetErrorLine(), 1);
        QVERIFY(read.GetErrorColumn() >= part.lastIndexOf(QLatin1Char('<')) &&
                read.GetErrorColumn() <= cut + 1);
        int blocks = 0;
        for (int i = 0; i < read.GetTransmission().size(); ++i) {
            const Transmission& transmission = *read.GetTransmission().at(i);
            QCOMPARE(transmission.GetStartTime(), Utc(i));
            for (int j = 0; j < transmission.GetDataBlock().size(); ++j, ++blocks)
                QVERIFY(*transmission.GetDataBlock().at(j) ==
                        *whole.GetTransmission().at(i)->GetDataBlock().at(j));
        }
        QCOMPARE(blocks, static_cast<int>(part.count(blockEnd)));
    }
}

void TestResultData::DeepAndLong()
{
    const int kDepth = 300000;
    const QString open = QString::fromUtf8("<a>").repeated(kDepth);
    const QString block = QString::fromUtf8("<DataBlock><Content>x</Content></DataBlock>");
    Transmission t;
    QVERIFY(!t.SetXmlString(QLatin1String("<Transmission>") + block + open));
    QCOMPARE(t.GetDataBlock().size(), 1);
    QVERIFY(t.SetXmlString(QLatin1String("<Transmission>") + open +
                           QString::fromUtf8("</a>").repeated(kDepth) + block.repeated(20000) +
                           QLatin1String("</Transmission>")));
    QCOMPARE(t.GetDataBlock().size(), 20000);
}

void TestResultData::HourThatRepeats()
{
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    // Half past two twice: 00:30 and 01:30 UTC. Read out of order, so that no remembered conversion
    // helps.
    SorvinResultData data;
    for (const int minutes : {-60, 0, 30, 59, 60, 90, 119, 120}) {
        QDateTime time;
        time.setMSecsSinceEpoch(1792886400000 + minutes * Q_INT64_C(60000));
        data.AddTransmission(new Transmission);
        data.GetTransmission().last()->SetStartTime(time);
    }
    const QString xml = data.GetXmlString();
    Local(2026, 1, 1, 0).toMSecsSinceEpoch();
    SorvinResultData copy;
    const bool read = copy.SetXmlString(xml);
    const bool equal = copy == data;
    qputenv("TZ", zone);
    QVERIFY(read);
    QVERIFY2(equal, qPrintable(xml));
}

void TestResultData::Frames()
{
    DataBlock block(5, 100, 0);
    QCOMPARE(block.GetContentCode(), QString::fromUtf8("None"));
    block.EndFrame();
    for (int i = 0; i < 3; ++i) {
        block.SetTimeStamp(Utc(i));
        block.BeginFrame();
        block.AppendData(QString(i, QLatin1Char('x')));
        block.AppendData(QString::fromUtf8("y"));
        block.EndFrame();
    }
    QCOMPARE(block.GetContent(), QString::fromUtf8("yxyxxy"));
    const TimeStamp last = {Utc(2), 103, 0, 0, 100};
    QCOMPARE(block.GetTimeStamp().size(), 3);
    QVERIFY(block.GetTimeStamp().at(2) == last);
    QCOMPARE(block.GetTimeStamp().at(1).position, 101);

    DataBlock far(5, INT_MAX, 0);
    far.AppendData(QLatin1String("ab"));
    far.BeginFrame();
    far.EndFrame();
    QCOMPARE(far.GetTimeStamp().at(0).position, INT_MAX);
}

void TestResultData::Times_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("time");
    const QDateTime noon = Utc(1769860800000);
    QTest::newRow("no-seconds") << QString::fromUtf8("2026-01-31T12:00Z") << noon;
    QTest::newRow("blanks-and-more-digits")
        << QString::fromUtf8(" 2026-01-31 12:00:00.1239Z ") << noon.addMSecs(123);
    QTest::newRow("offset-west") << QString::fromUtf8("2026-01-31T08:30:00-0330") << noon;
    QTest::newRow("local-date") << QString::fromUtf8("2026-01-31")
                                << QDateTime(QDate(2026, 1, 31), QTime(0, 0));
    QTest::newRow("leap-day") << QString::fromUtf8("2000-02-29T00:00:00.000Z") << Utc(951782400000);
    for (const char* bad :
         {"", "x", "2026-02-29T00:00:00.000Z", "2026-13-01T00:00:00.000Z",
          "2026-01-31T24:00:00.000Z", "2026-01-31T12:00:00.000Zx", "2026-01-31T12:00:00+15:00",
          "999999999-01-01T00:00:00.000Z", "26-01-31"})
        QTest::newRow(qPrintable(QLatin1String("no-time-") + QLatin1String(bad)))
            << QString::fromUtf8(bad) << QDateTime();
}

void TestResultData::Times()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, time);
    Transmission t;
    QVERIFY(t.SetXmlString(QString::fromUtf8("<Transmission start='%1'/>").arg(text)));
    QCOMPARE(t.GetStartTime().isValid(), time.isValid());
    QCOMPARE(CompareTimes(t.GetStartTime(), time), 0);
    QCOMPARE(CompareTimes(time, QDateTime()), time.isValid() ? 1 : 0);
    QCOMPARE(CompareTimes(QDateTime(), time), time.isValid() ? -1 : 0);
    QCOMPARE(CompareTimes(Utc(-9000000000000), Utc(-8999999999999)), -1);
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    TestResultData test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_resultdata.moc"
