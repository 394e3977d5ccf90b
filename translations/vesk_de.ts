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
    <message>
        <source>Offer to report stations that do not play</source>
        <translation>Anbieten, stumme Sender zu melden</translation>
    </message>
    <message>
        <source>The menu of what plays then has an entry that reports the problem.</source>
        <translation>Im Menü des laufenden Senders steht dann ein Eintrag, der das Problem meldet.</translation>
    </message>
    <message>
        <source>TuneIn partner id</source>
        <translation>TuneIn-Partnerkennung</translation>
    </message>
    <message>
        <source>By which TuneIn knows the maker of this device. Without one it may refuse to answer.</source>
        <translation>Daran erkennt TuneIn den Hersteller dieses Geräts. Ohne sie antwortet es womöglich nicht.</translation>
    </message>
    <message>
        <source>Address of the TuneIn start page</source>
        <translation>Adresse der TuneIn-Startseite</translation>
    </message>
    <message>
        <source>Left empty, it is TuneIn's own.</source>
        <translation>Bleibt das Feld leer, ist es die von TuneIn.</translation>
    </message>
    <message>
        <source>Stream formats to ask TuneIn for</source>
        <translation>Stream-Formate, um die TuneIn gebeten wird</translation>
    </message>
    <message>
        <source>Separated by commas. Stations are offered in these formats only.</source>
        <translation>Durch Kommas getrennt. Sender werden nur in diesen Formaten angeboten.</translation>
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
<context>
    <name>Host</name>
    <message>
        <source>%1 could not be loaded</source>
        <translation>%1 konnte nicht geladen werden</translation>
    </message>
    <message>
        <source>The %1 service was interrupted. Please try again.</source>
        <translation>Der Dienst %1 wurde unterbrochen. Bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>This address changes something. It can only be opened from a list that offers it.</source>
        <translation>Diese Adresse ändert etwas. Sie lässt sich nur aus einer Liste öffnen, die sie anbietet.</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Dienste</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Show the parts of a screen in one list</source>
        <translation>Die Teile einer Ansicht in einer Liste zeigen</translation>
    </message>
    <message>
        <source>Fetch streams and pictures from the home network</source>
        <translation>Streams und Bilder aus dem Heimnetz holen</translation>
    </message>
    <message>
        <source>For stations and pictures on a server at home. Otherwise a service on the internet cannot lead this device to addresses in the house.</source>
        <translation>Für Sender und Bilder auf einem Server zu Hause. Sonst kann ein Dienst im Internet dieses Gerät nicht zu Adressen im Haus führen.</translation>
    </message>
    <message>
        <source>Id of this device</source>
        <translation>Kennung dieses Geräts</translation>
    </message>
    <message>
        <source>Address of the network adapter</source>
        <translation>Adresse des Netzwerkadapters</translation>
    </message>
    <message>
        <source>Connected to the network</source>
        <translation>Mit dem Netzwerk verbunden</translation>
    </message>
    <message>
        <source>Not saved: the disk is full.</source>
        <translation>Nicht gespeichert: Der Datenträger ist voll.</translation>
    </message>
    <message>
        <source>Not saved: the disk cannot be written. The log says more.</source>
        <translation>Nicht gespeichert: Auf den Datenträger kann nicht geschrieben werden. Mehr steht im Protokoll.</translation>
    </message>
    <message>
        <source>Not saved: too much is waiting for the disk.</source>
        <translation>Nicht gespeichert: Zu viel wartet auf den Datenträger.</translation>
    </message>
    <message>
        <source>Not saved: these are no keys with values.</source>
        <translation>Nicht gespeichert: Das sind keine Schlüssel mit Werten.</translation>
    </message>
    <message>
        <source>Not saved: a plug-in may not keep that much.</source>
        <translation>Nicht gespeichert: So viel darf ein Plug-in nicht behalten.</translation>
    </message>
    <message>
        <source>Of everything that is shown, and of the lists that services answer with.</source>
        <translation>Von allem, was angezeigt wird, und der Listen, mit denen Dienste antworten.</translation>
    </message>
    <message>
        <source>Otherwise each part is a folder of its own, which is opened first.</source>
        <translation>Sonst ist jeder Teil ein eigener Ordner, der erst geöffnet wird.</translation>
    </message>
    <message>
        <source>Advanced settings</source>
        <translation>Erweiterte Einstellungen</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Browsing</source>
        <translation>Blättern</translation>
    </message>
    <message>
        <source>The setting &quot;%1&quot; cannot be &quot;%2&quot;: it is %3.</source>
        <translation>Die Einstellung „%1“ kann nicht „%2“ sein: Möglich ist %3.</translation>
    </message>
    <message>
        <source>a language tag, such as &quot;de-DE&quot; or &quot;en&quot;</source>
        <translation>ein Sprachkürzel wie „de-DE“ oder „en“</translation>
    </message>
    <message>
        <source>formats separated by commas, without blanks, out of: %1; or empty</source>
        <translation>eine Liste von Formaten mit Kommas ohne Leerzeichen dazwischen, aus: %1; oder nichts</translation>
    </message>
    <message>
        <source>an address that begins with http:// or https://, or empty</source>
        <translation>eine Adresse, die mit http:// oder https:// beginnt, oder nichts</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>wahr oder falsch (true, false)</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>eine ganze Zahl</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>eine Zahl</translation>
    </message>
    <message>
        <source>a text of one line and at most %1 characters</source>
        <translation>ein Text aus einer Zeile mit höchstens %1 Zeichen</translation>
    </message>
    <message>
        <source>The %1 service cannot be reached. Please try again later.</source>
        <translation>Der Dienst %1 ist nicht zu erreichen. Bitte versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>The %1 service does not answer. Please try again later.</source>
        <translation>Der Dienst %1 antwortet nicht. Bitte versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>There is no secure connection to the %1 service.</source>
        <translation>Es gibt keine sichere Verbindung zum Dienst %1.</translation>
    </message>
    <message>
        <source>The answer of the %1 service did not come whole. Please try again later.</source>
        <translation>Die Antwort des Dienstes %1 kam nicht vollständig an. Bitte versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>What came is no answer of the %1 service. It may be out of order, or this network may want a login first.</source>
        <translation>Was kam, ist keine Antwort des Dienstes %1. Vielleicht ist er gestört, oder dieses Netz verlangt zuerst eine Anmeldung.</translation>
    </message>
    <message>
        <source>The %1 service is out of order (%2). Please try again later.</source>
        <translation>Der Dienst %1 ist gestört (%2). Bitte versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>The %1 service cannot answer this (%2).</source>
        <translation>Der Dienst %1 kann das nicht beantworten (%2).</translation>
    </message>
    <message>
        <source>The %1 service refuses this device (%2).</source>
        <translation>Der Dienst %1 weist dieses Gerät ab (%2).</translation>
    </message>
    <message>
        <source>The %1 service refuses this device (%2). Check the setting &quot;%3&quot;.</source>
        <translation>Der Dienst %1 weist dieses Gerät ab (%2). Prüfen Sie die Einstellung „%3“.</translation>
    </message>
    <message>
        <source>one of: %1</source>
        <translation>eines von: %1</translation>
    </message>
    <message>
        <source>a number from %1 to %2</source>
        <translation>eine Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>a number from %1</source>
        <translation>eine Zahl ab %1</translation>
    </message>
    <message>
        <source>a number up to %1</source>
        <translation>eine Zahl bis %1</translation>
    </message>
