#ifndef OPTIONS_H
#define OPTIONS_H

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>

/// What the command line asks for. A value.
struct HostOptions
{
    Q_DECLARE_TR_FUNCTIONS(HostOptions)

public:
    /// What to do instead of the program's work, if anything.
    enum Action { Run, ShowText, Refuse };

    HostOptions()
        : action(Run)
        , standardInput(false)
        , speed(0)
        , merge(false)
        , quitAtEnd(false)
        , utc(false)
        , demo(false)
    {
    }

    /// Reads \a arguments, the first of which is the program's name. Needs an application object.
    /// Never fails: what can't be understood gives the action Refuse.
    static HostOptions Parse(const QStringList& arguments);

    Action action;
    QString message;          ///< for ShowText (standard output) and Refuse (standard error)
    QStringList inputs;       ///< files in their order, without standard input
    bool standardInput;       ///< "-" was among the inputs
    QMap<int, QString> names; ///< by channel
    QString screenshotFile;   ///< empty: none, as with the next two
    QString textFile;
    QString exportFile;
    double speed; ///< times faster than recorded; 0: at once
    bool merge;
    bool quitAtEnd;
    bool utc;
    bool demo;
};

#endif
