// The bundled configuration: one INI file per user, read and written through QSettings, which
// shares what it holds between the groups of one file and merges with what other processes wrote.
// Also the list of save components. The bundled objects are never deleted, so that components which
// save while the process ends still find them.
#include "orvelappstartup/cfgcenter.h"

#include "orvelappstartup/icfggroup.h"
#include "orvelappstartup/savecomponentif.h"

#include <QFile>
#include <QSettings>
#include <QStringList>
#include <QVariant>

namespace {

class IniGroup final : public ICfgGroup
{
public:
    IniGroup(const QString& path, const QString& name)
        : settings(path, QSettings::IniFormat)
    {
        settings.beginGroup(name);
    }

    ~IniGroup() override
    {
        if (!written) {
            return;
        }
        settings.sync();
        if (settings.status() != QSettings::NoError) {
            qWarning("The configuration file %s cannot be written",
                     qPrintable(settings.fileName()));
        }
    }

    int ReadInt(const QString& key, int defaultValue, int /*reserved*/) override
    {
        bool isNumber = false;
        const int value = settings.value(key).toString().toInt(&isNumber);
        return isNumber ? value : defaultValue;
    }

    QString ReadString(const QString& key, const QString& defaultValue, int /*reserved*/) override
    {
        if (!settings.contains(key)) {
            return defaultValue;
        }
        // A text with commas that was written by hand, without quotes, is read as a list.
        return settings.value(key).toStringList().join(QLatin1String(", "));
    }

    void WriteInt(const QString& key, int value, int /*reserved*/) override
    {
        settings.setValue(key, value);
        written = true;
    }

    void WriteString(const QString& key, const QString& value, int /*reserved*/) override
    {
        settings.setValue(key, value);
        written = true;
    }

private:
    QSettings settings;
    bool written = false;
};

class IniConfiguration final : public ICfg
{
public:
    ICfgGroup* GetGroup(const QString& name, int /*reserved*/) override
    {
        return name.isEmpty() ? nullptr : new IniGroup(CfgCenter::GetConfigFile(), name);
    }
};

struct CfgState
{
    IniConfiguration bundled;
    ICfg* configuration = &bundled;
    QString file;
    QList<SaveComponentIf*> components;
};

CfgState& State()
{
    static CfgState* const state = new CfgState;
    return *state;
}

} // namespace

ICfg& CfgCenter::GetAppCfg(ICfg::View /*view*/)
{
    return *State().configuration;
}

void CfgCenter::RegisterSaveComponent(SaveComponentIf* component)
{
    if (component && !State().components.contains(component)) {
        State().components.append(component);
    }
}

void CfgCenter::UnregisterSaveComponent(SaveComponentIf* component)
{
    State().components.removeAll(component);
}

void CfgCenter::SetAppCfg(ICfg* configuration)
{
    State().configuration = configuration ? configuration : &State().bundled;
}

QList<SaveComponentIf*> CfgCenter::GetSaveComponents()
{
    return State().components;
}

void CfgCenter::SetConfigFile(const QString& path)
{
    State().file = path;
}

QString CfgCenter::GetConfigFile()
{
    if (!State().file.isEmpty()) {
        return State().file;
    }
    const QString named = QFile::decodeName(qgetenv("HX_CONFIG_FILE"));
    if (!named.isEmpty()) {
        return named;
    }
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QLatin1String("DecodedTextView"),
                     QLatin1String("DecodedTextView"))
        .fileName();
}