</context>
<context>
    <name>Player</name>
    <message>
        <source>There is no such row.</source>
        <translation>Diese Zeile gibt es nicht.</translation>
    </message>
    <message>
        <source>There is nothing to play in this row.</source>
        <translation>In dieser Zeile gibt es nichts abzuspielen.</translation>
    </message>
    <message>
        <source>Something else was played in the meantime.</source>
        <translation>Inzwischen wurde etwas anderes abgespielt.</translation>
    </message>
    <message>
        <source>This entry is no longer in the list.</source>
        <translation>Dieser Eintrag steht nicht mehr in der Liste.</translation>
    </message>
    <message>
        <source>This cannot be played.</source>
        <translation>Das lässt sich nicht abspielen.</translation>
    </message>
    <message>
        <source>Trying another stream ...</source>
        <translation>Ein anderer Stream wird versucht ...</translation>
    </message>
    <message>
        <source>Nothing is playing.</source>
        <translation>Es läuft nichts.</translation>
    </message>
    <message>
        <source>Nothing is paused.</source>
        <translation>Nichts ist angehalten.</translation>
    </message>
    <message>
        <source>There is nothing to hear on the stream.</source>
        <translation>Auf dem Stream ist nichts zu hören.</translation>
    </message>
    <message>
        <source>The playlists never lead to a stream.</source>
        <translation>Die Wiedergabelisten führen zu keinem Stream.</translation>
    </message>
    <message>
        <source>The stream is encrypted.</source>
        <translation>Der Stream ist verschlüsselt.</translation>
    </message>
    <message>
        <source>The stream's server ended it.</source>
        <translation>Der Server hat den Stream beendet.</translation>
    </message>
    <message>
        <source>There is no audio at the stream's address.</source>
        <translation>An der Adresse des Streams gibt es keinen Ton.</translation>
    </message>
    <message>
        <source>There is no stream in the playlist.</source>
        <translation>In der Wiedergabeliste steht kein Stream.</translation>
    </message>
    <message>
        <source>The sound output does not work.</source>
        <translation>Die Tonausgabe funktioniert nicht.</translation>
    </message>
    <message>
        <source>There is no sound device.</source>
        <translation>Es gibt kein Gerät für die Tonausgabe.</translation>
    </message>
    <message>
        <source>This device cannot play the station's streams.</source>
        <translation>Dieses Gerät kann die Streams des Senders nicht abspielen.</translation>
    </message>
    <message>
        <source>The station has no stream at the moment.</source>
        <translation>Der Sender hat im Moment keinen Stream.</translation>
    </message>
    <message>
        <source>The station cannot be heard in your country.</source>
        <translation>Der Sender ist in Ihrem Land nicht zu hören.</translation>
    </message>
    <message>
        <source>The station may not be played here.</source>
        <translation>Der Sender darf hier nicht abgespielt werden.</translation>
    </message>
    <message>
        <source>The stream's server refused it (code %1).</source>
        <translation>Der Server hat den Stream verweigert (Code %1).</translation>
    </message>
    <message>
        <source>The stream's server sent another part of the file.</source>
        <translation>Der Server hat einen anderen Teil der Datei gesendet.</translation>
    </message>
    <message>
        <source>There is a web page in place of the stream.</source>
        <translation>Statt des Streams kam eine Webseite.</translation>
    </message>
    <message>
        <source>The stream cannot be decoded.</source>
        <translation>Der Stream kann nicht dekodiert werden.</translation>
    </message>
    <message>
        <source>The stream's server has no address.</source>
        <translation>Der Server des Streams hat keine Adresse.</translation>
    </message>
    <message>
        <source>The stream's server cannot be reached.</source>
        <translation>Der Server des Streams ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The stream's server does not answer.</source>
        <translation>Der Server des Streams antwortet nicht.</translation>
    </message>
    <message>
        <source>There is no safe connection to the stream.</source>
        <translation>Es gibt keine sichere Verbindung zum Stream.</translation>
    </message>
    <message>
        <source>The stream leads from address to address.</source>
        <translation>Der Stream führt von Adresse zu Adresse.</translation>
    </message>
    <message>
        <source>The connection to the stream was lost.</source>
        <translation>Die Verbindung zum Stream ist abgerissen.</translation>
    </message>
    <message>
        <source>The stream cannot be received (%1).</source>
        <translation>Der Stream kann nicht empfangen werden (%1).</translation>
    </message>
    <message>
        <source>%1 Trying again in %2 s.</source>
        <translation>%1 Neuer Versuch in %2 s.</translation>
    </message>
    <message>
        <source>%1 It asks for a break of %2 min. Trying again in %3 s.</source>
        <translation>%1 Er bittet um eine Pause von %2 min. Neuer Versuch in %3 s.</translation>
    </message>
    <message>
        <source>%1 Trying again.</source>
        <translation>%1 Neuer Versuch.</translation>
    </message>
    <message>
        <source>%1 Trying the next address.</source>
        <translation>%1 Die nächste Adresse wird versucht.</translation>
    </message>
    <message>
        <source>The stream's playlist is empty.</source>
        <translation>Die Wiedergabeliste des Streams ist leer.</translation>
    </message>
    <message>
        <source>The stream's address is no web address.</source>
        <translation>Die Adresse des Streams ist keine Webadresse.</translation>
    </message>
    <message>
        <source>The stream leads to what is no web address.</source>
        <translation>Der Stream führt zu etwas, das keine Webadresse ist.</translation>
    </message>
    <message>
        <source>The stream leads from a safe address to one that is not.</source>
        <translation>Der Stream führt von einer sicheren Adresse zu einer unsicheren.</translation>
    </message>
    <message>
        <source>The stream leads inside the local network, where no station may lead.</source>
        <translation>Der Stream führt ins lokale Netz, wohin kein Sender führen darf.</translation>
    </message>
    <message>
        <source>The stream's server does not speak HTTP.</source>
        <translation>Der Server des Streams spricht kein HTTP.</translation>
    </message>
    <message>
        <source>The head of the stream's server's answer is too long.</source>
        <translation>Der Kopf der Antwort des Servers ist zu lang.</translation>
    </message>
    <message>
        <source>The head of the stream's server's answer never ends.</source>
        <translation>Der Kopf der Antwort des Servers hört nicht auf.</translation>
    </message>
    <message>
        <source>The stream's server sends nothing.</source>
        <translation>Der Server des Streams sendet nichts.</translation>
    </message>
    <message>
        <source>The stream's server has stopped sending.</source>
        <translation>Der Server des Streams sendet nicht mehr.</translation>
    </message>
