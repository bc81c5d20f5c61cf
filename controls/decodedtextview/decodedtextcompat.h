// What differs between the versions of Qt and between platforms: one small function or alias per
// difference, each with the oldest and the newest Qt it serves. No other source has conditions on
// either. What only some layers may include (widgets) stays out of reach of the layers below it:
// the functions for widgets exist where QtGui's classes are known.
#ifndef DECODEDTEXTCOMPAT_H
#define DECODEDTEXTCOMPAT_H

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QString>
#if QT_VERSION >= 0x050100
#include <QSaveFile>
#else
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>
#endif

#ifdef QT_GUI_LIB
#include <QFontMetrics>
#include <QTextLayout>
#include <QVector>
#endif

#if defined(QT_WIDGETS_LIB) || (QT_VERSION < 0x050000 && defined(QT_GUI_LIB))
#include <QDrag>
#include <QDropEvent>
#if QT_VERSION < 0x050000
#include <QPlastiqueStyle>
#else
#include <QStyleFactory>
#endif
#include <QPixmap>
#include <QWidget>
#endif

// Qt 5.2 to 6 bring a parser for command lines; with 4.8 the program that wants one brings a header
// with the same calls.
#if QT_VERSION >= 0x050200
#define DECODEDTEXT_COMMANDLINE_HEADER <QCommandLineParser>
#else
#define DECODEDTEXT_COMMANDLINE_HEADER "commandlineparser.h"
#endif

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
// What windows.h declares, without the macros that come with it.
struct HINSTANCE__;
extern "C" __declspec(dllimport) void __stdcall OutputDebugStringW(const wchar_t* text);
#endif

namespace DecodedTextCompat {

/// Runs \a function whenever an application object is made, and at once if there is one. Qt 5.1 to
/// 6 know such a hook; with 4.8 nothing happens until somebody calls \a function himself.
inline void RunAtApplicationStart(void (*function)())
{
#if QT_VERSION >= 0x050100
    qAddPreRoutine(function);
#else
    if (QCoreApplication::instance()) {
        function();
    }
#endif
}

/// The folder with the translations of Qt's own texts. Qt 4.8 and 5 ask for it by another name than
/// Qt 6.
inline QString QtTranslationFolder()
{
#if QT_VERSION >= 0x060000
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#endif
}

/// Their name: one file in Qt 4.8, one for each module in Qt 5 and 6.
inline QString QtTranslationName()
{
#if QT_VERSION >= 0x050000
    return QLatin1String("qtbase");
#else
    return QLatin1String("qt");
#endif
}

/// Writes all of \a bytes. A disk that becomes full takes a part first; only the next attempt says
/// what is wrong, and only if \a device is not buffered.
inline bool WriteAll(QIODevice& device, const QByteArray& bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 size = device.write(bytes.constData() + done, bytes.size() - done);
        if (size <= 0) {
            return false;
        }
        done += size;
    }
    return true;
}

/// Lets standard output take bytes as they are. Windows would write each line feed as two.
inline void MakeStandardOutputBinary()
{
#ifdef Q_OS_WIN
    _setmode(1, _O_BINARY);
#endif
}

/// Makes \a bytes the content of the file \a name. Returns an empty text, or what went wrong: then
/// an older file is as it was. Its permissions stay, and a link to it; where its folder takes no
/// new file, it is written in place. Qt 5.1 to 6 have a class for that; with 4.8 a file beside it
/// is renamed.
inline QString ReplaceFile(QString name, const QByteArray& bytes)
{
#if QT_VERSION >= 0x050100
    QSaveFile file(name);
    file.setDirectWriteFallback(true);
    const bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                           WriteAll(file, bytes) && file.commit();
    return isWritten ? QString() : file.errorString();
#else
    const QFileInfo present(name);
    name = present.isSymLink() ? present.canonicalFilePath() : name;
    QTemporaryFile beside(name + QLatin1String(".XXXXXX"));
    if ((present.exists() && !(present.isFile() && present.isWritable())) || !beside.open()) {
        QFile file(name);
        const bool isWritten =
            file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && WriteAll(file, bytes);
        return isWritten ? QString() : file.errorString();
    }
    beside.setPermissions(present.exists() ? present.permissions()
                                           : QFile::ReadOwner | QFile::WriteOwner |
                                                 QFile::ReadGroup | QFile::ReadOther);
    if (!WriteAll(beside, bytes) || !beside.flush()) {
        return beside.errorString();
    }
    beside.close();
    // Where renaming does not replace, there is a moment without a file.
    if (std::rename(QFile::encodeName(beside.fileName()).constData(),
                    QFile::encodeName(name).constData()) != 0 &&
        !(QFile::remove(name) && beside.rename(name))) {
        return beside.errorString();
    }
    beside.setAutoRemove(false);
    return QString();
#endif
}

/// Lets windows follow the density of their screens, icons by pictures of twice the size; to be
/// called before the application object is made. Qt 4.8 knows neither, Qt 5 must be asked (since
/// 5.1 for pictures, 5.6 for sizes), Qt 6 does it anyway.
inline void FollowScreenDensity()
{
#if QT_VERSION >= 0x050100 && QT_VERSION < 0x060000
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
#if QT_VERSION >= 0x050600 && QT_VERSION < 0x060000
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
#endif
}

