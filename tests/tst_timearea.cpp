// The time column as it is drawn: which times stand at which heights, and a mark for lost text.
#include "decodedtextcompat.h"
#include "decodedtexttimearea.h"
#include "textarea.h"
#include "watchedtest.h"

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

class tst_timearea : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "Asia/Kolkata"); }
    void localTimesOfFirstCharacters()
    {
        TextArea area;
        area.content.show();
        area.Feed("1 0:ab~");
        COMPARE_TIME(area, TopOf(area, 1), QString()); // until the block grows
        area.Feed("1 3:c,4:d~e,7:f~;2 30:g");
        QCOMPARE(Clock(0), QString("17:30:00"));
        COMPARE_TIME(area, TopOf(area, 0), Clock(0));
        COMPARE_TIME(area, TopOf(area, 1), Clock(3));
        COMPARE_TIME(area, TopOf(area, 2), Clock(4));  // 'e' belongs to the stamp of 'd'
        COMPARE_TIME(area, TopOf(area, 3), QString()); // behind the final line feed
        COMPARE_TIME(area, TopOf(area, 5), Clock(30)); // behind the marker of block 2
        const QImage empty = Strip(area, QString());
        QVERIFY(Drawn(area).copy(empty.rect().translated(0, TopOf(area, 4))) != empty);
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

    void wrappedLinesOfALongParagraph()
    {
        TextArea area;
        QStringList stamps;
        for (int at = 0; at < 4000; ++at) {
            stamps.append(QString("%1:x").arg(at));
        }
        area.Feed("1 " + stamps.join(","));
        const QFontMetrics metrics(area.content.font());
        const int width = 26 * metrics.maxWidth();
        const int height = 150 * metrics.lineSpacing();
        DecodedTextTimeArea* column = area.content.GetTimeArea();
        const DecodedTextLayoutItem item = area.content.RangeAt(0);
        const QRect places[] = {QRect(), QRect(0, 0, 60, 30), QRect(0, 999, 60, 70),
                                QRect(0, height - 50, 60, 90)};
        QImage whole;
        for (const QRect& place : places) {
            QImage image = EmptyImage(area, QSize(60, height));
            QPainter painter(&image);
            painter.setFont(area.content.font());
            if (!place.isNull()) {
                painter.setClipRect(place);
            }
            column->PaintLine(painter, item, 0, height, width);
            whole = place.isNull() ? image : whole;
            QCOMPARE(image.copy(place), whole.copy(place));
        }
        for (int line : {0, 1, 149}) {
            const QImage strip = Strip(area, Clock(line * 26));
            const QRect place(0, line * metrics.lineSpacing(), 60, metrics.lineSpacing());
            QCOMPARE(whole.copy(place), strip.copy(0, 0, 60, metrics.lineSpacing()));
        }
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
};

QTEST_MAIN(tst_timearea)
#include "tst_timearea.moc"