</context>
<context>
    <name>CMErrorHelper</name>
    <message>
        <source>The address of %1 was not found.</source>
        <translation>Die Adresse von %1 wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>Could not connect to %1.</source>
        <translation>Keine Verbindung zu %1.</translation>
    </message>
    <message>
        <source>%1 did not answer in time.</source>
        <translation>%1 hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>No secure connection to %1 could be made.</source>
        <translation>Zu %1 kam keine sichere Verbindung zustande.</translation>
    </message>
    <message>
        <source>The exchange with %1 failed.</source>
        <translation>Der Austausch mit %1 schlug fehl.</translation>
    </message>
</context>
<context>
    <name>CMError</name>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>CMListRowsNode</name>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>Der Bereich der Zeilen ist ungültig.</translation>
    </message>
</context>
<context>
    <name>CMReply</name>
    <message>
        <source>The request was cancelled.</source>
        <translation>Die Anfrage wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The request was not answered.</source>
        <translation>Die Anfrage wurde nicht beantwortet.</translation>
    </message>
</context>
<context>
    <name>CMRequest</name>
    <message>
        <source>The request was redirected too often.</source>
        <translation>Die Anfrage wurde zu oft weitergeleitet.</translation>
    </message>
    <message>
        <source>There is nothing at this address.</source>
        <translation>Unter dieser Adresse gibt es nichts.</translation>
    </message>
