// The properties dialog's fields and choices; the form is in decodedtextproperties.ui.
// Each colour stands in the lists under its name, which is also what the model keeps, beside a
// patch that shows it.

#include "decodedtextproperties.h"

#include "guibase/colordefinition.h"
#include "guibase/colordefinitionset.h"
#include "guibase/colors.h"

#include <QColor>
#include <QIcon>
#include <QPixmap>

DecodedTextProperties::DecodedTextProperties(QWidget* parent)
    : QDialog(parent)
{
    setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    QPixmap patch(comboBackground->iconSize());
    for (const ColorDefinition& definition : Colors::Instance().GetColors()->GetColorDefitions()) {
        const QString name = definition.GetName();
        const QColor color(name);
        patch.fill(color.isValid() ? color : QColor(Qt::transparent));
        comboBackground->addItem(QIcon(patch), name);
        comboForeground->addItem(QIcon(patch), name);
    }
}
