// Runs the library's demonstration as a plug-in. The instance feeds its own view once a second;
// nothing here reaches into it but through its meta-object and its widgets' object names. The end
// of its sample text shows in its timer, which stops.
#include "demo.h"

#include "channelpanels.h"
#include "decodedtextview.h"
#include "hostoutput.h"
#include "idllinstance/idllinstance.h"

#include <QApplication>
#include <QLibrary>
#include <QMainWindow>

namespace {

const int kTickMs = 1000; // of the demonstration itself
const int kWatchMs = 100;
const int kSettleMs = 150;

typedef IDllInstance* (*CreateFunction)(const wchar_t* name);
typedef void (*DestroyFunction)(IDllInstance* instance);

QStringList LibraryPlaces()
{
    const QString name = QLatin1String("decodedtextview");
    const QString folder = QCoreApplication::applicationDirPath();
    // Without a folder the loader looks into its own path.
    return QStringList() << folder + QLatin1Char('/') + name
                         << folder + QLatin1String("/../lib/") + name << name;
}

} // namespace

Demo::Demo(const HostOptions& hostOptions)
    : options(hostOptions)
    , instance(nullptr)
    , object(nullptr)
    , destroy(nullptr)
    , panels(nullptr)
    , hasFailed(false)
{
    connect(&hurryTimer, SIGNAL(timeout()), this, SLOT(Hurry()));
    connect(&watchTimer, SIGNAL(timeout()), this, SLOT(Watch()));
}

Demo::~Demo()
{
    Finish();
}

bool Demo::Start()
{
    if (!Load()) {
        return false;
    }
    if (!instance->Start() || !FindWindow()) {
        Fail(tr("the demonstration does not start"));
        return false;
    }
    object = dynamic_cast<QObject*>(instance);
    if (object && options.speed > 0) {
        hurryTimer.start(qMax(1, static_cast<int>(kTickMs / options.speed)));
    }
    watchTimer.start(kWatchMs);
    return true;
}

bool Demo::Load()
{
    QStringList errors;
    const QStringList places = LibraryPlaces();
    for (const QString& place : places) {
        QLibrary library(place);
        const CreateFunction create = reinterpret_cast<CreateFunction>(library.resolve("HXCreate"));
        destroy = reinterpret_cast<DestroyFunction>(library.resolve("HXDestroy"));
        if (!create || !destroy) {
            errors.append(library.errorString());
            continue;
        }
        instance = create(L"Demonstration");
        if (instance) {
            return true;
        }
        errors.append(tr("%1 makes no instance").arg(library.fileName()));
        break;
    }
    Fail(errors.join(QLatin1String("\n")));
    return false;
}

bool Demo::FindWindow()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        DecodedTextView* const found =
            widget->findChild<DecodedTextView*>(QLatin1String("DecodedTextView"));
        if (found) {
            window = qobject_cast<QMainWindow*>(widget);
            view = found;
        }
    }
    if (!window) {
        return false;
    }
    panels = new ChannelPanels(view, this);
    return true;
}

void Demo::Hurry()
{
    QMetaObject::invokeMethod(object, "Update");
}

void Demo::Watch()
{
    const QTimer* const timer = object ? object->findChild<QTimer*>() : nullptr;
    if (timer && timer->isActive()) {
        return;
    }
    watchTimer.stop();
    hurryTimer.stop();
    QTimer::singleShot(kSettleMs, this, SLOT(AllShown()));
}

void Demo::AllShown()
{
    WriteOutputs(options.quitAtEnd);
    if (options.quitAtEnd) {
        QApplication::exit(GetExitStatus());
    }
}

void Demo::Finish()
{
    if (!instance) {
        return;
    }
    watchTimer.stop();
    hurryTimer.stop();
    if (!options.quitAtEnd) {
        WriteOutputs(true);
    }
    delete panels;
    panels = nullptr;
    destroy(instance);
    instance = nullptr;
    object = nullptr;
}

void Demo::WriteOutputs(bool isLast)
{
    if (!window || !view) {
        return;
    }
    const WrittenOutputs written = WriteWhatIsAskedFor(options, window, view, *panels, isLast);
    for (const QString& error : written.errors) {
        Fail(error);
    }
}

void Demo::Fail(const QString& message)
{
    hasFailed = true;
    PrintError(message);
}
