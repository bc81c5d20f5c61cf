// Panels and captions: what they are made of, how they open and close, the ticker in and between
// bursts, and the user channel's pause before edits are applied.
#include "decodedtextcaption.h"
#include "decodedtextchannel.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "metaobject.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

#include <QApplication>
#include <QElapsedTimer>
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

class tst_panel : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void methods()
    {
        QCOMPARE(DeclaredMethods(DecodedTextChannel::staticMetaObject),
                 "TextAreaChanged(); ToggleTextArea(); ExpandTextArea(bool) expand; "
                 "DataChanged(int,bool) channel,refresh; "
                 "TransmissionChanged(int) channel; PropertiesChanged()");
        QCOMPARE(DeclaredMethods(DecodedTextCaption::staticMetaObject),
                 "OnActivate(); OnApply(); setModified(bool) modified; applyNow(); "
                 "setAutoApplyEnabled(bool) enabled");
    }

    void buttonOpensAndCloses()
    {
        DecodedTextData model;
        Feed(model, 1, "alpha");
        DecodedTextChannel panel("one", 1, &model, nullptr);
        panel.show();
        SignalRecorder signalsOf(&panel);
        QPushButton* const button = panel.findChild<QPushButton*>("ChannelActivate");
        button->click();
        DecodedTextContent* const content = panel.GetContent();
        QVERIFY(panel.IsExpanded() && content->isVisible());
        QCOMPARE(content->toPlainText(), "alpha");

        button->click();
        QVERIFY(!panel.IsExpanded() && !content->isVisible() && panel.GetContent() == content);
        Feed(model, 1, "beta", 60);
        QVERIFY2(!content->toPlainText().contains("beta"), "a closed text area costs nothing");
        QVERIFY(Ticker(panel).endsWith("beta "));
        panel.ExpandTextArea(true);
        QVERIFY(content->toPlainText().endsWith("beta"));
        QCOMPARE(signalsOf.Take().count("TextAreaChanged()"), 3);
    }

    void burst()
    {
        DecodedTextData model;
        DecodedTextChannel panel("one", 1, &model, nullptr);
        panel.ExpandTextArea(true);
        panel.show();
        QApplication::processEvents();
        FeedBurst(model);
        QVERIFY(panel.GetContent()->toPlainText().endsWith("38"));
        QVERIFY2(!Ticker(panel).endsWith("38 "), "all of the burst was laid out");
        QApplication::processEvents();
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
        caption->setAutoApplyEnabled(false);
        QVERIFY(timer->isActive());
        panel.DataChanged(1000, true);
        QVERIFY2(!timer->isActive() && !caption->IsModified(), "new data drops the edits");
        QCOMPARE(signalsOf.Take(), QString());
        caption->setAutoApplyEnabled(true);
        timer->setInterval(400);
        caption->setModified(true);
        QTest::qWait(150);
        QElapsedTimer pause;
        pause.start();
        caption->setModified(true);
        QTRY_VERIFY(!caption->IsModified());
        QVERIFY2(pause.elapsed() > 340, "every edit begins the pause anew");
        QCOMPARE(signalsOf.Take(), "OnApply()");
    }

public Q_SLOTS: // not a test
    void RetirePanel() { victim->Retire(); }

private:
    QPointer<DecodedTextChannel> victim;
};

QTEST_MAIN(tst_panel)
#include "tst_panel.moc"
