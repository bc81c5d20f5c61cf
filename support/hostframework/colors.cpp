// The colours on offer: a fixed list. Names are those that style sheets and QColor know. The set is
// never deleted.
#include "guibase/colors.h"

#include "guibase/colordefinitionset.h"

namespace {

// "Black" and "White" are what settings start with. The light and the dark ones are apart enough in
// luminance (a contrast of 4.5 to 1 at least) for any text of one group to be read on any
// background of the other.
const char* const kNames[] = {
    "Black",         "White",

    "WhiteSmoke",    "Ivory",        "LightYellow", "Honeydew",     "AliceBlue", "Gainsboro",
    "Wheat",         "Khaki",        "PaleGreen",   "LightSkyBlue", "PeachPuff", "Thistle",

    "DarkSlateGray", "MidnightBlue", "Navy",        "Maroon",       "Indigo",
};

ColorDefinitionSet* MakeColors()
{
    ColorDefinitionSet* const colors = new ColorDefinitionSet;
    for (const char* const name : kNames) {
        colors->GetColorDefitions().push_back(ColorDefinition(QLatin1String(name)));
    }
    return colors;
}

} // namespace

ColorDefinition::ColorDefinition() {}

ColorDefinition::ColorDefinition(const QString& colorName)
    : name(colorName)
{
}

QString ColorDefinition::GetName() const
{
    return name;
}

std::vector<ColorDefinition>& ColorDefinitionSet::GetColorDefitions()
{
    return definitions;
}

Colors& Colors::Instance()
{
    static Colors* const instance = new Colors;
    return *instance;
}

ColorDefinitionSet* Colors::GetColors()
{
    static ColorDefinitionSet* const colors = MakeColors();
    return colors;
}
