#ifndef COLORDEFINITION_H
#define COLORDEFINITION_H

#include "guibase/guibaseglobal.h"

#include <QString>

/// A colour that the operator can choose, known by its name. A value.
class GUIBASE_EXPORT ColorDefinition
{
public:
    ColorDefinition();
    explicit ColorDefinition(const QString& name);

    /// A name that style sheets and QColor understand, such as "Black".
    QString GetName() const;

private:
    QString name;
};

#endif
