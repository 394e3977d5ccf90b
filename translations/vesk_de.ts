<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>TuneIn</name>
    <message>
        <source>The given email address is of invalid form (empty or incorrect).</source>
        <translation>Die E-Mail-Adresse hat eine ungültige Form (leer oder falsch).</translation>
    </message>
    <message>
        <source>The given password is of invalid form (empty or incorrect).</source>
        <translation>Das Passwort hat eine ungültige Form (leer oder falsch).</translation>
    </message>
    <message>
        <source>The given postalCode or city/country combination is invalid.</source>
        <translation>Die Postleitzahl oder die Kombination aus Stadt und Land ist ungültig.</translation>
    </message>
    <message>
        <source>The requested account name is already taken.</source>
        <translation>Der gewünschte Kontoname ist schon vergeben.</translation>
    </message>
    <message>
        <source>The requested email is already registered.</source>
        <translation>Die E-Mail-Adresse ist schon registriert.</translation>
    </message>
    <message>
        <source>A validation error occurred.</source>
        <translation>Bei der Prüfung trat ein Fehler auf.</translation>
    </message>
    <message>
        <source>No associated account</source>
        <translation>Kein verknüpftes Konto</translation>
    </message>
    <message>
        <source>Account already associated.</source>
        <translation>Das Konto ist schon verknüpft.</translation>
    </message>
    <message>
        <source>Login failed. Please enter a valid username and password.</source>
        <translation>Die Anmeldung schlug fehl. Bitte gültigen Benutzernamen und gültiges Passwort eingeben.</translation>
    </message>
    <message>
        <source>Access forbidden.</source>
        <translation>Zugriff verweigert.</translation>
    </message>
    <message>
        <source>TuneIn request failed.</source>
        <translation>Die Anfrage an TuneIn schlug fehl.</translation>
    </message>
    <message>
        <source>Invalid data received.</source>
        <translation>Ungültige Daten empfangen.</translation>
    </message>
    <message>
        <source>Invalid data returned.</source>
        <translation>Ungültige Daten erhalten.</translation>
    </message>
    <message>
        <source>Invalid password or user name.</source>
        <translation>Ungültiges Passwort oder ungültiger Benutzername.</translation>
    </message>
    <message>
        <source>Unknown method</source>
        <translation>Unbekannte Methode</translation>
    </message>
    <message>
        <source>Invalid value type.</source>
        <translation>Ungültiger Wertetyp.</translation>
    </message>
    <message>
        <source>Invalid response!</source>
        <translation>Ungültige Antwort!</translation>
    </message>
    <message>
        <source>Invalid response.</source>
        <translation>Ungültige Antwort.</translation>
    </message>
    <message>
        <source>Missing guideId parameter</source>
        <translation>Der Parameter guideId fehlt</translation>
    </message>
    <message>
        <source>Missing query parameter</source>
        <translation>Der Parameter query fehlt</translation>
    </message>
    <message>
        <source>Unsupported method!</source>
        <translation>Nicht unterstützte Methode!</translation>
    </message>
    <message>
        <source>Unspecified method!</source>
        <translation>Keine Methode angegeben!</translation>
    </message>
    <message>
        <source>My Favorites</source>
        <translation>Meine Favoriten</translation>
    </message>
    <message>
        <source>Empty play path</source>
        <translation>Leerer Abspielpfad</translation>
    </message>
    <message>
        <source>No available streams.</source>
        <translation>Keine Streams verfügbar.</translation>
    </message>
    <message>
        <source>Invalid pre-play command</source>
        <translation>Ungültiger Befehl vor dem Abspielen</translation>
    </message>
    <message>
        <source>Failed to add station to presets (%1).</source>
        <translation>Der Sender konnte nicht zu den Favoriten hinzugefügt werden (%1).</translation>
    </message>
    <message>
        <source>Failed to remove station from presets (%1).</source>
        <translation>Der Sender konnte nicht aus den Favoriten entfernt werden (%1).</translation>
    </message>
    <message>
        <source>Done</source>
        <comment>Tune cancel title</comment>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>CMTuneInWorker::CMTuneInWorker(const QVariantHash&amp;)</name>
    <message>
        <source>TuneIn</source>
        <translation>TuneIn</translation>
    </message>
    <message>
        <source>Station, Show, Song, or Artist</source>
        <translation>Sender, Sendung, Titel oder Interpret</translation>
    </message>
    <message>
        <source>Search Stations, Shows, Songs, or Artists</source>
        <translation>Sender, Sendungen, Titel oder Interpreten suchen</translation>
    </message>
    <message>
        <source>TuneIn testing</source>
        <translation>TuneIn-Tests</translation>
    </message>
    <message>
        <source>Browse in various languages</source>
        <translation>In verschiedenen Sprachen stöbern</translation>
    </message>
    <message>
        <source>Different stream types</source>
        <translation>Verschiedene Stream-Arten</translation>
    </message>
    <message>
        <source>Unreliable streams</source>
        <translation>Unzuverlässige Streams</translation>
    </message>
    <message>
        <source>List of all genres</source>
        <translation>Liste aller Genres</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
</context>
<context>
    <name>TuneInBrowseNode::getRoleData(const QString&amp;, const Params&amp;)</name>
    <message>
        <source>Choose stream</source>
        <translation>Stream wählen</translation>
    </message>
    <message>
        <source>Search Stations, Shows, Songs, or Artists</source>
        <translation>Sender, Sendungen, Titel oder Interpreten suchen</translation>
    </message>
    <message>
        <source>Report a problem</source>
        <translation>Ein Problem melden</translation>
    </message>
</context>
<context>
    <name>TuneInAddRemovePresetsNode::getRoleData(const QString&amp;, const Params&amp;)</name>
    <message>
        <source>Add to TuneIn Favorites</source>
        <translation>Zu den TuneIn-Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>Remove from TuneIn Favorites</source>
        <translation>Aus den TuneIn-Favoriten entfernen</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>TuneInHttpClient::request(const VeskUrl&amp;, QByteArray*, TuneInHttpClient::Type)</name>
    <message>
        <source>Failed to connect to TuneIn</source>
        <translation>Die Verbindung zu TuneIn schlug fehl</translation>
    </message>
</context>
</TS>
