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

QString Describe(const QFile& file, const QString& name)
{
    return name + QLatin1String(": ") + file.errorString();
}

bool WriteBytes(QFile& file, const QByteArray& bytes)
{
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size() && file.flush();
}

QString WriteFile(const QString& name, const QByteArray& bytes)
{
    const QFileInfo present(name);
    QFile target(name);
    // A device, a pipe or a link stays what it is.
    if (present.isSymLink() || (present.exists() && !present.isFile())) {
        return WriteBytes(target, bytes) ? QString() : Describe(target, name);
    }
    // Under another name first: a full disk must not cost the file that was there before.
    QFile part(name + QLatin1String(".part"));
    if (!WriteBytes(part, bytes)) {
        const QString error = Describe(part, name);
        part.remove();
        return error;
    }
    part.close();
    target.remove();
    return part.rename(name) ? QString() : Describe(part, name);
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
    const QString text = TextOfChannels(panels);
    if (file == QLatin1String("-")) {
        PrintText(text);
        return QString();
    }
    return WriteFile(file, text.toUtf8());
}

QString WriteExport(const QString& file, DecodedTextView* view, const ChannelPanels& panels)
{
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

QStringList WriteWhatIsAskedFor(const HostOptions& options, QWidget* window, DecodedTextView* view,
                                const ChannelPanels& panels)
{
    QStringList errors;
    if (!options.screenshotFile.isEmpty()) {
        errors.append(WritePicture(options.screenshotFile, window));
    }
    if (!options.textFile.isEmpty()) {
        errors.append(WriteText(options.textFile, panels));
    }
    if (!options.exportFile.isEmpty()) {
        errors.append(WriteExport(options.exportFile, view, panels));
    }
    errors.removeAll(QString());
    return errors;
}

void PrintError(const QString& message)
{
    std::fprintf(stderr, "decodedtexthost: %s\n", message.toLocal8Bit().constData());
    std::fflush(stderr);
}

void PrintText(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}
