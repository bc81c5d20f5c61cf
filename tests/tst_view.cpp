// The exported widget: its interface, the order of panels and placeholder, what it hands to the
// model, its settings in the host's configuration, and hosts that remove panels or the whole view
// at the worst moment.
#include "decodedtextcaption.h"
#include "decodedtextchannel.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextguards.h"
#include "decodedtextview.h"
#include "fatallog.h"
#include "hxbase/errorhandler.h"
#include "hxbase/hxexception.h"
#include "hxbase/ierrorhandler.h"
#include "hxbase/trace.h"
#include "loadinterface.h"
#include "metaobject.h"
#include "recordingconfig.h"
#include "signalrecorder.h"
#include "sorvinresultdata.h"
#include "transmissionbuilder.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QScopedPointer>
#include <QSplitter>
#include <QTimer>

namespace {

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

/// What stands in the splitter from top to bottom: names of panels, "+" behind expanded ones, and
/// the placeholder's text in quotes. The view's own list must hold the same panels.
QString Shown(const DecodedTextView& view)
{
    const QSplitter* splitter = view.findChild<QSplitter*>();
    QStringList shown;
    QList<DecodedTextChannel*> order;
    for (int i = 0; i < splitter->count(); ++i) {
        DecodedTextChannel* const panel = qobject_cast<DecodedTextChannel*>(splitter->widget(i));
        const QLabel* label = splitter->widget(i)->findChild<QLabel*>("ChannelLabel");
        if (panel) {
            order.append(panel);
            shown.append(label->text() + QLatin1String(panel->IsExpanded() ? "+" : ""));
        } else {
            shown.append('\'' + qobject_cast<QLabel*>(splitter->widget(i))->text() + '\'');
        }
    }
    return order == view.GetPanels() ? shown.join(QLatin1String(", ")) : QString("orders differ");
}

class RecordingHandler final : public IErrorHandler
{
public:
    RecordingHandler() { ErrorHandler::SetInterface(this); }
    ~RecordingHandler() { ErrorHandler::SetInterface(nullptr); }
    void AddException(const HXException& exception) override
    {
        calls += QString("add(%1) ").arg(exception.GetMessage());
        if (exception.GetMessage() == "bad handler") {
            throw 1;
        }
    }
    void ReportException(const HXException& exception, int a, int b, bool c, bool d) override
    {
        calls +=
            QString("report(%1,%2,").arg(exception.GetMethod()).arg(exception.GetCode(), 0, 16);
        calls += QString("%1,%2,%3,%4)").arg(a).arg(b).arg(c).arg(d);
    }
    QString calls;
};

IDllInstance* Throwing(const QString& what)
{
    if (what == "number") {
        throw 7;
    } else if (what == "standard") {
        throw std::runtime_error("standard");
    }
    throw HXException(what, "file", "class", "made", 1, 2);
}

} // namespace

