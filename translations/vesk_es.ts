<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>TuneIn</name>
    <message>
        <source>The given email address is of invalid form (empty or incorrect).</source>
        <translation>La dirección de correo no es válida (vacía o incorrecta).</translation>
    </message>
    <message>
        <source>The given password is of invalid form (empty or incorrect).</source>
        <translation>La contraseña no es válida (vacía o incorrecta).</translation>
    </message>
    <message>
        <source>The given postalCode or city/country combination is invalid.</source>
        <translation>El código postal o la combinación de ciudad y país no es válida.</translation>
    </message>
    <message>
        <source>The requested account name is already taken.</source>
        <translation>Ese nombre de cuenta ya está en uso.</translation>
    </message>
    <message>
        <source>The requested email is already registered.</source>
        <translation>Esa dirección de correo ya está registrada.</translation>
    </message>
    <message>
        <source>A validation error occurred.</source>
        <translation>Se ha producido un error de validación.</translation>
    </message>
    <message>
        <source>No associated account</source>
        <translation>Ninguna cuenta vinculada</translation>
    </message>
    <message>
        <source>Account already associated.</source>
        <translation>La cuenta ya está vinculada.</translation>
    </message>
    <message>
        <source>Login failed. Please enter a valid username and password.</source>
        <translation>No se pudo iniciar sesión. Introduzca un nombre de usuario y una contraseña válidos.</translation>
    </message>
    <message>
        <source>Access forbidden.</source>
        <translation>Acceso denegado.</translation>
    </message>
    <message>
        <source>TuneIn request failed.</source>
        <translation>La solicitud a TuneIn ha fallado.</translation>
    </message>
    <message>
        <source>Invalid data received.</source>
        <translation>Se han recibido datos no válidos.</translation>
    </message>
    <message>
        <source>Invalid data returned.</source>
        <translation>Se han devuelto datos no válidos.</translation>
    </message>
    <message>
        <source>Invalid password or user name.</source>
        <translation>Contraseña o nombre de usuario no válidos.</translation>
    </message>
    <message>
        <source>Unknown method</source>
        <translation>Método desconocido</translation>
    </message>
    <message>
        <source>Invalid value type.</source>
        <translation>Tipo de valor no válido.</translation>
    </message>
    <message>
        <source>Invalid response!</source>
        <translation>¡Respuesta no válida!</translation>
    </message>
    <message>
        <source>Invalid response.</source>
        <translation>Respuesta no válida.</translation>
    </message>
    <message>
        <source>Missing guideId parameter</source>
        <translation>Falta el parámetro guideId</translation>
    </message>
    <message>
        <source>Missing query parameter</source>
        <translation>Falta el parámetro query</translation>
    </message>
    <message>
        <source>Unsupported method!</source>
        <translation>¡Método no admitido!</translation>
    </message>
    <message>
        <source>Unspecified method!</source>
        <translation>¡No se ha indicado ningún método!</translation>
    </message>
    <message>
        <source>My Favorites</source>
        <translation>Mis favoritos</translation>
    </message>
    <message>
        <source>Empty play path</source>
        <translation>Ruta de reproducción vacía</translation>
    </message>
    <message>
        <source>No available streams.</source>
        <translation>No hay emisiones disponibles.</translation>
    </message>
    <message>
        <source>Invalid pre-play command</source>
        <translation>Orden previa a la reproducción no válida</translation>
    </message>
    <message>
        <source>Failed to add station to presets (%1).</source>
        <translation>No se pudo añadir la emisora a los favoritos (%1).</translation>
    </message>
    <message>
        <source>Failed to remove station from presets (%1).</source>
        <translation>No se pudo quitar la emisora de los favoritos (%1).</translation>
    </message>
    <message>
        <source>Done</source>
        <comment>Tune cancel title</comment>
        <translation>Listo</translation>
    </message>
    <message>
        <source>Offer to report stations that do not play</source>
        <translation>Ofrecer informar de emisoras que no suenan</translation>
    </message>
    <message>
        <source>The menu of what plays then has an entry that reports the problem.</source>
        <translation>El menú de lo que suena tiene entonces una entrada que informa del problema.</translation>
    </message>
    <message>
        <source>TuneIn partner id</source>
        <translation>Identificador de socio de TuneIn</translation>
    </message>
    <message>
        <source>By which TuneIn knows the maker of this device. Without one it may refuse to answer.</source>
        <translation>Por él conoce TuneIn al fabricante de este dispositivo. Sin él puede negarse a responder.</translation>
    </message>
    <message>
        <source>Address of the TuneIn start page</source>
        <translation>Dirección de la página de inicio de TuneIn</translation>
    </message>
    <message>
        <source>Left empty, it is TuneIn's own.</source>
        <translation>Si se deja vacía, es la propia de TuneIn.</translation>
    </message>
    <message>
        <source>Stream formats to ask TuneIn for</source>
        <translation>Formatos de emisión que se piden a TuneIn</translation>
    </message>
    <message>
        <source>Separated by commas. Stations are offered in these formats only.</source>
        <translation>Separados por comas. Las emisoras se ofrecen solo en estos formatos.</translation>
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
        <translation>Emisora, programa, canción o artista</translation>
    </message>
    <message>
        <source>Search Stations, Shows, Songs, or Artists</source>
        <translation>Buscar emisoras, programas, canciones o artistas</translation>
    </message>
    <message>
        <source>TuneIn testing</source>
        <translation>Pruebas de TuneIn</translation>
    </message>
    <message>
        <source>Browse in various languages</source>
        <translation>Explorar en varios idiomas</translation>
    </message>
    <message>
        <source>Different stream types</source>
        <translation>Distintos tipos de emisión</translation>
    </message>
    <message>
        <source>Unreliable streams</source>
        <translation>Emisiones poco fiables</translation>
    </message>
    <message>
        <source>List of all genres</source>
        <translation>Lista de todos los géneros</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Búsqueda</translation>
    </message>
</context>
<context>
    <name>TuneInBrowseNode::getRoleData(const QString&amp;, const Params&amp;)</name>
    <message>
        <source>Choose stream</source>
        <translation>Elegir emisión</translation>
    </message>
    <message>
        <source>Search Stations, Shows, Songs, or Artists</source>
        <translation>Buscar emisoras, programas, canciones o artistas</translation>
    </message>
    <message>
        <source>Report a problem</source>
        <translation>Informar de un problema</translation>
    </message>
</context>
<context>
    <name>TuneInAddRemovePresetsNode::getRoleData(const QString&amp;, const Params&amp;)</name>
    <message>
        <source>Add to TuneIn Favorites</source>
        <translation>Añadir a los favoritos de TuneIn</translation>
    </message>
    <message>
        <source>Remove from TuneIn Favorites</source>
        <translation>Quitar de los favoritos de TuneIn</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
<context>
    <name>TuneInHttpClient::request(const VeskUrl&amp;, QByteArray*, TuneInHttpClient::Type)</name>
    <message>
        <source>Failed to connect to TuneIn</source>
        <translation>No se pudo conectar con TuneIn</translation>
    </message>
