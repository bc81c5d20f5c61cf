// The library as a plug-in: entry functions, the demonstration that they make, and what happens
// when a process loads and unloads the library (its translations come and go).
//
// The demonstration feeds its view as any host would: a transmission of one data block as XML per
// tick. Invariant: no exception passes from here to the host framework.

#include "loadinterface.h"

#include "datablock.h"
#include "decodedtextcompat.h"
#include "decodedtextmenulabels.h"
#include "decodedtexttrace.h"
#include "decodedtextview.h"
#include "hxbase/errorhandler.h"
#include "hxbase/hxexception.h"
#include "hxbase/ierrorhandler.h"
#include "orvelappstartup/translationcenter.h"
#include "transmission.h"

#include <QCloseEvent>
#include <QTimer>

#include <exception>

namespace {

const int kTickMs = 1000;
const int kWindowSize = 600;    ///< pixels
const int kMinBlockLength = 20; ///< characters; a block ends with the first blank from there on
const int kQualityThreshold = 50;
const int kGoodQuality = 70;
const int kPoorQuality = 0;
const int kGoodChannel = 1;
const int kPoorChannel = 2;

const char kLibrary[] = "DecodedTextView";
const char kSource[] = "controls/decodedtextview/loadinterface";
const unsigned short kReportLine = 15;
const unsigned int kUnknownCode = 0xFFFFFFFF;
const char kGoodCallSign[] = "NOVA";
const char kPoorCallSign[] = "KILO";
const char kLongCallSign[] = "Laaaaaaaaaaaaaaaaaaaaaaang";

void Report(const HXException& exception)
{
    IErrorHandler* const handler = ErrorHandler::Interface();
    handler->AddException(exception);
    handler->ReportException(exception, 0, -1, true, false);
}

void ReportForeign(const QString& message)
{
    Report(HXException(message, QLatin1String(kSource), QLatin1String("class"),
                       QLatin1String("method"), kReportLine, kUnknownCode));
}

/// Called in a catch block: traces and reports the exception that is being handled.
void ReportCurrent()
{
    try {
        throw;
    } catch (const HXException& exception) {
        DecodedTextTrace::Write(QLatin1String("HXException caught in standard catch-block"),
                                kSource, kReportLine);
        Report(exception);
    } catch (const std::exception& exception) {
        DecodedTextTrace::Write(
            QLatin1String("Standard C++ Exception caught in standard catch-block"), kSource,
            kReportLine);
        ReportForeign(QString::fromLocal8Bit(exception.what()));
    } catch (...) {
        DecodedTextTrace::Write(QLatin1String("Unknown exception caught in standard catch-block"),
                                kSource, kReportLine);
        ReportForeign(QLatin1String("Unknown exception"));
    }
}

IDllInstance* MakeDemonstration(const QString& name)
{
    return new DecodedTextViewTest(name);
}

void RegisterTranslations()
{
    try {
        TranslationCenter::Instance().Register(QLatin1String(kLibrary));
        if (QCoreApplication::instance()) {
            DecodedTextMenuLabels::Get(); // loaded into a running program: now they are translated
        }
    } catch (...) { // without translations the texts are English; that must not keep the library
                    // from being loaded
    }
}

void UnregisterTranslations()
{
    try {
        TranslationCenter::Instance().Unregister(QLatin1String(kLibrary));
    } catch (...) { // the library goes all the same
    }
}

} // namespace

DECODEDTEXT_LIBRARY_HOOKS(RegisterTranslations, UnregisterTranslations)

IDllInstance* MakeInstance(IDllInstance* (*make)(const QString& name), const QString& name)
{
    try {
        return make(name);
    } catch (...) {
        try {
            ReportCurrent();
        } catch (...) { // thrown by the error handler itself: nobody is left to be told
        }
    }
    return nullptr;
}

IDllInstance* HXCreate(const wchar_t* name)
{
    try {
        return MakeInstance(&MakeDemonstration, name ? QString::fromWCharArray(name) : QString());
    } catch (...) { // not even the name could be copied
        return nullptr;
    }
}

void HXDestroy(IDllInstance* instance)
{
    delete instance;
}

QSize DecodedTextViewTestMain::sizeHint() const
{
    return QSize(kWindowSize, kWindowSize);
}

void DecodedTextViewTestMain::closeEvent(QCloseEvent* event)
{
    QMainWindow::closeEvent(event);
    QCoreApplication::quit();
}

