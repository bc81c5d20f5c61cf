// Trace lines: from any of the controls to one sink, standard error by default. Texts may quote
// received data, so what standard error shows has its control characters spelled out. The sink is
// never deleted: hooks that run while the process ends may still trace.
#include "hxbase/trace.h"

#include <cstdio>

namespace {

TraceSink& Sink()
{
    static TraceSink* const sink = new TraceSink;
    return *sink;
}

QString Printable(const QString& text)
{
    QString printable;
    printable.reserve(text.size());
    for (const QChar character : text) {
        if (character == QLatin1Char('\n')) {
            printable += QLatin1String("\\n");
        } else if (character.category() == QChar::Other_Control) {
            printable += QString::fromLatin1("\\x%1").arg(uint(character.unicode()), 2, 16,
                                                          QLatin1Char('0'));
        } else {
            printable += character;
        }
    }
    return printable;
}

} // namespace

void _Q_Trace(const QString& text, const QString& path, unsigned short line)
{
    // A copy: the sink may be replaced by what it calls.
    const TraceSink sink = Sink();
    if (sink) {
        sink(text, path, line);
        return;
    }
    std::fprintf(stderr, "%s\n", FormatTraceLine(text, path, line).toUtf8().constData());
    std::fflush(stderr);
}

void SetTraceSink(const TraceSink& sink)
{
    Sink() = sink;
}

QString FormatTraceLine(const QString& text, const QString& path, unsigned short line)
{
    return Printable(path) + QLatin1Char(':') + QString::number(line) + QLatin1String(": ") +
           Printable(text);
}
