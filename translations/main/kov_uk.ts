<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="uk_UA" sourcelanguage="en_US">
<context>
    <name>QObject</name>
    <message>
        <source>Download with %1</source>
        <extracomment>Menu entry for one link; %1 is the product's name</extracomment>
        <translation>Завантажити за допомогою %1</translation>
    </message>
    <message>
        <source>Download all with %1</source>
        <extracomment>Menu entry for all links of a page; %1 is the product's name</extracomment>
        <translation>Завантажити все за допомогою %1</translation>
    </message>
    <message>
        <source>Download selected with %1</source>
        <extracomment>Menu entry for the links within the selected part of a page; %1 is the product's name</extracomment>
        <translation>Завантажити вибране за допомогою %1</translation>
    </message>
    <message>
        <source>Download video with %1</source>
        <extracomment>Menu entry for a video; %1 is the product's name</extracomment>
        <translation>Завантажити відео за допомогою %1</translation>
    </message>
</context>
<context>
    <name>VhIpcIncomingDownloadsClient</name>
    <message>
        <source>Connection failure</source>
        <extracomment>The link to the download manager broke or could not be made</extracomment>
        <translation>Помилка з’єднання</translation>
    </message>
</context>
</TS>
