// The exported widget: its interface, the order of panels and placeholder, what it hands to the
// model, its settings in the host's configuration, and hosts that remove panels or the whole view
// at the worst moment.
#include "decodedtextchannel.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextguards.h"
#include "decodedtextview.h"
#include "hxbase/errorhandler.h"
#include "hxbase/hxexception.h"
#include "loadinterface.h"
#include "metaobject.h"
#include "recordingconfig.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "sorvinresultdata.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QScopedPointer>
#include <QSplitter>
#include <QTimer>

namespace {

const char* const kRemovals[] = {"channel", "reset", "view"};

QString Xml(int channel, const QString& text)
{
    return TransmissionBuilder().Block(channel).Text(0, text).Xml();
}

DecodedTextData& ModelOf(const DecodedTextView& view)
{
    return *view.findChild<DecodedTextData*>("DecodedTextData");
}

DecodedTextChannel* Panel(const DecodedTextView& view, int channel)
{
    for (DecodedTextChannel* panel : view.GetPanels()) {
        if (panel->GetChannel() == channel) {
            return panel;
        }
    }
    return nullptr;
}

/// Panels from top to bottom, "+" behind expanded ones, the placeholder's text in quotes.
QString Shown(const DecodedTextView& view)
{
    const QSplitter* splitter = view.findChild<QSplitter*>();
    QStringList shown;
    for (int i = 0; i < splitter->count(); ++i) {
        DecodedTextChannel* const panel = qobject_cast<DecodedTextChannel*>(splitter->widget(i));
        const QLabel* label = splitter->widget(i)->findChild<QLabel*>("ChannelLabel");
        if (panel) {
            shown.append(label->text() + QLatin1String(panel->IsExpanded() ? "+" : ""));
        } else {
            shown.append('\'' + qobject_cast<QLabel*>(splitter->widget(i))->text() + '\'');
        }
    }
    return shown.join(", ");
}

IDllInstance* Throwing(const QString& what)
{
    if (what == "number") {
        throw 7;
    }
    throw HXException(what, "file", "class", "made", 1, 2);
}

} // namespace

