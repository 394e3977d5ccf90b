<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>mystations</name>
    <message><source>My stations</source><translation>Meine Sender</translation></message>
    <message><source>All stations</source><translation>Alle Sender</translation></message>
    <message><source>Favorites</source><translation>Favoriten</translation></message>
    <message><source>Search</source><translation>Suche</translation></message>
    <message><source>Search my stations</source><translation>Meine Sender durchsuchen</translation></message>
    <message><source>Add to favorites</source><translation>Zu den Favoriten</translation></message>
    <message><source>Remove from favorites</source><translation>Aus den Favoriten entfernen</translation></message>
    <message><source>There is no such station.</source><translation>Diesen Sender gibt es nicht.</translation></message>
    <message><source>Sort my stations</source><translation>Meine Sender sortieren</translation></message>
    <message><source>By name, instead of in the order in which they were entered</source><translation>Nach Namen statt in der Reihenfolge, in der sie eingetragen wurden</translation></message>
</context>
</TS>
