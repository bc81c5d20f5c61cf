<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>ChannelPanels</name>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Kanal %1</translation>
    </message>
    <message>
        <source>[1 character lost]</source>
        <translation>[1 Zeichen verloren]</translation>
    </message>
    <message>
        <source>[%1 characters lost]</source>
        <translation>[%1 Zeichen verloren]</translation>
    </message>
</context>
<context>
    <name>Demo</name>
    <message>
        <source>the demonstration does not start</source>
        <translation>die Vorführung startet nicht</translation>
    </message>
    <message>
        <source>%1 makes no instance</source>
        <translation>%1 legt keine Instanz an</translation>
    </message>
</context>
<context>
    <name>DocumentSplitter</name>
    <message>
        <source>the input ends inside a tag</source>
        <translation>die Eingabe endet innerhalb eines Tags</translation>
    </message>
    <message>
        <source>the recording is cut off: its end tag is missing</source>
        <translation>die Aufzeichnung ist abgeschnitten: Ihr End-Tag fehlt</translation>
    </message>
    <message>
        <source>a transmission is too large</source>
        <translation>eine Aussendung ist zu groß</translation>
    </message>
    <message>
        <source>a tag is cut off</source>
        <translation>ein Tag ist abgeschnitten</translation>
    </message>
    <message>
        <source>the recording that begins here is cut off</source>
        <translation>die Aufzeichnung, die hier beginnt, ist abgeschnitten</translation>
    </message>
    <message>
        <source>no result data</source>
        <translation>keine Ergebnisdaten</translation>
    </message>
</context>
<context>
    <name>FindBar</name>
    <message>
        <source>F&amp;ind:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Gesuchter Text</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>&amp;Previous</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>%1 gefunden</translation>
    </message>
    <message>
        <source>&quot;%1&quot; not found</source>
        <translation>„%1“ nicht gefunden</translation>
    </message>
    <message>
        <source>Looked for in all open texts</source>
        <translation>Wird in allen offenen Texten gesucht</translation>
    </message>
    <message>
        <source>Number of hits</source>
        <translation>Anzahl der Fundstellen</translation>
    </message>
    <message>
        <source>Goes to the next hit</source>
        <translation>Geht zur nächsten Fundstelle</translation>
    </message>
    <message>
        <source>Goes to the hit before</source>
        <translation>Geht zur vorigen Fundstelle</translation>
    </message>
    <message>
        <source>Closes the find bar and takes the marks away</source>
        <translation>Schließt die Suchleiste und entfernt die Markierungen</translation>
    </message>
