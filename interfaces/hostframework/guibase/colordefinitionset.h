#ifndef COLORDEFINITIONSET_H
#define COLORDEFINITIONSET_H

#include "guibase/colordefinition.h"
#include "guibase/guibaseglobal.h"

#include <vector>

/// The colours on offer, in the order in which they are shown.
class GUIBASE_EXPORT ColorDefinitionSet
{
public:
    /// The colours themselves; a host may change the list, and whoever fills a list of choices next
    /// sees the change.
    std::vector<ColorDefinition>& GetColorDefitions();

private:
    std::vector<ColorDefinition> definitions;
};

#endif
