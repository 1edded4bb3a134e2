<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="de_DE">
<context>
    <name>Localizable</name>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
</context>
<context>
    <name>MoveApplication</name>
    <message>
        <source>Move to Applications Folder</source>
        <translation>In den Programme-Ordner bewegen</translation>
    </message>
</context>
</TS>