/// Writes \a line, which ends with a line feed, to the debugger's output on Windows. Elsewhere,
/// where there is none, to Qt's debug log, which ends the line itself.
inline void WriteDebugLine(const QString& line)
{
#ifdef Q_OS_WIN
    OutputDebugStringW(reinterpret_cast<const wchar_t*>(line.utf16()));
#else
    const QString shown = line.endsWith(QLatin1Char('\n')) ? line.left(line.size() - 1) : line;
    qDebug("%s", shown.toUtf8().constData());
#endif
}

/// Whether there is a screen to open windows on. On desktops of the X11 and Wayland kind the
/// environment says so; Windows and macOS always have one.
inline bool HasDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MAC)
    return !qgetenv("DISPLAY").isEmpty() || !qgetenv("WAYLAND_DISPLAY").isEmpty();
#else
    return true;
#endif
}

#ifdef QT_GUI_LIB

/// Additional formats of a paragraph's layout: a QList under another name up to Qt 5.5, a QVector
/// since, which is QList in 6.
inline void SetFormats(QTextLayout& layout, const QVector<QTextLayout::FormatRange>& formats)
{
#if QT_VERSION >= 0x050600
    layout.setFormats(formats);
#else
    layout.setAdditionalFormats(formats.toList());
#endif
}

inline QVector<QTextLayout::FormatRange> GetFormats(const QTextLayout& layout)
{
#if QT_VERSION >= 0x050600
    return layout.formats();
#else
    return layout.additionalFormats().toVector();
#endif
}

inline bool AreSameFormats(const QVector<QTextLayout::FormatRange>& formats,
                           const QTextLayout& layout)
{
    const QVector<QTextLayout::FormatRange> present = GetFormats(layout);
    if (formats.size() != present.size()) {
        return false;
    }
    for (int i = 0; i < formats.size(); ++i) {
        if (formats.at(i).start != present.at(i).start ||
            formats.at(i).length != present.at(i).length ||
            formats.at(i).format != present.at(i).format) {
            return false;
        }
    }
    return true;
}

/// Width of \a text in pixels: `width` up to Qt 5.10, `horizontalAdvance` since, `width` gone in 6.
inline int TextWidth(const QFontMetrics& metrics, const QString& text)
{
#if QT_VERSION >= 0x050b00
    return metrics.horizontalAdvance(text);
#else
    return metrics.width(text);
#endif
}

#endif // QT_GUI_LIB

#if defined(QT_WIDGETS_LIB) || (QT_VERSION < 0x050000 && defined(QT_GUI_LIB))

/// What \a widget looks like: QPixmap's work with 4.8, the widget's own with 5 and 6.
inline QPixmap GrabWidget(QWidget* widget)
{
#if QT_VERSION < 0x050000
    return QPixmap::grabWidget(widget);
#else
    return widget->grab();
#endif
}

/// Where something is dropped, in the receiving widget's coordinates: `pos` up to Qt 5, `position`
/// since 6.
inline QPoint DropPosition(const QDropEvent& event)
{
#if QT_VERSION >= 0x060000
    return event.position().toPoint();
#else
    return event.pos();
#endif
}

/// Ends the drag that runs in this program, if any; its receiver gets a leave event. Qt before 5.7
/// can't.
inline void CancelDrag()
{
#if QT_VERSION >= 0x050700
    QDrag::cancel();
#endif
}

/// A plain, platform-independent style that the caller owns: plastique with 4.8, and with 5 where
/// its style plug-in is there; Fusion otherwise. Null when Qt was built without both.
inline QStyle* CreatePlainStyle()
{
#if QT_VERSION < 0x050000
    return new QPlastiqueStyle;
#else
#if QT_VERSION < 0x060000
    static const bool hasPlastique =
        QStyleFactory::keys().contains(QLatin1String("plastique"), Qt::CaseInsensitive);
    if (hasPlastique) {
        return QStyleFactory::create(QLatin1String("plastique"));
    }
#endif
    return QStyleFactory::create(QLatin1String("Fusion"));
#endif
}

#endif

} // namespace DecodedTextCompat

/// Defines the library's entry points, in one source of the library: \a attach runs when a process
/// loads it, \a detach when it is unloaded or the process ends. Both are functions without
/// arguments that don't throw. Windows knows one entry point for both (failure would undo the
/// loading, so it always reports success); elsewhere the loader runs marked functions.
#ifdef Q_OS_WIN
#define DECODEDTEXT_LIBRARY_HOOKS(attach, detach)                                                  \
    extern "C" int __stdcall DllMain(struct HINSTANCE__*, unsigned long reason, void*)             \
    {                                                                                              \
        if (reason == 1) {                                                                         \
            attach();                                                                              \
        } else if (reason == 0) {                                                                  \
            detach();                                                                              \
        }                                                                                          \
        return 1;                                                                                  \
    }
#else
#define DECODEDTEXT_LIBRARY_HOOKS(attach, detach)                                                  \
    __attribute__((constructor)) static void DecodedTextProcessAttach()                            \
    {                                                                                              \
        attach();                                                                                  \
    }                                                                                              \
    __attribute__((destructor)) static void DecodedTextProcessDetach()                             \
    {                                                                                              \
        detach();                                                                                  \
    }
#endif

#endif
