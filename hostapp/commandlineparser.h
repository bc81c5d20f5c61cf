#ifndef COMMANDLINEPARSER_H
#define COMMANDLINEPARSER_H

#include <QMap>
#include <QString>
#include <QStringList>

/// Stands in for Qt's class of this name where Qt has none yet: the part of its interface that this
/// program uses, with the same behaviour. A value.
class QCommandLineOption
{
public:
    QCommandLineOption(const QString& optionName, const QString& text,
                       const QString& value = QString())
        : name(optionName)
        , description(text)
        , valueName(value)
    {
    }
    QString name;
    QString description;
    QString valueName; ///< empty: the option takes no value
};

/// Stands in for Qt's class of this name: long options ("--name", "--name=value", "--name value"),
/// arguments, "--".
class QCommandLineParser
{
public:
    void setApplicationDescription(const QString& text) { description = text; }
    bool addOption(const QCommandLineOption& option)
    {
        options.append(option);
        return true;
    }
    void addPositionalArgument(const QString& name, const QString& text, const QString& syntax)
    {
        Q_UNUSED(name);
        argumentHelp = text;
        argumentSyntax = syntax;
    }

    /// \a arguments begins with the program's name. False when an option is unknown or misses its
    /// value.
    bool parse(const QStringList& arguments)
    {
        bool onlyArguments = false;
        for (int i = 1; i < arguments.size(); ++i) {
            const QString& argument = arguments.at(i);
            if (onlyArguments || argument.size() < 2 || !argument.startsWith(QLatin1Char('-'))) {
                positional.append(argument);
            } else if (argument == QLatin1String("--")) {
                onlyArguments = true;
            } else if (!ParseOption(arguments, i)) {
                return false;
            }
        }
        return true;
    }

    QString errorText() const { return error; }
    bool isSet(const QString& name) const { return given.contains(name); }
    QString value(const QString& name) const
    {
        const QStringList all = given.value(name);
        return all.isEmpty() ? QString() : all.last();
    }
    QStringList values(const QString& name) const { return given.value(name); }
    QStringList positionalArguments() const { return positional; }

    QString helpText() const
    {
        QString text = QString::fromLatin1("Usage: decodedtexthost [options] %1\n%2\n\nOptions:\n")
                           .arg(argumentSyntax, description);
        for (const QCommandLineOption& option : options) {
            QString left = QLatin1String("  --") + option.name;
            if (!option.valueName.isEmpty()) {
                left += QString::fromLatin1(" <%1>").arg(option.valueName);
            }
            text += left.leftJustified(kHelpColumn) + option.description + QLatin1Char('\n');
        }
        return text +
               QString::fromLatin1("\nArguments:\n  %1  %2\n").arg(argumentSyntax, argumentHelp);
    }

private:
    static const int kHelpColumn = 28;

    bool ParseOption(const QStringList& arguments, int& i)
    {
        const QString whole =
            arguments.at(i).mid(arguments.at(i).startsWith(QLatin1String("--")) ? 2 : 1);
        const QString name = whole.section(QLatin1Char('='), 0, 0);
        for (const QCommandLineOption& option : options) {
            if (option.name != name) {
                continue;
            }
            const bool hasValue = whole.size() > name.size();
            const bool wantsValue = !option.valueName.isEmpty();
            if (hasValue ? !wantsValue : (wantsValue && i + 1 >= arguments.size())) {
                error = (hasValue ? QString::fromLatin1("Unexpected value after '%1'.")
                                  : QString::fromLatin1("Missing value after '%1'."))
                            .arg(arguments.at(i));
                return false;
            }
            QStringList& values = given[name];
            if (hasValue) {
                values.append(whole.mid(name.size() + 1));
            } else if (wantsValue) {
                values.append(arguments.at(++i));
            }
            return true;
        }
        error = QString::fromLatin1("Unknown option '%1'.").arg(name);
        return false;
    }

    QString description;
    QString argumentHelp;
    QString argumentSyntax;
    QString error;
    QList<QCommandLineOption> options;
    QMap<QString, QStringList> given;
    QStringList positional;
};

#endif