</context>
<context>
    <name>HostMenus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open Recording...</source>
        <translation>Aufzeichnung &amp;öffnen...</translation>
    </message>
    <message>
        <source>Save &amp;Text...</source>
        <translation>&amp;Text speichern...</translation>
    </message>
    <message>
        <source>&amp;Export XML...</source>
        <translation>&amp;XML exportieren...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy with &amp;Times</source>
        <translation>Mit &amp;Uhrzeiten kopieren</translation>
    </message>
    <message>
        <source>&amp;Select</source>
        <translation>&amp;Auswählen</translation>
    </message>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Suchen...</translation>
    </message>
    <message>
        <source>Find &amp;Next</source>
        <translation>&amp;Weitersuchen</translation>
    </message>
    <message>
        <source>Find &amp;Previous</source>
        <translation>&amp;Rückwärts suchen</translation>
    </message>
    <message>
        <source>&amp;Next Word</source>
        <translation>&amp;Nächstes Wort</translation>
    </message>
    <message>
        <source>&amp;Previous Word</source>
        <translation>&amp;Voriges Wort</translation>
    </message>
    <message>
        <source>Word in the Line &amp;Above</source>
        <translation>Wort in der Zeile &amp;darüber</translation>
    </message>
    <message>
        <source>Word in the Line &amp;Below</source>
        <translation>Wort in der Zeile dar&amp;unter</translation>
    </message>
    <message>
        <source>&amp;Extend by a Word</source>
        <translation>Um ein Wort &amp;erweitern</translation>
    </message>
    <message>
        <source>&amp;Shrink by a Word</source>
        <translation>Um ein Wort ver&amp;kürzen</translation>
    </message>
    <message>
        <source>Extend to the &amp;Line&apos;s End</source>
        <translation>Bis zum &amp;Zeilenende erweitern</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Expand All</source>
        <translation>Alle &amp;aufklappen</translation>
    </message>
    <message>
        <source>&amp;Collapse All</source>
        <translation>Alle &amp;zuklappen</translation>
    </message>
    <message>
        <source>&amp;Next Text</source>
        <translation>&amp;Nächster Text</translation>
    </message>
    <message>
        <source>&amp;Previous Text</source>
        <translation>&amp;Voriger Text</translation>
    </message>
    <message>
        <source>&amp;Merged Channel</source>
        <translation>&amp;Sammelkanal</translation>
    </message>
    <message>
        <source>&amp;Annotate</source>
        <translation>A&amp;nmerkungen</translation>
    </message>
    <message>
        <source>&amp;All That Applies Here...</source>
        <translation>&amp;Alles hier Mögliche...</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Colours and Marks</source>
        <translation>&amp;Farben und Markierungen</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>Nothing is selected</source>
        <translation>Es ist nichts ausgewählt</translation>
    </message>
    <message>
        <source>Open Recording</source>
        <translation>Aufzeichnung öffnen</translation>
    </message>
    <message>
        <source>Recordings (*.xml);;All files (*)</source>
        <translation>Aufzeichnungen (*.xml);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Save Text</source>
        <translation>Text speichern</translation>
    </message>
    <message>
        <source>Texts (*.txt);;All files (*)</source>
        <translation>Texte (*.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Text saved in %1</source>
        <translation>Text in %1 gespeichert</translation>
    </message>
    <message>
        <source>%1: not possible for this text</source>
        <translation>%1: bei diesem Text nicht möglich</translation>
    </message>
    <message>
        <source>Colours and Marks</source>
        <translation>Farben und Markierungen</translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;span style=&apos;background-color:white;color:#646464&apos;&gt;Grey text&lt;/span&gt;: its transmission is finished and can&apos;t be annotated any more.&lt;/p&gt;&lt;p&gt;&lt;span style=&apos;background-color:white;color:#ff0000&apos;&gt;Red text&lt;/span&gt;: was decoded with poor quality (while &quot;Morse ColorCoding&quot; is on).&lt;/p&gt;&lt;p&gt;&lt;span style=&apos;background-color:#00ff00;color:black&apos;&gt;Green&lt;/span&gt;: a call sign. &lt;span style=&apos;background-color:#00ffff;color:black&apos;&gt;Cyan&lt;/span&gt;: a comment. &lt;span style=&apos;background-color:#ffff00;color:black&apos;&gt;Yellow&lt;/span&gt;: text that an operator changed. &lt;span style=&apos;background-color:#ffaa3c;color:black&apos;&gt;Orange&lt;/span&gt;: what the find bar found.&lt;/p&gt;&lt;p&gt;A zigzag between two lines in the time column: characters were lost.&lt;/p&gt;</source>
        <translation>&lt;p&gt;&lt;span style=&apos;background-color:white;color:#646464&apos;&gt;Grauer Text&lt;/span&gt;: Die Aussendung ist beendet und kann nicht mehr kommentiert werden.&lt;/p&gt;&lt;p&gt;&lt;span style=&apos;background-color:white;color:#ff0000&apos;&gt;Roter Text&lt;/span&gt;: mit schlechter Qualität dekodiert (solange „Morse-Farbkodierung“ eingeschaltet ist).&lt;/p&gt;&lt;p&gt;&lt;span style=&apos;background-color:#00ff00;color:black&apos;&gt;Grün&lt;/span&gt;: ein Rufzeichen. &lt;span style=&apos;background-color:#00ffff;color:black&apos;&gt;Cyan&lt;/span&gt;: ein Kommentar. &lt;span style=&apos;background-color:#ffff00;color:black&apos;&gt;Gelb&lt;/span&gt;: vom Bediener geänderter Text. &lt;span style=&apos;background-color:#ffaa3c;color:black&apos;&gt;Orange&lt;/span&gt;: Fundstellen der Suche.&lt;/p&gt;&lt;p&gt;Eine Zickzacklinie zwischen zwei Zeilen in der Zeitspalte: Hier gingen Zeichen verloren.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;b&gt;decodedtexthost %1&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Shows the text that decoders make of received transmissions, channel by channel, and lets an operator annotate it.&lt;/p&gt;</source>
        <translation>&lt;p&gt;&lt;b&gt;decodedtexthost %1&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Zeigt den Text, den Dekoder aus empfangenen Aussendungen gewinnen, Kanal für Kanal, und lässt den Bediener Anmerkungen dazu machen.&lt;/p&gt;</translation>
    </message>
</context>
<context>
    <name>HostOptions</name>
    <message>
        <source>No display here. The demonstration goes to %1 and %2.</source>
        <translation>Hier gibt es keinen Bildschirm. Die Vorführung geht nach %1 und %2.</translation>
    </message>
    <message>
        <source>try --help</source>
        <translation>--help zeigt eine Übersicht</translation>
    </message>
    <message>
        <source>Also merge the text of all channels, in the order of its times, into one channel.</source>
        <translation>Den Text aller Kanäle zusätzlich in zeitlicher Reihenfolge in einem Sammelkanal zusammenführen.</translation>
    </message>
    <message>
        <source>Name channel N. May be given several times.</source>
        <translation>Kanal N benennen. Mehrfach möglich.</translation>
    </message>
    <message>
        <source>Replay X times as fast as recorded (1: as recorded). Without it everything is shown at once.</source>
        <translation>X-mal so schnell wiedergeben wie aufgezeichnet (1: wie aufgezeichnet). Sonst erscheint alles sofort.</translation>
    </message>
    <message>
        <source>Write a picture of the window at the end; - is standard output.</source>
        <translation>Am Ende ein Bild des Fensters schreiben; - ist die Standardausgabe.</translation>
    </message>
    <message>
        <source>Write the text of every channel, with times, at the end; - is standard output.</source>
        <translation>Am Ende den Text jedes Kanals mit Uhrzeiten schreiben; - ist die Standardausgabe.</translation>
    </message>
    <message>
        <source>Write the text and the annotations of every channel as a recording at the end; - is standard output.</source>
        <translation>Am Ende Text und Anmerkungen jedes Kanals als Aufzeichnung schreiben; - ist die Standardausgabe.</translation>
    </message>
    <message>
        <source>Quit when everything was shown. This is so without a display, too.</source>
        <translation>Beenden, sobald alles gezeigt wurde. Ohne Bildschirm ist das immer so.</translation>
    </message>
    <message>
        <source>Show times in UTC instead of local time.</source>
        <translation>Zeiten in UTC statt in Ortszeit anzeigen.</translation>
    </message>
    <message>
        <source>Load the view&apos;s library as a plug-in and run its demonstration.</source>
        <translation>Die Bibliothek der Ansicht als Plug-in laden und ihre Vorführung starten.</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>Diese Hilfe anzeigen.</translation>
    </message>
    <message>
        <source>Show the program&apos;s version.</source>
        <translation>Die Version des Programms anzeigen.</translation>
    </message>
    <message>
        <source>Shows decoded text, channel by channel.
A FILE is a recording (result-data XML) or a stream of transmissions, one per line; - is standard input,
read as it arrives. Exit status: 0, 1 when the command line is wrong, 2 when a file cannot be read,
understood or written.</source>
        <translation>Zeigt dekodierten Text, Kanal für Kanal.
FILE ist eine Aufzeichnung (Ergebnisdaten als XML) oder ein Strom von Aussendungen, eine je Zeile;
- ist die Standardeingabe, die fortlaufend gelesen wird. Rückgabewert: 0; 1 bei fehlerhafter Befehlszeile;
2, wenn eine Datei nicht gelesen, verstanden oder geschrieben werden kann.</translation>
    </message>
    <message>
        <source>Recordings or streams of transmissions.</source>
        <translation>Aufzeichnungen oder Ströme von Aussendungen.</translation>
    </message>
    <message>
        <source>--name wants N=TEXT with a channel number N, not &apos;%1&apos;.</source>
        <translation>--name erwartet N=TEXT mit einer Kanalnummer N, nicht „%1“.</translation>
    </message>
    <message>
        <source>--speed wants a number above 0, not &apos;%1&apos;.</source>
        <translation>--speed erwartet eine Zahl über 0, nicht „%1“.</translation>
    </message>
    <message>
        <source>--demo makes its own text and takes no FILE.</source>
        <translation>--demo erzeugt seinen Text selbst und nimmt keine FILE-Angabe an.</translation>
    </message>
</context>
<context>
    <name>HostOutput</name>
    <message>
        <source>standard output</source>
        <translation>Standardausgabe</translation>
    </message>
    <message>
        <source>the picture cannot be made</source>
        <translation>das Bild kann nicht erzeugt werden</translation>
    </message>
</context>
<context>
    <name>HostWindow</name>
    <message>
        <source>%1 - Decoded Text</source>
        <translation>%1 - Dekodierter Text</translation>
    </message>
    <message>
        <source>Decoded Text</source>
        <translation>Dekodierter Text</translation>
    </message>
    <message>
        <source>Decoded text</source>
        <translation>Dekodierter Text</translation>
    </message>
    <message>
        <source>The text of every channel with its times</source>
        <translation>Der Text jedes Kanals mit seinen Uhrzeiten</translation>
    </message>
    <message>
        <source>Progress of reading</source>
        <translation>Lesefortschritt</translation>
    </message>
    <message>
        <source>The text stays where you read. Esc lets it follow again.</source>
        <translation>Der Text bleibt an der gelesenen Stelle. Esc lässt ihn wieder mitlaufen.</translation>
    </message>
    <message>
        <source>All channels</source>
        <translation>Alle Kanäle</translation>
    </message>
    <message>
        <source>Text that is received from now on is merged</source>
        <translation>Ab jetzt empfangener Text wird zusammengeführt</translation>
    </message>
    <message>
        <source>standard input</source>
        <translation>Standardeingabe</translation>
    </message>
    <message>
        <source>Replaying %1, %2 times as fast as recorded</source>
        <translation>Wiedergabe von %1, %2-mal so schnell wie aufgezeichnet</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
    <message>
        <source>files waiting: %1</source>
        <translation>wartende Dateien: %1</translation>
    </message>
    <message>
        <source>No data</source>
        <translation>Keine Daten</translation>
    </message>
    <message>
        <source>Transmissions: %1, channels: %2</source>
        <translation>Aussendungen: %1, Kanäle: %2</translation>
    </message>
    <message>
        <source>Annotations Not Exported</source>
        <translation>Anmerkungen nicht exportiert</translation>
    </message>
    <message>
        <source>Your annotations are not exported yet. Save them as a recording?</source>
        <translation>Ihre Anmerkungen sind noch nicht exportiert. Als Aufzeichnung speichern?</translation>
    </message>
    <message>
        <source>Export XML</source>
        <translation>XML exportieren</translation>
    </message>
    <message>
        <source>Recordings (*.xml);;All files (*)</source>
        <translation>Aufzeichnungen (*.xml);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Exported to %1</source>
        <translation>Nach %1 exportiert</translation>
    </message>
    <message>
        <source>How much of the recording is read</source>
        <translation>Wie viel von der Aufzeichnung gelesen ist</translation>
    </message>
</context>
<context>
    <name>InputReader</name>
    <message>
        <source>no result data</source>
        <translation>keine Ergebnisdaten</translation>
    </message>
    <message>
        <source>standard input</source>
        <translation>Standardeingabe</translation>
    </message>
    <message>
        <source>(further errors of this input are not shown)</source>
        <translation>(weitere Fehler dieser Eingabe werden nicht angezeigt)</translation>
    </message>
</context>
</TS>
