// The properties dialog: its form, the values it starts with, what OK and Cancel do to the model,
// and that the text area is rebuilt either way.
#include "decodedtextproperties.h"
#include "dialogdriver.h"
#include "fatallog.h"
#include "guibase/colordefinition.h"
#include "guibase/colordefinitionset.h"
#include "guibase/colors.h"
#include "operatorhand.h"
#include "textarea.h"

#include <QPushButton>

class tst_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        log.Start();
        log.Announce("This plugin does not support");
    }
    void cleanup() { log.Check(); }

    void form()
    {
        DecodedTextProperties dialog(nullptr);
        QCOMPARE(dialog.size(), QSize(278, 223));
        QCOMPARE(dialog.locale(), QLocale(QLocale::English, QLocale::UnitedStates));
        QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
        QStringList names;
        for (const QWidget* child : dialog.findChildren<QWidget*>()) {
            const QLabel* label = qobject_cast<const QLabel*>(child);
            if (label && label->buddy()) {
                names.append(label->text() + ":" + label->buddy()->objectName());
                QVERIFY(!label->buddy()->accessibleName().isEmpty());
            }
        }
        QCOMPARE(names.join(" "), QString("Background:comboBackground Foreground:comboForeground "
                                          "Max. number of chars:spinMaxChars "
                                          "Quality Threshold:spinQuality Info area:checkInfoArea"));
        QCOMPARE(dialog.spinQuality->text(), QString("0 %"));
        QStringList hosts, offered;
        for (const ColorDefinition& color : Colors::Instance().GetColors()->GetColorDefitions()) {
            hosts.append(color.GetName());
            offered.append(dialog.comboBackground->itemText(static_cast<int>(offered.size())));
        }
        QCOMPARE(offered, hosts);
    }

    void rounds_data()
    {
        // buffer threshold width foreground background; what the dialog shows; done; afterwards;
        // told or not
        AddTable({
            "unchanged | 5000 60 50 Black White | 5000 60 on Black White | | 5000 60 50 Black "
            "White | ",
            "cancelled | 5000 60 50 Black White | 5000 60 on Black White | cancel "
            "| 5000 60 50 Black White | ",
            "everything | 5000 60 50 Black White | 5000 60 on Black White | all "
            "| 2000 80 0 White Black | told",
            "on from 0 | 5000 60 0 Black White | 5000 60 off Black White | on "
            "| 5000 60 50 Black White | told",
            "stored width kept | 5000 60 120 Black White | 5000 60 on Black White | on "
            "| 5000 60 120 Black White | ",
            "off | 5000 60 120 Black White | 5000 60 on Black White | off | 5000 60 0 Black White "
            "| told",
            "more than the field takes | 3000000 60 50 Black White | 1000000 60 on Black White | "
            "| 1000000 60 50 Black White | told",
            "unknown colours | 5000 60 50 black Nosuch | 5000 60 on Black Black | "
            "| 5000 60 50 Black Black | told",
            "dragged meanwhile | 5000 60 50 Black White | 5000 60 on Black White | width "
            "| 5000 60 70 Black White | ",
        });
    }
    void rounds()
    {
        QFETCH(QStringList, row);
        const QString act = row.at(2);
        const QStringList values = row.at(0).split(' ');
        TextArea area;
        area.model.SetProperties(values.at(0).toInt(), values.at(1).toInt(), values.at(2).toInt(),
                                 values.at(3), values.at(4));
        area.Feed("1 0:text");
        area.Feed("end");
        area.content.document()->setModified(true); // a rebuild clears it
        area.modelSignals.Take();
        QString shown;
        DialogDriver driver([&](QWidget* opened) {
            DecodedTextProperties* dialog = qobject_cast<DecodedTextProperties*>(opened);
            QVERIFY(dialog);
            QCOMPARE(dialog->parentWidget(), &area.content);
            shown = QString("%1 %2 %3 %4 %5")
                        .arg(dialog->spinMaxChars->value())
                        .arg(dialog->spinQuality->value())
                        .arg(QLatin1String(dialog->checkInfoArea->isChecked() ? "on" : "off"),
                             dialog->GetForegroundColor(), dialog->GetBackgroundColor());
            if (act == "all") {
                dialog->spinMaxChars->setValue(2000);
                dialog->spinQuality->setValue(80);
                dialog->comboForeground->setCurrentIndex(
                    dialog->comboForeground->findText("White"));
                dialog->comboBackground->setCurrentIndex(
                    dialog->comboBackground->findText("Black"));
            } else if (act == "width") {
                area.model.SetInfoAreaWidth(70); // somebody drags the edge meanwhile
            }
            dialog->checkInfoArea->setChecked(act == "on" || (act != "off" && act != "all" &&
                                                              dialog->checkInfoArea->isChecked()));
            const QDialogButtonBox::StandardButton button =
                act == "cancel" ? QDialogButtonBox::Cancel : QDialogButtonBox::Ok;
            QWidget* clicked = dialog->buttonBox->button(button);
            QTest::mouseClick(clicked, Qt::LeftButton);
        });
        area.content.SlotShowProperties();
        QCOMPARE(shown, row.at(1));
        QCOMPARE(QString("%1 %2 %3 %4 %5")
                     .arg(area.model.GetBufferSize())
                     .arg(area.model.GetQualityThreshold())
                     .arg(area.model.GetInfoAreaWidth())
                     .arg(area.model.GetForegroundColor(), area.model.GetBackgroundColor()),
                 row.at(3));
        QCOMPARE(area.modelSignals.Take(),
                 QString(row.at(4).isEmpty() ? "" : "PropertiesChanged()"));
        QVERIFY(!area.content.document()->isModified());
        QVERIFY(!area.content.findChild<QDialog*>());
    }

private:
    FatalLog log;
};

QTEST_MAIN(tst_properties)
#include "tst_properties.moc"