class tst_view : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        log.Start();
        FatalLog::Announce(
            "This plugin does not support"); // said by the platform that has no screen
        config.reset(new RecordingConfig);
    }
    void cleanup()
    {
        QCOMPARE(config->openGroups, 0);
        QVERIFY(CfgCenter::GetSaveComponents().isEmpty());
        config.reset();
        log.Check();
    }

    void methods()
    {
        QCOMPARE(DeclaredMethods(DecodedTextView::staticMetaObject),
                 QString("NewTransmission(); SaveUserData(int,QString) channel,xmlText; "
                         "ApplyAlphabet(QString) alphabet; "
                         "AddTransmission(QString) xmlText; ChannelCreated(int) channel; "
                         "ShowChannel(int) channel; "
                         "UpdateLayout(); SetBufferSize(int) maxChars; SetMorse(bool) bMorse; "
                         "EnableUserData(bool) enable; "
                         "SetQualityThreshold(int) threshold; EndTransmission(); "
                         "DefineCallSign(QString) sign; "
                         "SelectCallSign(QString) sign; ShowContextMenu(QPoint) pt; Reset(); "
                         "ApplyUserChannel(bool) bAutoApply"));
        QCOMPARE(DeclaredMethods(DecodedTextViewTest::staticMetaObject),
                 QString("Update(); SaveUserData(int,QString) channel,xmlText"));
    }

    void panelsStandInOrder()
    {
        DecodedTextView view(nullptr);
        view.resize(400, 300);
        view.show();
        QCOMPARE(Shown(view), QString("'Waiting for valid data'"));
        view.DefineChannelName(3, "Three");
        view.RemoveChannel(0); // naming makes the merged channel
        for (int channel : {5, 1, 3}) {
            view.AddTransmission(Xml(channel, "text"));
        }
        QCOMPARE(Shown(view), QString("Channel 1, Three, Channel 5+"));
        QApplication::processEvents();
        QVERIFY(Panel(view, 1)->isVisible() && Panel(view, 1)->height() == 24 &&
                Panel(view, 5)->height() > 200);
        view.ChannelCreated(3);
        view.ShowChannel(1);
        view.ShowChannel(8);
        view.RemoveChannel(5);
        view.RemoveChannel(9);
        QCOMPARE(Shown(view), QString("Channel 1+, Three"));
        Panel(view, 1)->ToggleTextArea();
        QCOMPARE(Shown(view), QString("Channel 1, Three, ''"));
        view.AddTransmission(Xml(2, "text"));
        view.AddTransmission(Xml(5, "text"));
        QCOMPARE(Shown(view), QString("Channel 1, Channel 2, Three, '', Channel 5"));
        ModelOf(view).ShowUserChannel();
        view.DefineChannelName(5, "Five");
        QCOMPARE(Shown(view), QString("Channel 0, Channel 1, Channel 2, Three, Five, User+"));
        view.EnableUserData(false);
        QVERIFY(!ModelOf(view).ChannelExists(1000) && Shown(view).endsWith("Five, ''"));
        view.Reset();
        QCOMPARE(Shown(view), QString("'Waiting for valid data'"));
        QVERIFY(!ModelOf(view).ChannelExists(1) && view.GetChannelNames().value(5) == "Five");
    }

    void callsReachTheModel()
    {
        DecodedTextView view(nullptr);
        const DecodedTextData& model = ModelOf(view);
        view.SetBufferSize(10);
        QCOMPARE(view.GetBufferSize(), 1000);
        view.SetQualityThreshold(150);
        QCOMPARE(model.GetQualityThreshold(), 100);
        view.SetOffline(true);
        view.DefineCallSign("KILO");
        view.DefineCallSign("ALFA");
        QCOMPARE(model.GetCallSigns().join(","), QString("ALFA,KILO"));
        QVERIFY(view.GetLastTimestamp(4).isNull() && Panel(view, 4));
        QMap<int, int> map;
        map.insert(1, 7);
        QVector<int> channels;
        view.AddTransmission(map, channels, Xml(1, "alpha"));
        QCOMPARE(channels, QVector<int>() << 1);
        QCOMPARE(Shown(view), QString("Channel 0, Channel 4+, Channel 7"));
        QCOMPARE(view.GetLastTimestamp(7), TestStart());
        view.EndTransmission();
        SorvinResultDataXml::SorvinResultData fetched;
        view.GetData(7, fetched, true);
        QVERIFY2(view.IsChanged(7), "finished text was to be left out");
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
        QTimer first;
        QTimer second;
        first.start(100000);
        second.start(100000);
        QVERIFY(view.SetResetHandler(&first, SLOT(stop())));
        QVERIFY(view.SetResetHandler(&second, SLOT(stop())));
        ModelOf(view).ResetView();
        QTRY_VERIFY(!second.isActive());
        QVERIFY(first.isActive() && Panel(view, 1));
        QVERIFY(!view.SetResetHandler(nullptr, nullptr));
        ModelOf(view).ResetView();
        QApplication::processEvents();
        QVERIFY(Panel(view, 1));
    }

    void settings_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<int>("threshold"); // set by the host; -1: not
        QTest::addColumn<QString>("written");
        QTest::newRow("empty") << "" << -1 << "";
        QTest::newRow("changed-by-the-host") << "" << 60 << "10000 60 50 Black White";
        QTest::newRow("out-of-range")
            << "BufferSize=200,QualityThreshold=101" << -1 << "1000 100 50 Black White";
        QTest::newRow("empty-colour") << "ForegroundColor=" << -1 << "";
        QTest::newRow("zero-is-a-value")
            << "InfoAreaWidth=0,QualityThreshold=0" << -1 << "10000 0 0 Black White";
        QTest::newRow("no-group") << "none" << 60 << "";
        QTest::newRow("throws") << "throws" << 60 << "";
    }
    void settings()
    {
        QFETCH(QString, stored);
        QFETCH(int, threshold);
        QFETCH(QString, written);
        for (const QString& pair : stored.split(',')) {
            config->values[pair.section('=', 0, 0)] = pair.section('=', 1);
        }
        config->throws = stored == "throws";
        config->wanted = stored == "none" ? stored : config->wanted;
        {
            DecodedTextView view(nullptr);
            const bool readable = stored != "none" && stored != "throws";
            QCOMPARE(config->Take(),
                     QString(readable ? "BufferSize?10000 QualityThreshold?80 InfoAreaWidth?50 "
                                        "ForegroundColor?Black BackgroundColor?White"
                                      : ""));
            QCOMPARE(CfgCenter::GetSaveComponents().size(), 1);
            if (threshold >= 0) {
                view.SetQualityThreshold(threshold);
            }
            if (!config->throws) {
                view.Save();
            }
            view.CommitData();
        } // a second time, with nothing changed in between
        QStringList expected = written.split(' ');
        const char* const keys[] = {"BufferSize=", "QualityThreshold=", "InfoAreaWidth=",
                                    "ForegroundColor=", "BackgroundColor="};
        for (int i = 0; i < expected.size() && !written.isEmpty(); ++i) {
            expected[i].prepend(keys[i]);
        }
        QCOMPARE(config->Take(), expected.join(" "));
    }

    void selectCallSign()
    {
        DecodedTextView view(nullptr);
        SignalRecorder signalsOf(&view);
        view.AddTransmission(Xml(1, "alpha beta"));
        view.AddTransmission(Xml(2, "gamma delta"));
        view.ShowChannel(2);
        view.SelectCallSign("");
        QCOMPARE(signalsOf.Take(), QString());
        view.SelectCallSign("KILO");
        QCOMPARE(view.GetChannelsWithActiveUserData(), QVector<int>() << 1 << 2);
        QCOMPARE(signalsOf.Take().count("SaveUserData("), 2);
        Panel(view, 1)->GetContent()->selectAll();
        Panel(view, 2)->GetContent()->moveCursor(QTextCursor::Start);
        view.SelectCallSign("");
        const QString saved = signalsOf.Take();
        QVERIFY(saved.contains("SaveUserData(1,") && saved.contains("KILO") &&
                !saved.contains("SaveUserData(2,"));
    }

    void userChannel()
    {
        DecodedTextView view(nullptr);
        view.show();
        QTimer::singleShot(0, this, SLOT(ChooseFirstEntry()));
        view.ShowContextMenu(QPoint(1, 1));
        QCOMPARE(entry, QString("Show user channel"));
        QCOMPARE(Shown(view), QString("User+"));
        DecodedTextCaption* const caption = Panel(view, 1000)->GetCaption();
        caption->setModified(true);
        caption->setAutoApplyEnabled(false);
        view.ApplyUserChannel(true);
        QVERIFY(caption->IsModified());
        view.ApplyUserChannel(false);
        QVERIFY(!caption->IsModified());
        view.EnableUserData(false);
        view.ShowContextMenu(QPoint(1, 1)); // would not return
    }

    void hostRemovesInsideASignal_data()
    {
        QTest::addColumn<QString>("act");
        for (const char* act : {"channel", "reset", "view"}) {
            QTest::newRow(act) << QString(act);
        }
    }
    void hostRemovesInsideASignal()
    {
        QFETCH(QString, act);
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
            QCOMPARE(Shown(*view), QString("'Waiting for valid data'"));
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
        view.AddTransmission(Xml(2, "beta"));
        const QPointer<DecodedTextChannel> open = Panel(view, 1);
        const QPointer<DecodedTextChannel> idle = Panel(view, 2);
        const DecodedTextBufferPtr buffer = ModelOf(view).GetChannelData(1);
        buffer->hold = true;
        view.Reset();
        QVERIFY2(!idle, "nothing to wait for");
        QTest::qWait(80);
        QVERIFY(open);
        QScopedPointer<DecodedTextDialogGuard> dialog(
            new DecodedTextDialogGuard(open->GetContent()));
        buffer->hold = false;
        QTest::qWait(80);
        QVERIFY(open);
        dialog.reset();
        QTRY_VERIFY(!open);
    }

    void exceptionsStayInside_data()
    {
        QTest::addColumn<QString>("trace");
        QTest::addColumn<QString>("reported");
        QTest::newRow("mine") << "HXException"
                              << "add(mine) report(made,2,0,-1,1,0)";
        QTest::newRow("standard") << "Standard C++ Exception"
                                  << "add(standard) report(method,ffffffff,0,-1,1,0)";
        QTest::newRow("number") << "Unknown exception"
                                << "add(Unknown exception) report(method,ffffffff,0,-1,1,0)";
        QTest::newRow("bad handler") << "HXException"
                                     << "add(bad handler) ";
    }
    void exceptionsStayInside()
    {
        QFETCH(QString, trace);
        RecordingHandler handler;
        QString lines;
        SetTraceSink([&](const QString& text, const QString& path, unsigned short line) {
            lines += QString("%1:%2 %3").arg(path).arg(line).arg(text);
        });
        ErrorHandler::SetTraceFlags(32);
        QVERIFY(!MakeInstance(&Throwing, QTest::currentDataTag()));
        ErrorHandler::SetTraceFlags(0);
        SetTraceSink(TraceSink());
        QCOMPARE(lines, "controls/decodedtextview/loadinterface:15 " + trace +
                            " caught in standard catch-block");
        QTEST(handler.calls, "reported");
    }

public Q_SLOTS: // not a test
    void ChooseFirstEntry()
    {
        QMenu* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        entry = menu->actions().first()->text();
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    }

private:
    FatalLog log;
    QScopedPointer<RecordingConfig> config;
    QString entry;
};

QTEST_MAIN(tst_view)
#include "tst_view.moc"
