<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_CA" sourcelanguage="en">
<context>
    <name>Test</name>
    <message>
        <source>My Favorites</source>
        <translation>Mes favoris</translation>
    </message>
</context>
</TS>
