<?xml version="1.0" encoding="utf-8"?>
<!-- SPDX-License-Identifier: MIT -->
<!DOCTYPE TS>
<TS version="2.1" language="eo" sourcelanguage="en">
<context>
    <name></name>
    <message id="BOOLEAN_VALUE_YES_TEXT">
        <source>Yes</source>
        <extracomment>The only text of a table that lacks all others.</extracomment>
        <translation>Jes</translation>
    </message>
</context>
</TS>
