// The properties dialog: its values, what its buttons do, the rebuild of the text area either way.
#include "decodedtextproperties.h"
#include "dialogdriver.h"
#include "guibase/colordefinition.h"
#include "guibase/colordefinitionset.h"
#include "guibase/colors.h"
#include "rowtable.h"
#include "textarea.h"
#include "watchedtest.h"

#include <QPushButton>

class tst_properties : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void form()
    {
        DecodedTextProperties dialog(nullptr);
        QCOMPARE(dialog.size(), QSize(278, 223));
        QCOMPARE(dialog.locale(), QLocale(QLocale::English, QLocale::UnitedStates));
        QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
        QString names = dialog.windowTitle() + " " + dialog.groupBox->title();
        for (const QLabel* label : dialog.findChildren<QLabel*>()) {
            names += " " + label->text() + ":" + label->buddy()->objectName();
            QVERIFY(!label->buddy()->accessibleName().isEmpty());
        }
        QCOMPARE(names, QString("Properties Colors Background:comboBackground "
                                "Foreground:comboForeground Max. number of chars:spinMaxChars "
                                "Quality Threshold:spinQuality Info area:checkInfoArea"));
        QCOMPARE(dialog.spinQuality->text() + dialog.checkInfoArea->text(), QString("0 %enabled"));
        QStringList hosts, offered;
        for (const ColorDefinition& color : Colors::Instance().GetColors()->GetColorDefitions()) {
            hosts.append(color.GetName());
            offered.append(dialog.comboBackground->itemText(static_cast<int>(offered.size())));
        }
        QCOMPARE(offered, hosts);
    }

    void rounds_data()
    {
        // buffer threshold width foreground background; what is shown; done; afterwards; signals
        AddRows({
            "cancelled ;; 5000 60 50 Black White ;; 5000 60 on Black White ;; cancel "
            ";; 5000 60 50 Black White ;; ",
            "everything ;; 5000 60 50 Black White ;; 5000 60 on Black White ;; all "
            ";; 2000 80 0 Black Black ;; PropertiesChanged()",
            "on from 0 ;; 5000 60 0 Black White ;; 5000 60 off Black White ;; on "
            ";; 5000 60 50 Black White ;; PropertiesChanged()",
            "unknown colour, too many characters ;; 3000000 60 50 black Nosuch "
            ";; 1000000 60 on Black Black ;;  ;; 1000000 60 50 Black Black "
            ";; PropertiesChanged()",
        });
    }
    void rounds()
    {
        QFETCH(QStringList, row);
        const QString act = row.at(2);
        const QStringList stored = row.at(0).split(' ');
        TextArea area;
        area.model.SetProperties(stored.at(0).toInt(), stored.at(1).toInt(), stored.at(2).toInt(),
                                 stored.at(3), stored.at(4));
        area.content.document()->setModified(true); // a rebuild clears it
        area.modelSignals.Take();
        QString shown;
        DialogDriver driver([&](QWidget* opened) {
            DecodedTextProperties* dialog = qobject_cast<DecodedTextProperties*>(opened);
            QVERIFY(dialog);
            shown = QString("%1 %2 %3 %4 %5")
                        .arg(dialog->spinMaxChars->value())
                        .arg(dialog->spinQuality->value())
                        .arg(QLatin1String(dialog->checkInfoArea->isChecked() ? "on" : "off"),
                             dialog->GetForegroundColor(), dialog->GetBackgroundColor());
            if (act == "all") {
                dialog->spinMaxChars->setValue(2000);
                dialog->spinQuality->setValue(80);
                dialog->comboBackground->setCurrentIndex(
                    dialog->comboBackground->findText("Black"));
            }
            if (!act.isEmpty()) {
                dialog->checkInfoArea->setChecked(act == "on");
            }
            QWidget* clicked = dialog->buttonBox->button(act == "cancel" ? QDialogButtonBox::Cancel
                                                                         : QDialogButtonBox::Ok);
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
        QCOMPARE(area.modelSignals.Take(), row.at(4));
        QVERIFY(!area.content.document()->isModified());
    }
};

QTEST_MAIN(tst_properties)
#include "tst_properties.moc"
