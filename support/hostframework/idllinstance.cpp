// The base of plug-in instances: the name, and operations that have nothing to do until a plug-in
// overrides them.
#include "idllinstance/idllinstance.h"

IDllInstance::IDllInstance(const QString& instanceName)
    : name(instanceName)
{
}

IDllInstance::~IDllInstance() {}

bool IDllInstance::Start()
{
    return true;
}

void IDllInstance::Activate() {}

void IDllInstance::Stop() {}

QString IDllInstance::GetInstanceName() const
{
    return name;
}
