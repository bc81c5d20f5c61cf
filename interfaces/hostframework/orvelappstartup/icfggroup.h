#ifndef ICFGGROUP_H
#define ICFGGROUP_H

#include "orvelappstartup/orvelappstartupglobal.h"

#include <QString>

/// One named group of settings, made by ICfg::GetGroup; whoever asked for it deletes it. What was
/// written is stored at the latest when the group is deleted. The last argument of every operation
/// is kept free and passed as 0.
class ORVELAPPSTARTUP_EXPORT ICfgGroup
{
public:
    virtual ~ICfgGroup() {}

    /// The number stored under \a key; \a defaultValue when the key is missing or holds no number.
    /// A stored 0 is a value.
    virtual int ReadInt(const QString& key, int defaultValue, int reserved) = 0;

    /// The text stored under \a key; \a defaultValue when the key is missing. A stored empty text
    /// is a value.
    virtual QString ReadString(const QString& key, const QString& defaultValue, int reserved) = 0;

    virtual void WriteInt(const QString& key, int value, int reserved) = 0;
    virtual void WriteString(const QString& key, const QString& value, int reserved) = 0;
};

#endif
