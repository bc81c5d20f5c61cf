#ifndef ICFG_H
#define ICFG_H

#include "orvelappstartup/orvelappstartupglobal.h"

#include <QString>

class ICfgGroup;

/// A configuration: settings in named groups.
class ORVELAPPSTARTUP_EXPORT ICfg
{
public:
    /// Whose settings are meant.
    enum View { MachineView = 0, UserView = 1 };

    virtual ~ICfg() {}

    /// The group \a name, on the heap and the caller's to delete; null when there is none. \a
    /// reserved is 0.
    virtual ICfgGroup* GetGroup(const QString& name, int reserved) = 0;
};

#endif