</context>
<context>
    <name>Host</name>
    <message>
        <source>%1 could not be loaded</source>
        <translation>No se pudo cargar %1</translation>
    </message>
    <message>
        <source>The %1 service was interrupted. Please try again.</source>
        <translation>El servicio %1 se interrumpió. Vuelva a intentarlo.</translation>
    </message>
    <message>
        <source>This address changes something. It can only be opened from a list that offers it.</source>
        <translation>Esta dirección cambia algo. Solo se puede abrir desde una lista que la ofrezca.</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Servicios</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Idioma</translation>
    </message>
    <message>
        <source>Show the parts of a screen in one list</source>
        <translation>Mostrar las partes de una pantalla en una lista</translation>
    </message>
    <message>
        <source>Change stations without a gap</source>
        <translation>Cambiar de emisora sin cortes</translation>
    </message>
    <message>
        <source>The station that plays is heard until the next one has sound.</source>
        <translation>La emisora que suena se oye hasta que la siguiente tiene sonido.</translation>
    </message>
    <message>
        <source>Play everything equally loud</source>
        <translation>Reproducir todo con el mismo volumen</translation>
    </message>
    <message>
        <source>Loud stations are turned down and quiet ones up, slowly and without distortion.</source>
        <translation>Las emisoras fuertes se bajan y las flojas se suben, despacio y sin distorsión.</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Silencio</translation>
    </message>
    <message>
        <source>Fetch streams and pictures from the home network</source>
        <translation>Obtener emisiones e imágenes de la red doméstica</translation>
    </message>
    <message>
        <source>For stations and pictures on a server at home. Otherwise a service on the internet cannot lead this device to addresses in the house.</source>
        <translation>Para emisoras e imágenes en un servidor de casa. De lo contrario, un servicio de Internet no puede llevar este dispositivo a direcciones de la casa.</translation>
    </message>
    <message>
        <source>Id of this device</source>
        <translation>Identificador de este dispositivo</translation>
    </message>
    <message>
        <source>Address of the network adapter</source>
        <translation>Dirección del adaptador de red</translation>
    </message>
    <message>
        <source>Connected to the network</source>
        <translation>Conectado a la red</translation>
    </message>
    <message>
        <source>What was kept belongs to a later version of this program, and stays as it is.</source>
        <translation>Lo guardado pertenece a una versión posterior de este programa y se queda como está.</translation>
    </message>
    <message>
        <source>The file with recents, favorites and presets was damaged. It is kept as %1, and a new one was begun.</source>
        <translation>El archivo con lo reciente, los favoritos y las presintonías estaba dañado. Se conserva como %1 y se ha empezado uno nuevo.</translation>
    </message>
    <message>
        <source>This cannot be kept.</source>
        <translation>Esto no se puede guardar.</translation>
    </message>
    <message>
        <source>There are %1 favorites already.</source>
        <translation>Ya hay %1 favoritos.</translation>
    </message>
    <message>
        <source>Not imported: entry %1 of &quot;%2&quot; is not valid.</source>
        <translation>No importado: la entrada %1 de «%2» no es válida.</translation>
    </message>
    <message>
        <source>Not imported: this is no library of this program.</source>
        <translation>No importado: esto no es una biblioteca de este programa.</translation>
    </message>
    <message>
        <source>Preset %1 is empty.</source>
        <translation>La presintonía %1 está vacía.</translation>
    </message>
    <message>
        <source>Something is wrong</source>
        <translation>Algo va mal</translation>
    </message>
    <message>
        <source>Recently played</source>
        <translation>Escuchado recientemente</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoritos</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Biblioteca</translation>
    </message>
    <message>
        <source>Go on playing after a start</source>
        <translation>Seguir reproduciendo tras el arranque</translation>
    </message>
    <message>
        <source>With what played last: &quot;always&quot;, &quot;crash&quot; (only if the device ended by surprise), or &quot;never&quot;.</source>
        <translation>Con lo último que sonaba: «always» (siempre), «crash» (solo si el dispositivo terminó de improviso) o «never» (nunca).</translation>
    </message>
    <message>
        <source>Not saved: the disk is full.</source>
        <translation>No se ha guardado: el disco está lleno.</translation>
    </message>
    <message>
        <source>Not saved: the disk cannot be written. The log says more.</source>
        <translation>No se ha guardado: no se puede escribir en el disco. El registro dice más.</translation>
    </message>
    <message>
        <source>Not saved: too much is waiting for the disk.</source>
        <translation>No se ha guardado: hay demasiado esperando al disco.</translation>
    </message>
    <message>
        <source>There is no such device.</source>
        <translation>No existe ese dispositivo.</translation>
    </message>
    <message>
        <source>No more devices can be paired. Remove one that is no longer in use.</source>
        <translation>No se pueden vincular más dispositivos. Quite uno que ya no se use.</translation>
    </message>
    <message>
        <source>In effect, but not saved: the disk cannot be written. It will be tried again; a restart before then undoes it.</source>
        <translation>En vigor, pero no guardado: no se puede escribir en el disco. Se intentará de nuevo; si antes se reinicia, se deshace.</translation>
    </message>
    <message>
        <source>Only programs on this machine can reach this host. Start it with --listen to let other devices in.</source>
        <translation>Solo los programas de este equipo llegan a este host. Inícielo con --listen para admitir otros dispositivos.</translation>
    </message>
    <message>
        <source>Not saved: these are no keys with values.</source>
        <translation>No se ha guardado: no son claves con valores.</translation>
    </message>
    <message>
        <source>Not saved: a plug-in may not keep that much.</source>
        <translation>No se ha guardado: un complemento no puede conservar tanto.</translation>
    </message>
    <message>
        <source>Of everything that is shown, and of the lists that services answer with.</source>
        <translation>De todo lo que se muestra y de las listas con que responden los servicios.</translation>
    </message>
    <message>
        <source>Otherwise each part is a folder of its own, which is opened first.</source>
        <translation>Si no, cada parte es una carpeta propia que primero hay que abrir.</translation>
    </message>
    <message>
        <source>Advanced settings</source>
        <translation>Ajustes avanzados</translation>
    </message>
    <message>
        <source>General</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Browsing</source>
        <translation>Navegación</translation>
    </message>
    <message>
        <source>The setting &quot;%1&quot; cannot be &quot;%2&quot;: it is %3.</source>
        <translation>El ajuste «%1» no puede ser «%2»: debe ser %3.</translation>
    </message>
    <message>
        <source>a language tag, such as &quot;de-DE&quot; or &quot;en&quot;</source>
        <translation>un código de idioma como «de-DE» o «en»</translation>
    </message>
    <message>
        <source>formats separated by commas, without blanks, out of: %1; or empty</source>
        <translation>una lista de formatos separados por comas, sin espacios, de entre: %1; o nada</translation>
    </message>
    <message>
        <source>an address that begins with http:// or https://, or empty</source>
        <translation>una dirección que empiece por http:// o https://, o nada</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>verdadero o falso (true, false)</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>un número entero</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>un número</translation>
    </message>
    <message>
        <source>a text of one line and at most %1 characters</source>
        <translation>un texto de una línea y de %1 caracteres como máximo</translation>
    </message>
    <message>
        <source>The %1 service cannot be reached. Please try again later.</source>
        <translation>No se puede acceder al servicio %1. Inténtelo más tarde.</translation>
    </message>
    <message>
        <source>The %1 service does not answer. Please try again later.</source>
        <translation>El servicio %1 no responde. Inténtelo más tarde.</translation>
    </message>
    <message>
        <source>There is no secure connection to the %1 service.</source>
        <translation>No hay una conexión segura con el servicio %1.</translation>
    </message>
    <message>
        <source>The answer of the %1 service did not come whole. Please try again later.</source>
        <translation>La respuesta del servicio %1 no llegó completa. Inténtelo más tarde.</translation>
    </message>
    <message>
        <source>What came is no answer of the %1 service. It may be out of order, or this network may want a login first.</source>
        <translation>Lo que llegó no es una respuesta del servicio %1. Puede que esté averiado o que esta red pida antes iniciar sesión.</translation>
    </message>
    <message>
        <source>The %1 service is out of order (%2). Please try again later.</source>
        <translation>El servicio %1 está averiado (%2). Inténtelo más tarde.</translation>
    </message>
    <message>
        <source>The %1 service cannot answer this (%2).</source>
        <translation>El servicio %1 no puede responder a esto (%2).</translation>
    </message>
    <message>
        <source>The %1 service refuses this device (%2).</source>
        <translation>El servicio %1 rechaza este dispositivo (%2).</translation>
    </message>
    <message>
        <source>The %1 service refuses this device (%2). Check the setting &quot;%3&quot;.</source>
        <translation>El servicio %1 rechaza este dispositivo (%2). Compruebe el ajuste «%3».</translation>
    </message>
    <message>
        <source>one of: %1</source>
        <translation>uno de: %1</translation>
    </message>
    <message>
        <source>a number from %1 to %2</source>
        <translation>un número de %1 a %2</translation>
    </message>
    <message>
        <source>a number from %1</source>
        <translation>un número a partir de %1</translation>
    </message>
    <message>
        <source>a number up to %1</source>
        <translation>un número hasta %1</translation>
    </message>
    <message>
        <source>Keep a paused station for (minutes)</source>
        <translation>Conservar una emisora en pausa (minutos)</translation>
    </message>
    <message>
        <source>It goes on where it was paused. After that time it is joined live again; with 0 at once.</source>
        <translation>Continúa donde se pausó. Pasado ese tiempo se vuelve al directo; con 0, enseguida.</translation>
    </message>
    <message>
        <source>auto, null, jack, or a device: alsa:DEVICE, pulse:NAME, pipewire:NAME</source>
        <translation>auto, null, jack o un dispositivo: alsa:DISPOSITIVO, pulse:NOMBRE, pipewire:NOMBRE</translation>
    </message>
    <message>
        <source>Not there at the moment</source>
        <translation>No está en este momento</translation>
    </message>
    <message>
        <source>In use</source>
        <translation>En uso</translation>
    </message>
    <message>
        <source>Sound output</source>
        <translation>Salida de sonido</translation>
    </message>
    <message>
        <source>auto is the machine&apos;s own; what --audio says counts until another one is chosen.</source>
        <translation>auto es la del equipo; lo que indica --audio vale hasta que se elija otra.</translation>
    </message>
