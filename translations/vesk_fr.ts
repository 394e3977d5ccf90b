<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>TuneIn</name>
    <message>
        <source>The given email address is of invalid form (empty or incorrect).</source>
        <translation>L’adresse e-mail n’est pas valide (vide ou incorrecte).</translation>
    </message>
    <message>
        <source>The given password is of invalid form (empty or incorrect).</source>
        <translation>Le mot de passe n’est pas valide (vide ou incorrect).</translation>
    </message>
    <message>
        <source>The given postalCode or city/country combination is invalid.</source>
        <translation>Le code postal ou la combinaison ville et pays n’est pas valide.</translation>
    </message>
    <message>
        <source>The requested account name is already taken.</source>
        <translation>Ce nom de compte est déjà pris.</translation>
    </message>
    <message>
        <source>The requested email is already registered.</source>
        <translation>Cette adresse e-mail est déjà enregistrée.</translation>
    </message>
    <message>
        <source>A validation error occurred.</source>
        <translation>Une erreur de validation s’est produite.</translation>
    </message>
    <message>
        <source>No associated account</source>
        <translation>Aucun compte associé</translation>
    </message>
    <message>
        <source>Account already associated.</source>
        <translation>Le compte est déjà associé.</translation>
    </message>
    <message>
        <source>Login failed. Please enter a valid username and password.</source>
        <translation>La connexion a échoué. Saisissez un nom d’utilisateur et un mot de passe valides.</translation>
    </message>
    <message>
        <source>Access forbidden.</source>
        <translation>Accès refusé.</translation>
    </message>
    <message>
        <source>TuneIn request failed.</source>
        <translation>La demande à TuneIn a échoué.</translation>
    </message>
    <message>
        <source>Invalid data received.</source>
        <translation>Données reçues non valides.</translation>
    </message>
    <message>
        <source>Invalid data returned.</source>
        <translation>Données renvoyées non valides.</translation>
    </message>
    <message>
        <source>Invalid password or user name.</source>
        <translation>Mot de passe ou nom d’utilisateur non valide.</translation>
    </message>
    <message>
        <source>Unknown method</source>
        <translation>Méthode inconnue</translation>
    </message>
    <message>
        <source>Invalid value type.</source>
        <translation>Type de valeur non valide.</translation>
    </message>
    <message>
        <source>Invalid response!</source>
        <translation>Réponse non valide !</translation>
    </message>
    <message>
        <source>Invalid response.</source>
        <translation>Réponse non valide.</translation>
    </message>
    <message>
        <source>Missing guideId parameter</source>
        <translation>Le paramètre guideId manque</translation>
    </message>
    <message>
        <source>Missing query parameter</source>
        <translation>Le paramètre query manque</translation>
    </message>
    <message>
        <source>Unsupported method!</source>
        <translation>Méthode non prise en charge !</translation>
    </message>
    <message>
        <source>Unspecified method!</source>
        <translation>Aucune méthode indiquée !</translation>
    </message>
    <message>
        <source>My Favorites</source>
        <translation>Mes favoris</translation>
    </message>
    <message>
        <source>Empty play path</source>
        <translation>Chemin de lecture vide</translation>
    </message>
    <message>
        <source>No available streams.</source>
        <translation>Aucun flux disponible.</translation>
    </message>
    <message>
        <source>Invalid pre-play command</source>
        <translation>Commande préalable à la lecture non valide</translation>
    </message>
    <message>
        <source>Failed to add station to presets (%1).</source>
        <translation>Impossible d’ajouter la station aux favoris (%1).</translation>
    </message>
    <message>
        <source>Failed to remove station from presets (%1).</source>
        <translation>Impossible de retirer la station des favoris (%1).</translation>
    </message>
    <message>
        <source>Done</source>
        <comment>Tune cancel title</comment>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Offer to report stations that do not play</source>
        <translation>Proposer de signaler les stations muettes</translation>
    </message>
    <message>
        <source>The menu of what plays then has an entry that reports the problem.</source>
        <translation>Le menu de la station en cours a alors une entrée qui signale le problème.</translation>
    </message>
    <message>
        <source>TuneIn partner id</source>
        <translation>Identifiant de partenaire TuneIn</translation>
    </message>
    <message>
        <source>By which TuneIn knows the maker of this device. Without one it may refuse to answer.</source>
        <translation>C’est ainsi que TuneIn connaît le fabricant de cet appareil. Sans lui, il peut refuser de répondre.</translation>
    </message>
    <message>
        <source>Address of the TuneIn start page</source>
        <translation>Adresse de la page d’accueil TuneIn</translation>
    </message>
    <message>
        <source>Left empty, it is TuneIn's own.</source>
        <translation>Laissée vide, c’est celle de TuneIn.</translation>
    </message>
    <message>
        <source>Stream formats to ask TuneIn for</source>
        <translation>Formats de flux à demander à TuneIn</translation>
    </message>
    <message>
        <source>Separated by commas. Stations are offered in these formats only.</source>
        <translation>Séparés par des virgules. Les stations ne sont proposées que dans ces formats.</translation>
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
        <translation>Station, émission, titre ou artiste</translation>
    </message>
    <message>
        <source>Search Stations, Shows, Songs, or Artists</source>
        <translation>Rechercher des stations, émissions, titres ou artistes</translation>
    </message>
    <message>
        <source>TuneIn testing</source>
        <translation>Tests TuneIn</translation>
    </message>
    <message>
        <source>Browse in various languages</source>
        <translation>Parcourir en plusieurs langues</translation>
    </message>
    <message>
        <source>Different stream types</source>
        <translation>Différents types de flux</translation>
    </message>
    <message>
        <source>Unreliable streams</source>
        <translation>Flux peu fiables</translation>
    </message>
    <message>
        <source>List of all genres</source>
        <translation>Liste de tous les genres</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Recherche</translation>
    </message>
</context>
<context>
    <name>TuneInBrowseNode::getRoleData(const QString&amp;, const Params&amp;)</name>
    <message>
        <source>Choose stream</source>
        <translation>Choisir le flux</translation>
    </message>
    <message>
        <source>Search Stations, Shows, Songs, or Artists</source>
        <translation>Rechercher des stations, émissions, titres ou artistes</translation>
    </message>
    <message>
        <source>Report a problem</source>
        <translation>Signaler un problème</translation>
    </message>
</context>
<context>
    <name>TuneInAddRemovePresetsNode::getRoleData(const QString&amp;, const Params&amp;)</name>
    <message>
        <source>Add to TuneIn Favorites</source>
        <translation>Ajouter aux favoris TuneIn</translation>
    </message>
    <message>
        <source>Remove from TuneIn Favorites</source>
        <translation>Retirer des favoris TuneIn</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
<context>
    <name>TuneInHttpClient::request(const VeskUrl&amp;, QByteArray*, TuneInHttpClient::Type)</name>
    <message>
        <source>Failed to connect to TuneIn</source>
        <translation>La connexion à TuneIn a échoué</translation>
    </message>
