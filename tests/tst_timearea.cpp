// The time column as it is drawn: which times stand at which heights, and the symbol for lost text.
#include "decodedtextcompat.h"
#include "decodedtexttimearea.h"
#include "fatallog.h"
#include "textarea.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPainter>
#include <QScrollBar>

namespace {

const QColor kBackground(220, 220, 220);

QImage EmptyImage(const TextArea& area, const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(kBackground.rgb());
    const int dotsPerMeter = qRound(area.content.logicalDpiX() / 0.0254);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    return image;
}

QImage Drawn(const TextArea& area)
{
    DecodedTextTimeArea* column = area.content.GetTimeArea();
    QImage image = EmptyImage(area, column->size());
    image.fill(0);
    column->render(&image);
    return image;
}

/// A strip of the column as high as a line, with \a text as the column must draw it.
QImage Strip(const TextArea& area, const QString& text)
{
    const QFont font = area.content.font();
    const int height = QFontMetrics(font).lineSpacing();
    const int width = area.content.GetTimeArea()->QWidget::width();
    QImage image = EmptyImage(area, QSize(width, height));
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRect(1, 0, width - 3, height), Qt::AlignLeft, text);
    return image;
}

/// Top of the text of paragraph \a number.
int TopOf(const TextArea& area, int number)
{
    return area.content.cursorRect(QTextCursor(area.content.document()->findBlockByNumber(number)))
        .top();
}

QString Clock(qint64 secondsBehindStart)
{
    return TestStart().addSecs(secondsBehindStart).toLocalTime().toString("hh:mm:ss");
}

} // namespace

#define COMPARE_TIME(area, top, text)                                                              \
    QCOMPARE(Drawn(area).copy(0, top, Strip(area, text).width(), Strip(area, text).height()),      \
             Strip(area, text))

class tst_timearea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "Asia/Kolkata"); }
    void init() { log.Start(); }
    void cleanup() { log.Check(); }

    void initialSize()
    {
        TextArea area;
        const DecodedTextTimeArea bare(&area.content);
        QCOMPARE(bare.sizeHint(), QSize(20, 0));
        QCOMPARE(bare.objectName(), QString("Timestamps"));
    }

    void localTimesOfFirstCharacters()
    {
        TextArea area;
        area.content.show();
        area.Feed("1 0:ab~");
        COMPARE_TIME(area, TopOf(area, 1), QString()); // until the block grows
        area.FeedAll("1 3:c,4:d~e,7:f~;2 30:g");
        QCOMPARE(Clock(0), QString("17:30:00"));
        COMPARE_TIME(area, TopOf(area, 0), Clock(0));
        COMPARE_TIME(area, TopOf(area, 1), Clock(3));
        COMPARE_TIME(area, TopOf(area, 2), Clock(4));  // 'e' belongs to the stamp of 'd'
        COMPARE_TIME(area, TopOf(area, 3), QString()); // behind the final line feed
        COMPARE_TIME(area, TopOf(area, 5), Clock(30)); // behind the marker of block 2
    }

    void gapSymbol()
    {
        TextArea area;
        area.content.show();
        area.FeedAll("1 0:ab;1 9:c");
        const QImage image = Drawn(area);
        const int top = TopOf(area, 1);
        const int lowest = TopOf(area, 2) - 2;
        const int middle = image.width() / 2;
        const int quarter = image.width() / 4;
        const QRgb black = QColor(Qt::black).rgb();
        for (int x = 0; x < image.width(); ++x) {
            const bool inside = middle - quarter <= x && x <= middle + quarter;
            QCOMPARE(image.pixel(x, top + 1), inside ? black : kBackground.rgb());
            QCOMPARE(image.pixel(x, lowest), inside ? black : kBackground.rgb());
        }
        for (int y = top + 3; y <= lowest - 2; y += 3) {
            QCOMPARE(image.pixel(middle + 3, y), black);
            QCOMPARE(image.pixel(middle - 3, y + 2), black);
            QCOMPARE(image.pixel(middle - 3, y), kBackground.rgb());
        }
        COMPARE_TIME(area, TopOf(area, 2), Clock(9));
    }

    void wrappedLinesAreEstimated()
    {
        TextArea area;
        area.content.show();
        TransmissionBuilder builder;
        builder.Block(1);
        for (int i = 0; i < 130; ++i) {
            builder.Text(i, QString(QLatin1Char('m')));
        }
        area.model.AddTransmission(builder.Xml());
        area.content.RefreshContent();
        const QTextBlock paragraph = area.content.document()->begin();
        const QRectF bounds =
            area.content.document()->documentLayout()->blockBoundingRect(paragraph);
        const QFontMetrics metrics(area.content.font());
        const int step = qRound(bounds.width()) / metrics.maxWidth();
        QVERIFY(paragraph.layout()->lineCount() >= 3 && step > 5);
        for (int line = 0; line < 3; ++line) {
            COMPARE_TIME(area, TopOf(area, 0) + line * metrics.lineSpacing(), Clock(line * step));
        }
    }

    void scrolledWithTheText()
    {
        TextArea area;
        area.Show();
        area.FeedLines(100);
        area.content.verticalScrollBar()->setValue(40);
        const int first = area.content.document()->findBlockByLineNumber(40).blockNumber();
        QCOMPARE(area.content.cursorForPosition(QPoint(30, 2)).blockNumber(), first);
        COMPARE_TIME(area, 0, Clock(40 * 21));
        const QImage once = Drawn(area);
        QCOMPARE(Drawn(area), once);
    }

    void timesAroundTheEpoch()
    {
        const QDateTime start = UtcTime(-1500);
        TextArea area;
        area.content.show();
        TransmissionBuilder builder(start);
        builder.Block(1);
        for (int i = 0; i < 3; ++i) {
            builder.Text(i * 2, "a\n", Quality(50), start.addMSecs(1000 * i));
        }
        area.model.AddTransmission(builder.Xml());
        COMPARE_TIME(area, TopOf(area, 0), QString("05:29:58"));
        COMPARE_TIME(area, TopOf(area, 1), QString("05:29:59"));
        COMPARE_TIME(area, TopOf(area, 2), QString("05:30:00"));
    }

private:
    FatalLog log;
};

QTEST_MAIN(tst_timearea)
#include "tst_timearea.moc"
