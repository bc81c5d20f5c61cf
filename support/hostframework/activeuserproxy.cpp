// The active user: the login name, taken from the environment of the session, or where there is
// none (a service, a bare container) from the owner of the process or of the home folder. The
// bundled proxy is never deleted.
#include "vrtbase/activeuserproxy.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>

namespace VRT {

namespace {

ActiveUserProxy* substitute = nullptr; // borrowed

QString OwnerOfProcess()
{
    const QString owner = QFileInfo(QLatin1String("/proc/self")).owner();
    return owner.isEmpty() ? QFileInfo(QDir::homePath()).owner() : owner;
}

} // namespace

ActiveUserProxy::~ActiveUserProxy() {}

QString ActiveUserProxy::GetActiveUserName()
{
    const char* const variables[] = {"USER", "LOGNAME", "USERNAME"};
    for (const char* const variable : variables) {
        const QString name = QString::fromLocal8Bit(qgetenv(variable).trimmed());
        if (!name.isEmpty()) {
            return name;
        }
    }
    // Asked for with every channel label, and costly to find out; a process keeps its owner.
    static const QString owner = OwnerOfProcess();
    return owner;
}

ActiveUserProxy& ActiveUserProxy::instance()
{
    static ActiveUserProxy* const bundled = new ActiveUserProxy;
    return substitute ? *substitute : *bundled;
}

void ActiveUserProxy::SetInstance(ActiveUserProxy* proxy)
{
    substitute = proxy;
}

} // namespace VRT