class tst_view : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        WatchedTest::init();
        config.reset(new RecordingConfig);
    }
    void cleanup()
    {
        QCOMPARE(config->openGroups, 0);
        QVERIFY(CfgCenter::GetSaveComponents().isEmpty());
        config.reset();
        WatchedTest::cleanup();
    }

    void methods()
    {
        QCOMPARE(DeclaredMethods(DecodedTextView::staticMetaObject),
                 "NewTransmission(); SaveUserData(int,QString) channel,xmlText; "
                 "ApplyAlphabet(QString) alphabet; AddTransmission(QString) xmlText; "
                 "ChannelCreated(int) channel; ShowChannel(int) channel; UpdateLayout(); "
                 "SetBufferSize(int) maxChars; SetMorse(bool) bMorse; "
                 "EnableUserData(bool) enable; SetQualityThreshold(int) threshold; "
                 "EndTransmission(); DefineCallSign(QString) sign; "
                 "SelectCallSign(QString) sign; ShowContextMenu(QPoint) pt; Reset(); "
                 "ApplyUserChannel(bool) bAutoApply");
    }

    void panelsStandInOrder()
    {
        DecodedTextView view(nullptr);
        QCOMPARE(Shown(view), "'Waiting for valid data'");
        view.DefineChannelName(3, "Three");
        view.RemoveChannel(0); // made by the naming
        for (int channel : {5, 1, 3}) {
            view.AddTransmission(Xml(channel, "text"));
        }
        QCOMPARE(Shown(view), "Channel 1, Three, Channel 5+");
        view.ShowChannel(1);
        // The Tab key takes buttons and texts in that order, and all tell their channel's name.
        QStringList tabs;
        for (QWidget* next = view.nextInFocusChain(); next != &view;
             next = next->nextInFocusChain()) {
            if ((next->focusPolicy() & Qt::TabFocus) && !next->focusProxy()) {
                tabs.append(next->accessibleDescription() +
                            (next->inherits("QPushButton") ? "" : "+"));
            }
        }
        QCOMPARE(tabs.join(", "), "Channel 1, Channel 1+, Three, Channel 5, Channel 5+");
        view.RemoveChannel(5);
        QCOMPARE(Shown(view), "Channel 1+, Three");
        Panel(view, 1)->ToggleTextArea();
        view.AddTransmission(Xml(5, "text"));
        QCOMPARE(Shown(view), "Channel 1, Three, '', Channel 5");
        ModelOf(view).ShowUserChannel();
        view.DefineChannelName(5, "Five");
        QCOMPARE(Shown(view), "Channel 0, Channel 1, Three, Five, User+");
        view.EnableUserData(false);
        QVERIFY(!ModelOf(view).ChannelExists(1000) && Shown(view).endsWith("Five, ''"));
        view.Reset();
        QVERIFY(!ModelOf(view).ChannelExists(1));
    }

    void callsReachTheModel()
    {
        DecodedTextView view(nullptr);
        QMap<int, int> map;
        map.insert(1, 7);
        QVector<int> channels;
        view.AddTransmission(map, channels, Xml(1, "alpha"));
        QCOMPARE(channels, QVector<int>() << 1);
        SorvinResultDataXml::SorvinResultData fetched;
        QVERIFY(view.IsChanged(7));
        view.GetData(7, fetched, false);
        QVERIFY(!view.IsChanged(7));
    }

    void resetHandler()
    {
        DecodedTextView view(nullptr);
        view.AddTransmission(Xml(1, "alpha"));
        ModelOf(view).ResetView();
        QVERIFY2(Panel(view, 1), "a reset must not run inside the menu that asked for it");
        QApplication::processEvents();
        QVERIFY(!Panel(view, 1));

        view.AddTransmission(Xml(1, "alpha"));
        QTimer handler;
        handler.start(100000);
        QVERIFY(view.SetResetHandler(&handler, SLOT(stop())));
        ModelOf(view).ResetView();
        QTRY_VERIFY(!handler.isActive());
        QVERIFY(Panel(view, 1));
    }

    void settings()
    {
        config->values["BufferSize"] = "200";
        config->values["QualityThreshold"] = "101";
        {
            DecodedTextView view(nullptr);
            QCOMPARE(config->Take(), "BufferSize?10000 QualityThreshold?80 InfoAreaWidth?50 "
                                     "ForegroundColor?Black BackgroundColor?White");
            view.Save();
            QCOMPARE(config->Take(), "BufferSize=1000 QualityThreshold=100 InfoAreaWidth=50 "
                                     "ForegroundColor=Black BackgroundColor=White");
        } // once more, with nothing changed in between
        QCOMPARE(config->Take(), QString());
    }

    void settingsThatCannotBeReached()
    {
        config->throws = true;
        DecodedTextView view(nullptr);
        view.SetQualityThreshold(60);
        view.CommitData();
        QCOMPARE(config->Take(), QString());
    }

    void hostRemovesInsideASignal_data() { AddRows(kRemovals); }
    void hostRemovesInsideASignal()
    {
        const QString act = QTest::currentDataTag();
        QScopedPointer<DecodedTextView> view(new DecodedTextView(nullptr));
        view->AddTransmission(Xml(1, "alpha beta"));
        const QPointer<DecodedTextChannel> panel = Panel(*view, 1);
        SignalRecorder signalsOf(view.data());
        signalsOf.onSignal = [&](const QString&) {
            if (act == "view") {
                view.reset();
                return;
            }
            act == "reset" ? view->Reset() : view->RemoveChannel(1);
            QVERIFY2(panel && !panel->parentWidget(), "the text area is on the stack");
            QCOMPARE(Shown(*view), "'Waiting for valid data'");
        };
        panel->GetContent()->selectAll();
        panel->GetContent()->SelectCallSign("KILO", true);
        QVERIFY(signalsOf.Take().startsWith("SaveUserData(1,"));
        QTRY_VERIFY(!panel);
    }

    void removalWaitsForMenusAndDialogs()
    {
        DecodedTextView view(nullptr);
        view.AddTransmission(Xml(1, "alpha"));
        const QPointer<DecodedTextChannel> open = Panel(view, 1);
        const DecodedTextBufferPtr buffer = ModelOf(view).GetChannelData(1);
        buffer->hold = true;
        view.Reset();
        QScopedPointer<DecodedTextDialogGuard> dialog(
            new DecodedTextDialogGuard(open->GetContent()));
        buffer->hold = false;
        QTest::qWait(80);
        QVERIFY(open);
        dialog.reset();
        QTRY_VERIFY(!open);
    }

    void exceptionsStayInside()
    {
        ErrorHandler::ClearExceptions();
        for (const char* what : {"mine", "number"}) {
            QVERIFY(!MakeInstance(&Throwing, what));
        }
        QCOMPARE(ErrorHandler::GetExceptions().size(), std::size_t(2));
        QCOMPARE(ErrorHandler::GetExceptions().front().GetMessage(), "mine");
    }

private:
    QScopedPointer<RecordingConfig> config;
};

QTEST_MAIN(tst_view)
#include "tst_view.moc"