</context>
<context>
    <name>Host</name>
    <message>
        <source>%1 could not be loaded</source>
        <translation>%1 n’a pas pu être chargé</translation>
    </message>
    <message>
        <source>The %1 service was interrupted. Please try again.</source>
        <translation>Le service %1 a été interrompu. Veuillez réessayer.</translation>
    </message>
    <message>
        <source>This address changes something. It can only be opened from a list that offers it.</source>
        <translation>Cette adresse modifie quelque chose. Elle ne peut être ouverte que depuis une liste qui la propose.</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Services</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>Show the parts of a screen in one list</source>
        <translation>Afficher les parties d’un écran en une liste</translation>
    </message>
    <message>
        <source>Change stations without a gap</source>
        <translation>Changer de station sans interruption</translation>
    </message>
    <message>
        <source>The station that plays is heard until the next one has sound.</source>
        <translation>La station en cours s’entend jusqu’à ce que la suivante ait du son.</translation>
    </message>
    <message>
        <source>Play everything equally loud</source>
        <translation>Tout lire au même niveau sonore</translation>
    </message>
    <message>
        <source>Loud stations are turned down and quiet ones up, slowly and without distortion.</source>
        <translation>Les stations fortes sont baissées et les faibles montées, lentement et sans distorsion.</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Muet</translation>
    </message>
    <message>
        <source>Fetch streams and pictures from the home network</source>
        <translation>Chercher les flux et les images dans le réseau domestique</translation>
    </message>
    <message>
        <source>For stations and pictures on a server at home. Otherwise a service on the internet cannot lead this device to addresses in the house.</source>
        <translation>Pour des stations et des images sur un serveur à la maison. Sinon, un service sur Internet ne peut pas mener cet appareil à des adresses de la maison.</translation>
    </message>
    <message>
        <source>Id of this device</source>
        <translation>Identifiant de cet appareil</translation>
    </message>
    <message>
        <source>Address of the network adapter</source>
        <translation>Adresse de la carte réseau</translation>
    </message>
    <message>
        <source>Connected to the network</source>
        <translation>Connecté au réseau</translation>
    </message>
    <message>
        <source>What was kept belongs to a later version of this program, and stays as it is.</source>
        <translation>Ce qui a été gardé appartient à une version ultérieure de ce programme et reste tel quel.</translation>
    </message>
    <message>
        <source>The file with recents, favorites and presets was damaged. It is kept as %1, and a new one was begun.</source>
        <translation>Le fichier des écoutes récentes, des favoris et des présélections était endommagé. Il est conservé sous %1, et un nouveau a été commencé.</translation>
    </message>
    <message>
        <source>This cannot be kept.</source>
        <translation>Ceci ne peut pas être gardé.</translation>
    </message>
    <message>
        <source>There are %1 favorites already.</source>
        <translation>Il y a déjà %1 favoris.</translation>
    </message>
    <message>
        <source>Not imported: entry %1 of &quot;%2&quot; is not valid.</source>
        <translation>Non importé : l’entrée %1 de « %2 » n’est pas valable.</translation>
    </message>
    <message>
        <source>Not imported: this is no library of this program.</source>
        <translation>Non importé : ce n’est pas une bibliothèque de ce programme.</translation>
    </message>
    <message>
        <source>Preset %1 is empty.</source>
        <translation>La présélection %1 est vide.</translation>
    </message>
    <message>
        <source>Something is wrong</source>
        <translation>Quelque chose ne va pas</translation>
    </message>
    <message>
        <source>Recently played</source>
        <translation>Écoutes récentes</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoris</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothèque</translation>
    </message>
    <message>
        <source>Go on playing after a start</source>
        <translation>Reprendre la lecture au démarrage</translation>
    </message>
    <message>
        <source>With what played last: &quot;always&quot;, &quot;crash&quot; (only if the device ended by surprise), or &quot;never&quot;.</source>
        <translation>Avec ce qui jouait en dernier : « always » (toujours), « crash » (seulement après un arrêt inattendu) ou « never » (jamais).</translation>
    </message>
    <message>
        <source>Not saved: the disk is full.</source>
        <translation>Non enregistré : le disque est plein.</translation>
    </message>
    <message>
        <source>Not saved: the disk cannot be written. The log says more.</source>
        <translation>Non enregistré : impossible d’écrire sur le disque. Le journal en dit plus.</translation>
    </message>
    <message>
        <source>Not saved: too much is waiting for the disk.</source>
        <translation>Non enregistré : trop de choses attendent le disque.</translation>
    </message>
    <message>
        <source>There is no such device.</source>
        <translation>Cet appareil n’existe pas.</translation>
    </message>
    <message>
        <source>No more devices can be paired. Remove one that is no longer in use.</source>
        <translation>Aucun autre appareil ne peut être associé. Retirez-en un qui ne sert plus.</translation>
    </message>
    <message>
        <source>In effect, but not saved: the disk cannot be written. It will be tried again; a restart before then undoes it.</source>
        <translation>En vigueur, mais non enregistré : impossible d’écrire sur le disque. Un nouvel essai suivra ; un redémarrage d’ici là l’annule.</translation>
    </message>
    <message>
        <source>Only programs on this machine can reach this host. Start it with --listen to let other devices in.</source>
        <translation>Seuls les programmes de cette machine atteignent cet hôte. Démarrez-le avec --listen pour admettre d’autres appareils.</translation>
    </message>
    <message>
        <source>Not saved: these are no keys with values.</source>
        <translation>Non enregistré : ce ne sont pas des clés avec des valeurs.</translation>
    </message>
    <message>
        <source>Not saved: a plug-in may not keep that much.</source>
        <translation>Non enregistré : un module ne peut pas conserver autant.</translation>
    </message>
    <message>
        <source>Of everything that is shown, and of the lists that services answer with.</source>
        <translation>De tout ce qui s’affiche, et des listes que renvoient les services.</translation>
    </message>
    <message>
        <source>Otherwise each part is a folder of its own, which is opened first.</source>
        <translation>Sinon, chaque partie est un dossier à part, qu’il faut d’abord ouvrir.</translation>
    </message>
    <message>
        <source>Advanced settings</source>
        <translation>Réglages avancés</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Browsing</source>
        <translation>Navigation</translation>
    </message>
    <message>
        <source>The setting &quot;%1&quot; cannot be &quot;%2&quot;: it is %3.</source>
        <translation>Le réglage « %1 » ne peut pas être « %2 » : il faut %3.</translation>
    </message>
    <message>
        <source>a language tag, such as &quot;de-DE&quot; or &quot;en&quot;</source>
        <translation>un code de langue comme « de-DE » ou « en »</translation>
    </message>
    <message>
        <source>formats separated by commas, without blanks, out of: %1; or empty</source>
        <translation>une liste de formats séparés par des virgules, sans espaces, parmi : %1 ; ou rien</translation>
    </message>
    <message>
        <source>an address that begins with http:// or https://, or empty</source>
        <translation>une adresse qui commence par http:// ou https://, ou rien</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>vrai ou faux (true, false)</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>un nombre entier</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>un nombre</translation>
    </message>
    <message>
        <source>a text of one line and at most %1 characters</source>
        <translation>un texte d’une ligne et d’au plus %1 caractères</translation>
    </message>
    <message>
        <source>The %1 service cannot be reached. Please try again later.</source>
        <translation>Le service %1 est injoignable. Veuillez réessayer plus tard.</translation>
    </message>
    <message>
        <source>The %1 service does not answer. Please try again later.</source>
        <translation>Le service %1 ne répond pas. Veuillez réessayer plus tard.</translation>
    </message>
    <message>
        <source>There is no secure connection to the %1 service.</source>
        <translation>Il n’y a pas de connexion sécurisée au service %1.</translation>
    </message>
    <message>
        <source>The answer of the %1 service did not come whole. Please try again later.</source>
        <translation>La réponse du service %1 n’est pas arrivée entière. Veuillez réessayer plus tard.</translation>
    </message>
    <message>
        <source>What came is no answer of the %1 service. It may be out of order, or this network may want a login first.</source>
        <translation>Ce qui est arrivé n’est pas une réponse du service %1. Il est peut-être en panne, ou ce réseau demande d’abord une connexion.</translation>
    </message>
    <message>
        <source>The %1 service is out of order (%2). Please try again later.</source>
        <translation>Le service %1 est en panne (%2). Veuillez réessayer plus tard.</translation>
    </message>
    <message>
        <source>The %1 service cannot answer this (%2).</source>
        <translation>Le service %1 ne peut pas répondre à cela (%2).</translation>
    </message>
    <message>
        <source>The %1 service refuses this device (%2).</source>
        <translation>Le service %1 refuse cet appareil (%2).</translation>
    </message>
    <message>
        <source>The %1 service refuses this device (%2). Check the setting &quot;%3&quot;.</source>
        <translation>Le service %1 refuse cet appareil (%2). Vérifiez le réglage « %3 ».</translation>
    </message>
    <message>
        <source>one of: %1</source>
        <translation>l’un de : %1</translation>
    </message>
    <message>
        <source>a number from %1 to %2</source>
        <translation>un nombre de %1 à %2</translation>
    </message>
    <message>
        <source>a number from %1</source>
        <translation>un nombre à partir de %1</translation>
    </message>
    <message>
        <source>a number up to %1</source>
        <translation>un nombre jusqu’à %1</translation>
    </message>
    <message>
        <source>Keep a paused station for (minutes)</source>
        <translation>Garder une station en pause (minutes)</translation>
    </message>
    <message>
        <source>It goes on where it was paused. After that time it is joined live again; with 0 at once.</source>
        <translation>Elle reprend là où elle a été mise en pause. Passé ce temps, retour au direct ; avec 0, aussitôt.</translation>
    </message>
    <message>
        <source>auto, null, jack, or a device: alsa:DEVICE, pulse:NAME, pipewire:NAME</source>
        <translation>auto, null, jack ou un périphérique : alsa:PÉRIPHÉRIQUE, pulse:NOM, pipewire:NOM</translation>
    </message>
    <message>
        <source>Not there at the moment</source>
        <translation>Absente pour le moment</translation>
    </message>
    <message>
        <source>In use</source>
        <translation>Utilisée</translation>
    </message>
    <message>
        <source>Sound output</source>
        <translation>Sortie du son</translation>
    </message>
    <message>
        <source>auto is the machine&apos;s own; what --audio says counts until another one is chosen.</source>
        <translation>auto est celle de la machine ; ce que dit --audio vaut jusqu’à ce qu’une autre soit choisie.</translation>
    </message>