DecodedTextViewTest::DecodedTextViewTest(const QString& instanceName)
    : IDllInstance(instanceName)
    , view(nullptr)
    , mainWindow(new DecodedTextViewTestMain)
    , timer(nullptr)
    , startTime(QDateTime::currentDateTime())
    , lastTime(startTime)
    , text(QLatin1String("0123456789Lorem ipsum dolor sit amet, consetetur sadipscing elitr, sed "
                         "diam nonumy eirmod tempor "
                         "invidunt ut labore"
                         "et dolore magna aliquyam erat, sed diam voluptua.\nAt vero eos et "
                         "accusam et justo duo dolores et "
                         "ea rebum.\n"
                         "Stet clita kasd gubergren, no sea takimata sanctus est Lorem ipsum dolor "
                         "sit amet.\nLorem ipsum "
                         "dolor sit amet, "
                         "consetetur sadipscing elitr, sed diam nonumy eirmod tempor invidunt ut "
                         "labore et dolore magna "
                         "aliquyam erat, "))
    , current(-1)
{
    timer = new QTimer(this);
    connect(timer, SIGNAL(timeout()), SLOT(Update()));
    timer->start(kTickMs);
    const Generator good = {kGoodChannel, 1, 0};
    const Generator poor = {kPoorChannel, 2, 0};
    generators << good << poor;
}

DecodedTextViewTest::~DecodedTextViewTest()
{
    delete mainWindow;
}

bool DecodedTextViewTest::Start()
{
    if (view) {
        return true;
    }
    view = new DecodedTextView(mainWindow);
    view->SetQualityThreshold(kQualityThreshold);
    view->DefineCallSign(QLatin1String(kGoodCallSign));
    view->DefineCallSign(QLatin1String(kPoorCallSign));
    view->DefineCallSign(QLatin1String(kLongCallSign));
    view->DefineChannelName(0, tr("Aggregation"));
    view->DefineChannelName(kGoodChannel, QLatin1String(kGoodCallSign));
    view->DefineChannelName(kPoorChannel, QLatin1String(kPoorCallSign));
    view->SetChannelSeparator(QLatin1String("\n"));
    mainWindow->setCentralWidget(view);
    connect(view, SIGNAL(SaveUserData(int, QString)), SLOT(SaveUserData(int, QString)),
            Qt::QueuedConnection);
    mainWindow->show();
    return true;
}

void DecodedTextViewTest::Update()
{
    if (!view) {
        return;
    }
    const QDateTime now = QDateTime::currentDateTime();
    current = (current + 1) % static_cast<int>(generators.size());
    Generator& generator = generators[current];
    if (generator.position >= text.size()) {
        timer->stop();
        return;
    }
    const bool late = generator.channel == kGoodChannel && startTime < lastTime;
    MakeBlock(generator, late ? lastTime.addSecs(-1) : now);
}

void DecodedTextViewTest::MakeBlock(Generator& generator, const QDateTime& time)
{
    SorvinResultDataXml::Transmission transmission;
    transmission.SetStartTime(startTime);
    transmission.SetStopTime(time);
    SorvinResultDataXml::DataBlock* const block =
        new SorvinResultDataXml::DataBlock(generator.channel, 0, 0);
    transmission.AddDataBlock(block);
    block->SetID(generator.id);
    block->SetContentCode(QLatin1String("None"));
    block->SetContentDirectionRTL(false);

    const int blank =
        static_cast<int>(text.indexOf(QLatin1Char(' '), generator.position + kMinBlockLength));
    const QString content =
        text.mid(generator.position, blank < 0 ? -1 : blank - generator.position + 1);
    block->SetContent(content);
    SorvinResultDataXml::TimeStamp stamp;
    stamp.time = time;
    stamp.position = generator.position;
    stamp.quality = generator.channel == kPoorChannel ? kPoorQuality : kGoodQuality;
    block->GetTimeStamp().append(stamp);
    generator.position += static_cast<int>(content.size());
    lastTime = time;

    DecodedTextCompat::WriteDebugLine(
        QString::fromLatin1("AddDataBlock channel=%1 timestamp=%2 '%3'\n")
            .arg(QString::number(generator.channel), time.toString(), content));
    QMap<int, int> channelMap;
    channelMap.insert(generator.channel, generator.channel);
    QVector<int> channels;
    view->AddTransmission(channelMap, channels, transmission.GetXmlString());
}

void DecodedTextViewTest::SaveUserData(int /*channel*/, QString /*xmlText*/) {}
