<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Canvas</name>
    <message>
        <source>Image and result</source>
        <translation>Bild und Ergebnis</translation>
    </message>
    <message>
        <source>Open an image (Ctrl+O), drop it here or paste it (Ctrl+V).</source>
        <translation>Ein Bild öffnen (Strg+O), hierher ziehen oder einfügen (Strg+V).</translation>
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
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>, drawn: %1 × %2 mm</source>
        <translation>, gezeichnet: %1 × %2 mm</translation>
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
    <message>
        <source>transparent</source>
        <translation>durchsichtig</translation>
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
<context>
    <name>Setting</name>
    <message>
        <source>Method</source>
        <translation>Verfahren</translation>
    </message>
    <message>
        <source>What the image is turned into</source>
        <translation>Was aus dem Bild gemacht wird</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Vorlage</translation>
    </message>
    <message>
        <source>Settings for a kind of picture</source>
        <translation>Einstellungen für eine Art von Bild</translation>
    </message>
    <message>
        <source>Mode</source>
        <translation>Modus</translation>
    </message>
    <message>
        <source>color, bw (black and white by lightness) or raw (the engine's own defaults and the image as read)</source>
        <translation>Farbe, schwarzweiß (nach der Helligkeit) oder roh (die Vorgaben des Verfahrens und das Bild, wie es gelesen wurde)</translation>
    </message>
    <message>
        <source>Palette</source>
        <translation>Farbpalette</translation>
    </message>
    <message>
        <source>The colours to start from, instead of those found in the image</source>
        <translation>Die Farben am Anfang, anstelle derer, die im Bild gefunden werden</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>The page or frame of the file to trace</source>
        <translation>Die Seite oder das Einzelbild der Datei</translation>
    </message>
    <message>
        <source>px</source>
        <translation>px</translation>
    </message>
    <message>
        <source>Crop</source>
        <translation>Ausschnitt</translation>
    </message>
    <message>
        <source>Trace a part of the image alone: its left and upper edge, width and height</source>
        <translation>Nur einen Teil des Bildes nachzeichnen: linker und oberer Rand, Breite und Höhe</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>Put transparent images on this colour first</source>
        <translation>Durchsichtige Bilder zuerst auf diese Farbe legen</translation>
    </message>
    <message>
        <source>Largest image</source>
        <translation>Größtes Bild</translation>
    </message>
    <message>
        <source>Refuse images of more pixels</source>
        <translation>Bilder mit mehr Pixeln ablehnen</translation>
    </message>
    <message>
        <source>Whole files only</source>
        <translation>Nur vollständige Dateien</translation>
    </message>
    <message>
        <source>Refuse images whose files end too early, instead of tracing what there is</source>
        <translation>Bilder ablehnen, deren Datei zu früh endet, statt zu vektorisieren, was da ist</translation>
    </message>
    <message>
        <source>pixels an inch</source>
        <translation>Pixel je Zoll</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Auflösung</translation>
    </message>
    <message>
        <source>How many pixels of the image an inch has; auto: as its file says</source>
        <translation>Wie viele Pixel des Bildes auf einen Zoll kommen; auto: wie die Datei es sagt</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>Make the drawing so wide</source>
        <translation>Die Zeichnung so breit machen</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Höhe</translation>
    </message>
    <message>
        <source>Make the drawing so high; with a width, fit it into both</source>
        <translation>Die Zeichnung so hoch machen; mit einer Breite passt sie in beides</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>The unit of coordinates; millimetres when the size is known, else pixels</source>
        <translation>Die Einheit der Koordinaten; Millimeter, wenn die Größe bekannt ist, sonst Pixel</translation>
    </message>
    <message>
        <source>Drawing scale</source>
        <translation>Maßstab</translation>
    </message>
    <message>
        <source>The scale of the drawing on paper: at 1:100 a millimetre of the image stands for 100 in coordinates</source>
        <translation>Der Maßstab der Zeichnung auf Papier: bei 1:100 steht ein Millimeter des Bildes für 100 in Koordinaten</translation>
    </message>
    <message>
        <source>World file</source>
        <translation>Georeferenz</translation>
    </message>
    <message>
        <source>Where the image lies in the world; auto: as the world file beside it says, if there is one</source>
        <translation>Wo das Bild in der Welt liegt; auto: wie die Datei daneben es sagt, wenn es eine gibt</translation>
    </message>
    <message>
        <source>Coordinate system</source>
        <translation>Koordinatensystem</translation>
    </message>
    <message>
        <source>The system of world coordinates, as EPSG:25832</source>
        <translation>Das System der Weltkoordinaten, etwa EPSG:25832</translation>
    </message>
    <message>
        <source>Strokes</source>
        <translation>Striche</translation>
    </message>
    <message>
        <source>Stroke the outlines instead of filling them</source>
        <translation>Die Umrisse zeichnen, statt sie zu füllen</translation>
    </message>
    <message>
        <source>Close seams</source>
        <translation>Fugen schließen</translation>
    </message>
    <message>
        <source>Stroke fills in their own colour, to hide seams between them</source>
        <translation>Flächen in ihrer Farbe umranden, damit keine Fugen zu sehen sind</translation>
    </message>
    <message>
        <source>Cut out</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Let regions only touch, instead of reaching under one another against seams</source>
        <translation>Flächen nur aneinanderstoßen lassen, statt sie gegen Fugen untereinanderzuschieben</translation>
    </message>
    <message>
        <source>Drop background</source>
        <translation>Ohne Hintergrund</translation>
    </message>
    <message>
        <source>Leave out the colour of most of the image's rim</source>
        <translation>Die Farbe weglassen, die der größte Teil des Bildrandes hat</translation>
    </message>
    <message>
        <source>Hidden colours</source>
        <translation>Weggelassene Farben</translation>
    </message>
    <message>
        <source>Leave out these colours: #rrggbb or #rrggbbaa, with commas between them</source>
        <translation>Diese Farben weglassen: #rrggbb oder #rrggbbaa, mit Kommas dazwischen</translation>
    </message>
    <message>
        <source>Digits</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>Digits after the decimal point; without it all that count</source>
        <translation>Stellen nach dem Komma; ohne Angabe alle, die zählen</translation>
    </message>
    <message>
        <source>DXF version</source>
        <translation>DXF-Version</translation>
    </message>
    <message>
        <source>The version of the format; R12 is read by everything and has no splines</source>
        <translation>Die Version des Formats; R12 liest jedes Programm, es kennt keine Splines</translation>
    </message>
    <message>
        <source>DXF curves</source>
        <translation>DXF-Kurven</translation>
    </message>
    <message>
        <source>Curves as arcs or lines within the deviation, as one spline an outline, or as quadratic splines (both exact)</source>
        <translation>Kurven als Bögen oder Linien innerhalb der Abweichung, als ein Spline je Umriss oder als quadratische Splines (beide genau)</translation>
    </message>
    <message>
        <source>DXF edges</source>
        <translation>DXF-Kanten</translation>
    </message>
    <message>
        <source>Every region's rings, or each boundary shared by two regions once</source>
        <translation>Die Ringe jeder Fläche, oder jede Grenze zweier Flächen nur einmal</translation>
    </message>
    <message>
        <source>DXF hatches</source>
        <translation>DXF-Schraffuren</translation>
    </message>
    <message>
        <source>Fill areas by hatches; R2000 and R2010 have them</source>
        <translation>Flächen durch Schraffuren füllen; R2000 und R2010 haben sie</translation>
    </message>
    <message>
        <source>Deviation</source>
        <translation>Abweichung</translation>
    </message>
    <message>
        <source>How far arcs and straight pieces may be off the curves</source>
        <translation>Wie weit Bögen und gerade Stücke von den Kurven abweichen dürfen</translation>
    </message>
    <message>
        <source>Paper</source>
        <translation>Papier</translation>
    </message>
    <message>
        <source>Put the drawing in the middle of this paper, in its true size when one was given and as large as it fits otherwise</source>
        <translation>Die Zeichnung in die Mitte dieses Papiers setzen, in ihrer wahren Größe, wenn eine angegeben ist, sonst so groß, wie sie passt</translation>
    </message>
    <message>
        <source>Margin</source>
        <translation>Rand</translation>
    </message>
    <message>
        <source>What stays free at each edge of the paper</source>
        <translation>Was an jeder Kante des Papiers frei bleibt</translation>
    </message>
    <message>
        <source>Picture scale</source>
        <translation>Bildmaßstab</translation>
    </message>
    <message>
        <source>Pixels of the picture for each of the image</source>
        <translation>Pixel des Ergebnisses für jeden des Bildes</translation>
    </message>
    <message>
        <source>Overlay</source>
        <translation>Überlagerung</translation>
    </message>
    <message>
        <source>Draw the outlines and their nodes over the faded image</source>
        <translation>Die Umrisse und ihre Knoten über das blasse Bild zeichnen</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>The format of the result; without it the ending of the output file decides</source>
        <translation>Das Format des Ergebnisses; ohne Angabe entscheidet die Endung der Datei</translation>
    </message>
    <message>
        <source>Black and white first</source>
        <translation>Zuerst schwarzweiß</translation>
    </message>
    <message>
        <source>1: turn the image to black and white first, as mode bw does</source>
        <translation>1: das Bild zuerst schwarzweiß machen, wie im Modus schwarzweiß</translation>
    </message>
    <message>
        <source>White by lightness</source>
        <translation>Weiß nach Helligkeit</translation>
    </message>
    <message>
        <source>1: what is lighter than the threshold turns white; 0: all turns black</source>
        <translation>1: was heller als die Schwelle ist, wird weiß; 0: alles wird schwarz</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Schwelle</translation>
    </message>
    <message>
        <source>Lightness threshold</source>
        <translation>Helligkeitsschwelle</translation>
    </message>
    <message>
        <source>Whiten paper</source>
        <translation>Papier weißen</translation>
    </message>
    <message>
        <source>Make yellowed paper and uneven light white first</source>
        <translation>Vergilbtes Papier und ungleichmäßiges Licht zuerst weiß machen</translation>
    </message>
    <message>
        <source>Straighten</source>
        <translation>Geraderichten</translation>
    </message>
    <message>
        <source>Turn the image so that its lines of text or of the drawing are level</source>
        <translation>Das Bild drehen, bis seine Textzeilen oder die Linien der Zeichnung waagrecht sind</translation>
    </message>
    <message>
        <source>Make the image black and white first: black is what has a channel as dark as this, so that red lines are ink; auto finds the number, local finds one for each place, for uneven light</source>
        <translation>Das Bild zuerst schwarzweiß machen: schwarz wird, was einen so dunklen Kanal hat, also sind auch rote Linien Tinte; auto findet die Zahl, local eine für jede Stelle, bei ungleichmäßigem Licht</translation>
    </message>
    <message>
        <source>The lightness that a white pixel must exceed, in black and white</source>
        <translation>Die Helligkeit, über der ein Pixel weiß wird</translation>
    </message>
    <message>
        <source>Use alpha</source>
        <translation>Deckkraft verwenden</translation>
    </message>
    <message>
        <source>No effect</source>
        <translation>Ohne Wirkung</translation>
    </message>
    <message>
        <source>Alpha threshold</source>
        <translation>Schwelle der Deckkraft</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>How many colours the result has at most</source>
        <translation>Wie viele Farben das Ergebnis höchstens hat</translation>
    </message>
    <message>
        <source>Colours from the image</source>
        <translation>Farben aus dem Bild</translation>
    </message>
    <message>
        <source>1: pick the colours from the image; 0: start from a regular grid</source>
        <translation>1: die Farben aus dem Bild nehmen; 0: mit einem gleichmäßigen Raster beginnen</translation>
    </message>
    <message>
        <source>Smoothing</source>
        <translation>Glätten</translation>
    </message>
    <message>
        <source>Pixels to smooth over before colours are reduced; 0: none</source>
        <translation>Über wie viele Pixel geglättet wird, ehe die Farben verringert werden; 0: gar nicht</translation>
    </message>
    <message>
        <source>Smoothing limit</source>
        <translation>Grenze des Glättens</translation>
    </message>
    <message>
        <source>Pixels that smoothing would change by more keep their colour</source>
        <translation>Pixel, die das Glätten stärker ändern würde, behalten ihre Farbe</translation>
    </message>
    <message>
        <source>Colour cycles</source>
        <translation>Farbdurchgänge</translation>
    </message>
    <message>
        <source>How often pixels are given to colours, which move in between</source>
        <translation>Wie oft die Pixel auf Farben verteilt werden, die dazwischen wandern</translation>
    </message>
    <message>
        <source>Smallest share</source>
        <translation>Kleinster Anteil</translation>
    </message>
    <message>
        <source>A colour with a smaller share of the pixels is replaced by a random one</source>
        <translation>Eine Farbe mit einem kleineren Anteil der Pixel wird durch eine zufällige ersetzt</translation>
    </message>
    <message>
        <source>Specks</source>
        <translation>Flecken</translation>
    </message>
    <message>
        <source>Leave out outlines with fewer corners on the pixel grid</source>
        <translation>Umrisse mit weniger Ecken im Pixelraster weglassen</translation>
    </message>
    <message>
        <source>px²</source>
        <translation>px²</translation>
    </message>
    <message>
        <source>Line tolerance</source>
        <translation>Toleranz der Linien</translation>
    </message>
    <message>
        <source>The square of the distance by which a straight piece may miss the pixel edges</source>
        <translation>Das Quadrat des Abstands, um den ein gerades Stück die Pixelkanten verfehlen darf</translation>
    </message>
    <message>
        <source>Curve tolerance</source>
        <translation>Toleranz der Kurven</translation>
    </message>
    <message>
        <source>The square of the distance by which a curve may miss the pixel edges</source>
        <translation>Das Quadrat des Abstands, um den eine Kurve die Pixelkanten verfehlen darf</translation>
    </message>
    <message>
        <source>How many colours the map has at most</source>
        <translation>Wie viele Farben die Karte höchstens hat</translation>
    </message>
    <message>
        <source>Tolerance</source>
        <translation>Toleranz</translation>
    </message>
    <message>
        <source>How far a boundary may be off the one that the pixels tell; more gives fewer pieces</source>
        <translation>Wie weit eine Grenze von der abweichen darf, die die Pixel zeigen; mehr gibt weniger Stücke</translation>
    </message>
    <message>
        <source>Merge smaller regions into their neighbours; -1: by the kind of image</source>
        <translation>Kleinere Flächen mit ihren Nachbarn vereinen; -1: nach der Art des Bildes</translation>
    </message>
    <message>
        <source>Smooth boundaries</source>
        <translation>Glatte Grenzen</translation>
    </message>
    <message>
        <source>1: fit lines, arcs and curves; 0: keep the edges of the pixels</source>
        <translation>1: Linien, Bögen und Kurven anpassen; 0: die Kanten der Pixel behalten</translation>
    </message>
    <message>
        <source>Cubic curves</source>
        <translation>Kubische Kurven</translation>
    </message>
    <message>
        <source>1: cubic curves where arcs need many pieces; 0: arcs alone</source>
        <translation>1: kubische Kurven, wo Bögen viele Stücke brauchen; 0: nur Bögen</translation>
    </message>
    <message>
        <source>Mixed pixels</source>
        <translation>Gemischte Pixel</translation>
    </message>
    <message>
        <source>Means of stored levels, as in drawings (1), or of light, as in scaled photographs (2); 0: told from the image</source>
        <translation>Mittel der gespeicherten Werte wie in Zeichnungen (1) oder des Lichts wie in verkleinerten Fotos (2); 0: aus dem Bild erkannt</translation>
    </message>
    <message>
        <source>Ink threshold</source>
        <translation>Tintenschwelle</translation>
    </message>
    <message>
        <source>The level from paper (0) to full ink (1) from which a pixel is ink</source>
        <translation>Die Stufe zwischen Papier (0) und voller Tinte (1), ab der ein Pixel Tinte ist</translation>
    </message>
    <message>
        <source>Specks of dirt</source>
        <translation>Schmutz</translation>
    </message>
    <message>
        <source>Leave out spots of ink of no more pixels</source>
        <translation>Tintenpunkte von höchstens so vielen Pixeln weglassen</translation>
    </message>
    <message>
        <source>Text size</source>
        <translation>Schriftgröße</translation>
    </message>
    <message>
        <source>The largest character, in widths of the usual stroke; 0: no text</source>
        <translation>Das größte Zeichen, in Breiten des üblichen Strichs; 0: kein Text</translation>
    </message>
</context>
<context>
    <name>Choice</name>
    <message>
        <source>outlines</source>
        <translation>Umrisse</translation>
    </message>
    <message>
        <source>regions</source>
        <translation>Flächen</translation>
    </message>
    <message>
        <source>centerlines</source>
        <translation>Mittellinien</translation>
    </message>
    <message>
        <source>photo</source>
        <translation>Foto</translation>
    </message>
    <message>
        <source>lineart</source>
        <translation>Strichzeichnung</translation>
    </message>
    <message>
        <source>logo</source>
        <translation>Logo</translation>
    </message>
    <message>
        <source>drawing</source>
        <translation>Zeichnung</translation>
    </message>
    <message>
        <source>scan</source>
        <translation>Scan</translation>
    </message>
    <message>
        <source>map</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>pixelart</source>
        <translation>Pixelgrafik</translation>
    </message>
    <message>
        <source>plan</source>
        <translation>Plan</translation>
    </message>
    <message>
        <source>color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>bw</source>
        <translation>Schwarzweiß</translation>
    </message>
    <message>
        <source>raw</source>
        <translation>roh</translation>
    </message>
    <message>
        <source>auto</source>
        <translation>auto</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>arcs</source>
        <translation>Bögen</translation>
    </message>
    <message>
        <source>lines</source>
        <translation>Linien</translation>
    </message>
    <message>
        <source>splines</source>
        <translation>Splines</translation>
    </message>
    <message>
        <source>spline</source>
        <translation>Spline</translation>
    </message>
    <message>
        <source>quadratic</source>
        <translation>quadratisch</translation>
    </message>
    <message>
        <source>rings</source>
        <translation>Ringe</translation>
    </message>
    <message>
        <source>shared</source>
        <translation>gemeinsam</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
    <message>
        <source>local</source>
        <translation>örtlich</translation>
    </message>
    <message>
        <source>quadratics</source>
        <translation>quadratische Splines</translation>
    </message>
    <message>
        <source>px</source>
        <translation>Pixel</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>Millimeter</translation>
    </message>
    <message>
        <source>cm</source>
        <translation>Zentimeter</translation>
    </message>
    <message>
        <source>m</source>
        <translation>Meter</translation>
    </message>
    <message>
        <source>in</source>
        <translation>Zoll</translation>
    </message>
    <message>
        <source>ft</source>
        <translation>Fuß</translation>
    </message>
    <message>
        <source>pt</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>R12</source>
        <translation>R12</translation>
    </message>
    <message>
        <source>R2000</source>
        <translation>R2000</translation>
    </message>
    <message>
        <source>R2010</source>
        <translation>R2010</translation>
    </message>
    <message>
        <source>r12</source>
        <translation>R12</translation>
    </message>
    <message>
        <source>r2000</source>
        <translation>R2000</translation>
    </message>
    <message>
        <source>r2010</source>
        <translation>R2010</translation>
    </message>
    <message>
        <source>svg</source>
        <translation>SVG</translation>
    </message>
    <message>
        <source>dxf</source>
        <translation>DXF</translation>
    </message>
    <message>
        <source>pdf</source>
        <translation>PDF</translation>
    </message>
    <message>
        <source>png</source>
        <translation>PNG</translation>
    </message>
    <message>
        <source>json</source>
        <translation>JSON</translation>
    </message>
    <message>
        <source>geojson</source>
        <translation>GeoJSON</translation>
    </message>
</context>
</TS>
