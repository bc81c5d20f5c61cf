// decodedtexthost: shows recordings and live streams of decoded text in a DecodedTextView, or runs
// the library's demonstration. Settles what must be settled before there is an application object
// (time zone, platform), then reads the command line and runs a window.
#include "decodedtextcompat.h"
#include "demo.h"
#include "hostoutput.h"
#include "hostwindow.h"
#include "options.h"
#include "orvelappstartup/translationcenter.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>
#include <QVector>

namespace {

const int kStatusUsage = 1;
const int kStatusFailed = HostWindow::kStatusFailed;

bool HasArgument(int argc, char** argv, const char* argument)
{
    for (int i = 1; i < argc && qstrcmp(argv[i], "--") != 0; ++i) {
        if (qstrcmp(argv[i], argument) == 0) {
            return true;
        }
    }
    return false;
}

/// Whether nobody can see the window; sees to it that the program runs all the same.
bool IsHeadless()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform.isEmpty() && !DecodedTextCompat::HasDisplay()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return true;
    }
    return platform.startsWith("offscreen") || platform.startsWith("minimal");
}

/// The program's own texts and Qt's in the user's language; the view's library sees to its own.
void InstallTranslations()
{
    TranslationCenter::Instance().Register(QLatin1String("decodedtexthost"));
    static QTranslator qtTexts;
    if (qtTexts.load(QLocale(), DecodedTextCompat::QtTranslationName(), QLatin1String("_"),
                     DecodedTextCompat::QtTranslationFolder())) {
        QCoreApplication::installTranslator(&qtTexts);
    }
}

/// The arguments with "--name TEXT" written as "--name=TEXT": with a display of the X Window System
/// the application object takes the former for its own and removes it.
class Arguments
{
public:
    Arguments(int count, char** values)
        : size(0)
    {
        for (int i = 0; i < count; ++i) {
            QByteArray text(values[i]);
            if (i > 0 && text == "--name" && i + 1 < count) {
                text += '=';
                text += values[++i];
            }
            texts.append(text);
        }
        for (QByteArray& text : texts) {
            pointers.append(text.data());
        }
        size = static_cast<int>(pointers.size());
        pointers.append(nullptr);
    }

    int size; ///< changed by the application object
    char** Values() { return pointers.data(); }

private:
    QVector<QByteArray> texts;
    QVector<char*> pointers; ///< into texts
};

bool Print(const QString& text)
{
    const QString error = PrintText(text);
    if (!error.isEmpty()) {
        PrintError(error);
    }
    return error.isEmpty();
}

int RunDemo(HostOptions options, bool isHeadless)
{
    if (isHeadless && options.screenshotFile.isEmpty() && options.textFile.isEmpty()) {
        options.screenshotFile = QLatin1String("decodedtext-demo.png");
        options.textFile = QLatin1String("decodedtext-demo.txt");
        if (!Print(HostOptions::tr("No display here. The demonstration goes to %1 and %2.")
                       .arg(options.screenshotFile, options.textFile) +
                   QLatin1Char('\n'))) {
            return kStatusFailed;
        }
    }
    Demo demo(options);
    if (!demo.Start()) {
        return demo.GetExitStatus();
    }
    QApplication::exec();
    demo.Finish();
    return demo.GetExitStatus();
}

} // namespace

int main(int argc, char* argv[])
{
    // The view shows local times; the time zone is read once, when the first time is made.
    if (HasArgument(argc, argv, "--utc")) {
        qputenv("TZ", "UTC");
    }
    const bool isHeadless = IsHeadless();
    DecodedTextCompat::FollowScreenDensity();
    Arguments arguments(argc, argv); // outlives the application object, which refers to it
    QApplication application(arguments.size, arguments.Values());
    QCoreApplication::setApplicationName(QLatin1String("decodedtexthost"));
    QCoreApplication::setOrganizationName(QLatin1String("DecodedTextView"));
    QCoreApplication::setApplicationVersion(QLatin1String(DTV_VERSION));

    InstallTranslations();

    HostOptions options = HostOptions::Parse(QCoreApplication::arguments());
    switch (options.action) {
    case HostOptions::Refuse:
        PrintError(options.message);
        PrintError(HostOptions::tr("try --help"));
        return kStatusUsage;
    case HostOptions::ShowText:
        return Print(options.message) ? 0 : kStatusFailed;
    case HostOptions::Run:
        break;
    }
    // Nobody could close the window.
    options.quitAtEnd = options.quitAtEnd || isHeadless;
    if (options.demo) {
        return RunDemo(options, isHeadless);
    }
    HostWindow window(options);
    window.show();
    window.Start();
    QApplication::exec();
    return window.GetExitStatus();
}
