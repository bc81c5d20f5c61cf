// The host's configuration, in its place for the object's lifetime: stored values, what was read
// ("key?default") and written ("key=value") in order, and the number of groups nobody deleted.
#ifndef RECORDINGCONFIG_H
#define RECORDINGCONFIG_H

#include "orvelappstartup/cfgcenter.h"
#include "orvelappstartup/icfggroup.h"

#include <QMap>
#include <QStringList>

#include <stdexcept>

class RecordingConfig final : public ICfg
{
public:
    RecordingConfig() { CfgCenter::SetAppCfg(this); }
    ~RecordingConfig() override { CfgCenter::SetAppCfg(nullptr); }
    ICfgGroup* GetGroup(const QString& name, int) override
    {
        return name == wanted ? new Group(this) : nullptr;
    }
    /// What was called since the last time, separated by blanks.
    QString Take()
    {
        const QString all = calls.join(QLatin1String(" "));
        calls.clear();
        return all;
    }
    QString wanted = QLatin1String("DecodedTextView"); ///< the only group there is
    QMap<QString, QString> values;
    QStringList calls;
    bool throws = false; ///< at every access to a value
    int openGroups = 0;

private:
    struct Group final : public ICfgGroup
    {
        explicit Group(RecordingConfig* ofConfig) { ++(config = ofConfig)->openGroups; }
        ~Group() override { --config->openGroups; }
        int ReadInt(const QString& key, int other, int) override
        {
            return ReadString(key, QString::number(other), 0).toInt();
        }
        QString ReadString(const QString& key, const QString& other, int) override
        {
            Note(key + QLatin1Char('?') + other);
            return config->values.value(key, other);
        }
        void WriteInt(const QString& key, int value, int) override
        {
            WriteString(key, QString::number(value), 0);
        }
        void WriteString(const QString& key, const QString& value, int) override
        {
            Note(key + QLatin1Char('=') + value);
        }
        void Note(const QString& call)
        {
            if (config->throws) {
                throw std::runtime_error("no access");
            }
            config->calls.append(call);
        }
        RecordingConfig* config;
    };
};

#endif
