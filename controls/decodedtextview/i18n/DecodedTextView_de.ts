<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name></name>
    <message>
        <source>Define Call Sign</source>
        <translation>Rufzeichen festlegen</translation>
    </message>
    <message>
        <source>Insert Comment</source>
        <translation>Kommentar einfügen</translation>
    </message>
    <message>
        <source>Insert Text</source>
        <translation>Text einfügen</translation>
    </message>
    <message>
        <source>Edit Selection</source>
        <translation>Auswahl bearbeiten</translation>
    </message>
    <message>
        <source>Delete Call Sign</source>
        <translation>Rufzeichen löschen</translation>
    </message>
    <message>
        <source>Delete Comment</source>
        <translation>Kommentar löschen</translation>
    </message>
    <message>
        <source>Delete Selection</source>
        <translation>Auswahl löschen</translation>
    </message>
    <message>
        <source>Delete Section</source>
        <translation>Abschnitt löschen</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
</context>
<context>
    <name>DecodedTextCaption</name>
    <message>
        <source>Newest text of the channel</source>
        <translation>Neuester Text des Kanals</translation>
    </message>
    <message>
        <source>Collapse text view</source>
        <translation>Textansicht zuklappen</translation>
    </message>
    <message>
        <source>Expand text view</source>
        <translation>Textansicht aufklappen</translation>
    </message>
</context>
<context>
    <name>DecodedTextContent</name>
    <message>
        <source>Decoded text</source>
        <translation>Dekodierter Text</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Unable to save modification. The transmission is finished.</source>
        <translation>Die Änderung kann nicht gespeichert werden. Die Aussendung ist beendet.</translation>
    </message>
    <message>
        <source>Define Call Sign</source>
        <translation>Rufzeichen festlegen</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Rufzeichen</translation>
    </message>
    <message>
        <source>Insert Comment</source>
        <translation>Kommentar einfügen</translation>
    </message>
    <message>
        <source>Clear all channels</source>
        <translation>Alle Kanäle leeren</translation>
    </message>
    <message>
        <source>Morse ColorCoding</source>
        <translation>Morse-Farbkodierung</translation>
    </message>
    <message>
        <source>Tooltip with timestamp</source>
        <translation>Kurzinfo mit Zeitstempel</translation>
    </message>
    <message>
        <source>Show user channel</source>
        <translation>Benutzerkanal anzeigen</translation>
    </message>
    <message>
        <source>Times</source>
        <translation>Zeiten</translation>
    </message>
    <message>
        <source>The text to be shown; what was received can be brought back</source>
        <translation>Der Text, der angezeigt wird; der empfangene lässt sich zurückholen</translation>
    </message>
    <message>
        <source>A remark on the change</source>
        <translation>Eine Bemerkung zur Änderung</translation>
    </message>
    <message>
        <source>The station that the selected text names</source>
        <translation>Die Station, die der gewählte Text nennt</translation>
    </message>
    <message>
        <source>A remark on the selected text</source>
        <translation>Eine Bemerkung zum gewählten Text</translation>
    </message>
</context>
<context>
    <name>DecodedTextData</name>
    <message>
        <source>Call Sign: </source>
        <translation>Rufzeichen: </translation>
    </message>
    <message>
        <source>Change: </source>
        <translation>Änderung: </translation>
    </message>
    <message>
        <source>Comment: </source>
        <translation>Kommentar: </translation>
    </message>
</context>
<context>
    <name>DecodedTextInfoArea</name>
    <message>
        <source>Call signs</source>
        <translation>Rufzeichen</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>DecodedTextProperties</name>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Colors</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>Foreground</source>
        <translation>Schrift</translation>
    </message>
    <message>
        <source>Max. number of chars</source>
        <translation>Max. Zeichenanzahl</translation>
    </message>
    <message>
        <source>Quality Threshold</source>
        <translation>Qualitätsschwelle</translation>
    </message>
    <message>
        <source> %</source>
        <translation> %</translation>
    </message>
    <message>
        <source>Info area</source>
        <translation>Infobereich</translation>
    </message>
    <message>
        <source>enabled</source>
        <translation>eingeschaltet</translation>
    </message>
    <message>
        <source>Color behind the text of all channels</source>
        <translation>Farbe hinter dem Text aller Kanäle</translation>
    </message>
    <message>
        <source>Color of the text of all channels</source>
        <translation>Farbe des Textes aller Kanäle</translation>
    </message>
    <message>
        <source>Characters kept for each channel; older text is removed</source>
        <translation>Je Kanal behaltene Zeichen; älterer Text wird entfernt</translation>
    </message>
    <message>
        <source>Text decoded with a lower quality counts as poor</source>
        <translation>Text mit geringerer Dekodierqualität gilt als schlecht</translation>
    </message>
    <message>
        <source>Column with the call signs beside the text</source>
        <translation>Spalte mit den Rufzeichen neben dem Text</translation>
    </message>
</context>
<context>
    <name>DecodedTextView</name>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Kanal %1</translation>
    </message>
    <message>
        <source>Waiting for valid data</source>
        <translation>Warten auf gültige Daten</translation>
    </message>
    <message>
        <source>Show user channel</source>
        <translation>Benutzerkanal anzeigen</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Kanäle</translation>
    </message>
</context>
<context>
    <name>DecodedTextViewTest</name>
    <message>
        <source>Aggregation</source>
        <translation>Sammelkanal</translation>
    </message>
</context>
</TS>
