<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Test</name>
    <message>
        <source>My Favorites</source>
        <translation>Meine Favoriten</translation>
    </message>
    <message>
        <source>Open</source>
        <comment>verb</comment>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open</source>
        <comment>adjective</comment>
        <translation>Offen</translation>
    </message>
    <message numerus="yes">
        <source>%n station(s)</source>
        <translation>
            <numerusform>%n Sender</numerusform>
            <numerusform>%n Sender zusammen</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>aus %2: %1</translation>
    </message>
</context>
<context>
    <name>TestNode::title(const QString&amp;)</name>
    <message>
        <source>Open</source>
        <translation>Auf</translation>
    </message>
</context>
</TS>