</context>
<context>
    <name>Player</name>
    <message>
        <source>There is no such row.</source>
        <translation>Cette ligne n’existe pas.</translation>
    </message>
    <message>
        <source>There is nothing to play in this row.</source>
        <translation>Il n’y a rien à écouter dans cette ligne.</translation>
    </message>
    <message>
        <source>Something else was played in the meantime.</source>
        <translation>Autre chose a été lancé entre-temps.</translation>
    </message>
    <message>
        <source>This entry is no longer in the list.</source>
        <translation>Cet élément n’est plus dans la liste.</translation>
    </message>
    <message>
        <source>This cannot be played.</source>
        <translation>La lecture est impossible.</translation>
    </message>
    <message>
        <source>Trying another stream ...</source>
        <translation>Essai d’un autre flux ...</translation>
    </message>
    <message>
        <source>Nothing is playing.</source>
        <translation>Rien n’est en cours de lecture.</translation>
    </message>
    <message>
        <source>Nothing is paused.</source>
        <translation>Rien n’est en pause.</translation>
    </message>
    <message>
        <source>There is nothing to hear on the stream.</source>
        <translation>On n’entend rien sur le flux.</translation>
    </message>
    <message>
        <source>The playlists never lead to a stream.</source>
        <translation>Les listes de lecture ne mènent à aucun flux.</translation>
    </message>
    <message>
        <source>The stream is encrypted.</source>
        <translation>Le flux est chiffré.</translation>
    </message>
    <message>
        <source>The stream's server ended it.</source>
        <translation>Le serveur a mis fin au flux.</translation>
    </message>
    <message>
        <source>There is no audio at the stream's address.</source>
        <translation>Il n’y a pas de son à l’adresse du flux.</translation>
    </message>
    <message>
        <source>There is no stream in the playlist.</source>
        <translation>La liste de lecture ne contient aucun flux.</translation>
    </message>
    <message>
        <source>The sound output does not answer.</source>
        <translation>La sortie audio ne répond pas.</translation>
    </message>
    <message>
        <source>Another output was chosen in the meantime.</source>
        <translation>Une autre sortie a été choisie entre-temps.</translation>
    </message>
    <message>
        <source>The sound output does not work.</source>
        <translation>La sortie audio ne fonctionne pas.</translation>
    </message>
    <message>
        <source>There is no sound device.</source>
        <translation>Il n'y a pas de périphérique audio.</translation>
    </message>
    <message>
        <source>This device cannot play the station's streams.</source>
        <translation>Cet appareil ne peut pas lire les flux de la station.</translation>
    </message>
    <message>
        <source>The station has no stream at the moment.</source>
        <translation>La station n’a pas de flux pour le moment.</translation>
    </message>
    <message>
        <source>The station cannot be heard in your country.</source>
        <translation>La station n’est pas disponible dans votre pays.</translation>
    </message>
    <message>
        <source>The station may not be played here.</source>
        <translation>La station ne peut pas être écoutée ici.</translation>
    </message>
    <message>
        <source>The stream's server refused it (code %1).</source>
        <translation>Le serveur a refusé le flux (code %1).</translation>
    </message>
    <message>
        <source>The stream's server sent another part of the file.</source>
        <translation>Le serveur a envoyé une autre partie du fichier.</translation>
    </message>
    <message>
        <source>There is a web page in place of the stream.</source>
        <translation>Une page web est arrivée à la place du flux.</translation>
    </message>
    <message>
        <source>The stream cannot be decoded.</source>
        <translation>Le flux ne peut pas être décodé.</translation>
    </message>
    <message>
        <source>The stream's server has no address.</source>
        <translation>Le serveur du flux n’a pas d’adresse.</translation>
    </message>
    <message>
        <source>The stream's server cannot be reached.</source>
        <translation>Le serveur du flux est injoignable.</translation>
    </message>
    <message>
        <source>The stream's server does not answer.</source>
        <translation>Le serveur du flux ne répond pas.</translation>
    </message>
    <message>
        <source>There is no safe connection to the stream.</source>
        <translation>Il n’y a pas de connexion sûre vers le flux.</translation>
    </message>
    <message>
        <source>The stream leads from address to address.</source>
        <translation>Le flux mène d’adresse en adresse.</translation>
    </message>
    <message>
        <source>The connection to the stream was lost.</source>
        <translation>La connexion au flux a été perdue.</translation>
    </message>
    <message>
        <source>The stream cannot be received (%1).</source>
        <translation>Le flux ne peut pas être reçu (%1).</translation>
    </message>
    <message>
        <source>%1 Trying again in %2 s.</source>
        <translation>%1 Nouvel essai dans %2 s.</translation>
    </message>
    <message>
        <source>%1 It asks for a break of %2 min. Trying again in %3 s.</source>
        <translation>%1 Il demande une pause de %2 min. Nouvel essai dans %3 s.</translation>
    </message>
    <message>
        <source>%1 Trying again.</source>
        <translation>%1 Nouvel essai.</translation>
    </message>
    <message>
        <source>%1 Trying the next address.</source>
        <translation>%1 Essai de l'adresse suivante.</translation>
    </message>
    <message>
        <source>The stream's playlist is empty.</source>
        <translation>La liste de lecture du flux est vide.</translation>
    </message>
    <message>
        <source>The stream's address is no web address.</source>
        <translation>L'adresse du flux n'est pas une adresse web.</translation>
    </message>
    <message>
        <source>The stream leads to what is no web address.</source>
        <translation>Le flux mène à ce qui n'est pas une adresse web.</translation>
    </message>
    <message>
        <source>The stream leads from a safe address to one that is not.</source>
        <translation>Le flux mène d'une adresse sûre à une autre qui ne l'est pas.</translation>
    </message>
    <message>
        <source>The stream leads inside the local network, where no station may lead.</source>
        <translation>Le flux mène dans le réseau local, où aucune station ne peut mener.</translation>
    </message>
    <message>
        <source>The stream's server does not speak HTTP.</source>
        <translation>Le serveur du flux ne parle pas HTTP.</translation>
    </message>
    <message>
        <source>The head of the stream's server's answer is too long.</source>
        <translation>L'en-tête de la réponse du serveur est trop long.</translation>
    </message>
    <message>
        <source>The head of the stream's server's answer never ends.</source>
        <translation>L'en-tête de la réponse du serveur n'a pas de fin.</translation>
    </message>
    <message>
        <source>The stream's server sends nothing.</source>
        <translation>Le serveur du flux n'envoie rien.</translation>
    </message>
    <message>
        <source>The stream's server has stopped sending.</source>
        <translation>Le serveur du flux n'envoie plus rien.</translation>
    </message>
    <message>
        <source>The sound server %1 cannot be reached.</source>
        <translation>Le serveur de son %1 est inaccessible.</translation>
    </message>
    <message>
        <source>Nobody reads the sound from %1.</source>
        <translation>Personne ne lit le son de %1.</translation>
    </message>
    <message>
        <source>%1 takes the sound too slowly; some of it is lost.</source>
        <translation>%1 prend le son trop lentement ; une partie est perdue.</translation>
    </message>
    <message>
        <source>Sound cannot be written to %1: %2</source>
        <translation>Impossible d’écrire le son dans %1 : %2</translation>
    </message>
    <message>
        <source>This device cannot play to &quot;%1&quot;: the package %2 is not installed.</source>
        <translation>Cet appareil ne peut pas jouer sur « %1 » : le paquet %2 n’est pas installé.</translation>
    </message>
    <message>
        <source>The server of this sends no parts of it: it can only be heard from its beginning.</source>
        <translation>Le serveur n’en envoie pas de parties : on ne peut l’écouter que depuis le début.</translation>
    </message>
    <message>
        <source>The file at the server is shorter than it said.</source>
        <translation>Le fichier sur le serveur est plus court qu’annoncé.</translation>
    </message>
    <message>
        <source>The stream's server is too slow to find the place.</source>
        <translation>Le serveur est trop lent pour trouver l’endroit.</translation>
    </message>
    <message>
        <source>The file does not say how long it is.</source>
        <translation>Le fichier n’indique pas sa durée.</translation>
    </message>
    <message>
        <source>This place cannot be found in the file.</source>
        <translation>Cet endroit est introuvable dans le fichier.</translation>
    </message>
    <message>
        <source>This does not say how long it is: it can only be heard from its beginning.</source>
        <translation>Sa durée n’est pas indiquée : on ne peut l’écouter que depuis le début.</translation>
    </message>
    <message>
        <source>This is live: there is no other place to go to. It can be paused for a while.</source>
        <translation>C’est en direct : il n’y a pas d’autre endroit où aller. On peut le mettre en pause un moment.</translation>
    </message>
    <message>
        <source>It is not known yet how long this is. Please try again.</source>
        <translation>On ne sait pas encore combien de temps cela dure. Veuillez réessayer.</translation>
    </message>
    <message>
        <source>Another place was asked for in the meantime.</source>
        <translation>Un autre endroit a été demandé entre-temps.</translation>
    </message>
    <message>
        <source>This is not live.</source>
        <translation>Ce n’est pas en direct.</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Réveil</translation>
    </message>
    <message>
        <source>There is no such alarm.</source>
        <translation>Ce réveil n’existe pas.</translation>
    </message>
    <message>
        <source>There are as many alarms as there can be. Remove one first.</source>
        <translation>Il ne peut pas y avoir plus de réveils. Supprimez-en un d’abord.</translation>
    </message>
    <message>
        <source>An alarm cannot keep this row.</source>
        <translation>Un réveil ne peut pas garder cette ligne.</translation>
    </message>
    <message>
        <source>No alarm rings.</source>
        <translation>Aucun réveil ne sonne.</translation>
    </message>
    <message>
        <source>The machine&apos;s output</source>
        <translation>La sortie de la machine</translation>
    </message>
    <message>
        <source>Nowhere</source>
        <translation>Nulle part</translation>
    </message>
    <message>
        <source>The output &quot;%1&quot; can only be given when the player is started.</source>
        <translation>La sortie « %1 » ne peut être indiquée qu’au démarrage du lecteur.</translation>
    </message>
    <message>
        <source>The sound device &quot;%1&quot; has gone or does not work.</source>
        <translation>Le périphérique de son « %1 » n’est plus là ou ne fonctionne pas.</translation>
    </message>
    <message>
        <source>There is no sound device &quot;%1&quot;.</source>
        <translation>Il n’y a pas de périphérique de son « %1 ».</translation>
    </message>
</context>
<context>
    <name>CMErrorHelper</name>
    <message>
        <source>The address of %1 was not found.</source>
        <translation>L’adresse de %1 est introuvable.</translation>
    </message>
    <message>
        <source>Could not connect to %1.</source>
        <translation>Impossible de se connecter à %1.</translation>
    </message>
    <message>
        <source>%1 did not answer in time.</source>
        <translation>%1 n’a pas répondu à temps.</translation>
    </message>
    <message>
        <source>No secure connection to %1 could be made.</source>
        <translation>Aucune connexion sécurisée à %1 n’a pu être établie.</translation>
    </message>
    <message>
        <source>The exchange with %1 failed.</source>
        <translation>L’échange avec %1 a échoué.</translation>
    </message>
</context>
<context>
    <name>CMError</name>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
<context>
    <name>CMListRowsNode</name>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>La plage de lignes n’est pas valide.</translation>
    </message>
</context>
<context>
    <name>CMReply</name>
    <message>
        <source>The request was cancelled.</source>
        <translation>La demande a été annulée.</translation>
    </message>
    <message>
        <source>The request was not answered.</source>
        <translation>La demande est restée sans réponse.</translation>
    </message>
</context>
<context>
    <name>CMRequest</name>
    <message>
        <source>The request was redirected too often.</source>
        <translation>La demande a été redirigée trop souvent.</translation>
    </message>
    <message>
        <source>There is nothing at this address.</source>
        <translation>Il n’y a rien à cette adresse.</translation>
    </message>
</context>
<context>
    <name>CMValuesWorker</name>
    <message>
        <source>The value cannot be changed.</source>
        <translation>La valeur ne peut pas être modifiée.</translation>
    </message>
    <message>
        <source>The value is not of the right type.</source>
        <translation>La valeur n’est pas du bon type.</translation>
    </message>
    <message>
        <source>A value has no rows.</source>
        <translation>Une valeur n’a pas de lignes.</translation>
    </message>
</context>
<context>
    <name>NodeLink</name>
    <message>
        <source>The answer is too long.</source>
        <translation>La réponse est trop longue.</translation>
    </message>