</context>
<context>
    <name>Player</name>
    <message>
        <source>There is no such row.</source>
        <translation>Esa fila no existe.</translation>
    </message>
    <message>
        <source>There is nothing to play in this row.</source>
        <translation>No hay nada que reproducir en esta fila.</translation>
    </message>
    <message>
        <source>Something else was played in the meantime.</source>
        <translation>Mientras tanto se ha reproducido otra cosa.</translation>
    </message>
    <message>
        <source>This entry is no longer in the list.</source>
        <translation>Esta entrada ya no está en la lista.</translation>
    </message>
    <message>
        <source>This cannot be played.</source>
        <translation>Esto no se puede reproducir.</translation>
    </message>
    <message>
        <source>Trying another stream ...</source>
        <translation>Probando otra emisión ...</translation>
    </message>
    <message>
        <source>Nothing is playing.</source>
        <translation>No se está reproduciendo nada.</translation>
    </message>
    <message>
        <source>Nothing is paused.</source>
        <translation>No hay nada en pausa.</translation>
    </message>
    <message>
        <source>There is nothing to hear on the stream.</source>
        <translation>No se oye nada en la emisión.</translation>
    </message>
    <message>
        <source>The playlists never lead to a stream.</source>
        <translation>Las listas de reproducción no llevan a ninguna emisión.</translation>
    </message>
    <message>
        <source>The stream is encrypted.</source>
        <translation>La emisión está cifrada.</translation>
    </message>
    <message>
        <source>The stream's server ended it.</source>
        <translation>El servidor ha terminado la emisión.</translation>
    </message>
    <message>
        <source>There is no audio at the stream's address.</source>
        <translation>No hay audio en la dirección de la emisión.</translation>
    </message>
    <message>
        <source>There is no stream in the playlist.</source>
        <translation>No hay ninguna emisión en la lista de reproducción.</translation>
    </message>
    <message>
        <source>The sound output does not answer.</source>
        <translation>La salida de sonido no responde.</translation>
    </message>
    <message>
        <source>Another output was chosen in the meantime.</source>
        <translation>Entretanto se ha elegido otra salida.</translation>
    </message>
    <message>
        <source>The sound output does not work.</source>
        <translation>La salida de sonido no funciona.</translation>
    </message>
    <message>
        <source>There is no sound device.</source>
        <translation>No hay ningún dispositivo de sonido.</translation>
    </message>
    <message>
        <source>This device cannot play the station's streams.</source>
        <translation>Este dispositivo no puede reproducir las emisiones de la emisora.</translation>
    </message>
    <message>
        <source>The station has no stream at the moment.</source>
        <translation>La emisora no emite en este momento.</translation>
    </message>
    <message>
        <source>The station cannot be heard in your country.</source>
        <translation>La emisora no se puede escuchar en su país.</translation>
    </message>
    <message>
        <source>The station may not be played here.</source>
        <translation>La emisora no se puede reproducir aquí.</translation>
    </message>
    <message>
        <source>The stream's server refused it (code %1).</source>
        <translation>El servidor ha rechazado la emisión (código %1).</translation>
    </message>
    <message>
        <source>The stream's server sent another part of the file.</source>
        <translation>El servidor ha enviado otra parte del archivo.</translation>
    </message>
    <message>
        <source>There is a web page in place of the stream.</source>
        <translation>Hay una página web en lugar de la emisión.</translation>
    </message>
    <message>
        <source>The stream cannot be decoded.</source>
        <translation>La emisión no se puede descodificar.</translation>
    </message>
    <message>
        <source>The stream's server has no address.</source>
        <translation>El servidor de la emisión no tiene dirección.</translation>
    </message>
    <message>
        <source>The stream's server cannot be reached.</source>
        <translation>No se puede contactar con el servidor de la emisión.</translation>
    </message>
    <message>
        <source>The stream's server does not answer.</source>
        <translation>El servidor de la emisión no responde.</translation>
    </message>
    <message>
        <source>There is no safe connection to the stream.</source>
        <translation>No hay una conexión segura con la emisión.</translation>
    </message>
    <message>
        <source>The stream leads from address to address.</source>
        <translation>La emisión lleva de una dirección a otra.</translation>
    </message>
    <message>
        <source>The connection to the stream was lost.</source>
        <translation>Se ha perdido la conexión con la emisión.</translation>
    </message>
    <message>
        <source>The stream cannot be received (%1).</source>
        <translation>No se puede recibir la emisión (%1).</translation>
    </message>
    <message>
        <source>%1 Trying again in %2 s.</source>
        <translation>%1 Nuevo intento en %2 s.</translation>
    </message>
    <message>
        <source>%1 It asks for a break of %2 min. Trying again in %3 s.</source>
        <translation>%1 Pide una pausa de %2 min. Nuevo intento en %3 s.</translation>
    </message>
    <message>
        <source>%1 Trying again.</source>
        <translation>%1 Nuevo intento.</translation>
    </message>
    <message>
        <source>%1 Trying the next address.</source>
        <translation>%1 Se prueba la siguiente dirección.</translation>
    </message>
    <message>
        <source>The stream's playlist is empty.</source>
        <translation>La lista de reproducción de la emisión está vacía.</translation>
    </message>
    <message>
        <source>The stream's address is no web address.</source>
        <translation>La dirección de la emisión no es una dirección web.</translation>
    </message>
    <message>
        <source>The stream leads to what is no web address.</source>
        <translation>La emisión lleva a algo que no es una dirección web.</translation>
    </message>
    <message>
        <source>The stream leads from a safe address to one that is not.</source>
        <translation>La emisión lleva de una dirección segura a otra que no lo es.</translation>
    </message>
    <message>
        <source>The stream leads inside the local network, where no station may lead.</source>
        <translation>La emisión lleva a la red local, adonde ninguna emisora puede llevar.</translation>
    </message>
    <message>
        <source>The stream's server does not speak HTTP.</source>
        <translation>El servidor de la emisión no habla HTTP.</translation>
    </message>
    <message>
        <source>The head of the stream's server's answer is too long.</source>
        <translation>La cabecera de la respuesta del servidor es demasiado larga.</translation>
    </message>
    <message>
        <source>The head of the stream's server's answer never ends.</source>
        <translation>La cabecera de la respuesta del servidor no termina.</translation>
    </message>
    <message>
        <source>The stream's server sends nothing.</source>
        <translation>El servidor de la emisión no envía nada.</translation>
    </message>
    <message>
        <source>The stream's server has stopped sending.</source>
        <translation>El servidor de la emisión ha dejado de enviar.</translation>
    </message>
    <message>
        <source>The sound server %1 cannot be reached.</source>
        <translation>No se puede acceder al servidor de sonido %1.</translation>
    </message>
    <message>
        <source>Nobody reads the sound from %1.</source>
        <translation>Nadie lee el sonido de %1.</translation>
    </message>
    <message>
        <source>%1 takes the sound too slowly; some of it is lost.</source>
        <translation>%1 recibe el sonido demasiado despacio; una parte se pierde.</translation>
    </message>
    <message>
        <source>Sound cannot be written to %1: %2</source>
        <translation>No se puede escribir el sonido en %1: %2</translation>
    </message>
    <message>
        <source>This device cannot play to &quot;%1&quot;: the package %2 is not installed.</source>
        <translation>Este dispositivo no puede reproducir en «%1»: el paquete %2 no está instalado.</translation>
    </message>
    <message>
        <source>The server of this sends no parts of it: it can only be heard from its beginning.</source>
        <translation>El servidor no envía partes de esto: solo se puede escuchar desde el principio.</translation>
    </message>
    <message>
        <source>The file at the server is shorter than it said.</source>
        <translation>El archivo del servidor es más corto de lo que indicaba.</translation>
    </message>
    <message>
        <source>The stream's server is too slow to find the place.</source>
        <translation>El servidor es demasiado lento para encontrar el punto.</translation>
    </message>
    <message>
        <source>The file does not say how long it is.</source>
        <translation>El archivo no indica su duración.</translation>
    </message>
    <message>
        <source>This place cannot be found in the file.</source>
        <translation>No se encuentra ese punto en el archivo.</translation>
    </message>
    <message>
        <source>This does not say how long it is: it can only be heard from its beginning.</source>
        <translation>No se indica cuánto dura: solo se puede escuchar desde el principio.</translation>
    </message>
    <message>
        <source>This is live: there is no other place to go to. It can be paused for a while.</source>
        <translation>Esto es en directo: no hay otro punto al que ir. Se puede pausar un rato.</translation>
    </message>
    <message>
        <source>It is not known yet how long this is. Please try again.</source>
        <translation>Todavía no se sabe cuánto dura esto. Inténtalo de nuevo.</translation>
    </message>
    <message>
        <source>Another place was asked for in the meantime.</source>
        <translation>Entretanto se ha pedido otro punto.</translation>
    </message>
    <message>
        <source>This is not live.</source>
        <translation>Esto no es en directo.</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Alarma</translation>
    </message>
    <message>
        <source>There is no such alarm.</source>
        <translation>No existe esa alarma.</translation>
    </message>
    <message>
        <source>There are as many alarms as there can be. Remove one first.</source>
        <translation>No caben más alarmas. Quite primero una.</translation>
    </message>
    <message>
        <source>An alarm cannot keep this row.</source>
        <translation>Una alarma no puede guardar esta fila.</translation>
    </message>
    <message>
        <source>No alarm rings.</source>
        <translation>No suena ninguna alarma.</translation>
    </message>
    <message>
        <source>The machine&apos;s output</source>
        <translation>La salida del equipo</translation>
    </message>
    <message>
        <source>Nowhere</source>
        <translation>A ninguna parte</translation>
    </message>
    <message>
        <source>The output &quot;%1&quot; can only be given when the player is started.</source>
        <translation>La salida «%1» solo se puede indicar al iniciar el reproductor.</translation>
    </message>
    <message>
        <source>The sound device &quot;%1&quot; has gone or does not work.</source>
        <translation>El dispositivo de sonido «%1» ya no está o no funciona.</translation>
    </message>
    <message>
        <source>There is no sound device &quot;%1&quot;.</source>
        <translation>No hay ningún dispositivo de sonido «%1».</translation>
    </message>
</context>
<context>
    <name>CMErrorHelper</name>
    <message>
        <source>The address of %1 was not found.</source>
        <translation>No se ha encontrado la dirección de %1.</translation>
    </message>
    <message>
        <source>Could not connect to %1.</source>
        <translation>No se pudo conectar con %1.</translation>
    </message>
    <message>
        <source>%1 did not answer in time.</source>
        <translation>%1 no ha respondido a tiempo.</translation>
    </message>
    <message>
        <source>No secure connection to %1 could be made.</source>
        <translation>No se pudo establecer una conexión segura con %1.</translation>
    </message>
    <message>
        <source>The exchange with %1 failed.</source>
        <translation>El intercambio con %1 ha fallado.</translation>
    </message>
</context>
<context>
    <name>CMError</name>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
<context>
    <name>CMListRowsNode</name>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>El intervalo de filas no es válido.</translation>
    </message>
</context>
<context>
    <name>CMReply</name>
    <message>
        <source>The request was cancelled.</source>
        <translation>La solicitud se ha cancelado.</translation>
    </message>
    <message>
        <source>The request was not answered.</source>
        <translation>La solicitud no ha recibido respuesta.</translation>
    </message>
</context>
<context>
    <name>CMRequest</name>
    <message>
        <source>The request was redirected too often.</source>
        <translation>La solicitud se ha redirigido demasiadas veces.</translation>
    </message>
    <message>
        <source>There is nothing at this address.</source>
        <translation>No hay nada en esta dirección.</translation>
    </message>
</context>
<context>
    <name>CMValuesWorker</name>
    <message>
        <source>The value cannot be changed.</source>
        <translation>El valor no se puede cambiar.</translation>
    </message>
    <message>
        <source>The value is not of the right type.</source>
        <translation>El valor no es del tipo correcto.</translation>
    </message>
    <message>
        <source>A value has no rows.</source>
        <translation>Un valor no tiene filas.</translation>
    </message>
</context>
<context>
    <name>NodeLink</name>
    <message>
        <source>The answer is too long.</source>
        <translation>La respuesta es demasiado larga.</translation>
    </message>
