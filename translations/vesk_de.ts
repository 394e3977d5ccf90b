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
        <source>Change stations without a gap</source>
        <translation>Sender ohne Lücke wechseln</translation>
    </message>
    <message>
        <source>The station that plays is heard until the next one has sound.</source>
        <translation>Der laufende Sender ist zu hören, bis der nächste Ton hat.</translation>
    </message>
    <message>
        <source>Play everything equally loud</source>
        <translation>Alles gleich laut wiedergeben</translation>
    </message>
    <message>
        <source>Loud stations are turned down and quiet ones up, slowly and without distortion.</source>
        <translation>Laute Sender werden leiser und leise lauter gestellt, langsam und ohne Verzerrung.</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stumm</translation>
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
        <source>What was kept belongs to a later version of this program, and stays as it is.</source>
        <translation>Das Gemerkte gehört zu einer späteren Version dieses Programms und bleibt, wie es ist.</translation>
    </message>
    <message>
        <source>The file with recents, favorites and presets was damaged. It is kept as %1, and a new one was begun.</source>
        <translation>Die Datei mit den zuletzt gehörten Sendern, Favoriten und Stationstasten war beschädigt. Sie ist als %1 aufgehoben, und eine neue wurde begonnen.</translation>
    </message>
    <message>
        <source>This cannot be kept.</source>
        <translation>Das lässt sich nicht merken.</translation>
    </message>
    <message>
        <source>There are %1 favorites already.</source>
        <translation>Es gibt bereits %1 Favoriten.</translation>
    </message>
    <message>
        <source>Not imported: entry %1 of &quot;%2&quot; is not valid.</source>
        <translation>Nicht importiert: Eintrag %1 von „%2“ ist ungültig.</translation>
    </message>
    <message>
        <source>Not imported: this is no library of this program.</source>
        <translation>Nicht importiert: Das ist keine Bibliothek dieses Programms.</translation>
    </message>
    <message>
        <source>Preset %1 is empty.</source>
        <translation>Stationstaste %1 ist nicht belegt.</translation>
    </message>
    <message>
        <source>Something is wrong</source>
        <translation>Etwas stimmt nicht</translation>
    </message>
    <message>
        <source>Recently played</source>
        <translation>Zuletzt gehört</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>Go on playing after a start</source>
        <translation>Nach dem Start weiterspielen</translation>
    </message>
    <message>
        <source>With what played last: &quot;always&quot;, &quot;crash&quot; (only if the device ended by surprise), or &quot;never&quot;.</source>
        <translation>Was zuletzt lief: „always“ (immer), „crash“ (nur nach einem unerwarteten Ende) oder „never“ (nie).</translation>
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
        <source>There is no such device.</source>
        <translation>Dieses Gerät gibt es nicht.</translation>
    </message>
    <message>
        <source>No more devices can be paired. Remove one that is no longer in use.</source>
        <translation>Es können keine weiteren Geräte gekoppelt werden. Entfernen Sie eines, das nicht mehr benutzt wird.</translation>
    </message>
    <message>
        <source>In effect, but not saved: the disk cannot be written. It will be tried again; a restart before then undoes it.</source>
        <translation>Wirksam, aber nicht gespeichert: Der Datenträger ist nicht beschreibbar. Es wird erneut versucht; ein Neustart vorher macht es rückgängig.</translation>
    </message>
    <message>
        <source>Only programs on this machine can reach this host. Start it with --listen to let other devices in.</source>
        <translation>Nur Programme auf diesem Rechner erreichen diesen Host. Starten Sie ihn mit --listen, um andere Geräte zuzulassen.</translation>
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
    <message>
        <source>Keep a paused station for (minutes)</source>
        <translation>Angehaltenen Sender behalten (Minuten)</translation>
    </message>
    <message>
        <source>It goes on where it was paused. After that time it is joined live again; with 0 at once.</source>
        <translation>Er läuft weiter, wo er angehalten wurde. Nach dieser Zeit läuft er wieder live; mit 0 sofort.</translation>
    </message>
    <message>
        <source>auto, null, jack, or a device: alsa:DEVICE, pulse:NAME, pipewire:NAME</source>
        <translation>auto, null, jack oder ein Gerät: alsa:GERÄT, pulse:NAME, pipewire:NAME</translation>
    </message>
    <message>
        <source>Not there at the moment</source>
        <translation>Gerade nicht da</translation>
    </message>
    <message>
        <source>In use</source>
        <translation>In Gebrauch</translation>
    </message>
    <message>
        <source>Sound output</source>
        <translation>Tonausgabe</translation>
    </message>
    <message>
        <source>auto is the machine&apos;s own; what --audio says counts until another one is chosen.</source>
        <translation>auto ist die des Rechners; was --audio sagt, gilt, bis eine andere gewählt wird.</translation>
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
        <source>The sound output does not answer.</source>
        <translation>Die Tonausgabe antwortet nicht.</translation>
    </message>
    <message>
        <source>Another output was chosen in the meantime.</source>
        <translation>Inzwischen wurde eine andere Ausgabe gewählt.</translation>
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
    <message>
        <source>The sound server %1 cannot be reached.</source>
        <translation>Der Tonserver %1 ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>Nobody reads the sound from %1.</source>
        <translation>Niemand liest den Ton aus %1.</translation>
    </message>
    <message>
        <source>%1 takes the sound too slowly; some of it is lost.</source>
        <translation>%1 nimmt den Ton zu langsam ab; ein Teil geht verloren.</translation>
    </message>
    <message>
        <source>Sound cannot be written to %1: %2</source>
        <translation>Ton kann nicht nach %1 geschrieben werden: %2</translation>
    </message>
    <message>
        <source>This device cannot play to &quot;%1&quot;: the package %2 is not installed.</source>
        <translation>Dieses Gerät kann nicht auf „%1“ spielen: Das Paket %2 ist nicht installiert.</translation>
    </message>
    <message>
        <source>The server of this sends no parts of it: it can only be heard from its beginning.</source>
        <translation>Der Server sendet davon keine Teile: Es lässt sich nur von Anfang an hören.</translation>
    </message>
    <message>
        <source>The file at the server is shorter than it said.</source>
        <translation>Die Datei auf dem Server ist kürzer als angegeben.</translation>
    </message>
    <message>
        <source>The stream's server is too slow to find the place.</source>
        <translation>Der Server ist zu langsam, um die Stelle zu finden.</translation>
    </message>
    <message>
        <source>The file does not say how long it is.</source>
        <translation>Die Datei gibt nicht an, wie lang sie ist.</translation>
    </message>
    <message>
        <source>This place cannot be found in the file.</source>
        <translation>Diese Stelle ist in der Datei nicht zu finden.</translation>
    </message>
    <message>
        <source>This does not say how long it is: it can only be heard from its beginning.</source>
        <translation>Hier ist nicht angegeben, wie lang es ist: Es lässt sich nur von Anfang an hören.</translation>
    </message>
    <message>
        <source>This is live: there is no other place to go to. It can be paused for a while.</source>
        <translation>Das läuft live: Es gibt keine andere Stelle. Es lässt sich eine Weile anhalten.</translation>
    </message>
    <message>
        <source>It is not known yet how long this is. Please try again.</source>
        <translation>Es ist noch nicht bekannt, wie lang das ist. Bitte noch einmal versuchen.</translation>
    </message>
    <message>
        <source>Another place was asked for in the meantime.</source>
        <translation>Inzwischen wurde eine andere Stelle gewünscht.</translation>
    </message>
    <message>
        <source>This is not live.</source>
        <translation>Das läuft nicht live.</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Wecker</translation>
    </message>
    <message>
        <source>There is no such alarm.</source>
        <translation>Diesen Wecker gibt es nicht.</translation>
    </message>
    <message>
        <source>There are as many alarms as there can be. Remove one first.</source>
        <translation>Mehr Wecker kann es nicht geben. Bitte erst einen entfernen.</translation>
    </message>
    <message>
        <source>An alarm cannot keep this row.</source>
        <translation>Ein Wecker kann sich diese Zeile nicht merken.</translation>
    </message>
    <message>
        <source>No alarm rings.</source>
        <translation>Es klingelt kein Wecker.</translation>
    </message>
    <message>
        <source>The machine&apos;s output</source>
        <translation>Die Ausgabe des Rechners</translation>
    </message>
    <message>
        <source>Nowhere</source>
        <translation>Nirgendwohin</translation>
    </message>
    <message>
        <source>The output &quot;%1&quot; can only be given when the player is started.</source>
        <translation>Die Ausgabe „%1“ kann nur beim Start des Spielers angegeben werden.</translation>
    </message>
    <message>
        <source>The sound device &quot;%1&quot; has gone or does not work.</source>
        <translation>Das Tongerät „%1“ ist nicht mehr da oder funktioniert nicht.</translation>
    </message>
    <message>
        <source>There is no sound device &quot;%1&quot;.</source>
        <translation>Es gibt kein Tongerät „%1“.</translation>
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
    <message>
        <source>owner</source>
        <translation>Besitzer</translation>
    </message>
    <message>
        <source>listener</source>
        <translation>Hörer</translation>
    </message>
    <message>
        <source>this device</source>
        <translation>dieses Gerät</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>verbunden</translation>
    </message>
    <message>
        <source>never seen</source>
        <translation>nie gesehen</translation>
    </message>
    <message>
        <source>seen %1</source>
        <translation>gesehen %1</translation>
    </message>
    <message>
        <source>no device is paired</source>
        <translation>kein Gerät ist gekoppelt</translation>
    </message>
    <message>
        <source>there is no device "%1"</source>
        <translation>es gibt kein Gerät "%1"</translation>
    </message>
    <message>
        <source>several devices are called "%1": name one by its id (%2)</source>
        <translation>mehrere Geräte heißen "%1": nenne eines mit seiner Kennung (%2)</translation>
    </message>
    <message>
        <source>%1: now called "%2"</source>
        <translation>%1: heißt jetzt "%2"</translation>
    </message>
    <message>
        <source>"%1" is no role; there are: %2</source>
        <translation>"%1" ist keine Rolle; es gibt: %2</translation>
    </message>
    <message>
        <source>%1: an owner now</source>
        <translation>%1: jetzt Besitzer</translation>
    </message>
    <message>
        <source>%1: a listener now</source>
        <translation>%1: jetzt Hörer</translation>
    </message>
    <message>
        <source>%1: not paired any more</source>
        <translation>%1: nicht mehr gekoppelt</translation>
    </message>
    <message>
        <source>this device is not paired with %1. Have a code shown there ("veskctl pair"), then: veskctl --host %1 join CODE</source>
        <translation>dieses Gerät ist nicht mit %1 gekoppelt. Lass dort einen Code zeigen ("veskctl pair"), dann: veskctl --host %1 join CODE</translation>
    </message>
    <message>
        <source>this device is not paired with %1 any more. Have a code shown there ("veskctl pair"), then: veskctl --host %1 join CODE</source>
        <translation>dieses Gerät ist nicht mehr mit %1 gekoppelt. Lass dort einen Code zeigen ("veskctl pair"), dann: veskctl --host %1 join CODE</translation>
    </message>
    <message>
        <source>the certificate of %1 is of no authority that this system knows: it says nothing about who answers there. If this is your host, pair with it: veskctl --host %1 join CODE. The fingerprint is %2.</source>
        <translation>das Zertifikat von %1 ist von keiner Stelle, die dieses System kennt: es sagt nichts darüber, wer dort antwortet. Wenn es dein Host ist, kopple dich mit ihm: veskctl --host %1 join CODE. Der Fingerabdruck ist %2.</translation>
    </message>
    <message>
        <source>the certificate of %1 has changed: somebody else may be answering there. Nothing was sent. If the host has a new one, pair again: veskctl --host %1 join CODE. The fingerprint was %2 and is %3.</source>
        <translation>das Zertifikat von %1 hat sich geändert: vielleicht antwortet dort jemand anderes. Es wurde nichts gesendet. Wenn der Host ein neues hat, kopple dich noch einmal: veskctl --host %1 join CODE. Der Fingerabdruck war %2 und ist %3.</translation>
    </message>
    <message>
        <source>the host wants an encrypted connection: veskctl --host %1</source>
        <translation>der Host will eine verschlüsselte Verbindung: veskctl --host %1</translation>
    </message>
    <message>
        <source>paired, but that could not be kept: %1. Remove the device "%2" there, and pair again.</source>
        <translation>gekoppelt, aber das konnte nicht behalten werden: %1. Entferne dort das Gerät "%2" und kopple noch einmal.</translation>
    </message>
    <message>
        <source>paired with %1 as its owner, under the name "%2"</source>
        <translation>gekoppelt mit %1 als Besitzer, unter dem Namen "%2"</translation>
    </message>
    <message>
        <source>paired with %1 as a listener, under the name "%2"</source>
        <translation>gekoppelt mit %1 als Hörer, unter dem Namen "%2"</translation>
    </message>
    <message>
        <source>a program on the host's own machine needs no pairing; say with --host or VESK_HOST where another host is</source>
        <translation>ein Programm auf der Maschine des Hosts braucht keine Kopplung; sage mit --host oder VESK_HOST, wo ein anderer Host ist</translation>
    </message>
    <message>
        <source>a code is six digits</source>
        <translation>ein Code hat sechs Ziffern</translation>
    </message>
    <message>
        <source>a fingerprint is 64 hexadecimal digits (SHA-256)</source>
        <translation>ein Fingerabdruck hat 64 hexadezimale Ziffern (SHA-256)</translation>
    </message>
    <message>
        <source>%1 has another certificate, with the fingerprint %2. Nothing was sent.</source>
        <translation>%1 hat ein anderes Zertifikat, mit dem Fingerabdruck %2. Es wurde nichts gesendet.</translation>
    </message>
    <message>
        <source>The certificate of %1 is of no authority that this system knows. Its fingerprint is:</source>
        <translation>Das Zertifikat von %1 ist von keiner Stelle, die dieses System kennt. Sein Fingerabdruck ist:</translation>
    </message>
    <message>
        <source>Is that the one that is shown with the code?</source>
        <translation>Ist es der, der mit dem Code gezeigt wird?</translation>
    </message>
    <message>
        <source>the certificate is of no authority that this system knows; where nobody can be asked, say with --fingerprint which one is the host's</source>
        <translation>das Zertifikat ist von keiner Stelle, die dieses System kennt; wo niemand gefragt werden kann, sage mit --fingerprint, welches das des Hosts ist</translation>
    </message>
    <message>
        <source>The connection to %1 is not encrypted: others in the network can read what is sent, and come in the same way.</source>
        <translation>Die Verbindung zu %1 ist nicht verschlüsselt: andere im Netz können lesen, was gesendet wird, und ebenso hereinkommen.</translation>
    </message>
    <message>
        <source>Pair nevertheless?</source>
        <translation>Trotzdem koppeln?</translation>
    </message>
    <message>
        <source>the connection is not encrypted; where nobody can be asked, --plain-http says that this may be</source>
        <translation>die Verbindung ist nicht verschlüsselt; wo niemand gefragt werden kann, sagt --plain-http, dass das sein darf</translation>
    </message>
    <message>
        <source>not paired; nothing was sent</source>
        <translation>nicht gekoppelt; es wurde nichts gesendet</translation>
    </message>
    <message>
        <source>that is not the code; attempts left: %1</source>
        <translation>das ist nicht der Code; verbleibende Versuche: %1</translation>
    </message>
    <message>
        <source>that is not the code, and it was the last attempt: have a new code shown</source>
        <translation>das ist nicht der Code, und es war der letzte Versuch: lass einen neuen Code zeigen</translation>
    </message>
    <message>
        <source>%1 shows no code now: have one shown there ("veskctl pair")</source>
        <translation>%1 zeigt gerade keinen Code: lass dort einen zeigen ("veskctl pair")</translation>
    </message>
    <message>
        <source>the host does not take that name</source>
        <translation>der Host nimmt diesen Namen nicht an</translation>
    </message>
    <message>
        <source>the host could not save the device; nothing has changed</source>
        <translation>der Host konnte das Gerät nicht speichern; nichts hat sich geändert</translation>
    </message>
    <message>
        <source>too many attempts; try again later</source>
        <translation>zu viele Versuche; versuche es später noch einmal</translation>
    </message>
    <message>
        <source>another code was made for this host; this one is worth nothing any more</source>
        <translation>für diesen Host wurde ein anderer Code gemacht; dieser gilt nicht mehr</translation>
    </message>
    <message>
        <source>the pairing was stopped</source>
        <translation>die Kopplung wurde beendet</translation>
    </message>
    <message>
        <source>Code: </source>
        <translation>Code: </translation>
    </message>
    <message>
        <source>For %1 seconds it can be entered at one of these addresses:</source>
        <translation>%1 Sekunden lang kann er unter einer dieser Adressen eingegeben werden:</translation>
    </message>
    <message>
        <source>or with: veskctl --host %1 join %2</source>
        <translation>oder mit: veskctl --host %1 join %2</translation>
    </message>
    <message>
        <source>The fingerprint of the certificate is:</source>
        <translation>Der Fingerabdruck des Zertifikats ist:</translation>
    </message>
    <message>
        <source>%1: paired</source>
        <translation>%1: gekoppelt</translation>
    </message>
    <message>
        <source>wrong codes were entered too often; the pairing has ended</source>
        <translation>zu oft wurden falsche Codes eingegeben; die Kopplung ist zu Ende</translation>
    </message>
    <message>
        <source>nobody entered the code in time</source>
        <translation>niemand hat den Code rechtzeitig eingegeben</translation>
    </message>
    <message>
        <source>volume %1</source>
        <translation>Lautstärke %1</translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
    <message>
        <source>a sound of the host's own</source>
        <translation>ein Ton des Hosts selbst</translation>
    </message>
    <message>
        <source>no alarm is set</source>
        <translation>es ist kein Wecker gestellt</translation>
    </message>
    <message>
        <source>missed alarm: %1</source>
        <translation>verpasster Wecker: %1</translation>
    </message>
    <message>
        <source>"veskctl alarm dismiss" forgets the missed ones</source>
        <translation>"veskctl alarm dismiss" vergisst die verpassten</translation>
    </message>
    <message>
        <source>several alarms are at %1: name one by its number</source>
        <translation>mehrere Wecker sind auf %1 gestellt: nenne einen mit seiner Nummer</translation>
    </message>
    <message>
        <source>there is no alarm "%1"</source>
        <translation>es gibt keinen Wecker "%1"</translation>
    </message>
    <message>
        <source>"%1" is no time: that is 7:30 or 19:30</source>
        <translation>"%1" ist keine Uhrzeit: das ist 7:30 oder 19:30</translation>
    </message>
    <message>
        <source>"%1" are no days: those are mon-fri, sat,sun, daily or once</source>
        <translation>"%1" sind keine Tage: das sind mon-fri, sat,sun, daily oder once</translation>
    </message>
    <message>
        <source>%1: off</source>
        <translation>%1: aus</translation>
    </message>
    <message>
        <source>%1: next %2</source>
        <translation>%1: das nächste Mal %2</translation>
    </message>
    <message>
        <source>%1: removed</source>
        <translation>%1: entfernt</translation>
    </message>
    <message>
        <source>quiet until %1</source>
        <translation>still bis %1</translation>
    </message>
    <message>
        <source>this host does not know that: it is older than this veskctl</source>
        <translation>dieser Host kennt das nicht: er ist älter als dieses veskctl</translation>
    </message>
    <message>
        <source>forgotten: what was played</source>
        <translation>vergessen: was gespielt wurde</translation>
    </message>
    <message>
        <source>%1: starred now</source>
        <translation>%1: hat jetzt einen Stern</translation>
    </message>
    <message>
        <source>%1: starred already</source>
        <translation>%1: hat schon einen Stern</translation>
    </message>
    <message>
        <source>%1: not starred any more</source>
        <translation>%1: hat keinen Stern mehr</translation>
    </message>
    <message>
        <source>%1: not starred</source>
        <translation>%1: hat keinen Stern</translation>
    </message>
    <message>
        <source>%1 holds no library</source>
        <translation>%1 enthält keine Sammlung</translation>
    </message>
    <message>
        <source>%1: favorites added: %2, presets: %3</source>
        <translation>%1: neue Favoriten: %2, Stationstasten: %3</translation>
    </message>
    <message>
        <source>there is no output</source>
        <translation>es gibt keinen Ausgang</translation>
    </message>
    <message>
        <source>%1 (not there)</source>
        <translation>%1 (nicht da)</translation>
    </message>
    <message>
        <source>there is no "%1" in the configuration</source>
        <translation>in der Konfiguration gibt es kein "%1"</translation>
    </message>
    <message>
        <source>several outputs are called "%1": %2</source>
        <translation>mehrere Ausgänge heißen "%1": %2</translation>
    </message>
    <message>
        <source>there is no output "%1"</source>
        <translation>es gibt keinen Ausgang "%1"</translation>
    </message>
    <message>
        <source>the sound goes to: %1</source>
        <translation>der Ton geht an: %1</translation>
    </message>
    <message>
        <source>nothing plays</source>
        <translation>es spielt nichts</translation>
    </message>
    <message>
        <source>muted</source>
        <translation>stumm</translation>
    </message>
    <message>
        <source>stops at %1</source>
        <translation>endet um %1</translation>
    </message>
    <message>
        <source>the alarm rings</source>
        <translation>der Wecker klingelt</translation>
    </message>
    <message>
        <source>alarm %1</source>
        <translation>Wecker %1</translation>
    </message>
    <message>
        <source>"%1" is no preset: they are numbered 1 to %2</source>
        <translation>"%1" ist keine Stationstaste: sie haben die Nummern 1 bis %2</translation>
    </message>
    <message>
        <source>no preset is taken; "veskctl preset save 1" keeps what plays</source>
        <translation>keine Stationstaste ist belegt; "veskctl preset save 1" behält, was spielt</translation>
    </message>
    <message>
        <source>preset %1: %2</source>
        <translation>Stationstaste %1: %2</translation>
    </message>
    <message>
        <source>preset %1: free</source>
        <translation>Stationstaste %1: frei</translation>
    </message>
    <message>
        <source>"%1" is no place to go to: that is +30, -1:30, 1:20:00, 90s or live</source>
        <translation>"%1" ist keine Stelle: das ist +30, -1:30, 1:20:00, 90s oder live</translation>
    </message>
    <message>
        <source>live</source>
        <translation>live</translation>
    </message>
    <message>
        <source>no sleep timer</source>
        <translation>kein Einschlaftimer</translation>
    </message>
    <message>
        <source>the sound stops at %1</source>
        <translation>der Ton endet um %1</translation>
    </message>
    <message>
        <source>%1, in %2</source>
        <translation>%1, in %2</translation>
    </message>
    <message>
        <source>"%1" is no time to sleep for: that is 1 to 1440 minutes, 1h30m or off</source>
        <translation>"%1" ist keine Zeit zum Einschlafen: das sind 1 bis 1440 Minuten, 1h30m oder off</translation>
    </message>
    <message>
        <source>%1 behind live</source>
        <translation>%1 hinter der Sendung</translation>
    </message>
    <message>
        <source>once</source>
        <translation>einmal</translation>
    </message>
    <message>
        <source>every day</source>
        <translation>jeden Tag</translation>
    </message>
    <message>
        <source>%1, muted</source>
        <translation>%1, stumm</translation>
    </message>
    <message>
        <source>"%1" is no volume: that is 0 to 100, +5, -5, mute or unmute</source>
        <translation>"%1" ist keine Lautstärke: das ist 0 bis 100, +5, -5, mute oder unmute</translation>
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
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 %, muted</source>
        <translation>%1 %, stumm</translation>
    </message>
    <message>
        <source>%1 behind live</source>
        <translation>%1 hinter live</translation>
    </message>
    <message>
        <source>%1 has a star on this radio.</source>
        <translation>%1 hat einen Stern auf diesem Radio.</translation>
    </message>
    <message>
        <source>%1 has no star on this radio any more.</source>
        <translation>%1 hat keinen Stern mehr auf diesem Radio.</translation>
    </message>
    <message>
        <source>%1 is not a library that was exported here.</source>
        <translation>%1 ist keine hier exportierte Bibliothek.</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message numerus="yes">
        <source>%n alarms were missed while this radio was off.</source>
        <translation>
            <numerusform>%n Wecker ging nicht los, weil dieses Radio aus war.</numerusform>
            <numerusform>%n Wecker gingen nicht los, weil dieses Radio aus war.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes left</source>
        <translation>
            <numerusform>noch %n Minute</numerusform>
            <numerusform>noch %n Minuten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n presets were set.</source>
        <translation>
            <numerusform>%n Stationstaste wurde belegt.</numerusform>
            <numerusform>%n Stationstasten wurden belegt.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n stars were added.</source>
        <translation>
            <numerusform>%n Stern kam dazu.</numerusform>
            <numerusform>%n Sterne kamen dazu.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add an alarm</source>
        <translation>Wecker hinzufügen</translation>
    </message>
    <message>
        <source>After that time the sound fades out and stops.</source>
        <translation>Nach dieser Zeit wird der Ton leiser und hört auf.</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Wecker</translation>
    </message>
    <message>
        <source>Alarm at %1</source>
        <translation>Wecker um %1</translation>
    </message>
    <message>
        <source>Alarm: %1</source>
        <translation>Wecker: %1</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Wecker</translation>
    </message>
    <message>
        <source>As it is set then</source>
        <translation>Wie sie dann eingestellt ist</translation>
    </message>
    <message>
        <source>At once</source>
        <translation>Sofort</translation>
    </message>
    <message>
        <source>Back %1 seconds</source>
        <translation>%1 Sekunden zurück</translation>
    </message>
    <message>
        <source>Back and forward %1 seconds in an episode</source>
        <translation>In einer Folge %1 Sekunden zurück und vor</translation>
    </message>
    <message>
        <source>Back to live</source>
        <translation>Zurück zu live</translation>
    </message>
    <message>
        <source>Becomes as loud as that</source>
        <translation>Wird so laut</translation>
    </message>
    <message>
        <source>Change the alarm at %1</source>
        <translation>Wecker um %1 ändern</translation>
    </message>
    <message>
        <source>Choose the output</source>
        <translation>Ausgang wählen</translation>
    </message>
    <message>
        <source>Clear preset %1</source>
        <translation>Stationstaste %1 leeren</translation>
    </message>
    <message>
        <source>Clear some</source>
        <translation>Einzelne leeren</translation>
    </message>
    <message>
        <source>Clear the list</source>
        <translation>Liste leeren</translation>
    </message>
    <message>
        <source>Clear the list?</source>
        <translation>Liste leeren?</translation>
    </message>
    <message>
        <source>Clear …</source>
        <translation>Leeren …</translation>
    </message>
    <message>
        <source>Days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Leer</translation>
    </message>
    <message>
        <source>Every day</source>
        <translation>Jeden Tag</translation>
    </message>
    <message>
        <source>Favorite at %1</source>
        <translation>Favorit bei %1</translation>
    </message>
    <message>
        <source>Forward %1 seconds</source>
        <translation>%1 Sekunden vor</translation>
    </message>
    <message>
        <source>From the beginning</source>
        <translation>Von vorn</translation>
    </message>
    <message>
        <source>Goes on at %1, where it was left.</source>
        <translation>Es geht bei %1 weiter, wo Sie aufgehört haben.</translation>
    </message>
    <message>
        <source>Heard lately</source>
        <translation>Zuletzt gehört</translation>
    </message>
    <message>
        <source>Hold one down to save what plays. On a keyboard the numbers play, and with Shift they save.</source>
        <translation>Lange drücken speichert, was läuft. Auf einer Tastatur spielen die Zahlen, und mit Umschalt speichern sie.</translation>
    </message>
    <message>
        <source>Import …</source>
        <translation>Importieren …</translation>
    </message>
    <message numerus="yes">
        <source>In %n minutes</source>
        <translation>
            <numerusform>In %n Minute</numerusform>
            <numerusform>In %n Minuten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>In %n seconds</source>
        <translation>
            <numerusform>In %n Sekunde</numerusform>
            <numerusform>In %n Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>Louder, quieter</source>
        <translation>Lauter, leiser</translation>
    </message>
    <message>
        <source>Minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>Monday to Friday</source>
        <translation>Montag bis Freitag</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>New alarm</source>
        <translation>Neuer Wecker</translation>
    </message>
    <message>
        <source>Next alarm</source>
        <translation>Nächster Wecker</translation>
    </message>
    <message>
        <source>Next: %1</source>
        <translation>Nächstes Mal: %1</translation>
    </message>
    <message>
        <source>None is set.</source>
        <translation>Keiner ist gestellt.</translation>
    </message>
    <message>
        <source>Nothing has a star yet. The player and the menu of each station have one to press.</source>
        <translation>Noch hat nichts einen Stern. Der Player und das Menü jedes Senders haben einen zum Drücken.</translation>
    </message>
    <message>
        <source>Nothing plays that could be saved.</source>
        <translation>Es läuft nichts, was gespeichert werden könnte.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Once</source>
        <translation>Einmal</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgang</translation>
    </message>
    <message>
        <source>Output …</source>
        <translation>Ausgang …</translation>
    </message>
    <message>
        <source>Play a preset; 0 is 10</source>
        <translation>Stationstaste spielen; 0 ist 10</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Preset %1 is %2 now.</source>
        <translation>Stationstaste %1 ist jetzt %2.</translation>
    </message>
    <message>
        <source>Preset %1 is %2. Replace it by %3?</source>
        <translation>Stationstaste %1 ist %2. Durch %3 ersetzen?</translation>
    </message>
    <message>
        <source>Preset %1 is empty. Shift and the number save what plays.</source>
        <translation>Stationstaste %1 ist leer. Umschalt und die Zahl speichern, was läuft.</translation>
    </message>
    <message>
        <source>Preset %1: %2</source>
        <translation>Stationstaste %1: %2</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Stationstasten</translation>
    </message>
    <message>
        <source>Presets 11 and 12</source>
        <translation>Stationstasten 11 und 12</translation>
    </message>
    <message>
        <source>Remove the alarm at %1</source>
        <translation>Wecker um %1 entfernen</translation>
    </message>
    <message>
        <source>Remove the alarm at %1?</source>
        <translation>Wecker um %1 entfernen?</translation>
    </message>
    <message>
        <source>Replace it</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Saturday and Sunday</source>
        <translation>Samstag und Sonntag</translation>
    </message>
    <message>
        <source>Save as a preset …</source>
        <translation>Auf eine Stationstaste legen …</translation>
    </message>
    <message>
        <source>Save what plays as a preset</source>
        <translation>Was läuft, auf eine Stationstaste legen</translation>
    </message>
    <message>
        <source>Set the timer</source>
        <translation>Timer stellen</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Show the alarms</source>
        <translation>Wecker zeigen</translation>
    </message>
    <message>
        <source>Sleep timer</source>
        <translation>Schlummer-Timer</translation>
    </message>
    <message>
        <source>Sleep timer …</source>
        <translation>Schlummer-Timer …</translation>
    </message>
    <message numerus="yes">
        <source>Snooze for %n minutes</source>
        <translation>
            <numerusform>Noch %n Minute schlafen</numerusform>
            <numerusform>Noch %n Minuten schlafen</numerusform>
        </translation>
    </message>
    <message>
        <source>Star on this radio</source>
        <translation>Stern auf diesem Radio</translation>
    </message>
    <message>
        <source>Stars and presets as a file</source>
        <translation>Sterne und Stationstasten als Datei</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Starten</translation>
    </message>
    <message>
        <source>Stop the alarm</source>
        <translation>Wecker ausschalten</translation>
    </message>
    <message>
        <source>Stop the timer</source>
        <translation>Timer ausschalten</translation>
    </message>
    <message>
        <source>The radio’s own tone</source>
        <translation>Der Ton des Radios</translation>
    </message>
    <message>
        <source>This radio</source>
        <translation>Dieses Radio</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Uhrzeit</translation>
    </message>
    <message>
        <source>To keep them, or to take them to another radio.</source>
        <translation>Zum Aufheben, oder um sie zu einem anderen Radio mitzunehmen.</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Volume: %1</source>
        <translation>Lautstärke: %1</translation>
    </message>
    <message>
        <source>Wake me with this …</source>
        <translation>Damit wecken …</translation>
    </message>
    <message>
        <source>What plays: %1</source>
        <translation>Was läuft: %1</translation>
    </message>
    <message>
        <source>What to play</source>
        <translation>Was gespielt wird</translation>
    </message>
    <message>
        <source>What you play will be listed here.</source>
        <translation>Was Sie spielen, wird hier stehen.</translation>
    </message>
    <message>
        <source>Which preset?</source>
        <translation>Welche Stationstaste?</translation>
    </message>
    <message>
        <source>Will be replaced</source>
        <translation>Wird ersetzt</translation>
    </message>
    <message>
        <source>With a star on this radio</source>
        <translation>Mit Stern auf diesem Radio</translation>
    </message>
    <message>
        <source>Without a day it goes off once.</source>
        <translation>Ohne Tag weckt er einmal.</translation>
    </message>
    <message>
        <source>until %1</source>
        <translation>bis %1</translation>
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
    <message>
        <source>Pair this device</source>
        <translation>Dieses Gerät koppeln</translation>
    </message>
    <message>
        <source>The host lets in only devices that it knows. A code is shown where somebody chooses “Pair a device” on a paired device, or runs “veskctl pair” on the machine itself.</source>
        <translation>Der Host lässt nur Geräte herein, die er kennt. Ein Code erscheint dort, wo jemand auf einem gekoppelten Gerät „Ein Gerät koppeln“ wählt oder auf dem Rechner selbst „veskctl pair“ aufruft.</translation>
    </message>
    <message>
        <source>The host does not know this device any more. It can be paired anew.</source>
        <translation>Der Host kennt dieses Gerät nicht mehr. Es kann neu gekoppelt werden.</translation>
    </message>
    <message>
        <source>This connection is not encrypted</source>
        <translation>Diese Verbindung ist nicht verschlüsselt</translation>
    </message>
    <message>
        <source>Everybody in the same network can read along, and use what they read. Go on only in a network that you trust.</source>
        <translation>Jeder im selben Netz kann mitlesen und das Gelesene benutzen. Machen Sie nur in einem Netz weiter, dem Sie vertrauen.</translation>
    </message>
    <message>
        <source>Did your browser warn you?</source>
        <translation>Hat Ihr Browser gewarnt?</translation>
    </message>
    <message>
        <source>The connection is encrypted. But the host has made its certificate itself, so your browser cannot know whether it talks to your host or to somebody in between.</source>
        <translation>Die Verbindung ist verschlüsselt. Der Host hat sein Zertifikat aber selbst ausgestellt, deshalb kann Ihr Browser nicht wissen, ob er mit Ihrem Host spricht oder mit jemandem dazwischen.</translation>
    </message>
    <message>
        <source>You can: a fingerprint is shown beside the code. Compare it with the certificate's SHA-256 fingerprint, which your browser shows in the details of the warning or behind the sign beside the address.</source>
        <translation>Sie können es: Neben dem Code steht ein Fingerabdruck. Vergleichen Sie ihn mit dem SHA-256-Fingerabdruck des Zertifikats, den Ihr Browser in den Einzelheiten der Warnung oder hinter dem Zeichen neben der Adresse zeigt.</translation>
    </message>
    <message>
        <source>If they differ, do not enter the code.</source>
        <translation>Sind sie verschieden, geben Sie den Code nicht ein.</translation>
    </message>
    <message>
        <source>Without a warning, there is nothing to compare.</source>
        <translation>Ohne Warnung gibt es nichts zu vergleichen.</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Name of this device</source>
        <translation>Name dieses Geräts</translation>
    </message>
    <message>
        <source>Pair</source>
        <translation>Koppeln</translation>
    </message>
    <message>
        <source>This is not the code.</source>
        <translation>Das ist nicht der Code.</translation>
    </message>
    <message numerus="yes">
        <source>%n attempts are left.</source>
        <translation>
            <numerusform>Noch %n Versuch.</numerusform>
            <numerusform>Noch %n Versuche.</numerusform>
        </translation>
    </message>
    <message>
        <source>The code was wrong too often, so this pairing has ended. Let a new code be shown.</source>
        <translation>Der Code war zu oft falsch, deshalb ist diese Kopplung beendet. Lassen Sie einen neuen Code anzeigen.</translation>
    </message>
    <message>
        <source>No device can be paired right now: a code is valid for two minutes. Let a new one be shown.</source>
        <translation>Gerade kann kein Gerät gekoppelt werden: Ein Code gilt zwei Minuten lang. Lassen Sie einen neuen anzeigen.</translation>
    </message>
    <message>
        <source>The host does not take this code or this name.</source>
        <translation>Der Host nimmt diesen Code oder diesen Namen nicht an.</translation>
    </message>
    <message>
        <source>The host could not write to its disk, so this device is not paired. Its log says why.</source>
        <translation>Der Host konnte nicht auf seine Platte schreiben, deshalb ist dieses Gerät nicht gekoppelt. Sein Protokoll sagt, warum.</translation>
    </message>
    <message>
        <source>The host cannot be reached.</source>
        <translation>Der Host ist nicht zu erreichen.</translation>
    </message>
    <message>
        <source>The host refused this (HTTP %1). Wait a moment, and try again.</source>
        <translation>Der Host hat das abgelehnt (HTTP %1). Warten Sie einen Moment und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Only an owner of this host may do that.</source>
        <translation>Das darf nur ein Besitzer dieses Hosts.</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>Other devices</source>
        <translation>Andere Geräte</translation>
    </message>
    <message>
        <source>Who else may use this host, and what they may do.</source>
        <translation>Wer diesen Host sonst benutzen darf und was er darf.</translation>
    </message>
    <message>
        <source>Show the devices</source>
        <translation>Geräte anzeigen</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Besitzer</translation>
    </message>
    <message>
        <source>Listener</source>
        <translation>Hörer</translation>
    </message>
    <message>
        <source>What it may do</source>
        <translation>Was es darf</translation>
    </message>
    <message>
        <source>Listen and change favorites</source>
        <translation>Hören und Favoriten ändern</translation>
    </message>
    <message>
        <source>Everything, settings and devices too</source>
        <translation>Alles, auch Einstellungen und Geräte</translation>
    </message>
    <message>
        <source>A pairing that was started elsewhere is under way. Its code is shown there.</source>
        <translation>Es läuft eine Kopplung, die anderswo begonnen wurde. Dort steht ihr Code.</translation>
    </message>
    <message>
        <source>Enter this code on the new device. It may then do everything.</source>
        <translation>Geben Sie diesen Code auf dem neuen Gerät ein. Es darf danach alles.</translation>
    </message>
    <message>
        <source>Enter this code on the new device. It may then listen.</source>
        <translation>Geben Sie diesen Code auf dem neuen Gerät ein. Es darf danach hören.</translation>
    </message>
    <message>
        <source>Address for the new device:</source>
        <translation>Adresse für das neue Gerät:</translation>
    </message>
    <message>
        <source>If its browser warns, the certificate must have this SHA-256 fingerprint:</source>
        <translation>Wenn sein Browser warnt, muss das Zertifikat diesen SHA-256-Fingerabdruck haben:</translation>
    </message>
    <message numerus="yes">
        <source>%n seconds left</source>
        <translation>
            <numerusform>Noch %n Sekunde</numerusform>
            <numerusform>Noch %n Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>QR code that opens the pairing page on the new device</source>
        <translation>QR-Code, der auf dem neuen Gerät die Kopplungsseite öffnet</translation>
    </message>
    <message>
        <source>The device is paired.</source>
        <translation>Das Gerät ist gekoppelt.</translation>
    </message>
    <message>
        <source>%1 is paired.</source>
        <translation>%1 ist gekoppelt.</translation>
    </message>
    <message>
        <source>The code was entered wrongly too often, so the pairing has ended.</source>
        <translation>Der Code wurde zu oft falsch eingegeben, deshalb ist die Kopplung beendet.</translation>
    </message>
    <message>
        <source>The two minutes are over, and no device was paired.</source>
        <translation>Die zwei Minuten sind um, und kein Gerät wurde gekoppelt.</translation>
    </message>
    <message>
        <source>Pair a device</source>
        <translation>Ein Gerät koppeln</translation>
    </message>
    <message>
        <source>Show a code</source>
        <translation>Code anzeigen</translation>
    </message>
    <message>
        <source>Stop the pairing</source>
        <translation>Kopplung beenden</translation>
    </message>
    <message>
        <source>last here %1</source>
        <translation>zuletzt da: %1</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>verbunden</translation>
    </message>
    <message>
        <source>Remove this device? It is out at once, and this page with it.</source>
        <translation>Dieses Gerät entfernen? Es ist sofort draußen, und diese Seite mit ihm.</translation>
    </message>
    <message>
        <source>Remove %1? It is out at once, and has to be paired anew to come back.</source>
        <translation>%1 entfernen? Es ist sofort draußen und muss neu gekoppelt werden, um wiederzukommen.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Remove …</source>
        <translation>Entfernen …</translation>
    </message>
    <message>
        <source>Keep it</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>This device</source>
        <translation>Dieses Gerät</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>%1 ändern</translation>
    </message>
    <message>
        <source>No device is paired yet.</source>
        <translation>Noch ist kein Gerät gekoppelt.</translation>
    </message>
    <message>
        <source>Paired devices</source>
        <translation>Gekoppelte Geräte</translation>
    </message>
    <message>
        <source>Quiet view</source>
        <translation>Ruhige Ansicht</translation>
    </message>
    <message>
        <source>Show the quiet view</source>
        <translation>Ruhige Ansicht zeigen</translation>
    </message>
    <message>
        <source>The time and what plays, for a tablet on the wall. The screen stays on, and dims.</source>
        <translation>Die Uhrzeit und was läuft, für ein Tablet an der Wand. Der Bildschirm bleibt an und wird dunkler.</translation>
    </message>
    <message>
        <source>Leave the quiet view</source>
        <translation>Ruhige Ansicht verlassen</translation>
    </message>
    <message>
        <source>This browser lets the screen go off here.</source>
        <translation>Dieser Browser lässt den Bildschirm hier ausgehen.</translation>
    </message>
    <message>
        <source>On the lock screen</source>
        <translation>Auf dem Sperrbildschirm</translation>
    </message>
    <message>
        <source>Lock screen and media keys of this device show and control what the host plays.</source>
        <translation>Sperrbildschirm und Medientasten dieses Geräts zeigen und steuern, was der Host spielt.</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>No other device can reach this host: it serves its own machine only.</source>
        <translation>Kein anderes Gerät erreicht diesen Host: Er bedient nur seinen eigenen Rechner.</translation>
    </message>
    <message>
        <source>The link is copied. It opens this on every paired device.</source>
        <translation>Der Link ist kopiert. Er öffnet dies auf jedem gekoppelten Gerät.</translation>
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
