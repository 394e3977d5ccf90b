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
        <source>Favorite</source>
        <translation>Favorito</translation>
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
