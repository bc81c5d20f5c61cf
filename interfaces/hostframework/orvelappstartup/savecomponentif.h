#ifndef SAVECOMPONENTIF_H
#define SAVECOMPONENTIF_H

#include "orvelappstartup/orvelappstartupglobal.h"

/// A component with settings of its own. The host may call the operations at any time between
/// registration and unregistration with CfgCenter. Exactly three virtual operations in this order;
/// nobody deletes through it.
class ORVELAPPSTARTUP_EXPORT SaveComponentIf
{
public:
    /// Writes the settings that changed since they were last saved.
    virtual void Save() = 0;

    /// Reads the settings again.
    virtual void Load() = 0;

    /// The operator confirmed; what was saved so far is final.
    virtual void CommitData() = 0;

protected:
    ~SaveComponentIf() {}
};

#endif
