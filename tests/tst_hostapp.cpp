// Runs the stand-alone program as an operator or a script runs it and looks at what it prints and
// writes: command line, damaged and piecemeal input, text, picture, export, replay, demonstration.
// What cuts its input is also tested directly.
#include "documentsplitter.h"
#include "rowtable.h"
#include "transmissionbuilder.h"

#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

namespace {

const int kTimeoutMs = 60000;
/// What "both.xml" holds, at its times in UTC.
const char kBothAsText[] =
    "Channel 1\n=========\n\n2026-01-31 12:00:00\n12:00:00  FIRST\n12:00:06  SECOND\n";

QByteArray ReadAll(const char* path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Write(const char* path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

struct Result
{
    int status;
    QByteArray out;
    QByteArray error; // without what Qt itself says
};

/// By the shell, which does \a before first.
void Start(QProcess& process, const QString& arguments, const QString& before = QString())
{
    process.start("sh", QStringList() << "-c" << before + "exec \"$0\" " + arguments
                                      << QLatin1String(DTV_HOST_PROGRAM));
}

Result Finish(QProcess& process)
{
    Result result;
    const bool hasEnded = process.waitForFinished(kTimeoutMs);
    const bool isNormal = process.exitStatus() == QProcess::NormalExit;
    result.status = hasEnded && isNormal ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput();
    for (const QByteArray& line : process.readAllStandardError().split('\n')) {
        if (line.startsWith("decodedtexthost: ")) {
            result.error += line + '\n';
        }
    }
    return result;
}

Result Run(const QString& arguments, const QString& before = QString())
{
    QProcess process;
    Start(process, arguments, before);
    return Finish(process);
}

/// Transmissions by their first line, errors with their line; "~" as in the rows.
QString Print(DocumentSplitter& splitter)
{
    QString out;
    for (const DocumentSplitter::Piece& piece : splitter.TakePieces()) {
        const QString xml = QString::fromUtf8(piece.xml).replace("Transmission", "~");
        out += QString("%1:%2|").arg(piece.line).arg(piece.error.isEmpty() ? xml : "error");
    }
    return out;
}

} // namespace

class tst_hostapp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// All files are named as seen from the scratch folder.
    void initTestCase()
    {
        QVERIFY(QDir::setCurrent(folder.path()));
        QVERIFY(QFile::link(DTV_SOURCE_DIR "/samples", "samples"));
        qputenv("HX_CONFIG_FILE", QFile::encodeName(folder.filePath("settings.ini")));
        const QString first = TransmissionBuilder().Pieces(1, "0:FIRST~").Xml();
        both = QString(first + '\n' + TransmissionBuilder().Pieces(1, "6:SECOND~").Xml()).toUtf8();
        Write("both.xml", both);
        const char makeWhole[] = "--export whole.xml samples/harbour.xml samples/annotated.xml";
        QCOMPARE(Run(makeWhole).status, 0);
    }

    void commandLine_data()
    {
        // name ;; arguments ;; status ;; on standard output ;; on standard error
        AddRows({
            "version ;; --version ;; 0 ;; decodedtexthost  ;; ",
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
        const Result result = Run(row.at(0));
        QCOMPARE(result.status, row.at(1).toInt());
        for (int i = 0; i < 2; ++i) {
            const QByteArray printed = i == 0 ? result.out : result.error;
            const QByteArray expected = row.at(2 + i).toUtf8();
            QVERIFY2(printed.contains(expected), printed.constData());
            QCOMPARE(printed.isEmpty(), expected.isEmpty());
        }
    }

    void splitting_data()
    {
        // name ;; input ;; pieces; "~" stands for "Transmission"
        AddRows({
            "stream ;; <~/>\n<~/>\n ;; 1:<~/>|2:<~/>|",
            "no-line-break ;; <~/><~/> ;; 1:<~/>|1:<~/>|",
            "recording ;; <?xml v='1'?>\n<!-- > -->\n<ResultData>\n<~/>\n</ResultData> ;; 4:<~/>|",
            "recording-in-stream ;; <ResultData><~/></ResultData><~/> ;; 1:<~/>|1:<~/>|",
            "byte-order-mark ;; \xEF\xBB\xBF<~/> ;; 1:<~/>|",
            "no-tags ;; <~ a='/>'><![CDATA[</~>]]><!--</~>--></~>"
            " ;; 1:<~ a='/>'><![CDATA[</~>]]><!--</~>--></~>|",
            "end-tags ;; </~>\n<~ a='</~>'></~>\n<~/> ;; 1:error|2:error|2:error|3:<~/>|",
            "cut-off-by-next ;; <~><Content>abc\n<~/> ;; 1:<~><Content>abc\n|2:<~/>|",
            "cut-off-in-attribute ;; <~ a=\"b\n<~/> ;; 1:error|2:<~/>|",
            "cut-off-by-file ;; <~>\n<?xml v='1'?><ResultData><~/></ResultData> ;; 1:<~>\n|2:<~/>|",
            "cut-off-by-end ;; \n<~><Data ;; 2:<~><Data|",
            "other-lines ;; log: <start>\n<~/> trailing\n<~/> ;; 1:error|2:<~/>|2:error|3:<~/>|",
            "unknown-elements ;; <ResultData><x><x/><x><~/></x></x><~/></ResultData> ;; 1:<~/>|",
            "recording-without-end ;; <ResultData>\n<~/> ;; 2:<~/>|2:error|",
            "foreign-root ;; <?xml version='1.0'?>\n<html><~/> ;; 2:error|",
            "document-type ;; <!DOCTYPE a [<!ENTITY b 'c'>]>\n<~/> ;; 1:error|1:error|2:<~/>|",
        });
    }
    /// However the input is cut, the pieces are the same.
    void splitting()
    {
        QFETCH(QStringList, row);
        const QByteArray input = row.at(0).toUtf8().replace("~", "Transmission");
        for (int cut = 0; cut <= input.size(); ++cut) {
            DocumentSplitter splitter;
            splitter.Add(input.constData(), cut);
            QString found = Print(splitter);
            splitter.Add(input.constData() + cut, static_cast<int>(input.size()) - cut);
            splitter.Finish();
            found += Print(splitter);
            QCOMPARE(found, row.at(1));
        }
    }

    void damagedInput_data()
    {
        // name ;; content ;; in the message
        AddRows({
            "empty ;;  ;; damaged.xml:1: ",
            "plain-text ;; just\na text\n ;; damaged.xml:2: ",
            "cut-off-line ;; <Transmission>\n<Transmission start='2026-03-14T09:00:00Z'/>"
            " ;; damaged.xml:2: ",
            "wrong-end ;; \n<Transmission>\n<DataBlock>\n</Block></Transmission> ;; "
            "damaged.xml:4: ",
            "unknown-entity ;; <ResultData>\n<Transmission>\n&x;</Transmission> ;; damaged.xml:3: ",
            "many-errors ;; x\nx\nx\nx\nx\nx\nx\nx\nx\nx\nx\nx\nx\nx\nx\n ;; not shown",
        });
    }
    /// The message names file and line, and the other input is shown all the same.
    void damagedInput()
    {
        QFETCH(QStringList, row);
        Write("damaged.xml", row.at(0).toUtf8());
        const Result result = Run("--text - --quit-at-end damaged.xml missing.xml both.xml");
        QCOMPARE(result.status, 2);
        QVERIFY2(result.error.contains(row.at(1).toUtf8()), result.error.constData());
        QVERIFY2(result.error.contains("missing.xml: "), result.error.constData());
        QVERIFY(result.error.count('\n') <= 11);
        QVERIFY2(result.out.contains("  SECOND\n"), result.out.constData());
    }

    void standardInputInPieces()
    {
        for (int size : {1, 7, 300}) {
            QProcess process;
            Start(process, "--utc --text - -");
            for (int from = 0; from < both.size(); from += size) {
                process.write(both.mid(from, size));
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
        QCOMPARE(QProcess::execute("mkfifo", QStringList("fifo")), 0);
        QProcess process;
        Start(process, "--utc --speed 1000 - both.xml");
        QVERIFY(process.waitForStarted());
        process.write(both);
        QVERIFY(!process.waitForFinished(700));
        process.closeWriteChannel();
        QCOMPARE(Finish(process).status, 0);
        Start(process, "--utc --text - fifo");
        Write("fifo", both);
        QCOMPARE(Finish(process).out, QByteArray(kBothAsText));
    }

    void printedText_data()
    {
        // name ;; arguments ;; beginning ;; further parts
        AddRows({
            "lost-characters-and-names ;; --utc --name 3=REPORTS samples/harbour.xml"
            " ;; Channel 1\n=========\n\n2026-03-14 09:00:00\n09:00:00  CQ CQ CQ DE"
            " ;; FOG VIS 200 M\n          [23 characters lost]\n09:01:35  PSE RPT WX K\n"
            " ;; \n\n2026-03-14 09:03:00\n09:03:00  VVV VVV DE QX9NB"
            " ;; \n\nREPORTS\n=======\n"
            " ;; 09:00:21  MV GREY HERON QK2GH 0905 5358N 00802E COURSE 092 SPEED 11.1 KN\n",
            "right-to-left ;; --utc samples/right-to-left.xml ;; Channel 5\n"
            " ;; 09:05:14  السفينة QK2GH تصل الساعة 11:15 إلى الرصيف رقم 9.\n"
            " ;;           [18 characters lost]\n09:05:16  ראות טובה",
            "local-times ;; both.xml ;; Channel 1\n=========\n\n2026-01-31 17:30:00\n17:30:00  F",
            "merged ;; --utc --merge --name 2=WX samples/live-stream.txt"
            " ;; All channels\n============\n\n2026-03-14 09:20:00\n"
            "09:20:00  [Channel 1] ALL STATIONS DE\n ;;   [WX] QC4CR DE QK5AC\n",
        });
    }
    void printedText()
    {
        QFETCH(QStringList, row);
        const Result result = Run("--text - --quit-at-end " + row.at(0));
        QCOMPARE(result.status, 0);
        QCOMPARE(result.error, QByteArray());
        QVERIFY2(result.out.startsWith(row.at(1).toUtf8()), result.out.constData());
        for (const QString& part : row.mid(2)) {
            QVERIFY2(result.out.contains(part.toUtf8()), qPrintable(part));
        }
        QVERIFY(!result.out.contains("COVRSE"));
        QVERIFY(!result.out.contains("\nChannel 0"));
    }

    void exportReadsBack()
    {
        QCOMPARE(Run("--utc --export again.xml whole.xml").status, 0);
        const QByteArray whole = ReadAll("whole.xml");
        QCOMPARE(ReadAll("again.xml"), whole);
        QCOMPARE(Run("--export - whole.xml").out, whole);
        QCOMPARE(static_cast<int>(whole.count("<UserData ")), 6);
    }

    void picture()
    {
        QCOMPARE(Run("--quit-at-end --screenshot picture.png samples/harbour.xml").status, 0);
        const QImage image("picture.png");
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

    void replayShowsTheSame_data()
    {
        // name ;; speed ;; files
        AddRows({
            "several-files ;; 5000 ;; samples/harbour.xml samples/annotated.xml",
            // So much is due at once that it takes several slices of the event loop.
            "all-at-once ;; 1000000000 ;; samples/long.xml",
            // An export holds each transmission whole: it is cut into what was received when.
            "exported ;; 5000 ;; whole.xml",
        });
    }
    void replayShowsTheSame()
    {
        QFETCH(QStringList, row);
        const QString arguments = "--utc --quit-at-end --text - " + row.at(1);
        const QByteArray atOnce = Run(arguments).out;
        QVERIFY(!atOnce.isEmpty());
        QCOMPARE(Run(arguments + " --speed " + row.at(0)).out, atOnce);
    }

    void replayTakesItsTime()
    {
        QElapsedTimer timer;
        timer.start();
        const Result result = Run("--utc --quit-at-end --text - --speed 6 both.xml");
        QCOMPARE(result.out, QByteArray(kBothAsText));
        QVERIFY(timer.elapsed() >= 1000);
    }

    /// It is told, and costs nothing that was there.
    void unwritableOutput()
    {
        Write("old.txt", "old");
        for (const char* option : {"--text ", "--export ", "--screenshot "}) {
            for (const char* file : {"no-such-folder/out", "old.txt", ".", "/dev/full"}) {
                // No file of more than a block.
                const Result result = Run(QString(option) + file + " samples/harbour.xml",
                                          "trap '' XFSZ; ulimit -f 1; ");
                QCOMPARE(result.status, 2);
                QVERIFY2(result.error.contains(QByteArray(file) + ": "), result.error.constData());
            }
        }
        QCOMPARE(ReadAll("old.txt"), QByteArray("old"));
        for (const char* arguments : {"--text -", "--export -", "--help", "--version"}) {
            const Result result = Run(arguments + QString(" samples/harbour.xml >/dev/full"));
            QCOMPARE(result.status, 2);
            QVERIFY2(result.error.contains("standard output: "), result.error.constData());
        }
    }

    /// What else there is stays: permissions, links, and files whose names look like ours.
    void replacedOutput()
    {
        Write("out.txt", "old");
        Write("out.txt.part", "other");
        QVERIFY(QFile::setPermissions("out.txt", QFile::ReadOwner | QFile::WriteOwner));
        const QFile::Permissions before = QFile::permissions("out.txt");
        QVERIFY(QFile::link("out.txt", "link.txt") && QFile::link("link.txt", "link-to-link.txt"));
        QCOMPARE(Run("--text link-to-link.txt both.xml").status, 0);
        QVERIFY(ReadAll("out.txt").endsWith("SECOND\n"));
        QVERIFY(QFileInfo("link.txt").isSymLink());
        QCOMPARE(QFile::permissions("out.txt"), before);
        QCOMPARE(ReadAll("out.txt.part"), QByteArray("other"));
    }

    void demonstration()
    {
        const Result result =
            Run("--demo --utc --speed 50 --quit-at-end --text - --screenshot demo.png");
        QVERIFY2(result.status == 0, result.error.constData());
        QVERIFY2(result.out.startsWith("Aggregation\n"), result.out.constData());
        QVERIFY2(result.out.trimmed().endsWith("erat,"), result.out.constData());
        QVERIFY(!QImage("demo.png").isNull());
    }

    void settingsPersist()
    {
        Write("own.ini", "[DecodedTextView]\nBufferSize=200\nQualityThreshold=61\n"
                         "InfoAreaWidth=77\nForegroundColor=\nBackgroundColor=Navy\n");
        for (int run = 0; run < 2; ++run) {
            Run("--quit-at-end samples/harbour.xml", "export HX_CONFIG_FILE=own.ini; ");
            QCOMPARE(ReadAll("own.ini"),
                     QByteArray("[DecodedTextView]\nBackgroundColor=Navy\nBufferSize=1000\n"
                                "ForegroundColor=Black\nInfoAreaWidth=77\nQualityThreshold=61\n"));
        }
    }

private:
    QTemporaryDir folder;
    QByteArray both;
};

QTEST_GUILESS_MAIN(tst_hostapp)
#include "tst_hostapp.moc"