</context>
<context>
    <name>Ctl</name>
    <message>
        <source>"%1" is no place: that is a path, row numbers (3/0), favorites, or search:TEXT</source>
        <translation>« %1 » n'est pas un emplacement : c'est un chemin, des numéros de ligne (3/0), favorites ou search:TEXT</translation>
    </message>
    <message>
        <source>row %1 leads nowhere</source>
        <translation>la ligne %1 ne mène nulle part</translation>
    </message>
    <message>
        <source>no row with "%1" was shown lately; show the list that has it</source>
        <translation>aucune ligne avec « %1 » n'a été affichée récemment ; affichez la liste qui la contient</translation>
    </message>
    <message>
        <source>This entry is no longer in the list.</source>
        <translation>Cette entrée n'est plus dans la liste.</translation>
    </message>
    <message>
        <source>This is the list now:</source>
        <translation>Voici la liste maintenant :</translation>
    </message>
    <message>
        <source>this service has no favorites</source>
        <translation>ce service n'a pas de favoris</translation>
    </message>
    <message>
        <source>this service offers no search</source>
        <translation>ce service n'offre pas de recherche</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>arrêté</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>connexion</translation>
    </message>
    <message>
        <source>playing</source>
        <translation>lecture</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>en pause</translation>
    </message>
    <message>
        <source>error: %1</source>
        <translation>erreur : %1</translation>
    </message>
    <message>
        <source>the host is gone</source>
        <translation>l'hôte n'est plus là</translation>
    </message>
    <message>
        <source>it was stopped, or something else played, before it was heard</source>
        <translation>avant d'être entendu, cela a été arrêté ou autre chose a été lu</translation>
    </message>
    <message>
        <source>there is no row %1</source>
        <translation>il n'y a pas de ligne %1</translation>
    </message>
    <message>
        <source>There is nothing here.</source>
        <translation>Il n'y a rien ici.</translation>
    </message>
    <message>
        <source>done: %1</source>
        <translation>fait : %1</translation>
    </message>
    <message>
        <source>row %1 is nothing to choose</source>
        <translation>la ligne %1 ne peut pas être choisie</translation>
    </message>
    <message>
        <source>there are no streams to choose from</source>
        <translation>il n'y a pas de flux au choix</translation>
    </message>
    <message>
        <source>the menu has no entry for favorites</source>
        <translation>le menu n'a pas d'entrée pour les favoris</translation>
    </message>
    <message>
        <source>%1: a favorite now</source>
        <translation>%1 : maintenant un favori</translation>
    </message>
    <message>
        <source>%1: a favorite already</source>
        <translation>%1 : déjà un favori</translation>
    </message>
    <message>
        <source>%1: no favorite any more</source>
        <translation>%1 : n'est plus un favori</translation>
    </message>
    <message>
        <source>%1: no favorite</source>
        <translation>%1 : n'est pas un favori</translation>
    </message>
    <message>
        <source>"%1" is a list, or a row that was not shown lately</source>
        <translation>« %1 » est une liste, ou une ligne qui n'a pas été affichée récemment</translation>
    </message>
    <message>
        <source>row %1 has no menu</source>
        <translation>la ligne %1 n'a pas de menu</translation>
    </message>
    <message>
        <source>nothing plays, or what plays has no menu</source>
        <translation>rien n'est en lecture, ou ce qui l'est n'a pas de menu</translation>
    </message>
    <message>
        <source>--last is before --first</source>
        <translation>--last vient avant --first</translation>
    </message>
    <message>
        <source>search for what?</source>
        <translation>chercher quoi ?</translation>
    </message>
    <message>
        <source>not linked</source>
        <translation>non lié</translation>
    </message>
    <message>
        <source>there is nothing to play</source>
        <translation>il n'y a rien à lire</translation>
    </message>
    <message>
        <source>the best hit for "%1": %2</source>
        <translation>le meilleur résultat pour « %1 » : %2</translation>
    </message>
    <message>
        <source>the host is gone; waiting until it is back</source>
        <translation>l'hôte n'est plus là ; on attend son retour</translation>
    </message>
    <message>
        <source>Password: </source>
        <translation>Mot de passe : </translation>
    </message>
    <message>
        <source>Once more: </source>
        <translation>Encore une fois : </translation>
    </message>
    <message>
        <source>these are two different passwords</source>
        <translation>ce sont deux mots de passe différents</translation>
    </message>
    <message>
        <source>a password is needed</source>
        <translation>il faut un mot de passe</translation>
    </message>
    <message>
        <source>the password is too long</source>
        <translation>le mot de passe est trop long</translation>
    </message>
    <message>
        <source>%1: made</source>
        <translation>%1 : créé</translation>
    </message>
    <message>
        <source>%1: linked</source>
        <translation>%1 : lié</translation>
    </message>
    <message>
        <source>%1: not linked any more</source>
        <translation>%1 : n'est plus lié</translation>
    </message>
    <message>
        <source>asked for; it comes by e-mail</source>
        <translation>demandé ; cela vient par courriel</translation>
    </message>
    <message>
        <source>The service is slow; waiting for its answer.</source>
        <translation>Le service est lent ; on attend sa réponse.</translation>
    </message>
    <message>
        <source>no host at %1: %2. Start one with "vesk-host", or say with --host or VESK_HOST where it is.</source>
        <translation>pas d'hôte à %1 : %2. Démarrez-en un avec « vesk-host », ou dites où il est avec --host ou VESK_HOST.</translation>
    </message>
    <message>
        <source>there are several services for this: name one with --in (%1)</source>
        <translation>plusieurs services conviennent : nommez-en un avec --in (%1)</translation>
    </message>
    <message>
        <source>there is no service "%1"; there are: %2</source>
        <translation>il n'y a pas de service "%1" ; il y a : %2</translation>
    </message>
    <message>
        <source>this service has no accounts</source>
        <translation>ce service n'a pas de comptes</translation>
    </message>
    <message>
        <source>that did not work: the favorites are as they were</source>
        <translation>cela n'a pas marché : les favoris sont comme avant</translation>
    </message>
    <message>
        <source>Still waiting for: %1</source>
        <translation>Encore en attente de : %1</translation>
    </message>
    <message>
        <source>%1 more with --in %2</source>
        <translation>%1 de plus avec --in %2</translation>
    </message>
    <message>
        <source>%1 is a folder</source>
        <translation>%1 est un dossier</translation>
    </message>
    <message>
        <source>%1 is no ordinary file</source>
        <translation>%1 n'est pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>%1 is larger than 1 MiB</source>
        <translation>%1 dépasse 1 Mio</translation>
    </message>
    <message>
        <source>%1: %2 added, %3 known already, %4 skipped</source>
        <translation>%1 : %2 ajoutées, %3 déjà connues, %4 ignorées</translation>
    </message>
    <message>
        <source>this service takes no files</source>
        <translation>ce service n'accepte pas de fichiers</translation>
    </message>
    <message>
        <source>this service gives no files</source>
        <translation>ce service ne fournit pas de fichiers</translation>
    </message>
    <message>
        <source>"%1" is no format; there are: %2</source>
        <translation>"%1" n'est pas un format ; il y a : %2</translation>
    </message>
    <message>
        <source>%1: written</source>
        <translation>%1 : écrit</translation>
    </message>
    <message>
        <source>owner</source>
        <translation>propriétaire</translation>
    </message>
    <message>
        <source>listener</source>
        <translation>auditeur</translation>
    </message>
    <message>
        <source>this device</source>
        <translation>cet appareil</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>connecté</translation>
    </message>
    <message>
        <source>never seen</source>
        <translation>jamais vu</translation>
    </message>
    <message>
        <source>seen %1</source>
        <translation>vu %1</translation>
    </message>
    <message>
        <source>no device is paired</source>
        <translation>aucun appareil n'est associé</translation>
    </message>
    <message>
        <source>there is no device "%1"</source>
        <translation>il n'y a pas d'appareil « %1 »</translation>
    </message>
    <message>
        <source>several devices are called "%1": name one by its id (%2)</source>
        <translation>plusieurs appareils s'appellent « %1 » : désignez-en un par son identifiant (%2)</translation>
    </message>
    <message>
        <source>%1: now called "%2"</source>
        <translation>%1 : s'appelle maintenant « %2 »</translation>
    </message>
    <message>
        <source>"%1" is no role; there are: %2</source>
        <translation>« %1 » n'est pas un rôle ; il y a : %2</translation>
    </message>
    <message>
        <source>%1: an owner now</source>
        <translation>%1 : maintenant propriétaire</translation>
    </message>
    <message>
        <source>%1: a listener now</source>
        <translation>%1 : maintenant auditeur</translation>
    </message>
    <message>
        <source>%1: not paired any more</source>
        <translation>%1 : n'est plus associé</translation>
    </message>
    <message>
        <source>this device is not paired with %1. Have a code shown there ("veskctl pair"), then: veskctl --host %1 join CODE</source>
        <translation>cet appareil n'est pas associé à %1. Faites-y afficher un code (« veskctl pair »), puis : veskctl --host %1 join CODE</translation>
    </message>
    <message>
        <source>this device is not paired with %1 any more. Have a code shown there ("veskctl pair"), then: veskctl --host %1 join CODE</source>
        <translation>cet appareil n'est plus associé à %1. Faites-y afficher un code (« veskctl pair »), puis : veskctl --host %1 join CODE</translation>
    </message>
    <message>
        <source>the certificate of %1 is of no authority that this system knows: it says nothing about who answers there. If this is your host, pair with it: veskctl --host %1 join CODE. The fingerprint is %2.</source>
        <translation>le certificat de %1 ne vient d'aucune autorité connue de ce système : il ne dit rien de qui répond là. Si c'est votre hôte, associez-vous à lui : veskctl --host %1 join CODE. L'empreinte est %2.</translation>
    </message>
    <message>
        <source>the certificate of %1 has changed: somebody else may be answering there. Nothing was sent. If the host has a new one, pair again: veskctl --host %1 join CODE. The fingerprint was %2 and is %3.</source>
        <translation>le certificat de %1 a changé : quelqu'un d'autre répond peut-être là. Rien n'a été envoyé. Si l'hôte en a un nouveau, associez-vous de nouveau : veskctl --host %1 join CODE. L'empreinte était %2 et est %3.</translation>
    </message>
    <message>
        <source>the host wants an encrypted connection: veskctl --host %1</source>
        <translation>l'hôte veut une connexion chiffrée : veskctl --host %1</translation>
    </message>
    <message>
        <source>paired, but that could not be kept: %1. Remove the device "%2" there, and pair again.</source>
        <translation>associé, mais cela n'a pas pu être conservé : %1. Retirez-y l'appareil « %2 », puis associez-vous de nouveau.</translation>
    </message>
    <message>
        <source>paired with %1 as its owner, under the name "%2"</source>
        <translation>associé à %1 comme propriétaire, sous le nom « %2 »</translation>
    </message>
    <message>
        <source>paired with %1 as a listener, under the name "%2"</source>
        <translation>associé à %1 comme auditeur, sous le nom « %2 »</translation>
    </message>
    <message>
        <source>a program on the host's own machine needs no pairing; say with --host or VESK_HOST where another host is</source>
        <translation>un programme sur la machine même de l'hôte n'a pas besoin d'être associé ; dites avec --host ou VESK_HOST où est un autre hôte</translation>
    </message>
    <message>
        <source>a code is six digits</source>
        <translation>un code a six chiffres</translation>
    </message>
    <message>
        <source>a fingerprint is 64 hexadecimal digits (SHA-256)</source>
        <translation>une empreinte a 64 chiffres hexadécimaux (SHA-256)</translation>
    </message>
    <message>
        <source>%1 has another certificate, with the fingerprint %2. Nothing was sent.</source>
        <translation>%1 a un autre certificat, avec l'empreinte %2. Rien n'a été envoyé.</translation>
    </message>
    <message>
        <source>The certificate of %1 is of no authority that this system knows. Its fingerprint is:</source>
        <translation>Le certificat de %1 ne vient d'aucune autorité connue de ce système. Son empreinte est :</translation>
    </message>
    <message>
        <source>Is that the one that is shown with the code?</source>
        <translation>Est-ce celle qui est affichée avec le code ?</translation>
    </message>
    <message>
        <source>the certificate is of no authority that this system knows; where nobody can be asked, say with --fingerprint which one is the host's</source>
        <translation>le certificat ne vient d'aucune autorité connue de ce système ; là où personne ne peut être interrogé, dites avec --fingerprint lequel est celui de l'hôte</translation>
    </message>
    <message>
        <source>The connection to %1 is not encrypted: others in the network can read what is sent, and come in the same way.</source>
        <translation>La connexion à %1 n'est pas chiffrée : d'autres dans le réseau peuvent lire ce qui est envoyé, et entrer de la même façon.</translation>
    </message>
    <message>
        <source>Pair nevertheless?</source>
        <translation>Associer malgré tout ?</translation>
    </message>
    <message>
        <source>the connection is not encrypted; where nobody can be asked, --plain-http says that this may be</source>
        <translation>la connexion n'est pas chiffrée ; là où personne ne peut être interrogé, --plain-http dit que cela est permis</translation>
    </message>
    <message>
        <source>not paired; nothing was sent</source>
        <translation>pas associé ; rien n'a été envoyé</translation>
    </message>
    <message>
        <source>that is not the code; attempts left: %1</source>
        <translation>ce n'est pas le code ; essais restants : %1</translation>
    </message>
    <message>
        <source>that is not the code, and it was the last attempt: have a new code shown</source>
        <translation>ce n'est pas le code, et c'était le dernier essai : faites afficher un nouveau code</translation>
    </message>
    <message>
        <source>%1 shows no code now: have one shown there ("veskctl pair")</source>
        <translation>%1 n'affiche pas de code en ce moment : faites-y en afficher un (« veskctl pair »)</translation>
    </message>
    <message>
        <source>the host does not take that name</source>
        <translation>l'hôte n'accepte pas ce nom</translation>
    </message>
    <message>
        <source>the host could not save the device; nothing has changed</source>
        <translation>l'hôte n'a pas pu enregistrer l'appareil ; rien n'a changé</translation>
    </message>
    <message>
        <source>too many attempts; try again later</source>
        <translation>trop d'essais ; réessayez plus tard</translation>
    </message>
    <message>
        <source>another code was made for this host; this one is worth nothing any more</source>
        <translation>un autre code a été fait pour cet hôte ; celui-ci ne vaut plus rien</translation>
    </message>
    <message>
        <source>the pairing was stopped</source>
        <translation>l'association a été arrêtée</translation>
    </message>
    <message>
        <source>Code: </source>
        <translation>Code : </translation>
    </message>
    <message>
        <source>For %1 seconds it can be entered at one of these addresses:</source>
        <translation>Pendant %1 secondes, il peut être saisi à l'une de ces adresses :</translation>
    </message>
    <message>
        <source>or with: veskctl --host %1 join %2</source>
        <translation>ou avec : veskctl --host %1 join %2</translation>
    </message>
    <message>
        <source>The fingerprint of the certificate is:</source>
        <translation>L'empreinte du certificat est :</translation>
    </message>
    <message>
        <source>%1: paired</source>
        <translation>%1 : associé</translation>
    </message>
    <message>
        <source>wrong codes were entered too often; the pairing has ended</source>
        <translation>trop de codes faux ont été saisis ; l'association est terminée</translation>
    </message>
    <message>
        <source>nobody entered the code in time</source>
        <translation>personne n'a saisi le code à temps</translation>
    </message>
    <message>
        <source>volume %1</source>
        <translation>volume %1</translation>
    </message>
    <message>
        <source>off</source>
        <translation>désactivé</translation>
    </message>
    <message>
        <source>a sound of the host's own</source>
        <translation>un son de l’hôte lui-même</translation>
    </message>
    <message>
        <source>no alarm is set</source>
        <translation>aucun réveil n’est réglé</translation>
    </message>
    <message>
        <source>missed alarm: %1</source>
        <translation>réveil manqué : %1</translation>
    </message>
    <message>
        <source>"veskctl alarm dismiss" forgets the missed ones</source>
        <translation>"veskctl alarm dismiss" oublie ceux qui ont été manqués</translation>
    </message>
    <message>
        <source>several alarms are at %1: name one by its number</source>
        <translation>plusieurs réveils sont à %1 : indiquez-en un par son numéro</translation>
    </message>
    <message>
        <source>there is no alarm "%1"</source>
        <translation>il n’y a pas de réveil "%1"</translation>
    </message>
    <message>
        <source>"%1" is no time: that is 7:30 or 19:30</source>
        <translation>"%1" n’est pas une heure : c’est 7:30 ou 19:30</translation>
    </message>
    <message>
        <source>"%1" are no days: those are mon-fri, sat,sun, daily or once</source>
        <translation>"%1" ne sont pas des jours : c’est mon-fri, sat,sun, daily ou once</translation>
    </message>
    <message>
        <source>%1: off</source>
        <translation>%1 : désactivé</translation>
    </message>
    <message>
        <source>%1: next %2</source>
        <translation>%1 : la prochaine fois %2</translation>
    </message>
    <message>
        <source>%1: removed</source>
        <translation>%1 : supprimé</translation>
    </message>
    <message>
        <source>quiet until %1</source>
        <translation>silence jusqu’à %1</translation>
    </message>
    <message>
        <source>this host does not know that: it is older than this veskctl</source>
        <translation>cet hôte ne connaît pas cela : il est plus ancien que ce veskctl</translation>
    </message>
    <message>
        <source>forgotten: what was played</source>
        <translation>oublié : ce qui a été écouté</translation>
    </message>
    <message>
        <source>%1: starred now</source>
        <translation>%1 : a maintenant une étoile</translation>
    </message>
    <message>
        <source>%1: starred already</source>
        <translation>%1 : a déjà une étoile</translation>
    </message>
    <message>
        <source>%1: not starred any more</source>
        <translation>%1 : n’a plus d’étoile</translation>
    </message>
    <message>
        <source>%1: not starred</source>
        <translation>%1 : n’a pas d’étoile</translation>
    </message>
    <message>
        <source>%1 holds no library</source>
        <translation>%1 ne contient pas de collection</translation>
    </message>
    <message>
        <source>%1: favorites added: %2, presets: %3</source>
        <translation>%1 : favoris ajoutés : %2, présélections : %3</translation>
    </message>
    <message>
        <source>there is no output</source>
        <translation>il n’y a pas de sortie</translation>
    </message>
    <message>
        <source>%1 (not there)</source>
        <translation>%1 (absente)</translation>
    </message>
    <message>
        <source>there is no "%1" in the configuration</source>
        <translation>la configuration n’a pas de "%1"</translation>
    </message>
    <message>
        <source>several outputs are called "%1": %2</source>
        <translation>plusieurs sorties s’appellent "%1" : %2</translation>
    </message>
    <message>
        <source>there is no output "%1"</source>
        <translation>il n’y a pas de sortie "%1"</translation>
    </message>
    <message>
        <source>the sound goes to: %1</source>
        <translation>le son va vers : %1</translation>
    </message>
    <message>
        <source>nothing plays</source>
        <translation>rien ne joue</translation>
    </message>
    <message>
        <source>muted</source>
        <translation>muet</translation>
    </message>
    <message>
        <source>stops at %1</source>
        <translation>s’arrête à %1</translation>
    </message>
    <message>
        <source>the alarm rings</source>
        <translation>le réveil sonne</translation>
    </message>
    <message>
        <source>alarm %1</source>
        <translation>réveil %1</translation>
    </message>
    <message>
        <source>"%1" is no preset: they are numbered 1 to %2</source>
        <translation>"%1" n’est pas une présélection : elles sont numérotées de 1 à %2</translation>
    </message>
    <message>
        <source>no preset is taken; "veskctl preset save 1" keeps what plays</source>
        <translation>aucune présélection n’est occupée ; "veskctl preset save 1" garde ce qui joue</translation>
    </message>
    <message>
        <source>preset %1: %2</source>
        <translation>présélection %1 : %2</translation>
    </message>
    <message>
        <source>preset %1: free</source>
        <translation>présélection %1 : libre</translation>
    </message>
    <message>
        <source>"%1" is no place to go to: that is +30, -1:30, 1:20:00, 90s or live</source>
        <translation>"%1" n’est pas un endroit où aller : c’est +30, -1:30, 1:20:00, 90s ou live</translation>
    </message>
    <message>
        <source>live</source>
        <translation>en direct</translation>
    </message>
    <message>
        <source>no sleep timer</source>
        <translation>pas de minuterie</translation>
    </message>
    <message>
        <source>the sound stops at %1</source>
        <translation>le son s’arrête à %1</translation>
    </message>
    <message>
        <source>%1, in %2</source>
        <translation>%1, dans %2</translation>
    </message>
    <message>
        <source>"%1" is no time to sleep for: that is 1 to 1440 minutes, 1h30m or off</source>
        <translation>"%1" n’est pas une durée pour s’endormir : c’est 1 à 1440 minutes, 1h30m ou off</translation>
    </message>
    <message>
        <source>%1 behind live</source>
        <translation>%1 de retard sur le direct</translation>
    </message>
    <message>
        <source>once</source>
        <translation>une fois</translation>
    </message>
    <message>
        <source>every day</source>
        <translation>tous les jours</translation>
    </message>
    <message>
        <source>%1, muted</source>
        <translation>%1, muet</translation>
    </message>
    <message>
        <source>"%1" is no volume: that is 0 to 100, +5, -5, mute or unmute</source>
        <translation>"%1" n’est pas un volume : c’est 0 à 100, +5, -5, mute ou unmute</translation>
    </message>
