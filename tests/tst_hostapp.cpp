// Runs the stand-alone program as an operator or a script runs it and looks at what it prints and
// writes: command line, damaged and piecemeal input, text, picture, export, replay, demonstration.
// What cuts its input is also tested directly.
#include "documentsplitter.h"
#include "rowtable.h"
#include "sorvinresultdata.h"

#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const int kTimeoutMs = 60000;
const char kFirst[] =
    "<Transmission start=\"2026-03-14T09:00:00Z\"><DataBlock channel=\"1\" id=\"1\">"
    "<TimeStamp time=\"2026-03-14T09:00:00Z\" position=\"0\"/><Content>FIRST&#10;</Content>"
    "</DataBlock></Transmission>";
const char kSecond[] =
    "<Transmission start=\"2026-03-14T09:00:00Z\"><DataBlock channel=\"1\" id=\"1\">"
    "<TimeStamp time=\"2026-03-14T09:00:02Z\" position=\"6\"/><Content>SECOND&#10;</Content>"
    "</DataBlock></Transmission>";
const char kBothAsText[] =
    "Channel 1\n=========\n\n2026-03-14 09:00:00\n09:00:00  FIRST\n09:00:02  SECOND\n";

QString Sample(const char* name)
{
    return QLatin1String(DTV_SOURCE_DIR "/samples/") + QLatin1String(name);
}

QByteArray ReadAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Result
{
    int status;
    QByteArray out;
    QByteArray error; // without what Qt itself says
};

Result Finish(QProcess& process)
{
    Result result;
    result.status =
        process.waitForFinished(kTimeoutMs) && process.exitStatus() == QProcess::NormalExit
            ? process.exitCode()
            : -1;
    result.out = process.readAllStandardOutput();
    for (const QByteArray& line : process.readAllStandardError().split('\n')) {
        if (line.startsWith("decodedtexthost: ")) {
            result.error += line + '\n';
        }
    }
    return result;
}

Result Run(const QStringList& arguments, const QByteArray& input = QByteArray())
{
    QProcess process;
    process.start(QLatin1String(DTV_HOST_PROGRAM), arguments);
    process.write(input);
    process.closeWriteChannel();
    return Finish(process);
}

/// Started by \a script of the shell, as "$0" "$@".
Result RunIn(const char* script, const QStringList& arguments)
{
    QProcess process;
    process.start("sh", QStringList() << "-c" << QLatin1String(script)
                                      << QLatin1String(DTV_HOST_PROGRAM) << arguments);
    return Finish(process);
}

QStringList Words(const char* text)
{
    return QString::fromLatin1(text).split(' ');
}

/// Transmissions by their first line, errors with their line.
QString Print(DocumentSplitter& splitter)
{
    QString out;
    for (const DocumentSplitter::Piece& piece : splitter.TakePieces()) {
        out += QString("%1:%2\n")
                   .arg(piece.line)
                   .arg(piece.error.isEmpty() ? QString::fromUtf8(piece.xml) : "error");
    }
    return out;
}

} // namespace

