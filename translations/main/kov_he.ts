<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he_IL" sourcelanguage="en_US">
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <comment>Translate this string to the string 'LTR' in left-to-right languages or to 'RTL' in right-to-left languages (such as Hebrew and Arabic) to get proper UI layout.</comment>
        <translation>RTL</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Download with %1</source>
        <extracomment>Menu entry for one link; %1 is the product's name</extracomment>
        <translation>הורדה באמצעות %1</translation>
    </message>
    <message>
        <source>Download all with %1</source>
        <extracomment>Menu entry for all links of a page; %1 is the product's name</extracomment>
        <translation>הורדת הכול באמצעות %1</translation>
    </message>
    <message>
        <source>Download selected with %1</source>
        <extracomment>Menu entry for the links within the selected part of a page; %1 is the product's name</extracomment>
        <translation>הורדת הפריטים שנבחרו באמצעות %1</translation>
    </message>
    <message>
        <source>Download video with %1</source>
        <extracomment>Menu entry for a video; %1 is the product's name</extracomment>
        <translation>הורדת הסרטון באמצעות %1</translation>
    </message>
</context>
<context>
    <name>VhIpcIncomingDownloadsClient</name>
    <message>
        <source>Connection failure</source>
        <extracomment>The link to the download manager broke or could not be made</extracomment>
        <translation>החיבור נכשל</translation>
    </message>
</context>
</TS>
