#ifndef ACTIVEUSERPROXY_H
#define ACTIVEUSERPROXY_H

#include "vrtbase/vrtbaseglobal.h"

#include <QString>

namespace VRT {

/// Tells who works at the application. The order of the virtual operations is part of the
/// interface.
class VRTBASE_EXPORT ActiveUserProxy
{
public:
    virtual ~ActiveUserProxy();

    /// The active user's name, empty when unknown. The bundled proxy gives the login name. May
    /// throw; callers catch it.
    virtual QString GetActiveUserName();

    static ActiveUserProxy& instance();

    /// Puts \a proxy in place of the bundled one. Borrowed until the next call; null brings the
    /// bundled one back.
    static void SetInstance(ActiveUserProxy* proxy);
};

} // namespace VRT

#endif