</context>
<context>
    <name>Ctl</name>
    <message>
        <source>"%1" is no place: that is a path, row numbers (3/0), favorites, or search:TEXT</source>
        <translation>"%1" no es un lugar: eso es una ruta, números de fila (3/0), favorites o search:TEXT</translation>
    </message>
    <message>
        <source>row %1 leads nowhere</source>
        <translation>la fila %1 no lleva a ninguna parte</translation>
    </message>
    <message>
        <source>no row with "%1" was shown lately; show the list that has it</source>
        <translation>no se mostró hace poco ninguna fila con "%1"; muestra la lista que la contiene</translation>
    </message>
    <message>
        <source>This entry is no longer in the list.</source>
        <translation>Esta entrada ya no está en la lista.</translation>
    </message>
    <message>
        <source>This is the list now:</source>
        <translation>Esta es la lista ahora:</translation>
    </message>
    <message>
        <source>this service has no favorites</source>
        <translation>este servicio no tiene favoritos</translation>
    </message>
    <message>
        <source>this service offers no search</source>
        <translation>este servicio no ofrece búsqueda</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>detenido</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>conectando</translation>
    </message>
    <message>
        <source>playing</source>
        <translation>suena</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>en pausa</translation>
    </message>
    <message>
        <source>error: %1</source>
        <translation>error: %1</translation>
    </message>
    <message>
        <source>the host is gone</source>
        <translation>el host ya no está</translation>
    </message>
    <message>
        <source>it was stopped, or something else played, before it was heard</source>
        <translation>antes de oírse, se detuvo o se reprodujo otra cosa</translation>
    </message>
    <message>
        <source>there is no row %1</source>
        <translation>no hay ninguna fila %1</translation>
    </message>
    <message>
        <source>There is nothing here.</source>
        <translation>Aquí no hay nada.</translation>
    </message>
    <message>
        <source>done: %1</source>
        <translation>hecho: %1</translation>
    </message>
    <message>
        <source>row %1 is nothing to choose</source>
        <translation>la fila %1 no se puede elegir</translation>
    </message>
    <message>
        <source>there are no streams to choose from</source>
        <translation>no hay flujos para elegir</translation>
    </message>
    <message>
        <source>the menu has no entry for favorites</source>
        <translation>el menú no tiene entrada para favoritos</translation>
    </message>
    <message>
        <source>%1: a favorite now</source>
        <translation>%1: ahora es un favorito</translation>
    </message>
    <message>
        <source>%1: a favorite already</source>
        <translation>%1: ya era un favorito</translation>
    </message>
    <message>
        <source>%1: no favorite any more</source>
        <translation>%1: ya no es un favorito</translation>
    </message>
    <message>
        <source>%1: no favorite</source>
        <translation>%1: no es un favorito</translation>
    </message>
    <message>
        <source>"%1" is a list, or a row that was not shown lately</source>
        <translation>"%1" es una lista, o una fila que no se mostró hace poco</translation>
    </message>
    <message>
        <source>row %1 has no menu</source>
        <translation>la fila %1 no tiene menú</translation>
    </message>
    <message>
        <source>nothing plays, or what plays has no menu</source>
        <translation>no suena nada, o lo que suena no tiene menú</translation>
    </message>
    <message>
        <source>--last is before --first</source>
        <translation>--last está antes de --first</translation>
    </message>
    <message>
        <source>search for what?</source>
        <translation>¿qué hay que buscar?</translation>
    </message>
    <message>
        <source>not linked</source>
        <translation>no vinculado</translation>
    </message>
    <message>
        <source>there is nothing to play</source>
        <translation>no hay nada que reproducir</translation>
    </message>
    <message>
        <source>the best hit for "%1": %2</source>
        <translation>el mejor resultado para "%1": %2</translation>
    </message>
    <message>
        <source>the host is gone; waiting until it is back</source>
        <translation>el host ya no está; esperando a que vuelva</translation>
    </message>
    <message>
        <source>Password: </source>
        <translation>Contraseña: </translation>
    </message>
    <message>
        <source>Once more: </source>
        <translation>Otra vez: </translation>
    </message>
    <message>
        <source>these are two different passwords</source>
        <translation>son dos contraseñas distintas</translation>
    </message>
    <message>
        <source>a password is needed</source>
        <translation>hace falta una contraseña</translation>
    </message>
    <message>
        <source>the password is too long</source>
        <translation>la contraseña es demasiado larga</translation>
    </message>
    <message>
        <source>%1: made</source>
        <translation>%1: creada</translation>
    </message>
    <message>
        <source>%1: linked</source>
        <translation>%1: vinculada</translation>
    </message>
    <message>
        <source>%1: not linked any more</source>
        <translation>%1: ya no está vinculada</translation>
    </message>
    <message>
        <source>asked for; it comes by e-mail</source>
        <translation>pedido; llega por correo electrónico</translation>
    </message>
    <message>
        <source>The service is slow; waiting for its answer.</source>
        <translation>El servicio es lento; esperando su respuesta.</translation>
    </message>
    <message>
        <source>no host at %1: %2. Start one with "vesk-host", or say with --host or VESK_HOST where it is.</source>
        <translation>no hay host en %1: %2. Inicia uno con "vesk-host", o di con --host o VESK_HOST dónde está.</translation>
    </message>
    <message>
        <source>there are several services for this: name one with --in (%1)</source>
        <translation>hay varios servicios para esto: indique uno con --in (%1)</translation>
    </message>
    <message>
        <source>there is no service "%1"; there are: %2</source>
        <translation>no hay ningún servicio "%1"; hay: %2</translation>
    </message>
    <message>
        <source>this service has no accounts</source>
        <translation>este servicio no tiene cuentas</translation>
    </message>
    <message>
        <source>that did not work: the favorites are as they were</source>
        <translation>no ha funcionado: los favoritos siguen como estaban</translation>
    </message>
    <message>
        <source>Still waiting for: %1</source>
        <translation>Aún se espera a: %1</translation>
    </message>
    <message>
        <source>%1 more with --in %2</source>
        <translation>%1 más con --in %2</translation>
    </message>
    <message>
        <source>%1 is a folder</source>
        <translation>%1 es una carpeta</translation>
    </message>
    <message>
        <source>%1 is no ordinary file</source>
        <translation>%1 no es un archivo normal</translation>
    </message>
    <message>
        <source>%1 is larger than 1 MiB</source>
        <translation>%1 ocupa más de 1 MiB</translation>
    </message>
    <message>
        <source>%1: %2 added, %3 known already, %4 skipped</source>
        <translation>%1: %2 añadidas, %3 ya conocidas, %4 omitidas</translation>
    </message>
    <message>
        <source>this service takes no files</source>
        <translation>este servicio no acepta archivos</translation>
    </message>
    <message>
        <source>this service gives no files</source>
        <translation>este servicio no ofrece archivos</translation>
    </message>
    <message>
        <source>"%1" is no format; there are: %2</source>
        <translation>"%1" no es un formato; hay: %2</translation>
    </message>
    <message>
        <source>%1: written</source>
        <translation>%1: escrito</translation>
    </message>
    <message>
        <source>owner</source>
        <translation>propietario</translation>
    </message>
    <message>
        <source>listener</source>
        <translation>oyente</translation>
    </message>
    <message>
        <source>this device</source>
        <translation>este dispositivo</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>conectado</translation>
    </message>
    <message>
        <source>never seen</source>
        <translation>nunca visto</translation>
    </message>
    <message>
        <source>seen %1</source>
        <translation>visto %1</translation>
    </message>
    <message>
        <source>no device is paired</source>
        <translation>no hay ningún dispositivo vinculado</translation>
    </message>
    <message>
        <source>there is no device "%1"</source>
        <translation>no hay ningún dispositivo "%1"</translation>
    </message>
    <message>
        <source>several devices are called "%1": name one by its id (%2)</source>
        <translation>varios dispositivos se llaman "%1": nombra uno por su identificador (%2)</translation>
    </message>
    <message>
        <source>%1: now called "%2"</source>
        <translation>%1: ahora se llama "%2"</translation>
    </message>
    <message>
        <source>"%1" is no role; there are: %2</source>
        <translation>"%1" no es un papel; hay: %2</translation>
    </message>
    <message>
        <source>%1: an owner now</source>
        <translation>%1: ahora es propietario</translation>
    </message>
    <message>
        <source>%1: a listener now</source>
        <translation>%1: ahora es oyente</translation>
    </message>
    <message>
        <source>%1: not paired any more</source>
        <translation>%1: ya no está vinculado</translation>
    </message>
    <message>
        <source>this device is not paired with %1. Have a code shown there ("veskctl pair"), then: veskctl --host %1 join CODE</source>
        <translation>este dispositivo no está vinculado con %1. Haz que allí se muestre un código ("veskctl pair"); luego: veskctl --host %1 join CODE</translation>
    </message>
    <message>
        <source>this device is not paired with %1 any more. Have a code shown there ("veskctl pair"), then: veskctl --host %1 join CODE</source>
        <translation>este dispositivo ya no está vinculado con %1. Haz que allí se muestre un código ("veskctl pair"); luego: veskctl --host %1 join CODE</translation>
    </message>
    <message>
        <source>the certificate of %1 is of no authority that this system knows: it says nothing about who answers there. If this is your host, pair with it: veskctl --host %1 join CODE. The fingerprint is %2.</source>
        <translation>el certificado de %1 no es de ninguna autoridad que conozca este sistema: no dice nada sobre quién responde allí. Si es tu host, vincúlate con él: veskctl --host %1 join CODE. La huella es %2.</translation>
    </message>
    <message>
        <source>the certificate of %1 has changed: somebody else may be answering there. Nothing was sent. If the host has a new one, pair again: veskctl --host %1 join CODE. The fingerprint was %2 and is %3.</source>
        <translation>el certificado de %1 ha cambiado: puede que allí responda otro. No se envió nada. Si el host tiene uno nuevo, vincúlate otra vez: veskctl --host %1 join CODE. La huella era %2 y es %3.</translation>
    </message>
    <message>
        <source>the host wants an encrypted connection: veskctl --host %1</source>
        <translation>el host quiere una conexión cifrada: veskctl --host %1</translation>
    </message>
    <message>
        <source>paired, but that could not be kept: %1. Remove the device "%2" there, and pair again.</source>
        <translation>vinculado, pero no se pudo guardar: %1. Quita allí el dispositivo "%2" y vincúlate otra vez.</translation>
    </message>
    <message>
        <source>paired with %1 as its owner, under the name "%2"</source>
        <translation>vinculado con %1 como propietario, con el nombre "%2"</translation>
    </message>
    <message>
        <source>paired with %1 as a listener, under the name "%2"</source>
        <translation>vinculado con %1 como oyente, con el nombre "%2"</translation>
    </message>
    <message>
        <source>a program on the host's own machine needs no pairing; say with --host or VESK_HOST where another host is</source>
        <translation>un programa en la propia máquina del host no necesita vincularse; di con --host o VESK_HOST dónde hay otro host</translation>
    </message>
    <message>
        <source>a code is six digits</source>
        <translation>un código tiene seis cifras</translation>
    </message>
    <message>
        <source>a fingerprint is 64 hexadecimal digits (SHA-256)</source>
        <translation>una huella tiene 64 cifras hexadecimales (SHA-256)</translation>
    </message>
    <message>
        <source>%1 has another certificate, with the fingerprint %2. Nothing was sent.</source>
        <translation>%1 tiene otro certificado, con la huella %2. No se envió nada.</translation>
    </message>
    <message>
        <source>The certificate of %1 is of no authority that this system knows. Its fingerprint is:</source>
        <translation>El certificado de %1 no es de ninguna autoridad que conozca este sistema. Su huella es:</translation>
    </message>
    <message>
        <source>Is that the one that is shown with the code?</source>
        <translation>¿Es la que se muestra con el código?</translation>
    </message>
    <message>
        <source>the certificate is of no authority that this system knows; where nobody can be asked, say with --fingerprint which one is the host's</source>
        <translation>el certificado no es de ninguna autoridad que conozca este sistema; donde no se puede preguntar a nadie, di con --fingerprint cuál es el del host</translation>
    </message>
    <message>
        <source>The connection to %1 is not encrypted: others in the network can read what is sent, and come in the same way.</source>
        <translation>La conexión con %1 no está cifrada: otros en la red pueden leer lo que se envía y entrar del mismo modo.</translation>
    </message>
    <message>
        <source>Pair nevertheless?</source>
        <translation>¿Vincular de todos modos?</translation>
    </message>
    <message>
        <source>the connection is not encrypted; where nobody can be asked, --plain-http says that this may be</source>
        <translation>la conexión no está cifrada; donde no se puede preguntar a nadie, --plain-http dice que se permite</translation>
    </message>
    <message>
        <source>not paired; nothing was sent</source>
        <translation>no vinculado; no se envió nada</translation>
    </message>
    <message>
        <source>that is not the code; attempts left: %1</source>
        <translation>ese no es el código; intentos que quedan: %1</translation>
    </message>
    <message>
        <source>that is not the code, and it was the last attempt: have a new code shown</source>
        <translation>ese no es el código, y era el último intento: haz que se muestre un código nuevo</translation>
    </message>
    <message>
        <source>%1 shows no code now: have one shown there ("veskctl pair")</source>
        <translation>%1 no muestra ahora ningún código: haz que allí se muestre uno ("veskctl pair")</translation>
    </message>
    <message>
        <source>the host does not take that name</source>
        <translation>el host no acepta ese nombre</translation>
    </message>
    <message>
        <source>the host could not save the device; nothing has changed</source>
        <translation>el host no pudo guardar el dispositivo; nada ha cambiado</translation>
    </message>
    <message>
        <source>too many attempts; try again later</source>
        <translation>demasiados intentos; prueba más tarde</translation>
    </message>
    <message>
        <source>another code was made for this host; this one is worth nothing any more</source>
        <translation>se hizo otro código para este host; este ya no vale</translation>
    </message>
    <message>
        <source>the pairing was stopped</source>
        <translation>la vinculación se detuvo</translation>
    </message>
    <message>
        <source>Code: </source>
        <translation>Código: </translation>
    </message>
    <message>
        <source>For %1 seconds it can be entered at one of these addresses:</source>
        <translation>Durante %1 segundos se puede introducir en una de estas direcciones:</translation>
    </message>
    <message>
        <source>or with: veskctl --host %1 join %2</source>
        <translation>o con: veskctl --host %1 join %2</translation>
    </message>
    <message>
        <source>The fingerprint of the certificate is:</source>
        <translation>La huella del certificado es:</translation>
    </message>
    <message>
        <source>%1: paired</source>
        <translation>%1: vinculado</translation>
    </message>
    <message>
        <source>wrong codes were entered too often; the pairing has ended</source>
        <translation>se introdujeron demasiados códigos erróneos; la vinculación ha terminado</translation>
    </message>
    <message>
        <source>nobody entered the code in time</source>
        <translation>nadie introdujo el código a tiempo</translation>
    </message>
    <message>
        <source>volume %1</source>
        <translation>volumen %1</translation>
    </message>
    <message>
        <source>off</source>
        <translation>desactivada</translation>
    </message>
    <message>
        <source>a sound of the host's own</source>
        <translation>un sonido del propio host</translation>
    </message>
    <message>
        <source>no alarm is set</source>
        <translation>no hay ninguna alarma</translation>
    </message>
    <message>
        <source>missed alarm: %1</source>
        <translation>alarma perdida: %1</translation>
    </message>
    <message>
        <source>"veskctl alarm dismiss" forgets the missed ones</source>
        <translation>"veskctl alarm dismiss" olvida las perdidas</translation>
    </message>
    <message>
        <source>several alarms are at %1: name one by its number</source>
        <translation>hay varias alarmas a las %1: indica una por su número</translation>
    </message>
    <message>
        <source>there is no alarm "%1"</source>
        <translation>no hay ninguna alarma "%1"</translation>
    </message>
    <message>
        <source>"%1" is no time: that is 7:30 or 19:30</source>
        <translation>"%1" no es una hora: eso es 7:30 o 19:30</translation>
    </message>
    <message>
        <source>"%1" are no days: those are mon-fri, sat,sun, daily or once</source>
        <translation>"%1" no son días: eso es mon-fri, sat,sun, daily u once</translation>
    </message>
    <message>
        <source>%1: off</source>
        <translation>%1: desactivada</translation>
    </message>
    <message>
        <source>%1: next %2</source>
        <translation>%1: la próxima vez %2</translation>
    </message>
    <message>
        <source>%1: removed</source>
        <translation>%1: eliminada</translation>
    </message>
    <message>
        <source>quiet until %1</source>
        <translation>en silencio hasta las %1</translation>
    </message>
    <message>
        <source>this host does not know that: it is older than this veskctl</source>
        <translation>este host no conoce eso: es más antiguo que este veskctl</translation>
    </message>
    <message>
        <source>forgotten: what was played</source>
        <translation>olvidado: lo que se ha escuchado</translation>
    </message>
    <message>
        <source>%1: starred now</source>
        <translation>%1: tiene ahora una estrella</translation>
    </message>
    <message>
        <source>%1: starred already</source>
        <translation>%1: ya tiene una estrella</translation>
    </message>
    <message>
        <source>%1: not starred any more</source>
        <translation>%1: ya no tiene estrella</translation>
    </message>
    <message>
        <source>%1: not starred</source>
        <translation>%1: no tiene estrella</translation>
    </message>
    <message>
        <source>%1 holds no library</source>
        <translation>%1 no contiene ninguna colección</translation>
    </message>
    <message>
        <source>%1: favorites added: %2, presets: %3</source>
        <translation>%1: favoritos añadidos: %2, presintonías: %3</translation>
    </message>
    <message>
        <source>there is no output</source>
        <translation>no hay ninguna salida</translation>
    </message>
    <message>
        <source>%1 (not there)</source>
        <translation>%1 (no está)</translation>
    </message>
    <message>
        <source>there is no "%1" in the configuration</source>
        <translation>la configuración no tiene "%1"</translation>
    </message>
    <message>
        <source>several outputs are called "%1": %2</source>
        <translation>varias salidas se llaman "%1": %2</translation>
    </message>
    <message>
        <source>there is no output "%1"</source>
        <translation>no hay ninguna salida "%1"</translation>
    </message>
    <message>
        <source>the sound goes to: %1</source>
        <translation>el sonido va a: %1</translation>
    </message>
    <message>
        <source>nothing plays</source>
        <translation>no suena nada</translation>
    </message>
    <message>
        <source>muted</source>
        <translation>en silencio</translation>
    </message>
    <message>
        <source>stops at %1</source>
        <translation>termina a las %1</translation>
    </message>
    <message>
        <source>the alarm rings</source>
        <translation>suena la alarma</translation>
    </message>
    <message>
        <source>alarm %1</source>
        <translation>alarma %1</translation>
    </message>
    <message>
        <source>"%1" is no preset: they are numbered 1 to %2</source>
        <translation>"%1" no es una presintonía: van numeradas del 1 al %2</translation>
    </message>
    <message>
        <source>no preset is taken; "veskctl preset save 1" keeps what plays</source>
        <translation>ninguna presintonía está ocupada; "veskctl preset save 1" guarda lo que suena</translation>
    </message>
    <message>
        <source>preset %1: %2</source>
        <translation>presintonía %1: %2</translation>
    </message>
    <message>
        <source>preset %1: free</source>
        <translation>presintonía %1: libre</translation>
    </message>
    <message>
        <source>"%1" is no place to go to: that is +30, -1:30, 1:20:00, 90s or live</source>
        <translation>"%1" no es un punto al que ir: eso es +30, -1:30, 1:20:00, 90s o live</translation>
    </message>
    <message>
        <source>live</source>
        <translation>en directo</translation>
    </message>
    <message>
        <source>no sleep timer</source>
        <translation>sin temporizador</translation>
    </message>
    <message>
        <source>the sound stops at %1</source>
        <translation>el sonido termina a las %1</translation>
    </message>
    <message>
        <source>%1, in %2</source>
        <translation>%1, en %2</translation>
    </message>
    <message>
        <source>"%1" is no time to sleep for: that is 1 to 1440 minutes, 1h30m or off</source>
        <translation>"%1" no es un tiempo para dormir: eso es de 1 a 1440 minutos, 1h30m u off</translation>
    </message>
    <message>
        <source>%1 behind live</source>
        <translation>%1 por detrás del directo</translation>
    </message>
    <message>
        <source>once</source>
        <translation>una vez</translation>
    </message>
    <message>
        <source>every day</source>
        <translation>todos los días</translation>
    </message>
    <message>
        <source>%1, muted</source>
        <translation>%1, en silencio</translation>
    </message>
    <message>
        <source>"%1" is no volume: that is 0 to 100, +5, -5, mute or unmute</source>
        <translation>"%1" no es un volumen: eso es de 0 a 100, +5, -5, mute o unmute</translation>
    </message>