</context>
<context>
    <name>CMValuesWorker</name>
    <message>
        <source>The value cannot be changed.</source>
        <translation>Der Wert kann nicht geändert werden.</translation>
    </message>
    <message>
        <source>The value is not of the right type.</source>
        <translation>Der Wert hat den falschen Typ.</translation>
    </message>
    <message>
        <source>A value has no rows.</source>
        <translation>Ein Wert hat keine Zeilen.</translation>
    </message>
</context>
<context>
    <name>NodeLink</name>
    <message>
        <source>The answer is too long.</source>
        <translation>Die Antwort ist zu lang.</translation>
    </message>
</context>
<context>
    <name>Ctl</name>
    <message>
        <source>"%1" is no place: that is a path, row numbers (3/0), favorites, or search:TEXT</source>
        <translation>"%1" ist kein Ort: das ist ein Pfad, Zeilennummern (3/0), favorites oder search:TEXT</translation>
    </message>
    <message>
        <source>row %1 leads nowhere</source>
        <translation>Zeile %1 führt nirgendwohin</translation>
    </message>
    <message>
        <source>no row with "%1" was shown lately; show the list that has it</source>
        <translation>in letzter Zeit wurde keine Zeile mit "%1" gezeigt; zeige die Liste, in der sie steht</translation>
    </message>
    <message>
        <source>This entry is no longer in the list.</source>
        <translation>Dieser Eintrag steht nicht mehr in der Liste.</translation>
    </message>
    <message>
        <source>This is the list now:</source>
        <translation>So sieht die Liste jetzt aus:</translation>
    </message>
    <message>
        <source>this service has no favorites</source>
        <translation>dieser Dienst hat keine Favoriten</translation>
    </message>
    <message>
        <source>this service offers no search</source>
        <translation>dieser Dienst bietet keine Suche</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>verbindet</translation>
    </message>
    <message>
        <source>playing</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>pausiert</translation>
    </message>
    <message>
        <source>error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
    <message>
        <source>the host is gone</source>
        <translation>der Host ist weg</translation>
    </message>
    <message>
        <source>it was stopped, or something else played, before it was heard</source>
        <translation>bevor es zu hören war, wurde es angehalten oder etwas anderes abgespielt</translation>
    </message>
    <message>
        <source>there is no row %1</source>
        <translation>es gibt keine Zeile %1</translation>
    </message>
    <message>
        <source>There is nothing here.</source>
        <translation>Hier ist nichts.</translation>
    </message>
    <message>
        <source>done: %1</source>
        <translation>erledigt: %1</translation>
    </message>
    <message>
        <source>row %1 is nothing to choose</source>
        <translation>Zeile %1 kann man nicht wählen</translation>
    </message>
    <message>
        <source>there are no streams to choose from</source>
        <translation>es gibt keine Streams zur Auswahl</translation>
    </message>
    <message>
        <source>the menu has no entry for favorites</source>
        <translation>das Menü hat keinen Eintrag für Favoriten</translation>
    </message>
    <message>
        <source>%1: a favorite now</source>
        <translation>%1: jetzt ein Favorit</translation>
    </message>
    <message>
        <source>%1: a favorite already</source>
        <translation>%1: schon ein Favorit</translation>
    </message>
    <message>
        <source>%1: no favorite any more</source>
        <translation>%1: kein Favorit mehr</translation>
    </message>
    <message>
        <source>%1: no favorite</source>
        <translation>%1: kein Favorit</translation>
    </message>
    <message>
        <source>"%1" is a list, or a row that was not shown lately</source>
        <translation>"%1" ist eine Liste oder eine Zeile, die in letzter Zeit nicht gezeigt wurde</translation>
    </message>
    <message>
        <source>row %1 has no menu</source>
        <translation>Zeile %1 hat kein Menü</translation>
    </message>
    <message>
        <source>nothing plays, or what plays has no menu</source>
        <translation>es läuft nichts, oder was läuft, hat kein Menü</translation>
    </message>
    <message>
        <source>--last is before --first</source>
        <translation>--last liegt vor --first</translation>
    </message>
    <message>
        <source>search for what?</source>
        <translation>wonach soll gesucht werden?</translation>
    </message>
    <message>
        <source>not linked</source>
        <translation>nicht verknüpft</translation>
    </message>
    <message>
        <source>there is nothing to play</source>
        <translation>es gibt nichts abzuspielen</translation>
    </message>
    <message>
        <source>the best hit for "%1": %2</source>
        <translation>der beste Treffer für "%1": %2</translation>
    </message>
    <message>
        <source>the host is gone; waiting until it is back</source>
        <translation>der Host ist weg; es wird gewartet, bis er wieder da ist</translation>
    </message>
    <message>
        <source>Password: </source>
        <translation>Passwort: </translation>
    </message>
    <message>
        <source>Once more: </source>
        <translation>Noch einmal: </translation>
    </message>
    <message>
        <source>these are two different passwords</source>
        <translation>das sind zwei verschiedene Passwörter</translation>
    </message>
    <message>
        <source>a password is needed</source>
        <translation>ein Passwort wird gebraucht</translation>
    </message>
    <message>
        <source>the password is too long</source>
        <translation>das Passwort ist zu lang</translation>
    </message>
    <message>
        <source>%1: made</source>
        <translation>%1: angelegt</translation>
    </message>
    <message>
        <source>%1: linked</source>
        <translation>%1: verknüpft</translation>
    </message>
    <message>
        <source>%1: not linked any more</source>
        <translation>%1: nicht mehr verknüpft</translation>
    </message>
    <message>
        <source>asked for; it comes by e-mail</source>
        <translation>angefordert; es kommt per E-Mail</translation>
    </message>
    <message>
        <source>The service is slow; waiting for its answer.</source>
        <translation>Der Dienst ist langsam; es wird auf seine Antwort gewartet.</translation>
    </message>
    <message>
        <source>no host at %1: %2. Start one with "vesk-host", or say with --host or VESK_HOST where it is.</source>
        <translation>kein Host unter %1: %2. Starte einen mit "vesk-host", oder sage mit --host oder VESK_HOST, wo er ist.</translation>
    </message>
    <message>
        <source>there are several services for this: name one with --in (%1)</source>
        <translation>dafür gibt es mehrere Dienste: nenne einen mit --in (%1)</translation>
    </message>
    <message>
        <source>there is no service "%1"; there are: %2</source>
        <translation>es gibt keinen Dienst "%1"; es gibt: %2</translation>
    </message>
    <message>
        <source>this service has no accounts</source>
        <translation>dieser Dienst hat keine Konten</translation>
    </message>
    <message>
        <source>that did not work: the favorites are as they were</source>
        <translation>das hat nicht geklappt: die Favoriten sind wie zuvor</translation>
    </message>
    <message>
        <source>Still waiting for: %1</source>
        <translation>Es fehlt noch: %1</translation>
    </message>
    <message>
        <source>%1 more with --in %2</source>
        <translation>%1 weitere mit --in %2</translation>
    </message>
    <message>
        <source>%1 is a folder</source>
        <translation>%1 ist ein Ordner</translation>
    </message>
    <message>
        <source>%1 is no ordinary file</source>
        <translation>%1 ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>%1 is larger than 1 MiB</source>
        <translation>%1 ist größer als 1 MiB</translation>
    </message>
    <message>
        <source>%1: %2 added, %3 known already, %4 skipped</source>
        <translation>%1: %2 hinzugefügt, %3 schon bekannt, %4 übersprungen</translation>
    </message>
    <message>
        <source>this service takes no files</source>
        <translation>dieser Dienst nimmt keine Dateien an</translation>
    </message>
    <message>
        <source>this service gives no files</source>
        <translation>dieser Dienst gibt keine Dateien heraus</translation>
    </message>
    <message>
        <source>"%1" is no format; there are: %2</source>
        <translation>"%1" ist kein Format; es gibt: %2</translation>
    </message>
    <message>
        <source>%1: written</source>
        <translation>%1: geschrieben</translation>
    </message>
