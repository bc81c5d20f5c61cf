#ifndef DECODEDTEXTPROPERTIES_H
#define DECODEDTEXTPROPERTIES_H

#include "ui_decodedtextproperties.h"

#include <QDialog>

/// The dialog for the display settings: colours, buffer size, quality threshold, info area on or
/// off. Knows no model: whoever opens it fills its fields and reads them when it was accepted.
class DecodedTextProperties : public QDialog, public Ui_DecodedTextProperties
{
    Q_OBJECT

public:
    /// Offers the host's colours, the same for text and background, in the host's order.
    explicit DecodedTextProperties(QWidget* parent);

    QString GetBackgroundColor() const { return comboBackground->currentText(); }
    QString GetForegroundColor() const { return comboForeground->currentText(); }

private:
    Q_DISABLE_COPY(DecodedTextProperties)
};

#endif
