// Panels and captions: what they are made of, how they open and close, the ticker in and between
// bursts, and the user channel's pause before edits are applied.
#include "decodedtextcaption.h"
#include "decodedtextchannel.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "fatallog.h"
#include "metaobject.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScopedPointer>
#include <QTimer>

namespace {

void Feed(DecodedTextData& model, int channel, const QString& text, int second = 0)
{
    model.AddTransmission(
        TransmissionBuilder(TestStart().addSecs(second)).Block(channel).Text(0, text).Xml());
}

/// Forty numbers in turn for channels 1 and 2, without a look at the event loop.
void FeedBurst(DecodedTextData& model)
{
    for (int i = 0; i < 40; ++i) {
        Feed(model, 1 + i % 2, QString::number(i), i);
    }
}

QString Ticker(const DecodedTextChannel& panel)
{
    return panel.GetCaption()->GetTickerLine()->text();
}

} // namespace

class tst_panel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        log.Start();
        FatalLog::Announce(
            "This plugin does not support"); // said by the platform that has no screen
    }
    void cleanup() { log.Check(); }

    void methods()
    {
        QCOMPARE(DeclaredMethods(DecodedTextChannel::staticMetaObject),
                 QString("TextAreaChanged(); ToggleTextArea(); ExpandTextArea(bool) expand; "
                         "DataChanged(int,bool) channel,"
                         "refresh; TransmissionChanged(int) channel; PropertiesChanged()"));
        QCOMPARE(DeclaredMethods(DecodedTextCaption::staticMetaObject),
                 QString("OnActivate(); OnApply(); setModified(bool) modified; applyNow(); "
                         "setAutoApplyEnabled(bool) enabled"));
    }

    void parts_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<bool>("offline");
        QTest::addColumn<QString>("parts");
        QTest::newRow("ordinary") << 3 << false << "ticker items=3";
        QTest::newRow("ordinary-offline") << 3 << true << "ticker items=3";
        QTest::newRow("user") << 1000 << false << "timer=5000 items=2";
        QTest::newRow("user-offline") << 1000 << true << "items=3";
    }
    void parts()
    {
        QFETCH(int, channel);
        QFETCH(bool, offline);
        DecodedTextData model;
        model.SetOffline(offline);
        const QString name = QString::fromUtf8("<b>Łódź</b>");
        DecodedTextChannel panel(name, channel, &model, nullptr);
        const DecodedTextCaption* caption = panel.GetCaption();
        const QTimer* timer = caption->GetApplyTimer();
        QTEST(QString(caption->GetTickerLine() ? "ticker " : "") +
                  (timer ? QString("timer=%1 ").arg(timer->interval()) : QString()) +
                  QString("items=%1").arg(caption->QWidget::layout()->count()),
              "parts");
        QCOMPARE(panel.objectName(), QString("<b>??d?</b>"));
        const QLabel* label = panel.findChild<QLabel*>("ChannelLabel");
        QCOMPARE(label->text(), name);
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QCOMPARE(panel.maximumHeight(), 24);
    }

    void buttonOpensAndCloses()
    {
        DecodedTextData model;
        Feed(model, 1, "alpha");
        DecodedTextChannel panel("one", 1, &model, nullptr);
        panel.show();
        SignalRecorder signalsOf(&panel);
        QPushButton* const button = panel.findChild<QPushButton*>("ChannelActivate");
        const QImage down = button->icon().pixmap(32, 32).toImage();
        QCOMPARE(down.size(), QSize(32, 32));
        button->click();
        DecodedTextContent* const content = panel.GetContent();
        QVERIFY(panel.IsExpanded() && content->isVisible());
        QCOMPARE(content->toPlainText(), QString("alpha"));
        QCOMPARE(button->toolTip(), QString("Collapse text view"));
        QVERIFY(button->icon().pixmap(32, 32).toImage() == down.mirrored());
        QCOMPARE(panel.maximumHeight(), content->maximumHeight());

        button->click();
        QVERIFY(!panel.IsExpanded() && !content->isVisible() && panel.GetContent() == content);
        QCOMPARE(button->toolTip(), QString("Expand text view"));
        QVERIFY2(panel.maximumHeight() < 40, "the hidden text area counts");
        Feed(model, 1, "beta", 60);
        QVERIFY2(!content->toPlainText().contains("beta"), "a closed text area costs nothing");
        QVERIFY(Ticker(panel).endsWith("beta "));
        panel.ExpandTextArea(true);
        panel.ExpandTextArea(true);
        QVERIFY(content->toPlainText().endsWith("beta"));
        Feed(model, 2, "gamma");
        QVERIFY2(Ticker(panel).endsWith("beta "), "another channel's text");
        QCOMPARE(signalsOf.Take(),
                 QString("TextAreaChanged() TextAreaChanged() TextAreaChanged()"));
        model.SetProperties(1000, 80, 70, "Yellow", "Navy");
        QVERIFY(content->styleSheet().contains("color: Yellow; background-color: Navy"));
    }

    void tickerFollowsTheWidth()
    {
        DecodedTextData model;
        DecodedTextChannel panel("one", 1, &model, nullptr);
        const DecodedTextCaption* caption = panel.GetCaption();
        Feed(model, 1, QString(500, QLatin1Char('x')));
        panel.resize(404, 24);
        panel.show();
        const int chars = 2 * caption->contentsRect().width() /
                          QFontMetrics(caption->GetTickerLine()->font()).averageCharWidth();
        QVERIFY(chars != 100);
        QCOMPARE(static_cast<int>(Ticker(panel).size()), 100); // until the next text
        Feed(model, 1, "y", 60);
        QCOMPARE(static_cast<int>(Ticker(panel).size()), chars);
    }

    void burst_data()
    {
        QTest::addColumn<QString>("end");
        for (const char* end : {"event-loop", "painted", "resized"}) {
            QTest::newRow(end) << QString(end);
        }
    }
    void burst()
    {
        QFETCH(QString, end);
        DecodedTextData model;
        DecodedTextChannel panel("one", 1, &model, nullptr);
        panel.ExpandTextArea(true);
        panel.show();
        QApplication::processEvents();
        FeedBurst(model);
        QVERIFY(panel.GetContent()->toPlainText().endsWith("38"));
        QVERIFY2(!Ticker(panel).endsWith("38 "), "all of the burst was laid out");
        if (end == "event-loop") {
            QApplication::processEvents();
        } else if (end == "painted") {
            QPixmap pixmap(200, 20);
            panel.GetCaption()->GetTickerLine()->render(&pixmap);
        } else {
            panel.GetCaption()->resize(50, 20); // narrower, but that is for the next text
        }
        QVERIFY(Ticker(panel).startsWith("0 2 4 ") && Ticker(panel).endsWith("36 38 "));
    }

    void endOfBurstFindsPanelsAndModelGone()
    {
        QScopedPointer<DecodedTextData> model(new DecodedTextData);
        QScopedPointer<DecodedTextChannel> panel(
            new DecodedTextChannel("one", 1, model.data(), nullptr));
        DecodedTextChannel survivor("two", 2, model.data(), nullptr);
        FeedBurst(*model);
        model->RemoveChannelData(2);
        panel.reset();
        QApplication::processEvents();
        QVERIFY2(!model->ChannelExists(2), "a late ticker made a removed channel anew");
        FeedBurst(*model);
        model.reset();
        QApplication::processEvents();
        survivor.ExpandTextArea(true);
        survivor.DataChanged(2, true);
    }

    void panelGoesInsideItsOwnNews()
    {
        DecodedTextData model;
        victim = new DecodedTextChannel("one", 1, &model, nullptr);
        victim->ExpandTextArea(true);
        QVERIFY(connect(victim->GetCaption()->GetTickerLine(), SIGNAL(textChanged(QString)),
                        SLOT(RetirePanel())));
        Feed(model, 1, "alpha");
        QVERIFY2(victim && !victim->isVisible(), "deleted on its own stack");
        QTRY_VERIFY(!victim);
        Feed(model, 1, "beta");
    }

    void editsAreAppliedAfterAPause()
    {
        DecodedTextData model;
        DecodedTextChannel panel("user", 1000, &model, nullptr);
        DecodedTextCaption* const caption = panel.GetCaption();
        QTimer* const timer = const_cast<QTimer*>(caption->GetApplyTimer());
        SignalRecorder signalsOf(caption);
        caption->applyNow();
        caption->setModified(true);
        panel.DataChanged(1, true);
        caption->setAutoApplyEnabled(false);
        QVERIFY(timer->isActive());
        panel.DataChanged(1000, true);
        QVERIFY2(!timer->isActive() && !caption->IsModified(), "new data drops the edits");
        caption->setModified(true);
        QVERIFY(!timer->isActive() && caption->IsModified());
        QCOMPARE(signalsOf.Take(), QString());
        caption->applyNow();
        caption->setAutoApplyEnabled(true);
        timer->setInterval(400);
        caption->setModified(true);
        QTest::qWait(150);
        QElapsedTimer pause;
        pause.start();
        caption->setModified(true);
        QTRY_VERIFY(!caption->IsModified());
        QVERIFY2(pause.elapsed() > 340, "every edit begins the pause anew");
        QCOMPARE(signalsOf.Take(), QString("OnApply() OnApply()"));
    }

public Q_SLOTS: // not a test
    void RetirePanel() { victim->Retire(); }

private:
    FatalLog log;
    QPointer<DecodedTextChannel> victim;
};

QTEST_MAIN(tst_panel)
#include "tst_panel.moc"
