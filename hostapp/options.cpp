// Reads the command line, through Qt's parser or what stands in for it. Texts for people come from
// here; who calls prints them and decides how the program ends.
#include "options.h"

#include "decodedtextcompat.h"

#include DECODEDTEXT_COMMANDLINE_HEADER

namespace {

struct OptionText
{
    const char* name;
    const char* valueName; // null: the option takes no value
    const char* description;
};

const OptionText kOptions[] = {
    {"merge", nullptr,
     QT_TRANSLATE_NOOP(
         "HostOptions",
         "Also merge the text of all channels, in the order of its times, into one channel.")},
    {"name", "N=TEXT",
     QT_TRANSLATE_NOOP("HostOptions", "Name channel N. May be given several times.")},
    {"speed", "X",
     QT_TRANSLATE_NOOP(
         "HostOptions",
         "Replay X times as fast as recorded (1: as recorded). Without it everything is shown at "
         "once.")},
    {"screenshot", "FILE.png",
     QT_TRANSLATE_NOOP("HostOptions",
                       "Write a picture of the window at the end; - is standard output.")},
    {"text", "FILE",
     QT_TRANSLATE_NOOP(
         "HostOptions",
         "Write the text of every channel, with times, at the end; - is standard output.")},
    {"export", "FILE.xml",
     QT_TRANSLATE_NOOP(
         "HostOptions",
         "Write the text and the annotations of every channel as a recording at the end; - is "
         "standard output.")},
    {"quit-at-end", nullptr,
     QT_TRANSLATE_NOOP("HostOptions",
                       "Quit when everything was shown. This is so without a display, too.")},
    {"utc", nullptr, QT_TRANSLATE_NOOP("HostOptions", "Show times in UTC instead of local time.")},
    {"demo", nullptr,
     QT_TRANSLATE_NOOP("HostOptions",
                       "Load the view's library as a plug-in and run its demonstration.")},
    {"help", nullptr, QT_TRANSLATE_NOOP("HostOptions", "Show this help.")},
    {"version", nullptr, QT_TRANSLATE_NOOP("HostOptions", "Show the program's version.")},
};

const char kDescription[] = QT_TRANSLATE_NOOP(
    "HostOptions", "Shows decoded text, channel by channel.\n"
                   "A FILE is a recording (result-data XML) or a stream of transmissions, "
                   "one per line; - is standard input,\n"
                   "read as it arrives. Exit status: 0, 1 when the command line is wrong, "
                   "2 when a file cannot be read,\n"
                   "understood or written.");

bool ParseName(const QString& text, QMap<int, QString>& names)
{
    const int split = static_cast<int>(text.indexOf(QLatin1Char('=')));
    bool isNumber = false;
    const int channel = text.left(qMax(split, 0)).toInt(&isNumber);
    if (!isNumber || channel < 0) {
        return false;
    }
    names.insert(channel, text.mid(split + 1));
    return true;
}

HostOptions Refusal(const QString& message)
{
    HostOptions options;
    options.action = HostOptions::Refuse;
    options.message = message;
    return options;
}

void TakeInputs(const QStringList& arguments, HostOptions& options)
{
    for (const QString& argument : arguments) {
        if (argument == QLatin1String("-")) {
            options.standardInput = true;
        } else {
            options.inputs.append(argument);
        }
    }
}

void AddOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(HostOptions::tr(kDescription));
    for (const OptionText& option : kOptions) {
        parser.addOption(
            QCommandLineOption(QLatin1String(option.name), HostOptions::tr(option.description),
                               option.valueName ? QLatin1String(option.valueName) : QString()));
    }
    parser.addPositionalArgument(QLatin1String("FILE"),
                                 HostOptions::tr("Recordings or streams of transmissions."),
                                 QLatin1String("[FILE ...]"));
}

} // namespace

HostOptions HostOptions::Parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    AddOptions(parser);
    if (!parser.parse(arguments)) {
        return Refusal(parser.errorText());
    }
    HostOptions options;
    if (parser.isSet(QLatin1String("help")) || parser.isSet(QLatin1String("version"))) {
        options.action = ShowText;
        options.message = parser.isSet(QLatin1String("help"))
                              ? parser.helpText()
                              : QString::fromLatin1("decodedtexthost " DTV_VERSION "\n");
        return options;
    }
    options.merge = parser.isSet(QLatin1String("merge"));
    options.quitAtEnd = parser.isSet(QLatin1String("quit-at-end"));
    options.utc = parser.isSet(QLatin1String("utc"));
    options.demo = parser.isSet(QLatin1String("demo"));
    options.screenshotFile = parser.value(QLatin1String("screenshot"));
    options.textFile = parser.value(QLatin1String("text"));
    options.exportFile = parser.value(QLatin1String("export"));
    TakeInputs(parser.positionalArguments(), options);
    const QStringList names = parser.values(QLatin1String("name"));
    for (const QString& name : names) {
        if (!ParseName(name, options.names)) {
            return Refusal(tr("--name wants N=TEXT with a channel number N, not '%1'.").arg(name));
        }
    }
    if (parser.isSet(QLatin1String("speed"))) {
        bool isNumber = false;
        options.speed = parser.value(QLatin1String("speed")).toDouble(&isNumber);
        if (!isNumber || !(options.speed > 0)) {
            return Refusal(tr("--speed wants a number above 0, not '%1'.")
                               .arg(parser.value(QLatin1String("speed"))));
        }
    }
    if (options.demo && (options.standardInput || !options.inputs.isEmpty())) {
        return Refusal(tr("--demo makes its own text and takes no FILE."));
    }
    return options;
}
