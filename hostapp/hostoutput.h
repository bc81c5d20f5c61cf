#ifndef HOSTOUTPUT_H
#define HOSTOUTPUT_H

#include <QString>
#include <QStringList>

class ChannelPanels;
class DecodedTextView;
class QWidget;
struct HostOptions;

/// Write what a view shows. Each returns an empty text, or the message for people when \a file
/// can't be written; "-" is standard output. An older file keeps its permissions, and stays as it
/// was unless the new content could be written: that goes to another file in the same folder first,
/// under a name that no file has. What can't be treated so is written in place: devices, pipes, and
/// files in folders that take no new file. A link stays; the file that it leads to is written.
QString WritePicture(const QString& file, QWidget* window);
QString WriteText(const QString& file, const ChannelPanels& panels);
/// Every channel through the view's GetData, which marks it all as exported.
QString WriteExport(const QString& file, DecodedTextView* view, const ChannelPanels& panels);

struct WrittenOutputs
{
    QStringList errors;      ///< messages for people, of the outputs that failed
    bool isExported = false; ///< an export was asked for and written
};

/// All of these for which \a options name a file, one after the other. Standard output, where
/// nothing can be replaced later, waits until \a isLast.
WrittenOutputs WriteWhatIsAskedFor(HostOptions options, QWidget* window, DecodedTextView* view,
                                   const ChannelPanels& panels, bool isLast);

/// Prints a message of the program on standard error, with the program's name in front.
void PrintError(const QString& message);
/// Prints \a text on standard output in UTF-8. Returns an empty text, or what went wrong.
QString PrintText(const QString& text);

#endif
