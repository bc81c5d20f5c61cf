#ifndef COLORS_H
#define COLORS_H

#include "guibase/guibaseglobal.h"

class ColorDefinitionSet;

/// The application's colours. Usable at any time of the process.
class GUIBASE_EXPORT Colors
{
public:
    static Colors& Instance();

    /// The colours on offer; never null, owned by the library. The bundled set holds "Black" and
    /// "White" first, then the light colours and the dark ones: every light one stays readable on
    /// every dark one and the other way round.
    ColorDefinitionSet* GetColors();
};

#endif