</context>
<context>
    <name>Web</name>
    <message>
        <source>%1 account</source>
        <translation>%1-Konto</translation>
    </message>
    <message>
        <source>%1 is a favorite now</source>
        <translation>%1 ist jetzt ein Favorit</translation>
    </message>
    <message>
        <source>%1 is no favorite any more</source>
        <translation>%1 ist kein Favorit mehr</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>%1: done</source>
        <translation>%1: erledigt</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>Check now</source>
        <translation>Jetzt nachsehen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Code: %1</source>
        <translation>Code: %1</translation>
    </message>
    <message>
        <source>Connecting …</source>
        <translation>Verbinden …</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Favorite</source>
        <translation>Favorit</translation>
    </message>
    <message>
        <source>Fixed when the host was started.</source>
        <translation>Beim Start des Hosts festgelegt.</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vor</translation>
    </message>
    <message>
        <source>From the search field to the results</source>
        <translation>Vom Suchfeld zu den Ergebnissen</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Kept in this browser.</source>
        <translation>Gilt nur für diesen Browser.</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Licenses</source>
        <translation>Lizenzen</translation>
    </message>
    <message>
        <source>Of the libraries that are part of this page.</source>
        <translation>Der Bibliotheken, die Teil dieser Seite sind.</translation>
    </message>
    <message>
        <source>Show the licenses</source>
        <translation>Lizenzen anzeigen</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Like the system</source>
        <translation>Wie das System</translation>
    </message>
    <message>
        <source>Link with a code</source>
        <translation>Mit einem Code verknüpfen</translation>
    </message>
    <message>
        <source>Linked to %1</source>
        <translation>Verknüpft mit %1</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Wird geladen</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>More for %1</source>
        <translation>Mehr zu %1</translation>
    </message>
    <message>
        <source>Move in a list or a menu</source>
        <translation>In Listen und Menüs bewegen</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Not opened</source>
        <translation>Nicht geöffnet</translation>
    </message>
    <message>
        <source>One menu up, or clear the search</source>
        <translation>Ein Menü zurück oder die Suche leeren</translation>
    </message>
    <message>
        <source>Open or play the entry</source>
        <translation>Den Eintrag öffnen oder abspielen</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Pause what plays, or go on</source>
        <translation>Anhalten oder weiterhören</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Player</source>
        <translation>Player</translation>
    </message>
    <message>
        <source>Playing</source>
        <translation>Läuft</translation>
    </message>
    <message>
        <source>Preferred</source>
        <translation>Bevorzugt</translation>
    </message>
    <message>
        <source>QR code of the page where the code is entered</source>
        <translation>QR-Code der Seite, auf der der Code eingegeben wird</translation>
    </message>
    <message>
        <source>Reconnecting …</source>
        <translation>Neu verbinden …</translation>
    </message>
    <message>
        <source>Results for “%1”</source>
        <translation>Ergebnisse für „%1“</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Dienste</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Show these keys</source>
        <translation>Diese Tasten anzeigen</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Sign in with a password …</source>
        <translation>Mit Passwort anmelden …</translation>
    </message>
    <message>
        <source>Skip to the content</source>
        <translation>Zum Inhalt springen</translation>
    </message>
    <message>
        <source>Something went wrong.</source>
        <translation>Etwas ist schiefgegangen.</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Start page</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Gestoppt</translation>
    </message>
    <message>
        <source>That entry is no longer in the list, which is read again.</source>
        <translation>Dieser Eintrag ist nicht mehr in der Liste; sie wird neu gelesen.</translation>
    </message>
    <message>
        <source>The connection to the host is lost. Trying again …</source>
        <translation>Die Verbindung zum Host ist abgerissen. Neuer Versuch …</translation>
    </message>
    <message>
        <source>The service takes long to answer.</source>
        <translation>Der Dienst braucht lange für seine Antwort.</translation>
    </message>
    <message>
        <source>There is no connection to the host, so nothing happens.</source>
        <translation>Es besteht keine Verbindung zum Host, deshalb geschieht nichts.</translation>
    </message>
    <message>
        <source>There is nothing here.</source>
        <translation>Hier ist nichts.</translation>
    </message>
    <message>
        <source>This device is not linked to a %1 account.</source>
        <translation>Dieses Gerät ist mit keinem %1-Konto verknüpft.</translation>
    </message>
    <message>
        <source>This is shown once the host can be reached again.</source>
        <translation>Das erscheint, sobald der Host wieder erreichbar ist.</translation>
    </message>
    <message>
        <source>This link would change something, so it was not opened.</source>
        <translation>Dieser Link würde etwas ändern, deshalb wurde er nicht geöffnet.</translation>
    </message>
    <message>
        <source>This page</source>
        <translation>Diese Seite</translation>
    </message>
    <message>
        <source>To the first or the last entry</source>
        <translation>Zum ersten oder letzten Eintrag</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Unlink</source>
        <translation>Verknüpfung lösen</translation>
    </message>
    <message>
        <source>Unlink …</source>
        <translation>Verknüpfung lösen …</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Ohne Titel</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Waiting for the code to be entered …</source>
        <translation>Warten, bis der Code eingegeben wird …</translation>
    </message>
    <message>
        <source>What can be done with the keyboard alone.</source>
        <translation>Was mit der Tastatur allein geht.</translation>
    </message>
    <message>
        <source>What changes something is only done from a list or a menu that offers it.</source>
        <translation>Was etwas ändert, geschieht nur aus einer Liste oder einem Menü heraus, die es anbieten.</translation>
    </message>
    <message>
        <source>Where to search</source>
        <translation>Wo gesucht wird</translation>
    </message>
    <message>
        <source>While it is linked, the favorites are those of the account. The ones that this device has now stay with it and are back after unlinking.</source>
        <translation>Solange es verknüpft ist, gelten die Favoriten des Kontos. Die jetzigen Favoriten des Geräts bleiben bei ihm und sind nach dem Trennen wieder da.</translation>
    </message>
    <message>
        <source>You are here</source>
        <translation>Sie sind hier</translation>
    </message>
    <message numerus="yes">
        <source>%n entries</source>
        <translation>
            <numerusform>%n Eintrag</numerusform>
            <numerusform>%n Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>All services</source>
        <translation>Alle Dienste</translation>
    </message>
    <message>
        <source>Search all services</source>
        <translation>Alle Dienste durchsuchen</translation>
    </message>
    <message>
        <source>There is nothing to search.</source>
        <translation>Es gibt nichts zu durchsuchen.</translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>Alle zeigen</translation>
    </message>
    <message>
        <source>Show all of %1</source>
        <translation>Alle zeigen: %1</translation>
    </message>
    <message>
        <source>Another import is under way.</source>
        <translation>Es läuft schon ein Import.</translation>
    </message>
    <message>
        <source>%1 is larger than 1 MiB.</source>
        <translation>%1 ist größer als 1 MiB.</translation>
    </message>
    <message>
        <source>%1: %2 added, %3 known already, %4 skipped.</source>
        <translation>%1: %2 hinzugefügt, %3 schon bekannt, %4 übersprungen.</translation>
    </message>
    <message>
        <source>It cannot be read.</source>
        <translation>Sie kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Only the first %1 files were imported.</source>
        <translation>Nur die ersten %1 Dateien wurden importiert.</translation>
    </message>
    <message>
        <source>Drop files to add their stations to %1</source>
        <translation>Dateien hier ablegen, um ihre Sender zu %1 hinzuzufügen</translation>
    </message>
    <message>
        <source>Drop files to add their stations</source>
        <translation>Dateien hier ablegen, um ihre Sender hinzuzufügen</translation>
    </message>
    <message>
        <source>Import files …</source>
        <translation>Dateien importieren …</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Where to import</source>
        <translation>Wohin importieren</translation>
    </message>