</context>
<context>
    <name>Web</name>
    <message>
        <source>%1 account</source>
        <translation>Cuenta de %1</translation>
    </message>
    <message>
        <source>%1 is a favorite now</source>
        <translation>%1 ya está en favoritos</translation>
    </message>
    <message>
        <source>%1 is no favorite any more</source>
        <translation>%1 ya no está en favoritos</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>%1: done</source>
        <translation>%1: hecho</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 %, muted</source>
        <translation>%1 %, en silencio</translation>
    </message>
    <message>
        <source>%1 behind live</source>
        <translation>%1 por detrás del directo</translation>
    </message>
    <message>
        <source>%1 has a star on this radio.</source>
        <translation>%1 tiene una estrella en esta radio.</translation>
    </message>
    <message>
        <source>%1 has no star on this radio any more.</source>
        <translation>%1 ya no tiene estrella en esta radio.</translation>
    </message>
    <message>
        <source>%1 is not a library that was exported here.</source>
        <translation>%1 no es una biblioteca exportada aquí.</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 de %2</translation>
    </message>
    <message numerus="yes">
        <source>%n alarms were missed while this radio was off.</source>
        <translation>
            <numerusform>%n alarma no sonó porque esta radio estaba apagada.</numerusform>
            <numerusform>%n alarmas no sonaron porque esta radio estaba apagada.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes left</source>
        <translation>
            <numerusform>queda %n minuto</numerusform>
            <numerusform>quedan %n minutos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n presets were set.</source>
        <translation>
            <numerusform>Se guardó %n presintonía.</numerusform>
            <numerusform>Se guardaron %n presintonías.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n stars were added.</source>
        <translation>
            <numerusform>Se añadió %n estrella.</numerusform>
            <numerusform>Se añadieron %n estrellas.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add an alarm</source>
        <translation>Añadir una alarma</translation>
    </message>
    <message>
        <source>After that time the sound fades out and stops.</source>
        <translation>Pasado ese tiempo, el sonido baja y se detiene.</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Alarma</translation>
    </message>
    <message>
        <source>Alarm at %1</source>
        <translation>Alarma de las %1</translation>
    </message>
    <message>
        <source>Alarm: %1</source>
        <translation>Alarma: %1</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Alarmas</translation>
    </message>
    <message>
        <source>As it is set then</source>
        <translation>El que haya entonces</translation>
    </message>
    <message>
        <source>At once</source>
        <translation>De inmediato</translation>
    </message>
    <message>
        <source>Back %1 seconds</source>
        <translation>Retroceder %1 segundos</translation>
    </message>
    <message>
        <source>Back and forward %1 seconds in an episode</source>
        <translation>Retroceder y avanzar %1 segundos en un episodio</translation>
    </message>
    <message>
        <source>Back to live</source>
        <translation>Volver al directo</translation>
    </message>
    <message>
        <source>Becomes as loud as that</source>
        <translation>Alcanza ese volumen</translation>
    </message>
    <message>
        <source>Change the alarm at %1</source>
        <translation>Cambiar la alarma de las %1</translation>
    </message>
    <message>
        <source>Choose the output</source>
        <translation>Elegir la salida</translation>
    </message>
    <message>
        <source>Clear preset %1</source>
        <translation>Vaciar la presintonía %1</translation>
    </message>
    <message>
        <source>Clear some</source>
        <translation>Vaciar algunas</translation>
    </message>
    <message>
        <source>Clear the list</source>
        <translation>Vaciar la lista</translation>
    </message>
    <message>
        <source>Clear the list?</source>
        <translation>¿Vaciar la lista?</translation>
    </message>
    <message>
        <source>Clear …</source>
        <translation>Vaciar …</translation>
    </message>
    <message>
        <source>Days</source>
        <translation>Días</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Vacía</translation>
    </message>
    <message>
        <source>Every day</source>
        <translation>Todos los días</translation>
    </message>
    <message>
        <source>Favorite at %1</source>
        <translation>Favorito en %1</translation>
    </message>
    <message>
        <source>Forward %1 seconds</source>
        <translation>Avanzar %1 segundos</translation>
    </message>
    <message>
        <source>From the beginning</source>
        <translation>Desde el principio</translation>
    </message>
    <message>
        <source>Goes on at %1, where it was left.</source>
        <translation>Sigue en %1, donde se dejó.</translation>
    </message>
    <message>
        <source>Heard lately</source>
        <translation>Escuchado hace poco</translation>
    </message>
    <message>
        <source>Hold one down to save what plays. On a keyboard the numbers play, and with Shift they save.</source>
        <translation>Mantenga pulsada una para guardar lo que suena. En un teclado, los números reproducen y con Mayús guardan.</translation>
    </message>
    <message>
        <source>Import …</source>
        <translation>Importar …</translation>
    </message>
    <message numerus="yes">
        <source>In %n minutes</source>
        <translation>
            <numerusform>En %n minuto</numerusform>
            <numerusform>En %n minutos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>In %n seconds</source>
        <translation>
            <numerusform>En %n segundo</numerusform>
            <numerusform>En %n segundos</numerusform>
        </translation>
    </message>
    <message>
        <source>Louder, quieter</source>
        <translation>Más alto, más bajo</translation>
    </message>
    <message>
        <source>Minutes</source>
        <translation>Minutos</translation>
    </message>
    <message>
        <source>Monday to Friday</source>
        <translation>De lunes a viernes</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Silenciar</translation>
    </message>
    <message>
        <source>New alarm</source>
        <translation>Alarma nueva</translation>
    </message>
    <message>
        <source>Next alarm</source>
        <translation>Próxima alarma</translation>
    </message>
    <message>
        <source>Next: %1</source>
        <translation>Próxima vez: %1</translation>
    </message>
    <message>
        <source>None is set.</source>
        <translation>No hay ninguna.</translation>
    </message>
    <message>
        <source>Nothing has a star yet. The player and the menu of each station have one to press.</source>
        <translation>Aún no hay nada con estrella. El reproductor y el menú de cada emisora tienen una para pulsar.</translation>
    </message>
    <message>
        <source>Nothing plays that could be saved.</source>
        <translation>No suena nada que se pueda guardar.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Apagado</translation>
    </message>
    <message>
        <source>Once</source>
        <translation>Una vez</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Salida</translation>
    </message>
    <message>
        <source>Output …</source>
        <translation>Salida …</translation>
    </message>
    <message>
        <source>Play a preset; 0 is 10</source>
        <translation>Reproducir una presintonía; 0 es la 10</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Posición</translation>
    </message>
    <message>
        <source>Preset %1 is %2 now.</source>
        <translation>La presintonía %1 es ahora %2.</translation>
    </message>
    <message>
        <source>Preset %1 is %2. Replace it by %3?</source>
        <translation>La presintonía %1 es %2. ¿Sustituirla por %3?</translation>
    </message>
    <message>
        <source>Preset %1 is empty. Shift and the number save what plays.</source>
        <translation>La presintonía %1 está vacía. Mayús y el número guardan lo que suena.</translation>
    </message>
    <message>
        <source>Preset %1: %2</source>
        <translation>Presintonía %1: %2</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Presintonías</translation>
    </message>
    <message>
        <source>Presets 11 and 12</source>
        <translation>Presintonías 11 y 12</translation>
    </message>
    <message>
        <source>Remove the alarm at %1</source>
        <translation>Quitar la alarma de las %1</translation>
    </message>
    <message>
        <source>Remove the alarm at %1?</source>
        <translation>¿Quitar la alarma de las %1?</translation>
    </message>
    <message>
        <source>Replace it</source>
        <translation>Sustituir</translation>
    </message>
    <message>
        <source>Saturday and Sunday</source>
        <translation>Sábado y domingo</translation>
    </message>
    <message>
        <source>Save as a preset …</source>
        <translation>Guardar como presintonía …</translation>
    </message>
    <message>
        <source>Save what plays as a preset</source>
        <translation>Guardar lo que suena como presintonía</translation>
    </message>
    <message>
        <source>Set the timer</source>
        <translation>Poner el temporizador</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Mayús</translation>
    </message>
    <message>
        <source>Show the alarms</source>
        <translation>Mostrar las alarmas</translation>
    </message>
    <message>
        <source>Sleep timer</source>
        <translation>Temporizador de apagado</translation>
    </message>
    <message>
        <source>Sleep timer …</source>
        <translation>Temporizador de apagado …</translation>
    </message>
    <message numerus="yes">
        <source>Snooze for %n minutes</source>
        <translation>
            <numerusform>Dormir %n minuto más</numerusform>
            <numerusform>Dormir %n minutos más</numerusform>
        </translation>
    </message>
    <message>
        <source>Star on this radio</source>
        <translation>Estrella en esta radio</translation>
    </message>
    <message>
        <source>Stars and presets as a file</source>
        <translation>Estrellas y presintonías en un archivo</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Iniciar</translation>
    </message>
    <message>
        <source>Stop the alarm</source>
        <translation>Detener la alarma</translation>
    </message>
    <message>
        <source>Stop the timer</source>
        <translation>Detener el temporizador</translation>
    </message>
    <message>
        <source>The radio’s own tone</source>
        <translation>El tono de la radio</translation>
    </message>
    <message>
        <source>This radio</source>
        <translation>Esta radio</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Hora</translation>
    </message>
    <message>
        <source>To keep them, or to take them to another radio.</source>
        <translation>Para conservarlas o llevarlas a otra radio.</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Volume: %1</source>
        <translation>Volumen: %1</translation>
    </message>
    <message>
        <source>Wake me with this …</source>
        <translation>Despertarme con esto …</translation>
    </message>
    <message>
        <source>What plays: %1</source>
        <translation>Lo que suena: %1</translation>
    </message>
    <message>
        <source>What to play</source>
        <translation>Qué reproducir</translation>
    </message>
    <message>
        <source>What you play will be listed here.</source>
        <translation>Lo que reproduzca aparecerá aquí.</translation>
    </message>
    <message>
        <source>Which preset?</source>
        <translation>¿Qué presintonía?</translation>
    </message>
    <message>
        <source>Will be replaced</source>
        <translation>Se sustituirá</translation>
    </message>
    <message>
        <source>With a star on this radio</source>
        <translation>Con estrella en esta radio</translation>
    </message>
    <message>
        <source>Without a day it goes off once.</source>
        <translation>Sin ningún día, suena una vez.</translation>
    </message>
    <message>
        <source>until %1</source>
        <translation>hasta las %1</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apariencia</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Cancelado.</translation>
    </message>
    <message>
        <source>Check now</source>
        <translation>Comprobar ahora</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Code: %1</source>
        <translation>Código: %1</translation>
    </message>
    <message>
        <source>Connecting …</source>
        <translation>Conectando…</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Oscuro</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Detalles</translation>
    </message>
    <message>
        <source>Fixed when the host was started.</source>
        <translation>Fijado al iniciar el host.</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Adelante</translation>
    </message>
    <message>
        <source>From the search field to the results</source>
        <translation>Del campo de búsqueda a los resultados</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historial</translation>
    </message>
    <message>
        <source>Kept in this browser.</source>
        <translation>Se guarda en este navegador.</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Teclas</translation>
    </message>
    <message>
        <source>Licenses</source>
        <translation>Licencias</translation>
    </message>
    <message>
        <source>Of the libraries that are part of this page.</source>
        <translation>De las bibliotecas que forman parte de esta página.</translation>
    </message>
    <message>
        <source>Show the licenses</source>
        <translation>Mostrar las licencias</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Claro</translation>
    </message>
    <message>
        <source>Like the system</source>
        <translation>Como el sistema</translation>
    </message>
    <message>
        <source>Link with a code</source>
        <translation>Vincular con un código</translation>
    </message>
    <message>
        <source>Linked to %1</source>
        <translation>Vinculado a %1</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Cargando</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>More for %1</source>
        <translation>Más sobre %1</translation>
    </message>
    <message>
        <source>Move in a list or a menu</source>
        <translation>Moverse en una lista o un menú</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Sin conexión</translation>
    </message>
    <message>
        <source>Not opened</source>
        <translation>No abierto</translation>
    </message>
    <message>
        <source>One menu up, or clear the search</source>
        <translation>Subir un menú o vaciar la búsqueda</translation>
    </message>
    <message>
        <source>Open or play the entry</source>
        <translation>Abrir o reproducir la entrada</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>Pause what plays, or go on</source>
        <translation>Pausar o continuar</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>En pausa</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>Player</source>
        <translation>Reproductor</translation>
    </message>
    <message>
        <source>Playing</source>
        <translation>Reproduciendo</translation>
    </message>
    <message>
        <source>Preferred</source>
        <translation>Preferido</translation>
    </message>
    <message>
        <source>QR code of the page where the code is entered</source>
        <translation>Código QR de la página donde se introduce el código</translation>
    </message>
    <message>
        <source>Reconnecting …</source>
        <translation>Reconectando…</translation>
    </message>
    <message>
        <source>Results for “%1”</source>
        <translation>Resultados de «%1»</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Buscar</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Servicios</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Show these keys</source>
        <translation>Mostrar estas teclas</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Iniciar sesión</translation>
    </message>
    <message>
        <source>Sign in with a password …</source>
        <translation>Iniciar sesión con contraseña…</translation>
    </message>
    <message>
        <source>Skip to the content</source>
        <translation>Ir al contenido</translation>
    </message>
    <message>
        <source>Something went wrong.</source>
        <translation>Algo ha salido mal.</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espacio</translation>
    </message>
    <message>
        <source>Start page</source>
        <translation>Página de inicio</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Detenido</translation>
    </message>
    <message>
        <source>That entry is no longer in the list, which is read again.</source>
        <translation>Esa entrada ya no está en la lista, que se vuelve a leer.</translation>
    </message>
    <message>
        <source>The connection to the host is lost. Trying again …</source>
        <translation>Se ha perdido la conexión con el host. Reintentando…</translation>
    </message>
    <message>
        <source>The service takes long to answer.</source>
        <translation>El servicio tarda en responder.</translation>
    </message>
    <message>
        <source>There is no connection to the host, so nothing happens.</source>
        <translation>No hay conexión con el host, por eso no ocurre nada.</translation>
    </message>
    <message>
        <source>There is nothing here.</source>
        <translation>Aquí no hay nada.</translation>
    </message>
    <message>
        <source>This device is not linked to a %1 account.</source>
        <translation>Este dispositivo no está vinculado a ninguna cuenta de %1.</translation>
    </message>
    <message>
        <source>This is shown once the host can be reached again.</source>
        <translation>Esto aparecerá cuando se pueda volver a contactar con el host.</translation>
    </message>
    <message>
        <source>This link would change something, so it was not opened.</source>
        <translation>Este enlace cambiaría algo, por eso no se ha abierto.</translation>
    </message>
    <message>
        <source>This page</source>
        <translation>Esta página</translation>
    </message>
    <message>
        <source>To the first or the last entry</source>
        <translation>A la primera o la última entrada</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>No disponible</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Deshacer</translation>
    </message>
    <message>
        <source>Unlink</source>
        <translation>Desvincular</translation>
    </message>
    <message>
        <source>Unlink …</source>
        <translation>Desvincular…</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Sin título</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nombre de usuario</translation>
    </message>
    <message>
        <source>Waiting for the code to be entered …</source>
        <translation>A la espera de que se introduzca el código…</translation>
    </message>
    <message>
        <source>What can be done with the keyboard alone.</source>
        <translation>Lo que se puede hacer solo con el teclado.</translation>
    </message>
    <message>
        <source>What changes something is only done from a list or a menu that offers it.</source>
        <translation>Lo que cambia algo solo se hace desde una lista o un menú que lo ofrece.</translation>
    </message>
    <message>
        <source>Where to search</source>
        <translation>Dónde buscar</translation>
    </message>
    <message>
        <source>While it is linked, the favorites are those of the account. The ones that this device has now stay with it and are back after unlinking.</source>
        <translation>Mientras esté vinculado, los favoritos son los de la cuenta. Los que este dispositivo tiene ahora se conservan y vuelven al desvincularlo.</translation>
    </message>
    <message>
        <source>You are here</source>
        <translation>Usted está aquí</translation>
    </message>
    <message numerus="yes">
        <source>%n entries</source>
        <translation>
            <numerusform>%n entrada</numerusform>
            <numerusform>%n entradas</numerusform>
        </translation>
    </message>
    <message>
        <source>All services</source>
        <translation>Todos los servicios</translation>
    </message>
    <message>
        <source>Search all services</source>
        <translation>Buscar en todos los servicios</translation>
    </message>
    <message>
        <source>There is nothing to search.</source>
        <translation>No hay nada donde buscar.</translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>Mostrar todo</translation>
    </message>
    <message>
        <source>Show all of %1</source>
        <translation>Mostrar todo: %1</translation>
    </message>
    <message>
        <source>Another import is under way.</source>
        <translation>Ya hay una importación en curso.</translation>
    </message>
    <message>
        <source>%1 is larger than 1 MiB.</source>
        <translation>%1 ocupa más de 1 MiB.</translation>
    </message>
    <message>
        <source>%1: %2 added, %3 known already, %4 skipped.</source>
        <translation>%1: %2 añadidas, %3 ya conocidas, %4 omitidas.</translation>
    </message>
    <message>
        <source>It cannot be read.</source>
        <translation>No se puede leer.</translation>
    </message>
    <message>
        <source>Only the first %1 files were imported.</source>
        <translation>Solo se han importado los primeros %1 archivos.</translation>
    </message>
    <message>
        <source>Drop files to add their stations to %1</source>
        <translation>Suelte archivos para añadir sus emisoras a %1</translation>
    </message>
    <message>
        <source>Drop files to add their stations</source>
        <translation>Suelte archivos para añadir sus emisoras</translation>
    </message>
    <message>
        <source>Import files …</source>
        <translation>Importar archivos …</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportar</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Formato</translation>
    </message>
    <message>
        <source>Where to import</source>
        <translation>Dónde importar</translation>
    </message>
    <message>
        <source>Pair this device</source>
        <translation>Emparejar este dispositivo</translation>
    </message>
    <message>
        <source>The host lets in only devices that it knows. A code is shown where somebody chooses “Pair a device” on a paired device, or runs “veskctl pair” on the machine itself.</source>
        <translation>El host solo deja entrar a los dispositivos que conoce. El código aparece donde alguien elige «Emparejar un dispositivo» en un dispositivo ya emparejado, o ejecuta «veskctl pair» en la propia máquina.</translation>
    </message>
    <message>
        <source>The host does not know this device any more. It can be paired anew.</source>
        <translation>El host ya no conoce este dispositivo. Se puede emparejar de nuevo.</translation>
    </message>
    <message>
        <source>This connection is not encrypted</source>
        <translation>Esta conexión no está cifrada</translation>
    </message>
    <message>
        <source>Everybody in the same network can read along, and use what they read. Go on only in a network that you trust.</source>
        <translation>Cualquiera en la misma red puede leerla y usar lo que lea. Continúe solo en una red de confianza.</translation>
    </message>
    <message>
        <source>Did your browser warn you?</source>
        <translation>¿Le ha advertido el navegador?</translation>
    </message>
    <message>
        <source>The connection is encrypted. But the host has made its certificate itself, so your browser cannot know whether it talks to your host or to somebody in between.</source>
        <translation>La conexión está cifrada. Pero el host ha creado él mismo su certificado, así que el navegador no puede saber si habla con su host o con alguien en medio.</translation>
    </message>
    <message>
        <source>You can: a fingerprint is shown beside the code. Compare it with the certificate's SHA-256 fingerprint, which your browser shows in the details of the warning or behind the sign beside the address.</source>
        <translation>Usted sí puede: junto al código aparece una huella digital. Compárela con la huella SHA-256 del certificado, que el navegador muestra en los detalles de la advertencia o tras el símbolo junto a la dirección.</translation>
    </message>
    <message>
        <source>If they differ, do not enter the code.</source>
        <translation>Si no coinciden, no introduzca el código.</translation>
    </message>
    <message>
        <source>Without a warning, there is nothing to compare.</source>
        <translation>Sin advertencia no hay nada que comparar.</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Código</translation>
    </message>
    <message>
        <source>Name of this device</source>
        <translation>Nombre de este dispositivo</translation>
    </message>
    <message>
        <source>Pair</source>
        <translation>Emparejar</translation>
    </message>
    <message>
        <source>This is not the code.</source>
        <translation>Ese no es el código.</translation>
    </message>
    <message numerus="yes">
        <source>%n attempts are left.</source>
        <translation>
            <numerusform>Queda %n intento.</numerusform>
            <numerusform>Quedan %n intentos.</numerusform>
        </translation>
    </message>
    <message>
        <source>The code was wrong too often, so this pairing has ended. Let a new code be shown.</source>
        <translation>El código ha sido incorrecto demasiadas veces y este emparejamiento ha terminado. Haga que se muestre un código nuevo.</translation>
    </message>
    <message>
        <source>No device can be paired right now: a code is valid for two minutes. Let a new one be shown.</source>
        <translation>Ahora mismo no se puede emparejar ningún dispositivo: un código vale dos minutos. Haga que se muestre uno nuevo.</translation>
    </message>
    <message>
        <source>The host does not take this code or this name.</source>
        <translation>El host no acepta este código o este nombre.</translation>
    </message>
    <message>
        <source>The host could not write to its disk, so this device is not paired. Its log says why.</source>
        <translation>El host no ha podido escribir en su disco, así que este dispositivo no está emparejado. Su registro dice por qué.</translation>
    </message>
    <message>
        <source>The host cannot be reached.</source>
        <translation>No se puede alcanzar el host.</translation>
    </message>
    <message>
        <source>The host refused this (HTTP %1). Wait a moment, and try again.</source>
        <translation>El host lo ha rechazado (HTTP %1). Espere un momento y vuelva a intentarlo.</translation>
    </message>
    <message>
        <source>Only an owner of this host may do that.</source>
        <translation>Solo un propietario de este host puede hacerlo.</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Dispositivos</translation>
    </message>
    <message>
        <source>Other devices</source>
        <translation>Otros dispositivos</translation>
    </message>
    <message>
        <source>Who else may use this host, and what they may do.</source>
        <translation>Quién más puede usar este host y qué puede hacer.</translation>
    </message>
    <message>
        <source>Show the devices</source>
        <translation>Mostrar los dispositivos</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Propietario</translation>
    </message>
    <message>
        <source>Listener</source>
        <translation>Oyente</translation>
    </message>
    <message>
        <source>What it may do</source>
        <translation>Qué puede hacer</translation>
    </message>
    <message>
        <source>Listen and change favorites</source>
        <translation>Escuchar y cambiar favoritos</translation>
    </message>
    <message>
        <source>Everything, settings and devices too</source>
        <translation>Todo, también ajustes y dispositivos</translation>
    </message>
    <message>
        <source>A pairing that was started elsewhere is under way. Its code is shown there.</source>
        <translation>Hay un emparejamiento en curso que se inició en otro lugar. Su código aparece allí.</translation>
    </message>
    <message>
        <source>Enter this code on the new device. It may then do everything.</source>
        <translation>Introduzca este código en el nuevo dispositivo. Después podrá hacerlo todo.</translation>
    </message>
    <message>
        <source>Enter this code on the new device. It may then listen.</source>
        <translation>Introduzca este código en el nuevo dispositivo. Después podrá escuchar.</translation>
    </message>
    <message>
        <source>Address for the new device:</source>
        <translation>Dirección para el nuevo dispositivo:</translation>
    </message>
    <message>
        <source>If its browser warns, the certificate must have this SHA-256 fingerprint:</source>
        <translation>Si el navegador advierte, el certificado debe tener esta huella SHA-256:</translation>
    </message>
    <message numerus="yes">
        <source>%n seconds left</source>
        <translation>
            <numerusform>Queda %n segundo</numerusform>
            <numerusform>Quedan %n segundos</numerusform>
        </translation>
    </message>
    <message>
        <source>QR code that opens the pairing page on the new device</source>
        <translation>Código QR que abre la página de emparejamiento en el nuevo dispositivo</translation>
    </message>
    <message>
        <source>The device is paired.</source>
        <translation>El dispositivo está emparejado.</translation>
    </message>
    <message>
        <source>%1 is paired.</source>
        <translation>%1 está emparejado.</translation>
    </message>
    <message>
        <source>The code was entered wrongly too often, so the pairing has ended.</source>
        <translation>El código se introdujo mal demasiadas veces y el emparejamiento ha terminado.</translation>
    </message>
    <message>
        <source>The two minutes are over, and no device was paired.</source>
        <translation>Han pasado los dos minutos y no se ha emparejado ningún dispositivo.</translation>
    </message>
    <message>
        <source>Pair a device</source>
        <translation>Emparejar un dispositivo</translation>
    </message>
    <message>
        <source>Show a code</source>
        <translation>Mostrar un código</translation>
    </message>
    <message>
        <source>Stop the pairing</source>
        <translation>Detener el emparejamiento</translation>
    </message>
    <message>
        <source>last here %1</source>
        <translation>última vez: %1</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>conectado</translation>
    </message>
    <message>
        <source>Remove this device? It is out at once, and this page with it.</source>
        <translation>¿Quitar este dispositivo? Quedará fuera al instante, y esta página con él.</translation>
    </message>
    <message>
        <source>Remove %1? It is out at once, and has to be paired anew to come back.</source>
        <translation>¿Quitar %1? Quedará fuera al instante y habrá que emparejarlo de nuevo para que vuelva.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>Remove …</source>
        <translation>Quitar…</translation>
    </message>
    <message>
        <source>Keep it</source>
        <translation>Conservarlo</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>This device</source>
        <translation>Este dispositivo</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Cambiar</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>Cambiar %1</translation>
    </message>
    <message>
        <source>No device is paired yet.</source>
        <translation>Aún no hay ningún dispositivo emparejado.</translation>
    </message>
    <message>
        <source>Paired devices</source>
        <translation>Dispositivos emparejados</translation>
    </message>
    <message>
        <source>Quiet view</source>
        <translation>Vista tranquila</translation>
    </message>
    <message>
        <source>Show the quiet view</source>
        <translation>Mostrar la vista tranquila</translation>
    </message>
    <message>
        <source>The time and what plays, for a tablet on the wall. The screen stays on, and dims.</source>
        <translation>La hora y lo que suena, para una tableta en la pared. La pantalla sigue encendida y se atenúa.</translation>
    </message>
    <message>
        <source>Leave the quiet view</source>
        <translation>Salir de la vista tranquila</translation>
    </message>
    <message>
        <source>This browser lets the screen go off here.</source>
        <translation>Este navegador deja que la pantalla se apague aquí.</translation>
    </message>
    <message>
        <source>On the lock screen</source>
        <translation>En la pantalla de bloqueo</translation>
    </message>
    <message>
        <source>Lock screen and media keys of this device show and control what the host plays.</source>
        <translation>La pantalla de bloqueo y las teclas multimedia de este dispositivo muestran y controlan lo que reproduce el host.</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Compartir</translation>
    </message>
    <message>
        <source>No other device can reach this host: it serves its own machine only.</source>
        <translation>Ningún otro dispositivo alcanza este host: solo atiende a su propia máquina.</translation>
    </message>
    <message>
        <source>The link is copied. It opens this on every paired device.</source>
        <translation>El enlace está copiado. Abre esto en cada dispositivo emparejado.</translation>
    </message>
