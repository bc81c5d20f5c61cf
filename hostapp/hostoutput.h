#ifndef HOSTOUTPUT_H
#define HOSTOUTPUT_H

#include <QString>
#include <QStringList>

class ChannelPanels;
class DecodedTextView;
class QWidget;
struct HostOptions;

/// Write what a view shows. Each returns an empty text, or the message for people when \a file
/// can't be written; "-" as the text's file is standard output. An older file stays as it was
/// unless the new content could be written.
QString WritePicture(const QString& file, QWidget* window);
QString WriteText(const QString& file, const ChannelPanels& panels);
/// Every channel through the view's GetData, which marks it all as exported.
QString WriteExport(const QString& file, DecodedTextView* view, const ChannelPanels& panels);
/// All of these for which \a options name a file, one after the other; returns the messages of
/// those that failed.
QStringList WriteWhatIsAskedFor(const HostOptions& options, QWidget* window, DecodedTextView* view,
                                const ChannelPanels& panels);

/// Prints a message of the program on standard error, with the program's name in front.
void PrintError(const QString& message);
/// Prints \a text on standard output in UTF-8.
void PrintText(const QString& text);

#endif