</context>
<context>
    <name>RadioBrowser</name>
    <message>
        <source>Add to favorites</source>
        <translation>Zu Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>Remove from favorites</source>
        <translation>Aus Favoriten entfernen</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>There are too many favorites.</source>
        <translation>Es sind zu viele Favoriten.</translation>
    </message>
    <message>
        <source>Radio Browser does not know this station.</source>
        <translation>Radio Browser kennt diesen Sender nicht.</translation>
    </message>
    <message>
        <source>The answer of Radio Browser is too long.</source>
        <translation>Die Antwort von Radio Browser ist zu lang.</translation>
    </message>
    <message>
        <source>No server of Radio Browser answers. Please try again later.</source>
        <translation>Kein Server von Radio Browser antwortet. Bitte versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>Radio Browser refused the request.</source>
        <translation>Radio Browser hat die Anfrage abgelehnt.</translation>
    </message>
    <message>
        <source>The answer of Radio Browser cannot be read.</source>
        <translation>Die Antwort von Radio Browser ist nicht lesbar.</translation>
    </message>
    <message>
        <source>Most played</source>
        <translation>Am meisten gespielt</translation>
    </message>
    <message>
        <source>Most voted</source>
        <translation>Am besten bewertet</translation>
    </message>
    <message>
        <source>Recently changed</source>
        <translation>Zuletzt geändert</translation>
    </message>
    <message>
        <source>1 station</source>
        <translation>1 Sender</translation>
    </message>
    <message numerus="yes">
        <source>%n stations</source>
        <translation>
            <numerusform>%n Sender</numerusform>
            <numerusform>%n Sender</numerusform>
        </translation>
    </message>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>Der Zeilenbereich ist ungültig.</translation>
    </message>
    <message>
        <source>By country</source>
        <translation>Nach Land</translation>
    </message>
    <message>
        <source>By language</source>
        <translation>Nach Sprache</translation>
    </message>
    <message>
        <source>By tag</source>
        <translation>Nach Stichwort</translation>
    </message>
    <message>
        <source>By codec</source>
        <translation>Nach Codec</translation>
    </message>
    <message>
        <source>Stations called "%1"</source>
        <translation>Sender mit dem Namen „%1“</translation>
    </message>
    <message>
        <source>These are too many stations at once.</source>
        <translation>Das sind zu viele Sender auf einmal.</translation>
    </message>
    <message>
        <source>Search stations by name</source>
        <translation>Sender nach Namen suchen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Address of a Radio Browser server</source>
        <translation>Adresse eines Servers von Radio Browser</translation>
    </message>
    <message>
        <source>Left empty, one of the community's servers is chosen by itself.</source>
        <translation>Bleibt das Feld leer, wird von selbst ein Server der Gemeinschaft gewählt.</translation>
    </message>