</context>
<context>
    <name>RadioBrowser</name>
    <message>
        <source>Add to favorites</source>
        <translation>Añadir a favoritos</translation>
    </message>
    <message>
        <source>Remove from favorites</source>
        <translation>Quitar de favoritos</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoritos</translation>
    </message>
    <message>
        <source>There are too many favorites.</source>
        <translation>Hay demasiados favoritos.</translation>
    </message>
    <message>
        <source>Radio Browser does not know this station.</source>
        <translation>Radio Browser no conoce esta emisora.</translation>
    </message>
    <message>
        <source>The answer of Radio Browser is too long.</source>
        <translation>La respuesta de Radio Browser es demasiado larga.</translation>
    </message>
    <message>
        <source>No server of Radio Browser answers. Please try again later.</source>
        <translation>Ningún servidor de Radio Browser responde. Inténtelo de nuevo más tarde.</translation>
    </message>
    <message>
        <source>Radio Browser refused the request.</source>
        <translation>Radio Browser rechazó la solicitud.</translation>
    </message>
    <message>
        <source>The answer of Radio Browser cannot be read.</source>
        <translation>No se puede leer la respuesta de Radio Browser.</translation>
    </message>
    <message>
        <source>Most played</source>
        <translation>Las más escuchadas</translation>
    </message>
    <message>
        <source>Most voted</source>
        <translation>Las más votadas</translation>
    </message>
    <message>
        <source>Recently changed</source>
        <translation>Modificadas recientemente</translation>
    </message>
    <message>
        <source>1 station</source>
        <translation>1 emisora</translation>
    </message>
    <message numerus="yes">
        <source>%n stations</source>
        <translation>
            <numerusform>%n emisora</numerusform>
            <numerusform>%n emisoras</numerusform>
        </translation>
    </message>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>El intervalo de filas no es válido.</translation>
    </message>
    <message>
        <source>By country</source>
        <translation>Por país</translation>
    </message>
    <message>
        <source>By language</source>
        <translation>Por idioma</translation>
    </message>
    <message>
        <source>By tag</source>
        <translation>Por etiqueta</translation>
    </message>
    <message>
        <source>By codec</source>
        <translation>Por códec</translation>
    </message>
    <message>
        <source>Stations called "%1"</source>
        <translation>Emisoras llamadas «%1»</translation>
    </message>
    <message>
        <source>These are too many stations at once.</source>
        <translation>Son demasiadas emisoras a la vez.</translation>
    </message>
    <message>
        <source>Search stations by name</source>
        <translation>Buscar emisoras por nombre</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Buscar</translation>
    </message>
    <message>
        <source>Address of a Radio Browser server</source>
        <translation>Dirección de un servidor de Radio Browser</translation>
    </message>
    <message>
        <source>Left empty, one of the community's servers is chosen by itself.</source>
        <translation>Si se deja vacía, se elige por sí solo uno de los servidores de la comunidad.</translation>
    </message>
