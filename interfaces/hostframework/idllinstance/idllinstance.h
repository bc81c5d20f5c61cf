#ifndef IDLLINSTANCE_H
#define IDLLINSTANCE_H

#include "idllinstance/idllinstanceglobal.h"

#include <QString>

/// What a plug-in library gives the host framework: one instance, made and deleted by the library's
/// factory functions. The order of the virtual operations is part of the interface; the name is the
/// only data.
class IDLLINSTANCE_EXPORT IDllInstance
{
public:
    /// \a name: the instance's name as the host gave it.
    explicit IDllInstance(const QString& name);
    virtual ~IDllInstance();

    /// Begins the instance's work; false when it cannot. The base has nothing to do and returns
    /// true.
    virtual bool Start();

    /// The host brings the instance to the front. Nothing to do in the base.
    virtual void Activate();

    /// The host is about to delete the instance. Nothing to do in the base.
    virtual void Stop();

    QString GetInstanceName() const;

private:
    IDllInstance(const IDllInstance&) = delete;
    IDllInstance& operator=(const IDllInstance&) = delete;

    QString name;
};

#endif
