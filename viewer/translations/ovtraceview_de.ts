<?xml version='1.0' encoding='utf-8'?>
<TS version="2.1" language="de_DE">
<context>
    <name>Canvas</name>
    <message>
        <source>Image and result</source>
        <translation>Bild und Ergebnis</translation>
    </message>
</context>
<context>
    <name>DragOutButton</name>
    <message>
        <source>Drag out</source>
        <translation>Herausziehen</translation>
    </message>
    <message>
        <source>Drag the drawing from here into another program.</source>
        <translation>Die Zeichnung von hier in ein anderes Programm ziehen.</translation>
    </message>
</context>
<context>
    <name>DrawingThread</name>
    <message>
        <source>There is not enough memory for this image.</source>
        <translation>Der Speicher reicht für dieses Bild nicht aus.</translation>
    </message>
    <message>
        <source>pasted</source>
        <translation>eingefuegt</translation>
    </message>
    <message>
        <source>The picture cannot be kept: %1</source>
        <translation>Das Bild kann nicht abgelegt werden: %1</translation>
    </message>
</context>
<context>
    <name>ExportDialog</name>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>&amp;Format</source>
        <translation>&amp;Format</translation>
    </message>
</context>
<context>
    <name>FiguresPanel</name>
    <message>
        <source>Outlines</source>
        <translation>Umrisse</translation>
    </message>
    <message>
        <source>Lines and curves</source>
        <translation>Linien und Kurven</translation>
    </message>
    <message>
        <source>Nodes</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Mean difference</source>
        <translation>Mittlere Abweichung</translation>
    </message>
    <message>
        <source>How far the painted result is from the image, 0 to 255.</source>
        <translation>Wie weit das gemalte Ergebnis vom Bild abweicht, 0 bis 255.</translation>
    </message>
    <message>
        <source>Seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>%1, %2 holes</source>
        <translation>%1, %2 Löcher</translation>
    </message>
    <message>
        <source>%1 lines, %2 curves</source>
        <translation>%1 Linien, %2 Kurven</translation>
    </message>
    <message>
        <source>%1 as %2</source>
        <translation>%1 als %2</translation>
    </message>
</context>
<context>
    <name>HistogramView</name>
    <message>
        <source>Histogram of lightness</source>
        <translation>Histogramm der Helligkeit</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Progress of the trace</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Figures</source>
        <translation>Kennzahlen</translation>
    </message>
    <message>
        <source>Page </source>
        <translation>Seite </translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source> of %1</source>
        <translation> von %1</translation>
    </message>
    <message>
        <source>Change of %1</source>
        <translation>Änderung von %1</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Colour from the image</source>
        <translation>Farbe aus dem Bild</translation>
    </message>
    <message>
        <source>Colours left out</source>
        <translation>Weggelassene Farben</translation>
    </message>
    <message>
        <source>drawing</source>
        <translation>Zeichnung</translation>
    </message>
    <message>
        <source>%1 × %2 pixels</source>
        <translation>%1 × %2 Pixel</translation>
    </message>
    <message>
        <source>
%1 × %2 mm</source>
        <translation>
