#ifndef CFGCENTER_H
#define CFGCENTER_H

#include "orvelappstartup/icfg.h"
#include "orvelappstartup/orvelappstartupglobal.h"

#include <QList>
#include <QString>

class SaveComponentIf;

/// The application's configuration and the components that keep settings in it. Usable at any time
/// of the process.
class ORVELAPPSTARTUP_EXPORT CfgCenter
{
public:
    /// The configuration in use. The bundled one is an INI file of the user, whatever the \a view;
    /// it has every group that is asked for except one without a name, and touches the file only
    /// when something is written.
    static ICfg& GetAppCfg(ICfg::View view);

    /// Adds \a component, borrowed until it is unregistered. Null or a second registration changes
    /// nothing.
    static void RegisterSaveComponent(SaveComponentIf* component);

    /// Removes \a component; one that is not registered is ignored.
    static void UnregisterSaveComponent(SaveComponentIf* component);

    /// Puts \a configuration in place of the bundled one. Borrowed until the next call; null brings
    /// the bundled one back.
    static void SetAppCfg(ICfg* configuration);

    /// The registered components in the order of their registration, for a host that wants them
    /// saved or loaded.
    static QList<SaveComponentIf*> GetSaveComponents();

    /// The bundled configuration keeps groups asked for from now on in the file \a path. An empty
    /// path means the default: the file that the environment variable HX_CONFIG_FILE names, else
    /// one in the user's settings folder.
    static void SetConfigFile(const QString& path);

    static QString GetConfigFile();
};

#endif