</context>
<context>
    <name>Stations</name>
    <message>
        <source>The file cannot be read (%1).</source>
        <translation>Die Datei kann nicht gelesen werden (%1).</translation>
    </message>
    <message>
        <source>This is no file.</source>
        <translation>Das ist keine Datei.</translation>
    </message>
    <message>
        <source>The files are larger than 4 MiB together.</source>
        <translation>Die Dateien sind zusammen größer als 4 MiB.</translation>
    </message>
    <message>
        <source>This is no list of stations.</source>
        <translation>Das ist keine Senderliste.</translation>
    </message>
    <message>
        <source>This is the playlist of one stream. Add the stream by its address.</source>
        <translation>Das ist die Wiedergabeliste eines einzelnen Streams. Fügen Sie den Stream mit seiner Adresse hinzu.</translation>
    </message>
    <message>
        <source>The file is larger than 1 MiB.</source>
        <translation>Die Datei ist größer als 1 MiB.</translation>
    </message>
    <message>
        <source>The part of the file cannot be read.</source>
        <translation>Der Teil der Datei kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Other files are being imported. Please try again in a minute.</source>
        <translation>Es werden gerade andere Dateien importiert. Bitte versuchen Sie es in einer Minute noch einmal.</translation>
    </message>
    <message>
        <source>The file did not arrive completely. Please try again.</source>
        <translation>Die Datei ist nicht vollständig angekommen. Bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>This is not in the list any more.</source>
        <translation>Das steht nicht mehr in der Liste.</translation>
    </message>
    <message>
        <source>The list is full: it has 5,000 entries.</source>
        <translation>Die Liste ist voll: Sie hat 5.000 Einträge.</translation>
    </message>
    <message>
        <source>There is a folder of this name already.</source>
        <translation>Es gibt schon einen Ordner mit diesem Namen.</translation>
    </message>
    <message>
        <source>There are too many folders in each other.</source>
        <translation>Es sind zu viele Ordner ineinander.</translation>
    </message>
    <message>
        <source>This address is in the list already.</source>
        <translation>Diese Adresse steht schon in der Liste.</translation>
    </message>
    <message>
        <source>The folder cannot be moved to this place.</source>
        <translation>Der Ordner kann nicht dorthin verschoben werden.</translation>
    </message>
    <message>
        <source>The folder is not empty.</source>
        <translation>Der Ordner ist nicht leer.</translation>
    </message>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>Der Zeilenbereich ist ungültig.</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Sender</translation>
    </message>
    <message>
        <source>1 station</source>
        <translation>1 Sender</translation>
    </message>
    <message numerus="yes">
        <source>%n stations</source>
        <translation>
            <numerusform>%n Sender</numerusform>
            <numerusform>%n Sender</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out for several reasons: %n</source>
        <translation>
            <numerusform>Aus mehreren Gründen ausgelassen: %n</numerusform>
            <numerusform>Aus mehreren Gründen ausgelassen: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, links that lead to no station: %n</source>
        <translation>
            <numerusform>Ausgelassen, Verweise ohne Sender: %n</numerusform>
            <numerusform>Ausgelassen, Verweise ohne Sender: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, with too long addresses: %n</source>
        <translation>
            <numerusform>Ausgelassen, mit zu langen Adressen: %n</numerusform>
            <numerusform>Ausgelassen, mit zu langen Adressen: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, in too many folders: %n</source>
        <translation>
            <numerusform>Ausgelassen, in zu vielen Ordnern: %n</numerusform>
            <numerusform>Ausgelassen, in zu vielen Ordnern: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, beyond 5,000 entries: %n</source>
        <translation>
            <numerusform>Ausgelassen, mehr als 5.000 Einträge: %n</numerusform>
            <numerusform>Ausgelassen, mehr als 5.000 Einträge: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, without an http or https address: %n</source>
        <translation>
            <numerusform>Ausgelassen, ohne http- oder https-Adresse: %n</numerusform>
            <numerusform>Ausgelassen, ohne http- oder https-Adresse: %n</numerusform>
        </translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Add a station by its address</source>
        <translation>Sender mit seiner Adresse hinzufügen</translation>
    </message>
    <message numerus="yes">
        <source>More files, which are not shown: %n</source>
        <translation>
            <numerusform>Weitere Dateien, die nicht gezeigt werden: %n</numerusform>
            <numerusform>Weitere Dateien, die nicht gezeigt werden: %n</numerusform>
        </translation>
    </message>
    <message>
        <source>Change this list</source>
        <translation>Diese Liste ändern</translation>
    </message>
    <message>
        <source>Change this folder</source>
        <translation>Diesen Ordner ändern</translation>
    </message>
    <message>
        <source>Stations with "%1"</source>
        <translation>Sender mit „%1“</translation>
    </message>
    <message>
        <source>Add a station</source>
        <translation>Sender hinzufügen</translation>
    </message>
    <message>
        <source>This is no address that begins with http or https.</source>
        <translation>Das ist keine Adresse, die mit http oder https beginnt.</translation>
    </message>
    <message>
        <source>This address is in the list:</source>
        <translation>Diese Adresse steht in der Liste:</translation>
    </message>
    <message>
        <source>Give it another name</source>
        <translation>Anders nennen</translation>
    </message>
    <message>
        <source>Keep it without listening</source>
        <translation>Behalten, ohne zu hören</translation>
    </message>
    <message>
        <source>This address plays. Keep it?</source>
        <translation>Diese Adresse spielt. Behalten?</translation>
    </message>
    <message>
        <source>Keep it</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>This address does not play.</source>
        <translation>Diese Adresse spielt nicht.</translation>
    </message>
    <message>
        <source>Keep it all the same</source>
        <translation>Trotzdem behalten</translation>
    </message>
    <message>
        <source>Make a folder</source>
        <translation>Ordner anlegen</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Move to a folder</source>
        <translation>In einen Ordner verschieben</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Keep it in the list</source>
        <translation>In der Liste behalten</translation>
    </message>
    <message>
        <source>Rename "%1" to "%2"</source>
        <translation>„%1“ in „%2“ umbenennen</translation>
    </message>
    <message>
        <source>Make the folder "%1"</source>
        <translation>Ordner „%1“ anlegen</translation>
    </message>
    <message>
        <source>Move "%1" to</source>
        <translation>„%1“ verschieben nach</translation>
    </message>
    <message>
        <source>No folder</source>
        <translation>Kein Ordner</translation>
    </message>
    <message>
        <source>Remove "%1"</source>
        <translation>„%1“ entfernen</translation>
    </message>
    <message numerus="yes">
        <source>Remove the folder with everything in it (stations: %n)</source>
        <translation>
            <numerusform>Den Ordner mit allem darin entfernen (Sender: %n)</numerusform>
            <numerusform>Den Ordner mit allem darin entfernen (Sender: %n)</numerusform>
        </translation>
    </message>
    <message>
        <source>Search your stations</source>
        <translation>Eigene Sender durchsuchen</translation>
    </message>
    <message>
        <source>The name is missing.</source>
        <translation>Der Name fehlt.</translation>
    </message>
    <message>
        <source>The file defines a document type (DOCTYPE), which is not read.</source>
        <translation>Die Datei legt einen Dokumenttyp fest (DOCTYPE), was nicht gelesen wird.</translation>
    </message>
    <message>
        <source>The file is damaged: line %1 cannot be read as XML.</source>
        <translation>Die Datei ist beschädigt: Zeile %1 lässt sich nicht als XML lesen.</translation>
    </message>
</context>
</TS>
