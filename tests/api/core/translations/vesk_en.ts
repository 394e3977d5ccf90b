<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>Test</name>
    <message numerus="yes">
        <source>%n station(s)</source>
        <translation>
            <numerusform>%n station</numerusform>
            <numerusform>%n stations</numerusform>
        </translation>
    </message>
</context>
</TS>
