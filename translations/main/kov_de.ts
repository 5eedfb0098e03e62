<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>QObject</name>
    <message>
        <source>Download with %1</source>
        <extracomment>Menu entry for one link; %1 is the product's name</extracomment>
        <translation>Mit %1 herunterladen</translation>
    </message>
    <message>
        <source>Download all with %1</source>
        <extracomment>Menu entry for all links of a page; %1 is the product's name</extracomment>
        <translation>Alles mit %1 herunterladen</translation>
    </message>
    <message>
        <source>Download selected with %1</source>
        <extracomment>Menu entry for the links within the selected part of a page; %1 is the product's name</extracomment>
        <translation>Auswahl mit %1 herunterladen</translation>
    </message>
    <message>
        <source>Download video with %1</source>
        <extracomment>Menu entry for a video; %1 is the product's name</extracomment>
        <translation>Video mit %1 herunterladen</translation>
    </message>
</context>
<context>
    <name>VhIpcIncomingDownloadsClient</name>
    <message>
        <source>Connection failure</source>
        <extracomment>The link to the download manager broke or could not be made</extracomment>
        <translation>Verbindung fehlgeschlagen</translation>
    </message>
</context>
</TS>