class tst_hostapp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(folder.isValid());
        qputenv("HX_CONFIG_FILE", QFile::encodeName(Path("settings.ini")));
    }

    void commandLine_data()
    {
        // name ;; arguments ;; status ;; on standard output ;; on standard error
        AddRows({
            "version ;; --version ;; 0 ;; decodedtexthost  ;; ",
            "help ;; --help ;; 0 ;; --quit-at-end ;; ",
            "help-despite-files ;; --help x.xml ;; 0 ;; [FILE ...] ;; ",
            "unknown-option ;; --bogus ;; 1 ;;  ;; bogus",
            "missing-value ;; --text ;; 1 ;;  ;; text",
            "name-without-number ;; --name x=y ;; 1 ;;  ;; 'x=y'",
            "name-without-text ;; --name 3 ;; 1 ;;  ;; '3'",
            "speed-zero ;; --speed 0 ;; 1 ;;  ;; '0'",
            "speed-no-number ;; --speed fast ;; 1 ;;  ;; 'fast'",
            "demo-with-file ;; --demo x.xml ;; 1 ;;  ;; --demo",
            "nothing-to-show ;; --quit-at-end ;; 0 ;;  ;; ",
        });
    }
    void commandLine()
    {
        QFETCH(QStringList, row);
        const QByteArray out = row.at(2).toUtf8();
        const QByteArray error = row.at(3).toUtf8();
        const Result result = Run(row.at(0).split(' '));
        QCOMPARE(result.status, row.at(1).toInt());
        QVERIFY2(out.isEmpty() ? result.out.isEmpty() : result.out.contains(out),
                 result.out.constData());
        QVERIFY2(error.isEmpty() ? result.error.isEmpty() : result.error.contains(error),
                 result.error.constData());
    }

    void splitting_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("pieces");
        const QByteArray t("<Transmission/>");
        QTest::newRow("stream") << t + "\n" + t + "\n"
                                << "1:<Transmission/>\n2:<Transmission/>\n";
        QTest::newRow("no-line-break") << t + t << "1:<Transmission/>\n1:<Transmission/>\n";
        QTest::newRow("recording")
            << "<?xml version='1.0'?>\n<!-- a > b -->\n<ResultData>\n " + t + "\n</ResultData>\n"
            << "4:<Transmission/>\n";
        QTest::newRow("recording-in-stream")
            << "<ResultData>" + t + "</ResultData>" + t << "1:<Transmission/>\n1:<Transmission/>\n";
        QTest::newRow("byte-order-mark") << "\xEF\xBB\xBF" + t << "1:<Transmission/>\n";
        QTest::newRow("tags-in-texts")
            << QByteArray("<Transmission a='</Transmission>'><![CDATA[</Transmission>]]><!--"
                          "</Transmission>--></Transmission>")
            << "1:error\n1:error\n";
        QTest::newRow("tags-in-cdata")
            << QByteArray("<Transmission a='/>'><![CDATA[</Transmission>]]></Transmission>")
            << "1:<Transmission a='/>'><![CDATA[</Transmission>]]></Transmission>\n";
        QTest::newRow("cut-off-by-next") << "<Transmission><Content>abc\n" + t
                                         << "1:<Transmission><Content>abc\n\n2:<Transmission/>\n";
        QTest::newRow("cut-off-in-attribute")
            << "<Transmission a=\"b\n" + t << "1:error\n2:<Transmission/>\n";
        QTest::newRow("cut-off-by-recording")
            << "<Transmission>\n<?xml version='1.0'?><ResultData>" + t + "</ResultData>"
            << "1:<Transmission>\n\n2:<Transmission/>\n";
        QTest::newRow("cut-off-by-end")
            << QByteArray("\n<Transmission><Data") << "2:<Transmission><Data\n";
        QTest::newRow("other-lines") << "log: <start>\n" + t + " trailing\n" + t
                                     << "1:error\n2:<Transmission/>\n2:error\n3:<Transmission/>\n";
        QTest::newRow("unknown-elements")
            << "<ResultData><x><x/><x>" + t + "</x></x>" + t + "</ResultData>"
            << "1:<Transmission/>\n";
        QTest::newRow("recording-without-end")
            << "<ResultData>\n" + t << "2:<Transmission/>\n2:error\n";
        QTest::newRow("foreign-root") << "<html>" + t << "1:error\n";
        QTest::newRow("document-type")
            << "<!DOCTYPE a [<!ENTITY b 'c'>]>\n" + t << "1:error\n1:error\n2:<Transmission/>\n";
    }
    /// However the input is cut, the pieces are the same.
    void splitting()
    {
        QFETCH(QByteArray, input);
        QFETCH(QString, pieces);
        for (int cut = 0; cut <= input.size(); ++cut) {
            DocumentSplitter splitter;
            splitter.Add(input.constData(), cut);
            QString found = Print(splitter);
            splitter.Add(input.constData() + cut, static_cast<int>(input.size()) - cut);
            splitter.Finish();
            found += Print(splitter);
            QCOMPARE(found, pieces);
        }
    }

    void damagedInput_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("error");
        const QByteArray first(kFirst);
        const QByteArray half = first.left(first.indexOf("</DataBlock>"));
        QTest::newRow("empty") << QByteArray("") << "damaged.xml:1: ";
        QTest::newRow("plain-text") << QByteArray("just\na text\n") << "damaged.xml:2: ";
        QTest::newRow("foreign-root")
            << QByteArray("<?xml version='1.0'?>\n<html></html>\n") << "damaged.xml:2: ";
        QTest::newRow("cut-off-line") << half + "\n" + kSecond + "\n"
                                      << "damaged.xml:2: ";
        QTest::newRow("wrong-end-tag") << QByteArray("<ResultData>\n<Transmission>\n<DataBlock>\n</"
                                                     "Block>\n</Transmission>\n</ResultData>")
                                       << "damaged.xml:4: ";
        QTest::newRow("unknown-entity")
            << QByteArray("\n<Transmission>\n&x;</Transmission>\n") << "damaged.xml:3: ";
        QTest::newRow("recording-without-end") << QByteArray("<ResultData>\n") + kFirst + "\n"
                                               << "damaged.xml:3: ";
        QTest::newRow("many-errors") << QByteArray("x\n").repeated(500) << "not shown";
    }
    /// The message names file and line, and the other input is shown all the same.
    void damagedInput()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, error);
        const QString damaged = Write("damaged.xml", content);
        const QString good = Write("good.xml", QByteArray(kFirst) + '\n' + kSecond + '\n');
        const Result result =
            Run(Words("--utc --text - --quit-at-end") << damaged << Path("missing.xml") << good);
        QCOMPARE(result.status, 2);
        QVERIFY2(result.error.contains(error.toUtf8()), result.error.constData());
        QVERIFY2(result.error.contains("missing.xml: "), result.error.constData());
        QVERIFY(result.error.count('\n') <= 11);
        QVERIFY2(result.out.contains("09:00:02  SECOND\n"), result.out.constData());
    }

    void standardInputInPieces()
    {
        const QByteArray stream = QByteArray(kFirst) + '\n' + kSecond + '\n';
        for (int size : {1, 7, 300}) {
            QProcess process;
            process.start(QLatin1String(DTV_HOST_PROGRAM), Words("--utc --text - -"));
            for (int from = 0; from < stream.size(); from += size) {
                process.write(stream.mid(from, size));
                process.waitForBytesWritten();
            }
            process.closeWriteChannel();
            const Result result = Finish(process);
            QCOMPARE(result.status, 0);
            QCOMPARE(result.out, QByteArray(kBothAsText));
        }
    }

    /// Input that pauses for ever must not keep files from being shown, nor the program from being
    /// closed.
    void standardInputStaysOpen()
    {
        const QString fifo = Path("fifo");
        QCOMPARE(QProcess::execute("mkfifo", QStringList(fifo)), 0);
        QProcess process;
        process.start(QLatin1String(DTV_HOST_PROGRAM), Words("--utc --speed 1000 -")
                                                           << Write("a.xml", kFirst));
        QVERIFY(process.waitForStarted());
        process.write(kFirst);
        QVERIFY(!process.waitForFinished(700));
        process.closeWriteChannel();
        QCOMPARE(Finish(process).status, 0);
        process.start(QLatin1String(DTV_HOST_PROGRAM), Words("--utc --text -") << fifo);
        QFile pipe(fifo);
        QVERIFY(pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QVERIFY(pipe.write(QByteArray(kFirst) + kSecond) > 0);
        pipe.close();
        QCOMPARE(Finish(process).out, QByteArray(kBothAsText));
    }

    void textOfSamples()
    {
        const Result result =
            Run(Words("--utc --quit-at-end --text - --name 3=REPORTS")
                << Sample("harbour.xml") << Sample("right-to-left.xml") << Sample("long.xml"));
        QCOMPARE(result.status, 0);
        QCOMPARE(result.error, QByteArray());
        const char* const expected[] = {
            "Channel 1\n=========\n\n2026-03-14 09:00:00\n09:00:00  CQ CQ CQ DE QX1TR QX1TR QX1TR "
            "K\n",
            "FOG VIS 200 M\n          [23 characters lost]\n09:01:35  PSE RPT WX K\n",
            "\n\n2026-03-14 09:03:00\n09:03:00  VVV VVV DE QX9NB",
            "\n\nREPORTS\n=======\n",
            "09:00:21  MV GREY HERON QK2GH 0905 5358N 00802E COURSE 092 SPEED 11.1 KN\n",
            "09:05:14  السفينة QK2GH تصل الساعة 11:15 إلى الرصيف رقم 9.\n",
            "          [18 characters lost]\n09:05:16  ראות טובה",
        };
        for (const char* text : expected) {
            QVERIFY2(result.out.contains(text), text);
        }
        QVERIFY(!result.out.contains("COVRSE"));
        QVERIFY(!result.out.contains("\nChannel 0"));
    }

    void localTimes()
    {
        const Result result = Run(Words("--text - --quit-at-end") << Write("a.xml", kFirst));
        QCOMPARE(result.out,
                 QByteArray("Channel 1\n=========\n\n2026-03-14 14:30:00\n14:30:00  FIRST\n"));
    }

    void mergedText()
    {
        const Result result = Run(Words("--utc --merge --text - --name 2=WX --quit-at-end")
                                  << Sample("live-stream.txt"));
        QVERIFY2(result.out.startsWith("All channels\n============\n\n2026-03-14 09:20:00\n"
                                       "09:20:00  [Channel 1] ALL STATIONS DE\n"),
                 result.out.constData());
        QVERIFY2(result.out.contains("  [WX] QC4CR DE QK5AC\n"), result.out.constData());
    }

    void exportReadsBack()
    {
        const QStringList options = Words("--utc --quit-at-end --export");
        const QString first = Path("first.xml");
        const QString second = Path("second.xml");
        QCOMPARE(
            Run(QStringList(options) << first << Sample("harbour.xml") << Sample("annotated.xml"))
                .status,
            0);
        QCOMPARE(Run(QStringList(options) << second << first).status, 0);
        QCOMPARE(Run(QStringList(options) << "-" << first).out, ReadAll(first));
        QCOMPARE(ReadAll(second), ReadAll(first));
        SorvinResultDataXml::SorvinResultData data;
        QVERIFY(data.SetXmlString(QString::fromUtf8(ReadAll(first))));
        int annotations = 0;
        for (const SorvinResultDataXml::Transmission* transmission : data.GetTransmission()) {
            for (const SorvinResultDataXml::DataBlock* block : transmission->GetDataBlock()) {
                annotations += static_cast<int>(block->GetUserData().size());
            }
        }
        QCOMPARE(annotations, 6);
    }

    void picture()
    {
        const QString file = Path("picture.png");
        QCOMPARE(Run(Words("--quit-at-end --screenshot") << file << Sample("harbour.xml")).status,
                 0);
        const QImage image(file);
        QVERIFY(image.width() >= 1000 && image.height() >= 700);
        // Text in the lower half: more than the first channel is open.
        QSet<QRgb> colours;
        for (int y = image.height() / 2; y < image.height() - 60; ++y) {
            for (int x = image.width() / 4; x < image.width() / 2; ++x) {
                colours.insert(image.pixel(x, y));
            }
        }
        QVERIFY(colours.size() > 3);
    }

    void replayShowsTheSame()
    {
        const QStringList options = Words("--utc --quit-at-end --text -");
        const QStringList files = QStringList() << Sample("harbour.xml") << Sample("annotated.xml");
        const QString exported = Path("whole.xml");
        QCOMPARE(Run(Words("--quit-at-end --export") << exported << files).status, 0);
        const QByteArray atOnce = Run(options + files).out;
        QVERIFY(!atOnce.isEmpty());
        QCOMPARE(Run(options + Words("--speed 5000") + files).out, atOnce);
        // So much is due at once that it takes several slices of the event loop.
        const QStringList longFile(Sample("long.xml"));
        QCOMPARE(Run(options + Words("--speed 1000000000") + longFile).out,
                 Run(options + longFile).out);
        // An export holds each transmission whole: it is cut into what was received when.
        QCOMPARE(Run(options + Words("--speed 5000") << exported).out,
                 Run(options + QStringList(exported)).out);
    }

    void replayTakesItsTime()
    {
        QElapsedTimer timer;
        timer.start();
        const Result result = Run(Words("--utc --quit-at-end --text - --speed 2")
                                  << Write("a.xml", QByteArray(kFirst) + kSecond));
        QCOMPARE(result.out, QByteArray(kBothAsText));
        QVERIFY(timer.elapsed() >= 1000);
    }

    /// It is told, and costs nothing that was there.
    void unwritableOutput()
    {
        const char fewBlocks[] = "trap '' XFSZ; ulimit -f 1; exec \"$0\" \"$@\"";
        const QString files[] = {Path("no-such-folder/out"), Write("old.txt", "old"), folder.path(),
                                 "/dev/full"};
        for (const char* option : {"--text", "--export", "--screenshot"}) {
            for (const QString& file : files) {
                const Result result = RunIn(fewBlocks, QStringList(QLatin1String(option))
                                                           << file << Sample("harbour.xml"));
                QCOMPARE(result.status, 2);
                QVERIFY2(result.error.contains(file.toUtf8() + ": "), result.error.constData());
            }
        }
        QCOMPARE(ReadAll(files[1]), QByteArray("old"));
        for (const char* arguments : {"--text -", "--export -", "--help", "--version"}) {
            const Result result =
                RunIn("exec \"$0\" \"$@\" >/dev/full", Words(arguments) << Sample("harbour.xml"));
            QCOMPARE(result.status, 2);
            QVERIFY2(result.error.contains("standard output: "), result.error.constData());
        }
    }

    /// What else there is stays: permissions, links, and files whose names look like ours.
    void replacedOutput()
    {
        const QString file = Write("out.txt", "old");
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
        const QFile::Permissions before = QFile::permissions(file);
        const QString other = Write("out.txt.part", "other");
        const QString link = Path("link.txt");
        QVERIFY(QFile::link(file, link) && QFile::link(link, Path("link-to-link.txt")));
        QCOMPARE(Run(Words("--text") << Path("link-to-link.txt") << Write("a.xml", kFirst)).status,
                 0);
        QVERIFY(ReadAll(file).endsWith("FIRST\n"));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(QFile::permissions(file), before);
        QCOMPARE(ReadAll(other), QByteArray("other"));
    }

    void demonstration()
    {
        const QString picture = Path("demo.png");
        const Result result =
            Run(Words("--demo --utc --speed 50 --quit-at-end --text - --screenshot") << picture);
        QVERIFY2(result.status == 0, result.error.constData());
        QVERIFY2(result.out.startsWith("Aggregation\n"), result.out.constData());
        QVERIFY2(result.out.trimmed().endsWith("erat,"), result.out.constData());
        QVERIFY(!QImage(picture).isNull());
    }

    void settingsPersist()
    {
        const QByteArray environment = qgetenv("HX_CONFIG_FILE");
        const QString file =
            Write("own.ini", "[DecodedTextView]\nBufferSize=200\nQualityThreshold=61\n"
                             "InfoAreaWidth=77\nForegroundColor=\nBackgroundColor=Navy\n");
        qputenv("HX_CONFIG_FILE", QFile::encodeName(file));
        QByteArray kept[2];
        for (QByteArray& settings : kept) {
            Run(Words("--quit-at-end") << Sample("harbour.xml"));
            settings = ReadAll(file);
        }
        qputenv("HX_CONFIG_FILE", environment);
        QCOMPARE(
            kept[0],
            QByteArray("[DecodedTextView]\nBackgroundColor=Navy\nBufferSize=1000\nForegroundColor="
                       "Black\nInfoAreaWidth=77\nQualityThreshold=61\n"));
        QCOMPARE(kept[1], kept[0]);
    }

private:
    QString Path(const char* name) const { return folder.filePath(QLatin1String(name)); }
    QString Write(const char* name, const QByteArray& content) const
    {
        QFile file(Path(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
                   ? file.fileName()
                   : QString();
    }

    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(tst_hostapp)
#include "tst_hostapp.moc"