</context>
<context>
    <name>Web</name>
    <message>
        <source>%1 account</source>
        <translation>Compte %1</translation>
    </message>
    <message>
        <source>%1 is a favorite now</source>
        <translation>%1 fait maintenant partie des favoris</translation>
    </message>
    <message>
        <source>%1 is no favorite any more</source>
        <translation>%1 ne fait plus partie des favoris</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>%1: done</source>
        <translation>%1 : terminé</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 %, muted</source>
        <translation>%1 %, muet</translation>
    </message>
    <message>
        <source>%1 behind live</source>
        <translation>%1 de retard sur le direct</translation>
    </message>
    <message>
        <source>%1 has a star on this radio.</source>
        <translation>%1 a une étoile sur cette radio.</translation>
    </message>
    <message>
        <source>%1 has no star on this radio any more.</source>
        <translation>%1 n’a plus d’étoile sur cette radio.</translation>
    </message>
    <message>
        <source>%1 is not a library that was exported here.</source>
        <translation>%1 n’est pas une bibliothèque exportée ici.</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message numerus="yes">
        <source>%n alarms were missed while this radio was off.</source>
        <translation>
            <numerusform>%n réveil n’a pas sonné : cette radio était éteinte.</numerusform>
            <numerusform>%n réveils n’ont pas sonné : cette radio était éteinte.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes left</source>
        <translation>
            <numerusform>encore %n minute</numerusform>
            <numerusform>encore %n minutes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n presets were set.</source>
        <translation>
            <numerusform>%n présélection a été réglée.</numerusform>
            <numerusform>%n présélections ont été réglées.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n stars were added.</source>
        <translation>
            <numerusform>%n étoile a été ajoutée.</numerusform>
            <numerusform>%n étoiles ont été ajoutées.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add an alarm</source>
        <translation>Ajouter un réveil</translation>
    </message>
    <message>
        <source>After that time the sound fades out and stops.</source>
        <translation>Après ce temps, le son baisse puis s’arrête.</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Réveil</translation>
    </message>
    <message>
        <source>Alarm at %1</source>
        <translation>Réveil de %1</translation>
    </message>
    <message>
        <source>Alarm: %1</source>
        <translation>Réveil : %1</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Réveils</translation>
    </message>
    <message>
        <source>As it is set then</source>
        <translation>Celui qui sera réglé alors</translation>
    </message>
    <message>
        <source>At once</source>
        <translation>Aussitôt</translation>
    </message>
    <message>
        <source>Back %1 seconds</source>
        <translation>Reculer de %1 secondes</translation>
    </message>
    <message>
        <source>Back and forward %1 seconds in an episode</source>
        <translation>Reculer et avancer de %1 secondes dans un épisode</translation>
    </message>
    <message>
        <source>Back to live</source>
        <translation>Revenir au direct</translation>
    </message>
    <message>
        <source>Becomes as loud as that</source>
        <translation>Atteint ce volume</translation>
    </message>
    <message>
        <source>Change the alarm at %1</source>
        <translation>Modifier le réveil de %1</translation>
    </message>
    <message>
        <source>Choose the output</source>
        <translation>Choisir la sortie</translation>
    </message>
    <message>
        <source>Clear preset %1</source>
        <translation>Vider la présélection %1</translation>
    </message>
    <message>
        <source>Clear some</source>
        <translation>En vider</translation>
    </message>
    <message>
        <source>Clear the list</source>
        <translation>Vider la liste</translation>
    </message>
    <message>
        <source>Clear the list?</source>
        <translation>Vider la liste ?</translation>
    </message>
    <message>
        <source>Clear …</source>
        <translation>Vider …</translation>
    </message>
    <message>
        <source>Days</source>
        <translation>Jours</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Vide</translation>
    </message>
    <message>
        <source>Every day</source>
        <translation>Tous les jours</translation>
    </message>
    <message>
        <source>Favorite at %1</source>
        <translation>Favori sur %1</translation>
    </message>
    <message>
        <source>Forward %1 seconds</source>
        <translation>Avancer de %1 secondes</translation>
    </message>
    <message>
        <source>From the beginning</source>
        <translation>Depuis le début</translation>
    </message>
    <message>
        <source>Goes on at %1, where it was left.</source>
        <translation>Reprise à %1, là où vous en étiez.</translation>
    </message>
    <message>
        <source>Heard lately</source>
        <translation>Écouté récemment</translation>
    </message>
    <message>
        <source>Hold one down to save what plays. On a keyboard the numbers play, and with Shift they save.</source>
        <translation>Un appui long enregistre ce qui joue. Sur un clavier, les chiffres jouent et, avec Maj, ils enregistrent.</translation>
    </message>
    <message>
        <source>Import …</source>
        <translation>Importer …</translation>
    </message>
    <message numerus="yes">
        <source>In %n minutes</source>
        <translation>
            <numerusform>En %n minute</numerusform>
            <numerusform>En %n minutes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>In %n seconds</source>
        <translation>
            <numerusform>En %n seconde</numerusform>
            <numerusform>En %n secondes</numerusform>
        </translation>
    </message>
    <message>
        <source>Louder, quieter</source>
        <translation>Plus fort, moins fort</translation>
    </message>
    <message>
        <source>Minutes</source>
        <translation>Minutes</translation>
    </message>
    <message>
        <source>Monday to Friday</source>
        <translation>Du lundi au vendredi</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Muet</translation>
    </message>
    <message>
        <source>New alarm</source>
        <translation>Nouveau réveil</translation>
    </message>
    <message>
        <source>Next alarm</source>
        <translation>Prochain réveil</translation>
    </message>
    <message>
        <source>Next: %1</source>
        <translation>Prochaine fois : %1</translation>
    </message>
    <message>
        <source>None is set.</source>
        <translation>Aucun n’est réglé.</translation>
    </message>
    <message>
        <source>Nothing has a star yet. The player and the menu of each station have one to press.</source>
        <translation>Rien n’a encore d’étoile. Le lecteur et le menu de chaque station en ont une.</translation>
    </message>
    <message>
        <source>Nothing plays that could be saved.</source>
        <translation>Rien ne joue qui puisse être enregistré.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Arrêt</translation>
    </message>
    <message>
        <source>Once</source>
        <translation>Une fois</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Sortie</translation>
    </message>
    <message>
        <source>Output …</source>
        <translation>Sortie …</translation>
    </message>
    <message>
        <source>Play a preset; 0 is 10</source>
        <translation>Jouer une présélection ; 0 est la 10</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Preset %1 is %2 now.</source>
        <translation>La présélection %1 est maintenant %2.</translation>
    </message>
    <message>
        <source>Preset %1 is %2. Replace it by %3?</source>
        <translation>La présélection %1 est %2. La remplacer par %3 ?</translation>
    </message>
    <message>
        <source>Preset %1 is empty. Shift and the number save what plays.</source>
        <translation>La présélection %1 est vide. Maj et le chiffre enregistrent ce qui joue.</translation>
    </message>
    <message>
        <source>Preset %1: %2</source>
        <translation>Présélection %1 : %2</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Présélections</translation>
    </message>
    <message>
        <source>Presets 11 and 12</source>
        <translation>Présélections 11 et 12</translation>
    </message>
    <message>
        <source>Remove the alarm at %1</source>
        <translation>Supprimer le réveil de %1</translation>
    </message>
    <message>
        <source>Remove the alarm at %1?</source>
        <translation>Supprimer le réveil de %1 ?</translation>
    </message>
    <message>
        <source>Replace it</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>Saturday and Sunday</source>
        <translation>Samedi et dimanche</translation>
    </message>
    <message>
        <source>Save as a preset …</source>
        <translation>Enregistrer comme présélection …</translation>
    </message>
    <message>
        <source>Save what plays as a preset</source>
        <translation>Enregistrer ce qui joue comme présélection</translation>
    </message>
    <message>
        <source>Set the timer</source>
        <translation>Régler la minuterie</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Maj</translation>
    </message>
    <message>
        <source>Show the alarms</source>
        <translation>Afficher les réveils</translation>
    </message>
    <message>
        <source>Sleep timer</source>
        <translation>Minuterie de sommeil</translation>
    </message>
    <message>
        <source>Sleep timer …</source>
        <translation>Minuterie de sommeil …</translation>
    </message>
    <message numerus="yes">
        <source>Snooze for %n minutes</source>
        <translation>
            <numerusform>Dormir encore %n minute</numerusform>
            <numerusform>Dormir encore %n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>Star on this radio</source>
        <translation>Étoile sur cette radio</translation>
    </message>
    <message>
        <source>Stars and presets as a file</source>
        <translation>Étoiles et présélections dans un fichier</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Démarrer</translation>
    </message>
    <message>
        <source>Stop the alarm</source>
        <translation>Arrêter le réveil</translation>
    </message>
    <message>
        <source>Stop the timer</source>
        <translation>Arrêter la minuterie</translation>
    </message>
    <message>
        <source>The radio’s own tone</source>
        <translation>Le son de la radio</translation>
    </message>
    <message>
        <source>This radio</source>
        <translation>Cette radio</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Heure</translation>
    </message>
    <message>
        <source>To keep them, or to take them to another radio.</source>
        <translation>Pour les conserver, ou les emporter sur une autre radio.</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Volume: %1</source>
        <translation>Volume : %1</translation>
    </message>
    <message>
        <source>Wake me with this …</source>
        <translation>Me réveiller avec ceci …</translation>
    </message>
    <message>
        <source>What plays: %1</source>
        <translation>Ce qui joue : %1</translation>
    </message>
    <message>
        <source>What to play</source>
        <translation>Ce qui sera joué</translation>
    </message>
    <message>
        <source>What you play will be listed here.</source>
        <translation>Ce que vous écoutez figurera ici.</translation>
    </message>
    <message>
        <source>Which preset?</source>
        <translation>Quelle présélection ?</translation>
    </message>
    <message>
        <source>Will be replaced</source>
        <translation>Sera remplacée</translation>
    </message>
    <message>
        <source>With a star on this radio</source>
        <translation>Avec une étoile sur cette radio</translation>
    </message>
    <message>
        <source>Without a day it goes off once.</source>
        <translation>Sans aucun jour, il sonne une fois.</translation>
    </message>
    <message>
        <source>until %1</source>
        <translation>jusqu’à %1</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apparence</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Annulé.</translation>
    </message>
    <message>
        <source>Check now</source>
        <translation>Vérifier maintenant</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Code: %1</source>
        <translation>Code : %1</translation>
    </message>
    <message>
        <source>Connecting …</source>
        <translation>Connexion …</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Sombre</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Détails</translation>
    </message>
    <message>
        <source>Fixed when the host was started.</source>
        <translation>Fixé au démarrage de l’hôte.</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>From the search field to the results</source>
        <translation>Du champ de recherche aux résultats</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historique</translation>
    </message>
    <message>
        <source>Kept in this browser.</source>
        <translation>Conservé dans ce navigateur.</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Touches</translation>
    </message>
    <message>
        <source>Licenses</source>
        <translation>Licences</translation>
    </message>
    <message>
        <source>Of the libraries that are part of this page.</source>
        <translation>Des bibliothèques qui font partie de cette page.</translation>
    </message>
    <message>
        <source>Show the licenses</source>
        <translation>Afficher les licences</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Clair</translation>
    </message>
    <message>
        <source>Like the system</source>
        <translation>Comme le système</translation>
    </message>
    <message>
        <source>Link with a code</source>
        <translation>Associer avec un code</translation>
    </message>
    <message>
        <source>Linked to %1</source>
        <translation>Associé à %1</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Chargement</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>More for %1</source>
        <translation>Plus pour %1</translation>
    </message>
    <message>
        <source>Move in a list or a menu</source>
        <translation>Se déplacer dans une liste ou un menu</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Non connecté</translation>
    </message>
    <message>
        <source>Not opened</source>
        <translation>Pas ouvert</translation>
    </message>
    <message>
        <source>One menu up, or clear the search</source>
        <translation>Remonter d’un menu ou vider la recherche</translation>
    </message>
    <message>
        <source>Open or play the entry</source>
        <translation>Ouvrir ou écouter l’entrée</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Pause what plays, or go on</source>
        <translation>Mettre en pause ou reprendre</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>En pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Lecture</translation>
    </message>
    <message>
        <source>Player</source>
        <translation>Lecteur</translation>
    </message>
    <message>
        <source>Playing</source>
        <translation>En cours de lecture</translation>
    </message>
    <message>
        <source>Preferred</source>
        <translation>Préféré</translation>
    </message>
    <message>
        <source>QR code of the page where the code is entered</source>
        <translation>Code QR de la page où saisir le code</translation>
    </message>
    <message>
        <source>Reconnecting …</source>
        <translation>Reconnexion …</translation>
    </message>
    <message>
        <source>Results for “%1”</source>
        <translation>Résultats pour « %1 »</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Services</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Show these keys</source>
        <translation>Afficher ces touches</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>Sign in with a password …</source>
        <translation>Se connecter avec un mot de passe …</translation>
    </message>
    <message>
        <source>Skip to the content</source>
        <translation>Aller au contenu</translation>
    </message>
    <message>
        <source>Something went wrong.</source>
        <translation>Une erreur s’est produite.</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espace</translation>
    </message>
    <message>
        <source>Start page</source>
        <translation>Page d’accueil</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Arrêté</translation>
    </message>
    <message>
        <source>That entry is no longer in the list, which is read again.</source>
        <translation>Cette entrée n’est plus dans la liste, qui est relue.</translation>
    </message>
    <message>
        <source>The connection to the host is lost. Trying again …</source>
        <translation>La connexion à l’hôte est perdue. Nouvelle tentative …</translation>
    </message>
    <message>
        <source>The service takes long to answer.</source>
        <translation>Le service met longtemps à répondre.</translation>
    </message>
    <message>
        <source>There is no connection to the host, so nothing happens.</source>
        <translation>Il n’y a pas de connexion avec l’hôte, donc rien ne se passe.</translation>
    </message>
    <message>
        <source>There is nothing here.</source>
        <translation>Il n’y a rien ici.</translation>
    </message>
    <message>
        <source>This device is not linked to a %1 account.</source>
        <translation>Cet appareil n’est associé à aucun compte %1.</translation>
    </message>
    <message>
        <source>This is shown once the host can be reached again.</source>
        <translation>Ceci s’affichera dès que l’hôte répondra de nouveau.</translation>
    </message>
    <message>
        <source>This link would change something, so it was not opened.</source>
        <translation>Ce lien modifierait quelque chose ; il n’a donc pas été ouvert.</translation>
    </message>
    <message>
        <source>This page</source>
        <translation>Cette page</translation>
    </message>
    <message>
        <source>To the first or the last entry</source>
        <translation>À la première ou à la dernière entrée</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>Indisponible</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Unlink</source>
        <translation>Dissocier</translation>
    </message>
    <message>
        <source>Unlink …</source>
        <translation>Dissocier …</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Sans titre</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nom d’utilisateur</translation>
    </message>
    <message>
        <source>Waiting for the code to be entered …</source>
        <translation>En attente de la saisie du code …</translation>
    </message>
    <message>
        <source>What can be done with the keyboard alone.</source>
        <translation>Ce que l’on peut faire au clavier seul.</translation>
    </message>
    <message>
        <source>What changes something is only done from a list or a menu that offers it.</source>
        <translation>Ce qui modifie quelque chose ne se fait que depuis une liste ou un menu qui le propose.</translation>
    </message>
    <message>
        <source>Where to search</source>
        <translation>Où rechercher</translation>
    </message>
    <message>
        <source>While it is linked, the favorites are those of the account. The ones that this device has now stay with it and are back after unlinking.</source>
        <translation>Tant qu’il est lié, les favoris sont ceux du compte. Ceux que cet appareil a maintenant lui restent et reviennent une fois la liaison supprimée.</translation>
    </message>
    <message>
        <source>You are here</source>
        <translation>Vous êtes ici</translation>
    </message>
    <message numerus="yes">
        <source>%n entries</source>
        <translation>
            <numerusform>%n entrée</numerusform>
            <numerusform>%n entrées</numerusform>
        </translation>
    </message>
    <message>
        <source>All services</source>
        <translation>Tous les services</translation>
    </message>
    <message>
        <source>Search all services</source>
        <translation>Chercher dans tous les services</translation>
    </message>
    <message>
        <source>There is nothing to search.</source>
        <translation>Il n'y a rien où chercher.</translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>Tout afficher</translation>
    </message>
    <message>
        <source>Show all of %1</source>
        <translation>Tout afficher : %1</translation>
    </message>
    <message>
        <source>Another import is under way.</source>
        <translation>Un autre import est en cours.</translation>
    </message>
    <message>
        <source>%1 is larger than 1 MiB.</source>
        <translation>%1 dépasse 1 Mio.</translation>
    </message>
    <message>
        <source>%1: %2 added, %3 known already, %4 skipped.</source>
        <translation>%1 : %2 ajoutées, %3 déjà connues, %4 ignorées.</translation>
    </message>
    <message>
        <source>It cannot be read.</source>
        <translation>Il ne peut pas être lu.</translation>
    </message>
    <message>
        <source>Only the first %1 files were imported.</source>
        <translation>Seuls les %1 premiers fichiers ont été importés.</translation>
    </message>
    <message>
        <source>Drop files to add their stations to %1</source>
        <translation>Déposez des fichiers pour ajouter leurs stations à %1</translation>
    </message>
    <message>
        <source>Drop files to add their stations</source>
        <translation>Déposez des fichiers pour ajouter leurs stations</translation>
    </message>
    <message>
        <source>Import files …</source>
        <translation>Importer des fichiers …</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Where to import</source>
        <translation>Où importer</translation>
    </message>
    <message>
        <source>Pair this device</source>
        <translation>Associer cet appareil</translation>
    </message>
    <message>
        <source>The host lets in only devices that it knows. A code is shown where somebody chooses “Pair a device” on a paired device, or runs “veskctl pair” on the machine itself.</source>
        <translation>L’hôte ne laisse entrer que les appareils qu’il connaît. Un code s’affiche là où quelqu’un choisit « Associer un appareil » sur un appareil déjà associé, ou lance « veskctl pair » sur la machine elle-même.</translation>
    </message>
    <message>
        <source>The host does not know this device any more. It can be paired anew.</source>
        <translation>L’hôte ne connaît plus cet appareil. Il peut être associé de nouveau.</translation>
    </message>
    <message>
        <source>This connection is not encrypted</source>
        <translation>Cette connexion n’est pas chiffrée</translation>
    </message>
    <message>
        <source>Everybody in the same network can read along, and use what they read. Go on only in a network that you trust.</source>
        <translation>Toute personne du même réseau peut la lire et utiliser ce qu’elle lit. Ne continuez que dans un réseau de confiance.</translation>
    </message>
    <message>
        <source>Did your browser warn you?</source>
        <translation>Votre navigateur vous a-t-il averti ?</translation>
    </message>
    <message>
        <source>The connection is encrypted. But the host has made its certificate itself, so your browser cannot know whether it talks to your host or to somebody in between.</source>
        <translation>La connexion est chiffrée. Mais l’hôte a établi lui-même son certificat : votre navigateur ne peut donc pas savoir s’il parle à votre hôte ou à quelqu’un entre les deux.</translation>
    </message>
    <message>
        <source>You can: a fingerprint is shown beside the code. Compare it with the certificate's SHA-256 fingerprint, which your browser shows in the details of the warning or behind the sign beside the address.</source>
        <translation>Vous le pouvez : une empreinte s’affiche à côté du code. Comparez-la à l’empreinte SHA-256 du certificat, que votre navigateur montre dans les détails de l’avertissement ou derrière le symbole à côté de l’adresse.</translation>
    </message>
    <message>
        <source>If they differ, do not enter the code.</source>
        <translation>Si elles diffèrent, ne saisissez pas le code.</translation>
    </message>
    <message>
        <source>Without a warning, there is nothing to compare.</source>
        <translation>Sans avertissement, il n’y a rien à comparer.</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Name of this device</source>
        <translation>Nom de cet appareil</translation>
    </message>
    <message>
        <source>Pair</source>
        <translation>Associer</translation>
    </message>
    <message>
        <source>This is not the code.</source>
        <translation>Ce n’est pas le code.</translation>
    </message>
    <message numerus="yes">
        <source>%n attempts are left.</source>
        <translation>
            <numerusform>Il reste %n essai.</numerusform>
            <numerusform>Il reste %n essais.</numerusform>
        </translation>
    </message>
    <message>
        <source>The code was wrong too often, so this pairing has ended. Let a new code be shown.</source>
        <translation>Le code a été faux trop souvent : cette association est terminée. Faites afficher un nouveau code.</translation>
    </message>
    <message>
        <source>No device can be paired right now: a code is valid for two minutes. Let a new one be shown.</source>
        <translation>Aucun appareil ne peut être associé en ce moment : un code est valable deux minutes. Faites-en afficher un nouveau.</translation>
    </message>
    <message>
        <source>The host does not take this code or this name.</source>
        <translation>L’hôte n’accepte pas ce code ou ce nom.</translation>
    </message>
    <message>
        <source>The host could not write to its disk, so this device is not paired. Its log says why.</source>
        <translation>L’hôte n’a pas pu écrire sur son disque : cet appareil n’est donc pas associé. Son journal dit pourquoi.</translation>
    </message>
    <message>
        <source>The host cannot be reached.</source>
        <translation>L’hôte est injoignable.</translation>
    </message>
    <message>
        <source>The host refused this (HTTP %1). Wait a moment, and try again.</source>
        <translation>L’hôte a refusé (HTTP %1). Attendez un instant et réessayez.</translation>
    </message>
    <message>
        <source>Only an owner of this host may do that.</source>
        <translation>Seul un propriétaire de cet hôte peut le faire.</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Appareils</translation>
    </message>
    <message>
        <source>Other devices</source>
        <translation>Autres appareils</translation>
    </message>
    <message>
        <source>Who else may use this host, and what they may do.</source>
        <translation>Qui d’autre peut utiliser cet hôte, et pour quoi faire.</translation>
    </message>
    <message>
        <source>Show the devices</source>
        <translation>Afficher les appareils</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Propriétaire</translation>
    </message>
    <message>
        <source>Listener</source>
        <translation>Auditeur</translation>
    </message>
    <message>
        <source>What it may do</source>
        <translation>Ce qu’il peut faire</translation>
    </message>
    <message>
        <source>Listen and change favorites</source>
        <translation>Écouter et modifier les favoris</translation>
    </message>
    <message>
        <source>Everything, settings and devices too</source>
        <translation>Tout, y compris les réglages et les appareils</translation>
    </message>
    <message>
        <source>A pairing that was started elsewhere is under way. Its code is shown there.</source>
        <translation>Une association lancée ailleurs est en cours. Son code s’affiche là-bas.</translation>
    </message>
    <message>
        <source>Enter this code on the new device. It may then do everything.</source>
        <translation>Saisissez ce code sur le nouvel appareil. Il pourra ensuite tout faire.</translation>
    </message>
    <message>
        <source>Enter this code on the new device. It may then listen.</source>
        <translation>Saisissez ce code sur le nouvel appareil. Il pourra ensuite écouter.</translation>
    </message>
    <message>
        <source>Address for the new device:</source>
        <translation>Adresse pour le nouvel appareil :</translation>
    </message>
    <message>
        <source>If its browser warns, the certificate must have this SHA-256 fingerprint:</source>
        <translation>Si son navigateur avertit, le certificat doit avoir cette empreinte SHA-256 :</translation>
    </message>
    <message numerus="yes">
        <source>%n seconds left</source>
        <translation>
            <numerusform>Il reste %n seconde</numerusform>
            <numerusform>Il reste %n secondes</numerusform>
        </translation>
    </message>
    <message>
        <source>QR code that opens the pairing page on the new device</source>
        <translation>Code QR qui ouvre la page d’association sur le nouvel appareil</translation>
    </message>
    <message>
        <source>The device is paired.</source>
        <translation>L’appareil est associé.</translation>
    </message>
    <message>
        <source>%1 is paired.</source>
        <translation>%1 est associé.</translation>
    </message>
    <message>
        <source>The code was entered wrongly too often, so the pairing has ended.</source>
        <translation>Le code a été saisi faux trop souvent : l’association est terminée.</translation>
    </message>
    <message>
        <source>The two minutes are over, and no device was paired.</source>
        <translation>Les deux minutes sont écoulées et aucun appareil n’a été associé.</translation>
    </message>
    <message>
        <source>Pair a device</source>
        <translation>Associer un appareil</translation>
    </message>
    <message>
        <source>Show a code</source>
        <translation>Afficher un code</translation>
    </message>
    <message>
        <source>Stop the pairing</source>
        <translation>Arrêter l’association</translation>
    </message>
    <message>
        <source>last here %1</source>
        <translation>vu pour la dernière fois : %1</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>connecté</translation>
    </message>
    <message>
        <source>Remove this device? It is out at once, and this page with it.</source>
        <translation>Retirer cet appareil ? Il est aussitôt dehors, et cette page avec lui.</translation>
    </message>
    <message>
        <source>Remove %1? It is out at once, and has to be paired anew to come back.</source>
        <translation>Retirer %1 ? Il est aussitôt dehors et devra être associé de nouveau pour revenir.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>Remove …</source>
        <translation>Retirer …</translation>
    </message>
    <message>
        <source>Keep it</source>
        <translation>Le garder</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>This device</source>
        <translation>Cet appareil</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Modifier</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>Modifier %1</translation>
    </message>
    <message>
        <source>No device is paired yet.</source>
        <translation>Aucun appareil n’est encore associé.</translation>
    </message>
    <message>
        <source>Paired devices</source>
        <translation>Appareils associés</translation>
    </message>
    <message>
        <source>Quiet view</source>
        <translation>Vue calme</translation>
    </message>
    <message>
        <source>Show the quiet view</source>
        <translation>Afficher la vue calme</translation>
    </message>
    <message>
        <source>The time and what plays, for a tablet on the wall. The screen stays on, and dims.</source>
        <translation>L’heure et ce qui passe, pour une tablette au mur. L’écran reste allumé et s’assombrit.</translation>
    </message>
    <message>
        <source>Leave the quiet view</source>
        <translation>Quitter la vue calme</translation>
    </message>
    <message>
        <source>This browser lets the screen go off here.</source>
        <translation>Ce navigateur laisse l’écran s’éteindre ici.</translation>
    </message>
    <message>
        <source>On the lock screen</source>
        <translation>Sur l’écran de verrouillage</translation>
    </message>
    <message>
        <source>Lock screen and media keys of this device show and control what the host plays.</source>
        <translation>L’écran de verrouillage et les touches multimédias de cet appareil montrent et commandent ce que joue l’hôte.</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Partager</translation>
    </message>
    <message>
        <source>No other device can reach this host: it serves its own machine only.</source>
        <translation>Aucun autre appareil n’atteint cet hôte : il ne sert que sa propre machine.</translation>
    </message>
    <message>
        <source>The link is copied. It opens this on every paired device.</source>
        <translation>Le lien est copié. Il ouvre ceci sur chaque appareil associé.</translation>
    </message>