%1 × %2 mm</translation>
    </message>
    <message>
        <source>%1, %2 px</source>
        <translation>%1, %2 px</translation>
    </message>
    <message>
        <source>   %1, %2 mm</source>
        <translation>   %1, %2 mm</translation>
    </message>
    <message>
        <source>%1 mm²</source>
        <translation>%1 mm²</translation>
    </message>
    <message>
        <source>%1 px²</source>
        <translation>%1 px²</translation>
    </message>
    <message>
        <source>   %1, colour %2, %3, %4 nodes</source>
        <translation>   %1, Farbe %2, %3, %4 Knoten</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>Geschrieben: %1</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Export...</source>
        <translation>&amp;Exportieren...</translation>
    </message>
    <message>
        <source>Load se&amp;ttings...</source>
        <translation>Einstellungen &amp;laden...</translation>
    </message>
    <message>
        <source>Save &amp;settings...</source>
        <translation>Einstellungen &amp;speichern...</translation>
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
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Show the settings &amp;before (hold B)</source>
        <translation>Einstellungen von &amp;vorher zeigen (B halten)</translation>
    </message>
    <message>
        <source>&amp;Paste an image</source>
        <translation>Bild &amp;einfügen</translation>
    </message>
    <message>
        <source>&amp;Copy as SVG</source>
        <translation>Als SVG &amp;kopieren</translation>
    </message>
    <message>
        <source>Copy as p&amp;icture</source>
        <translation>Als B&amp;ild kopieren</translation>
    </message>
    <message>
        <source>Copy co&amp;mmand</source>
        <translation>Be&amp;fehl kopieren</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Image</source>
        <translation>&amp;Bild</translation>
    </message>
    <message>
        <source>&amp;Result</source>
        <translation>&amp;Ergebnis</translation>
    </message>
    <message>
        <source>&amp;Overlay</source>
        <translation>Ü&amp;berlagerung</translation>
    </message>
    <message>
        <source>&amp;Split</source>
        <translation>&amp;Geteilt</translation>
    </message>
    <message>
        <source>Zoom &amp;in</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom o&amp;ut</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Fit</source>
        <translation>&amp;Einpassen</translation>
    </message>
    <message>
        <source>&amp;1:1</source>
        <translation>&amp;1:1</translation>
    </message>
    <message>
        <source>F&amp;ull screen</source>
        <translation>&amp;Vollbild</translation>
    </message>
    <message>
        <source>Open an image</source>
        <translation>Bild öffnen</translation>
    </message>
    <message>
        <source>Images (%1)</source>
        <translation>Bilder (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>There is no image on the clipboard.</source>
        <translation>In der Zwischenablage ist kein Bild.</translation>
    </message>
    <message>
        <source>Load settings</source>
        <translation>Einstellungen laden</translation>
    </message>
    <message>
        <source>Settings (*.json)</source>
        <translation>Einstellungen (*.json)</translation>
    </message>
    <message>
        <source>Save settings</source>
        <translation>Einstellungen speichern</translation>
    </message>
    <message>
        <source>The settings of last time</source>
        <translation>Die Einstellungen vom letzten Mal</translation>
    </message>
    <message>
        <source>Settings of last time</source>
        <translation>Einstellungen vom letzten Mal</translation>
    </message>
</context>
<context>
    <name>MessageBar</name>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close the message</source>
        <translation>Die Meldung schließen</translation>
    </message>
</context>
<context>
    <name>PalettePanel</name>
    <message>
        <source>Colours of the result</source>
        <translation>Farben des Ergebnisses</translation>
    </message>
    <message>
        <source>Click to mark the outlines of a colour, double-click to change it, clear its box to leave it out, drag it to another place in the order.</source>
        <translation>Klicken markiert die Umrisse einer Farbe, Doppelklicken ändert sie, ohne Haken wird sie weggelassen, Ziehen ändert die Reihenfolge.</translation>
    </message>
    <message>
        <source>Pick</source>
        <translation>Aufnehmen</translation>
    </message>
    <message>
        <source>Add a colour by a click into the image.</source>
        <translation>Eine Farbe durch einen Klick ins Bild hinzufügen.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Do without the marked colour.</source>
        <translation>Ohne die markierte Farbe auskommen.</translation>
    </message>
    <message>
        <source>Fix</source>
        <translation>Festhalten</translation>
    </message>
    <message>
        <source>Keep these colours, whatever the image has.</source>
        <translation>Diese Farben behalten, was auch immer das Bild enthält.</translation>
    </message>
    <message>
        <source>%1   %2 %   %3</source>
        <translation>%1   %2 %   %3</translation>
    </message>
    <message numerus="yes">
        <source>%n outline(s)</source>
        <translation>
            <numerusform>%n Umriss</numerusform>
            <numerusform>%n Umrisse</numerusform>
        </translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
</context>
<context>
    <name>SettingEditor</name>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Reset %1</source>
        <translation>%1 zurücksetzen</translation>
    </message>
    <message>
        <source>automatic</source>
        <translation>automatisch</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
</context>
<context>
    <name>SettingForm</name>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Turns images into drawings and shows the result of every setting at once.</source>
        <translation>Verwandelt Bilder in Zeichnungen und zeigt das Ergebnis jeder Einstellung sofort.</translation>
    </message>
    <message>
        <source>The image to open.</source>
        <translation>Das Bild, das geöffnet wird.</translation>
    </message>
</context>
</TS>