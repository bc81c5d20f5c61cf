// Everything that the program writes: pictures, texts, exports, messages. Texts are UTF-8 with line
// feeds on every platform.
#include "hostoutput.h"

#include "channelpanels.h"
#include "channeltext.h"
#include "decodedtextcompat.h"
#include "decodedtextview.h"
#include "options.h"
#include "sorvinresultdata.h"
#include "sorvinresultdataexception.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QPixmap>

#include <cstdio>

namespace {

QString WriteBytes(QFile& file, bool isOpen, const QString& name, const QByteArray& bytes)
{
    return isOpen && DecodedTextCompat::WriteAll(file, bytes) && file.flush()
               ? QString()
               : name + QLatin1String(": ") + file.errorString();
}

QString PrintBytes(const QByteArray& bytes)
{
    DecodedTextCompat::MakeStandardOutputBinary();
    QFile file;
    const bool isOpen = file.open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
    return WriteBytes(file, isOpen, QCoreApplication::translate("HostOutput", "standard output"),
                      bytes);
}

bool IsStandardOutput(const QString& name)
{
    return name == QLatin1String("-") || name == QLatin1String("/dev/stdout");
}

/// Whether \a name stands for a stream that is open already. It may lead to a file, and emptying
/// or replacing that would lose what else goes there.
bool IsOpenStream(const QString& name)
{
    return name.startsWith(QLatin1String("/dev/std")) || name.startsWith(QLatin1String("/dev/fd/"));
}

QString WriteInPlace(const QString& name, const QByteArray& bytes, QIODevice::OpenMode mode)
{
    QFile file(name);
    const bool isOpen = file.open(mode | QIODevice::Unbuffered);
    return WriteBytes(file, isOpen, name, bytes);
}

QString WriteFile(const QString& name, const QByteArray& bytes)
{
    if (IsStandardOutput(name)) {
        return PrintBytes(bytes);
    }
    if (IsOpenStream(name)) {
        return WriteInPlace(name, bytes, QIODevice::Append);
    }
    // A device or pipe can't be replaced, nor what a link names that leads nowhere yet.
    const QFileInfo present(name);
    const bool isSpecial = present.exists() && !present.isFile() && !present.isDir();
    if (isSpecial || (present.isSymLink() && !present.exists())) {
        return WriteInPlace(name, bytes, QIODevice::WriteOnly);
    }
    const QString error = DecodedTextCompat::ReplaceFile(name, bytes);
    return error.isEmpty() ? QString() : name + QLatin1String(": ") + error;
}

} // namespace

QString WritePicture(const QString& file, QWidget* window)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!DecodedTextCompat::GrabWidget(window).save(&buffer, "PNG")) {
        return file + QLatin1String(": ") +
               QCoreApplication::translate("HostOutput", "the picture cannot be made");
    }
    return WriteFile(file, bytes);
}

QString WriteText(const QString& file, const ChannelPanels& panels)
{
    return WriteFile(file, TextOfChannels(panels).toUtf8());
}

QString WriteExport(const QString& file, DecodedTextView* view, const ChannelPanels& panels)
{
    // GetData takes text that was typed a moment ago for handed over, even if writing fails then.
    view->ApplyUserChannel(false);
    SorvinResultDataXml::SorvinResultData data;
    const QList<int> channels = panels.GetChannels();
    for (int channel : channels) {
        view->GetData(channel, data, false);
    }
    try {
        return WriteFile(file, data.GetXmlString().toUtf8() + '\n');
    } catch (const SorvinResultDataXml::SorvinResultDataException& exception) {
        return file + QLatin1String(": ") + exception.message;
    }
}

WrittenOutputs WriteWhatIsAskedFor(HostOptions options, QWidget* window, DecodedTextView* view,
                                   const ChannelPanels& panels, bool isLast)
{
    for (QString* file : {&options.screenshotFile, &options.textFile, &options.exportFile}) {
        if (!isLast && IsStandardOutput(*file)) {
            file->clear();
        }
    }
    WrittenOutputs written;
    if (!options.screenshotFile.isEmpty()) {
        written.errors.append(WritePicture(options.screenshotFile, window));
    }
    if (!options.textFile.isEmpty()) {
        written.errors.append(WriteText(options.textFile, panels));
    }
    if (!options.exportFile.isEmpty()) {
        written.errors.append(WriteExport(options.exportFile, view, panels));
        written.isExported = written.errors.last().isEmpty();
    }
    written.errors.removeAll(QString());
    return written;
}

void PrintError(const QString& message)
{
    std::fprintf(stderr, "decodedtexthost: %s\n", message.toLocal8Bit().constData());
    std::fflush(stderr);
}

QString PrintText(const QString& text)
{
    return PrintBytes(text.toUtf8());
}