</context>
<context>
    <name>RadioBrowser</name>
    <message>
        <source>Add to favorites</source>
        <translation>Ajouter aux favoris</translation>
    </message>
    <message>
        <source>Remove from favorites</source>
        <translation>Retirer des favoris</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoris</translation>
    </message>
    <message>
        <source>There are too many favorites.</source>
        <translation>Il y a trop de favoris.</translation>
    </message>
    <message>
        <source>Radio Browser does not know this station.</source>
        <translation>Radio Browser ne connaît pas cette station.</translation>
    </message>
    <message>
        <source>The answer of Radio Browser is too long.</source>
        <translation>La réponse de Radio Browser est trop longue.</translation>
    </message>
    <message>
        <source>No server of Radio Browser answers. Please try again later.</source>
        <translation>Aucun serveur de Radio Browser ne répond. Veuillez réessayer plus tard.</translation>
    </message>
    <message>
        <source>Radio Browser refused the request.</source>
        <translation>Radio Browser a refusé la demande.</translation>
    </message>
    <message>
        <source>The answer of Radio Browser cannot be read.</source>
        <translation>La réponse de Radio Browser est illisible.</translation>
    </message>
    <message>
        <source>Most played</source>
        <translation>Les plus écoutées</translation>
    </message>
    <message>
        <source>Most voted</source>
        <translation>Les mieux notées</translation>
    </message>
    <message>
        <source>Recently changed</source>
        <translation>Modifiées récemment</translation>
    </message>
    <message>
        <source>1 station</source>
        <translation>1 station</translation>
    </message>
    <message numerus="yes">
        <source>%n stations</source>
        <translation>
            <numerusform>%n station</numerusform>
            <numerusform>%n stations</numerusform>
        </translation>
    </message>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>L'intervalle de lignes n'est pas valide.</translation>
    </message>
    <message>
        <source>By country</source>
        <translation>Par pays</translation>
    </message>
    <message>
        <source>By language</source>
        <translation>Par langue</translation>
    </message>
    <message>
        <source>By tag</source>
        <translation>Par étiquette</translation>
    </message>
    <message>
        <source>By codec</source>
        <translation>Par codec</translation>
    </message>
    <message>
        <source>Stations called "%1"</source>
        <translation>Stations nommées « %1 »</translation>
    </message>
    <message>
        <source>These are too many stations at once.</source>
        <translation>Cela fait trop de stations à la fois.</translation>
    </message>
    <message>
        <source>Search stations by name</source>
        <translation>Rechercher des stations par nom</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Address of a Radio Browser server</source>
        <translation>Adresse d’un serveur de Radio Browser</translation>
    </message>
    <message>
        <source>Left empty, one of the community's servers is chosen by itself.</source>
        <translation>Si le champ est vide, l’un des serveurs de la communauté est choisi automatiquement.</translation>
    </message>
