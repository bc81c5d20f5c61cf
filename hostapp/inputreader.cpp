// Reads inputs in its own thread: bytes -> pieces (DocumentSplitter) -> checked transmissions ->
// queue. Whatever goes wrong becomes a message in the queue, in its place among the transmissions;
// reading goes on behind it, and with the next input. Only the queue and the flag to stop are
// shared with other threads once the thread runs.
#include "inputreader.h"

#include "replaysteps.h"
#include "transmission.h"

#include <QFileInfo>

#include <iostream>

using namespace SorvinResultDataXml;

namespace {

const int kChunkBytes = 64 * 1024;
const int kMaxErrors = 10; // messages for one input; the rest would say the same
const unsigned long kStopWaitMs = 300;

const char kStandardInput[] = "-";

} // namespace

InputReader::InputReader(const QStringList& inputNames, bool cutIntoSteps, QObject* parent)
    : QThread(parent)
    , inputs(inputNames)
    , inSteps(cutIntoSteps)
    , isLive(false)
    , totalBytes(0)
    , inputBegin(0)
    , readBytes(0)
    , errorCount(0)
    , stopped(0)
{
    for (const QString& input : inputs) {
        const QFileInfo file(input);
        const bool isStandardInput = input == QLatin1String(kStandardInput);
        isLive = isLive || isStandardInput || (file.exists() && !file.isFile() && !file.isDir());
        totalBytes += isStandardInput ? 0 : file.size();
    }
}

InputReader::~InputReader() {}

void InputReader::Dismiss(InputReader* reader)
{
    reader->disconnect();
    reader->stopped.fetchAndStoreOrdered(1);
    reader->queue.Close();
    if (reader->wait(kStopWaitMs)) {
        delete reader;
    } else {
        reader->setParent(nullptr);
    }
}

void InputReader::run()
{
    for (int source = 0; source < inputs.size() && !IsStopped(); ++source) {
        splitter = DocumentSplitter();
        errorCount = 0;
        inputBegin = readBytes;
        if (inputs.at(source) == QLatin1String(kStandardInput)) {
            ReadStandardInput(source);
        } else {
            ReadFile(source);
        }
    }
    queue.Finish();
    Q_EMIT Arrived();
}

void InputReader::ReadStandardInput(int source)
{
    // The stream's own buffer gives what has arrived without waiting for more; stdio would wait for
    // a full portion.
    std::ios::sync_with_stdio(false);
    std::streambuf* const buffer = std::cin.rdbuf();
    QByteArray chunk(kChunkBytes, '\0');
    while (!IsStopped() && buffer->sgetc() != std::char_traits<char>::eof()) {
        const std::streamsize arrived = qBound(std::streamsize(1), buffer->in_avail(),
                                               static_cast<std::streamsize>(kChunkBytes));
        Take(chunk.constData(), static_cast<int>(buffer->sgetn(chunk.data(), arrived)), source);
    }
    Take(nullptr, 0, source);
}

void InputReader::ReadFile(int source)
{
    QFile file(inputs.at(source));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        Report(source, 0, file.errorString());
        return;
    }
    // Reading a pipe waits until all that was asked for has come, so that live text must be asked
    // for byte by byte.
    const bool isPipe = file.isSequential();
    QByteArray chunk(isPipe ? 1 : kChunkBytes, '\0');
    qint64 size = 0;
    while (!IsStopped() && (size = file.read(chunk.data(), chunk.size())) > 0) {
        Take(chunk.constData(), static_cast<int>(size), source);
    }
    if (size < 0) {
        Report(source, 0, file.errorString());
    }
    Take(nullptr, 0, source);
    if (!isPipe && !splitter.HasFoundAny() && errorCount == 0) {
        Report(source, 1, tr("no result data"));
    }
}

/// Takes the next bytes of an input; none at all are its end.
void InputReader::Take(const char* data, int size, int source)
{
    if (size > 0) {
        splitter.Add(data, size);
    } else {
        splitter.Finish();
    }
    const QList<DocumentSplitter::Piece> pieces = splitter.TakePieces();
    for (const DocumentSplitter::Piece& piece : pieces) {
        readBytes = inputBegin + piece.end;
        if (piece.error.isEmpty()) {
            TakePiece(piece, source);
        } else {
            Report(source, piece.line, piece.error);
        }
    }
}

void InputReader::TakePiece(const DocumentSplitter::Piece& piece, int source)
{
    ReplayItem item;
    item.source = source;
    item.xml = QString::fromUtf8(piece.xml.constData(), static_cast<int>(piece.xml.size()));
    Transmission transmission;
    if (!transmission.SetXmlString(item.xml)) {
        Report(source, piece.line + qMax(0, transmission.GetErrorLine() - 1),
               transmission.GetErrorText());
        // Without data blocks it would end the running transmissions, which nobody asked for.
        if (transmission.GetDataBlock().isEmpty()) {
            return;
        }
    }
    QList<ReplayItem> items;
    if (inSteps) {
        items = StepsOf(transmission);
    }
    if (items.isEmpty()) {
        item.time = TimeOf(transmission);
        item.channels = ChannelsOf(transmission);
        item.endsTransmission = item.channels.isEmpty();
        items.append(item);
    }
    for (ReplayItem& step : items) {
        step.source = source;
        Push(step);
    }
}

/// \a line 0: the input as a whole.
void InputReader::Report(int source, int line, const QString& text)
{
    if (++errorCount > kMaxErrors) {
        return;
    }
    const QString& input = inputs.at(source);
    ReplayItem item;
    item.source = source;
    item.error = input == QLatin1String(kStandardInput) ? tr("standard input") : input;
    if (line > 0) {
        item.error += QLatin1Char(':') + QString::number(line);
    }
    item.error += QLatin1String(": ") + text;
    if (errorCount == kMaxErrors) {
        item.error += QLatin1Char(' ') + tr("(further errors of this input are not shown)");
    }
    Push(item);
}

void InputReader::Push(const ReplayItem& item)
{
    ReplayItem placed = item;
    placed.place = readBytes;
    bool wasEmpty = false;
    if (queue.Push(placed, wasEmpty) && wasEmpty) {
        Q_EMIT Arrived();
    }
}