</context>
<context>
    <name>Stations</name>
    <message>
        <source>The file cannot be read (%1).</source>
        <translation>El archivo no se puede leer (%1).</translation>
    </message>
    <message>
        <source>This is no file.</source>
        <translation>Esto no es un archivo.</translation>
    </message>
    <message>
        <source>The files are larger than 4 MiB together.</source>
        <translation>Los archivos juntos superan los 4 MiB.</translation>
    </message>
    <message>
        <source>This is no list of stations.</source>
        <translation>Esto no es una lista de emisoras.</translation>
    </message>
    <message>
        <source>This is the playlist of one stream. Add the stream by its address.</source>
        <translation>Esta es la lista de reproducción de un solo stream. Añada el stream por su dirección.</translation>
    </message>
    <message>
        <source>The file is larger than 1 MiB.</source>
        <translation>El archivo supera 1 MiB.</translation>
    </message>
    <message>
        <source>The part of the file cannot be read.</source>
        <translation>La parte del archivo no se puede leer.</translation>
    </message>
    <message>
        <source>Other files are being imported. Please try again in a minute.</source>
        <translation>Se están importando otros archivos. Inténtelo de nuevo dentro de un minuto.</translation>
    </message>
    <message>
        <source>The file did not arrive completely. Please try again.</source>
        <translation>El archivo no ha llegado completo. Inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>This is not in the list any more.</source>
        <translation>Esto ya no está en la lista.</translation>
    </message>
    <message>
        <source>The list is full: it has 5,000 entries.</source>
        <translation>La lista está llena: tiene 5.000 entradas.</translation>
    </message>
    <message>
        <source>There is a folder of this name already.</source>
        <translation>Ya hay una carpeta con este nombre.</translation>
    </message>
    <message>
        <source>There are too many folders in each other.</source>
        <translation>Hay demasiadas carpetas unas dentro de otras.</translation>
    </message>
    <message>
        <source>This address is in the list already.</source>
        <translation>Esta dirección ya está en la lista.</translation>
    </message>
    <message>
        <source>The folder cannot be moved to this place.</source>
        <translation>La carpeta no se puede mover a este lugar.</translation>
    </message>
    <message>
        <source>The folder is not empty.</source>
        <translation>La carpeta no está vacía.</translation>
    </message>
    <message>
        <source>The range of rows is not valid.</source>
        <translation>El intervalo de filas no es válido.</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Emisoras</translation>
    </message>
    <message>
        <source>1 station</source>
        <translation>1 emisora</translation>
    </message>
    <message numerus="yes">
        <source>%n stations</source>
        <translation>
            <numerusform>%n emisoras</numerusform>
            <numerusform>%n emisoras</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out for several reasons: %n</source>
        <translation>
            <numerusform>Omitidas por varios motivos: %n</numerusform>
            <numerusform>Omitidas por varios motivos: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, links that lead to no station: %n</source>
        <translation>
            <numerusform>Omitidos, enlaces que no llevan a una emisora: %n</numerusform>
            <numerusform>Omitidos, enlaces que no llevan a una emisora: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, with too long addresses: %n</source>
        <translation>
            <numerusform>Omitidas, con direcciones demasiado largas: %n</numerusform>
            <numerusform>Omitidas, con direcciones demasiado largas: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, in too many folders: %n</source>
        <translation>
            <numerusform>Omitidas, en demasiadas carpetas: %n</numerusform>
            <numerusform>Omitidas, en demasiadas carpetas: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, beyond 5,000 entries: %n</source>
        <translation>
            <numerusform>Omitidas, más de 5.000 entradas: %n</numerusform>
            <numerusform>Omitidas, más de 5.000 entradas: %n</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Left out, without an http or https address: %n</source>
        <translation>
            <numerusform>Omitidas, sin dirección http o https: %n</numerusform>
            <numerusform>Omitidas, sin dirección http o https: %n</numerusform>
        </translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Buscar</translation>
    </message>
    <message>
        <source>Add a station by its address</source>
        <translation>Añadir una emisora por su dirección</translation>
    </message>
    <message numerus="yes">
        <source>More files, which are not shown: %n</source>
        <translation>
            <numerusform>Otros archivos, que no se muestran: %n</numerusform>
            <numerusform>Otros archivos, que no se muestran: %n</numerusform>
        </translation>
    </message>
    <message>
        <source>Change this list</source>
        <translation>Cambiar esta lista</translation>
    </message>
    <message>
        <source>Change this folder</source>
        <translation>Cambiar esta carpeta</translation>
    </message>
    <message>
        <source>Stations with "%1"</source>
        <translation>Emisoras con «%1»</translation>
    </message>
    <message>
        <source>Add a station</source>
        <translation>Añadir una emisora</translation>
    </message>
    <message>
        <source>This is no address that begins with http or https.</source>
        <translation>Esto no es una dirección que empiece por http o https.</translation>
    </message>
    <message>
        <source>This address is in the list:</source>
        <translation>Esta dirección está en la lista:</translation>
    </message>
    <message>
        <source>Give it another name</source>
        <translation>Darle otro nombre</translation>
    </message>
    <message>
        <source>Keep it without listening</source>
        <translation>Guardarla sin escucharla</translation>
    </message>
    <message>
        <source>This address plays. Keep it?</source>
        <translation>Esta dirección suena. ¿Guardarla?</translation>
    </message>
    <message>
        <source>Keep it</source>
        <translation>Guardarla</translation>
    </message>
    <message>
        <source>This address does not play.</source>
        <translation>Esta dirección no suena.</translation>
    </message>
    <message>
        <source>Keep it all the same</source>
        <translation>Guardarla de todos modos</translation>
    </message>
    <message>
        <source>Make a folder</source>
        <translation>Crear una carpeta</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Ordenar por nombre</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Cambiar el nombre</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Subir</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Bajar</translation>
    </message>
    <message>
        <source>Move to a folder</source>
        <translation>Mover a una carpeta</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>Keep it in the list</source>
        <translation>Guardarla en la lista</translation>
    </message>
    <message>
        <source>Rename "%1" to "%2"</source>
        <translation>Cambiar el nombre de «%1» a «%2»</translation>
    </message>
    <message>
        <source>Make the folder "%1"</source>
        <translation>Crear la carpeta «%1»</translation>
    </message>
    <message>
        <source>Move "%1" to</source>
        <translation>Mover «%1» a</translation>
    </message>
    <message>
        <source>No folder</source>
        <translation>Ninguna carpeta</translation>
    </message>
    <message>
        <source>Remove "%1"</source>
        <translation>Quitar «%1»</translation>
    </message>
    <message numerus="yes">
        <source>Remove the folder with everything in it (stations: %n)</source>
        <translation>
            <numerusform>Quitar la carpeta con todo su contenido (emisoras: %n)</numerusform>
            <numerusform>Quitar la carpeta con todo su contenido (emisoras: %n)</numerusform>
        </translation>
    </message>
    <message>
        <source>Search your stations</source>
        <translation>Buscar entre sus emisoras</translation>
    </message>
    <message>
        <source>The name is missing.</source>
        <translation>Falta el nombre.</translation>
    </message>
    <message>
        <source>The file defines a document type (DOCTYPE), which is not read.</source>
        <translation>El archivo define un tipo de documento (DOCTYPE), que no se lee.</translation>
    </message>
    <message>
        <source>The file is damaged: line %1 cannot be read as XML.</source>
        <translation>El archivo está dañado: la línea %1 no se puede leer como XML.</translation>
    </message>
</context>
</TS>