</context>
<context>
    <name>Stations</name>
    <message>
        <source>The file cannot be read (%1).</source>
        <translation>Le fichier ne peut pas être lu (%1).</translation>
    </message>
    <message>
        <source>This is no file.</source>
        <translation>Ce n'est pas un fichier.</translation>
    </message>
    <message>
        <source>The files are larger than 4 MiB together.</source>
        <translation>Les fichiers dépassent ensemble 4 Mio.</translation>
    </message>
    <message>
        <source>This is no list of stations.</source>
        <translation>Ce n'est pas une liste de stations.</translation>
    </message>
    <message>
        <source>This is the playlist of one stream. Add the stream by its address.</source>
        <translation>C'est la liste de lecture d'un seul flux. Ajoutez le flux par son adresse.</translation>
    </message>
    <message>
        <source>The file is larger than 1 MiB.</source>
        <translation>Le fichier dépasse 1 Mio.</translation>
    </message>
    <message>
        <source>The part of the file cannot be read.</source>
        <translation>La partie du fichier ne peut pas être lue.</translation>
    </message>
    <message>
        <source>Other files are being imported. Please try again in a minute.</source>
        <translation>D'autres fichiers sont en cours d'importation. Veuillez réessayer dans une minute.</translation>
    </message>
    <message>
        <source>The file did not arrive completely. Please try again.</source>
        <translation>Le fichier n'est pas arrivé en entier. Veuillez réessayer.</translation>
    </message>
    <message>
        <source>This is not in the list any more.</source>
        <translation>Cela n'est plus dans la liste.</translation>
    </message>
    <message>
        <source>The list is full: it has 5,000 entries.</source>
        <translation>La liste est pleine : elle a 5 000 entrées.</translation>
    </message>
    <message>
        <source>There is a folder of this name already.</source>
        <translation>Il y a déjà un dossier de ce nom.</translation>
    </message>
    <message>
        <source>There are too many folders in each other.</source>
        <translation>Trop de dossiers sont imbriqués.</translation>
    </message>
    <message>
        <source>This address is in the list already.</source>
        <translation>Cette adresse est déjà dans la liste.</translation>
    </message>
    <message>
        <source>The folder cannot be moved to this place.</source>
        <translation>Le dossier ne peut pas être déplacé à cet endroit.</translation>
    </message>
    <message>
        <source>The folder is not empty.</source>
        <translation>Le dossier n'est pas vide.</translation>
    </message>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>La plage de lignes n'est pas valide.</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stations</translation>
    </message>
    <message>
        <source>1 station</source>
        <translation>1 station</translation>
    </message>
    <message numerus="yes">
        <source>%n stations</source>
        <translation>
            <numerusform>%n stations</numerusform>
            <numerusform>%n stations</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out for several reasons: %n</source>
        <translation>
            <numerusform>Ignorées pour plusieurs raisons : %n</numerusform>
            <numerusform>Ignorées pour plusieurs raisons : %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, links that lead to no station: %n</source>
        <translation>
            <numerusform>Ignorés, liens qui ne mènent à aucune station : %n</numerusform>
            <numerusform>Ignorés, liens qui ne mènent à aucune station : %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, with too long addresses: %n</source>
        <translation>
            <numerusform>Ignorées, avec des adresses trop longues : %n</numerusform>
            <numerusform>Ignorées, avec des adresses trop longues : %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, in too many folders: %n</source>
        <translation>
            <numerusform>Ignorées, dans trop de dossiers : %n</numerusform>
            <numerusform>Ignorées, dans trop de dossiers : %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, beyond 5,000 entries: %n</source>
        <translation>
            <numerusform>Ignorées, au-delà de 5 000 entrées : %n</numerusform>
            <numerusform>Ignorées, au-delà de 5 000 entrées : %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, without an http or https address: %n</source>
        <translation>
            <numerusform>Ignorées, sans adresse http ou https : %n</numerusform>
            <numerusform>Ignorées, sans adresse http ou https : %n</numerusform>
        </translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Recherche</translation>
    </message>
    <message>
        <source>Add a station by its address</source>
        <translation>Ajouter une station par son adresse</translation>
    </message>
    <message numerus="yes">
        <source>More files, which are not shown: %n</source>
        <translation>
            <numerusform>Autres fichiers, qui ne sont pas affichés : %n</numerusform>
            <numerusform>Autres fichiers, qui ne sont pas affichés : %n</numerusform>
        </translation>
    </message>
    <message>
        <source>Change this list</source>
        <translation>Modifier cette liste</translation>
    </message>
    <message>
        <source>Change this folder</source>
        <translation>Modifier ce dossier</translation>
    </message>
    <message>
        <source>Stations with "%1"</source>
        <translation>Stations avec « %1 »</translation>
    </message>
    <message>
        <source>Add a station</source>
        <translation>Ajouter une station</translation>
    </message>
    <message>
        <source>This is no address that begins with http or https.</source>
        <translation>Ce n'est pas une adresse qui commence par http ou https.</translation>
    </message>
    <message>
        <source>This address is in the list:</source>
        <translation>Cette adresse est dans la liste :</translation>
    </message>
    <message>
        <source>Give it another name</source>
        <translation>Lui donner un autre nom</translation>
    </message>
    <message>
        <source>Keep it without listening</source>
        <translation>La garder sans l'écouter</translation>
    </message>
    <message>
        <source>This address plays. Keep it?</source>
        <translation>Cette adresse fonctionne. La garder ?</translation>
    </message>
    <message>
        <source>Keep it</source>
        <translation>La garder</translation>
    </message>
    <message>
        <source>This address does not play.</source>
        <translation>Cette adresse ne fonctionne pas.</translation>
    </message>
    <message>
        <source>Keep it all the same</source>
        <translation>La garder quand même</translation>
    </message>
    <message>
        <source>Make a folder</source>
        <translation>Créer un dossier</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Trier par nom</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Monter</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Descendre</translation>
    </message>
    <message>
        <source>Move to a folder</source>
        <translation>Déplacer dans un dossier</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Keep it in the list</source>
        <translation>La garder dans la liste</translation>
    </message>
    <message>
        <source>Rename "%1" to "%2"</source>
        <translation>Renommer « %1 » en « %2 »</translation>
    </message>
    <message>
        <source>Make the folder "%1"</source>
        <translation>Créer le dossier « %1 »</translation>
    </message>
    <message>
        <source>Move "%1" to</source>
        <translation>Déplacer « %1 » vers</translation>
    </message>
    <message>
        <source>No folder</source>
        <translation>Aucun dossier</translation>
    </message>
    <message>
        <source>Remove "%1"</source>
        <translation>Supprimer « %1 »</translation>
    </message>
    <message numerus="yes">
        <source>Remove the folder with everything in it (stations: %n)</source>
        <translation>
            <numerusform>Supprimer le dossier avec tout son contenu (stations : %n)</numerusform>
            <numerusform>Supprimer le dossier avec tout son contenu (stations : %n)</numerusform>
        </translation>
    </message>
    <message>
        <source>Search your stations</source>
        <translation>Rechercher parmi vos stations</translation>
    </message>
    <message>
        <source>The name is missing.</source>
        <translation>Le nom manque.</translation>
    </message>
    <message>
        <source>The file defines a document type (DOCTYPE), which is not read.</source>
        <translation>Le fichier définit un type de document (DOCTYPE), ce qui n'est pas lu.</translation>
    </message>
    <message>
        <source>The file is damaged: line %1 cannot be read as XML.</source>
        <translation>Le fichier est endommagé : la ligne %1 ne peut pas être lue comme du XML.</translation>
    </message>
</context>
</TS>
