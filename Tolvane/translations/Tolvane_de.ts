<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="de_DE">
<context>
    <name>Localizable</name>
    <message>
        <source>This version of Tolvane, version %1, is incompatible with Mac OS X %2</source>
        <translation>Diese Version von Tolvane, Version %1, ist mit Mac OS X %2 nicht kompatibel</translation>
    </message>
    <message>
        <source>Check for Update</source>
        <translation>Nach Update suchen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Visit our website to check for a newer version of the application.</source>
        <translation>Besuchen Sie unsere Website, um nach einer neueren Version des Programms zu suchen.</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <translation>Morgen</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source> day</source>
        <translation> Tag</translation>
    </message>
    <message>
        <source> days</source>
        <translation> Tage</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Softwareaktualisierung</translation>
    </message>
    <message>
        <source>A new version of %1 is available!</source>
        <translation>Eine neue Version von %1 ist verfügbar!</translation>
    </message>
    <message>
        <source>Release Notes:</source>
        <translation>Versionshinweise:</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Später erinnern</translation>
    </message>
    <message>
        <source>Download…</source>
        <translation>Laden…</translation>
    </message>
    <message>
        <source>You're up to date!</source>
        <translation>Alles ist aktuell!</translation>
    </message>
    <message>
        <source>%1 %2 is currently the newest version available.</source>
        <translation>%1 %2 ist die neueste verfügbare Version.</translation>
    </message>
    <message>
        <source>Update Error!</source>
        <translation>Fehler bei der Aktualisierung!</translation>
    </message>
    <message>
        <source>Do not show this message again</source>
        <translation>Diese Meldung nicht mehr anzeigen</translation>
    </message>
    <message>
        <source>A New Version is available</source>
        <translation>Eine neue Version ist verfügbar</translation>
    </message>
    <message>
        <source>A new version of %1, version %2, is available. Would you like to download the new version now?</source>
        <translation>Eine neue Version von %1, Version %2, ist verfügbar. Möchten Sie die neue Version jetzt laden?</translation>
    </message>
    <message>
        <source>Your Software is up-to-date</source>
        <translation>Ihre Software ist auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>You have the most recent version of %1.</source>
        <translation>Sie haben die neueste Version von %1.</translation>
    </message>
    <message>
        <source>Unable to check for update</source>
        <translation>Suche nach Updates nicht möglich</translation>
    </message>
    <message>
        <source>%1 was unable to check for an update online. Please make sure you have a valid connection to the internet and try again.</source>
        <translation>%1 konnte nicht online nach einem Update suchen. Bitte prüfen Sie Ihre Internetverbindung und versuchen Sie es erneut.</translation>
    </message>
</context>
<context>
    <name>TLMainMenu</name>
    <message>
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen…</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Einstellungen…</translation>
    </message>
    <message>
        <source>&amp;Welcome to Tolvane</source>
        <translation>&amp;Willkommen bei Tolvane</translation>
    </message>
    <message>
        <source>Tolvane &amp;Website</source>
        <translation>Tolvane-&amp;Website</translation>
    </message>
    <message>
        <source>&amp;Feedback and Support</source>
        <translation>&amp;Rückmeldung und Hilfe</translation>
    </message>
    <message>
        <source>Check for &amp;Updates…</source>
        <translation>Nach &amp;Updates suchen…</translation>
    </message>
    <message>
        <source>Check for &amp;Vistrel Pro Updates…</source>
        <translation>Nach &amp;Vistrel-Pro-Updates suchen…</translation>
    </message>
    <message>
        <source>&amp;About Tolvane</source>
        <translation>&amp;Über Tolvane</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Clear Menu</source>
        <translation>Menü &amp;leeren</translation>
    </message>
    <message>
        <source>&amp;Minimize</source>
        <translation>&amp;Minimieren</translation>
    </message>
</context>
<context>
    <name>TLDocumentController</name>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Design files (%1)</source>
        <translation>Design-Dateien (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>The document "%1" could not be opened.</source>
        <translation>Das Dokument „%1“ konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>It is a folder, not a document.</source>
        <translation>Das ist ein Ordner, kein Dokument.</translation>
    </message>
    <message>
        <source>Only files on this computer can be opened.</source>
        <translation>Nur Dateien auf diesem Computer können geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>QXWelcomeScreen</name>
    <message>
        <source>Welcome to %1</source>
        <translation>Willkommen bei %1</translation>
    </message>
    <message>
        <source>&amp;Show this window when Tolvane starts</source>
        <translation>Dieses Fenster beim &amp;Start von Tolvane zeigen</translation>
    </message>
    <message>
        <source>Loading the welcome page</source>
        <translation>Die Willkommensseite wird geladen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
</TS>
