<?xml version="1.0" encoding="utf-8"?>
<!-- SPDX-License-Identifier: MIT -->
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name></name>
    <message id="WINDOW_TITLE">
        <source>Zorvex Disk Manager</source>
        <extracomment>Title of the main window: the name of the program, which is not translated.</extracomment>
        <translation>Zorvex Disk Manager</translation>
    </message>
    <message id="FILE_MENU_TITLE">
        <source>&amp;File</source>
        <extracomment>Menu in the menu bar. &amp; marks the letter that opens it with Alt; it must differ from all other letters in the window.</extracomment>
        <translation>&amp;Archivo</translation>
    </message>
    <message id="REFRESH_MENU_ITEM_TITLE">
        <source>&amp;Refresh</source>
        <extracomment>Item of the File menu: reads again which file systems are installed and which disks are there. It changes nothing.</extracomment>
        <translation>&amp;Actualizar</translation>
    </message>
    <message id="CLOSE_MENU_ITEM_TITLE">
        <source>&amp;Close Window</source>
        <extracomment>Item of the File menu. Closing the window ends the program.</extracomment>
        <translation>&amp;Cerrar ventana</translation>
    </message>
    <message id="QUIT_MENU_ITEM_TITLE">
        <source>&amp;Quit</source>
        <extracomment>Item of the File menu: ends the program.</extracomment>
        <translation>&amp;Salir</translation>
    </message>
    <message id="EDIT_MENU_TITLE">
        <source>&amp;Edit</source>
        <extracomment>Menu in the menu bar.</extracomment>
        <translation>&amp;Editar</translation>
    </message>
    <message id="UNDO_MENU_ITEM_TITLE">
        <source>&amp;Undo</source>
        <extracomment>Item of the Edit menu: takes back what was typed last.</extracomment>
        <translation>&amp;Deshacer</translation>
    </message>
    <message id="CUT_MENU_ITEM_TITLE">
        <source>Cu&amp;t</source>
        <extracomment>Item of the Edit menu: moves the selected text of the field to the clipboard.</extracomment>
        <translation>C&amp;ortar</translation>
    </message>
    <message id="COPY_MENU_ITEM_TITLE">
        <source>&amp;Copy</source>
        <extracomment>Item of the Edit menu: copies the selected text. In the menu of a row of the tree: copies the name in the row.</extracomment>
        <translation>&amp;Copiar</translation>
    </message>
    <message id="PASTE_MENU_ITEM_TITLE">
        <source>&amp;Paste</source>
        <extracomment>Item of the Edit menu: puts the text of the clipboard into the field.</extracomment>
        <translation>&amp;Pegar</translation>
    </message>
    <message id="SELECT_ALL_MENU_ITEM_TITLE">
        <source>Select &amp;All</source>
        <extracomment>Item of the Edit menu: selects all text of the field or view.</extracomment>
        <translation>Seleccionar &amp;todo</translation>
    </message>
    <message id="DISK_MENU_TITLE">
        <source>&amp;Disk</source>
        <extracomment>Menu in the menu bar: what can be done with the selected disk or volume.</extracomment>
        <translation>&amp;Disco</translation>
    </message>
    <message id="FORMAT_MENU_ITEM_TITLE">
        <source>&amp;Format…</source>
        <extracomment>Item of the Disk menu and the menu of a row: shows the page on which a volume is formatted. The dots say that nothing happens yet.</extracomment>
        <translation>&amp;Formatear…</translation>
    </message>
    <message id="ERASE_DISK_MENU_ITEM_TITLE">
        <source>Erase &amp;Disk…</source>
        <extracomment>Item of the Disk menu and of the menu of a row: opens a sheet that asks how the whole disk is to be erased. &amp; marks the letter that chooses it.</extracomment>
        <translation>&amp;Borrar disco…</translation>
    </message>
    <message id="CHECK_MENU_ITEM_TITLE">
        <source>Chec&amp;k</source>
        <extracomment>Item of the Disk menu and the menu of a row: looks for errors in the file system of the selected volume and changes nothing.</extracomment>
        <translation>Com&amp;probar</translation>
    </message>
    <message id="REPAIR_MENU_ITEM_TITLE">
        <source>&amp;Repair</source>
        <extracomment>Item of the Disk menu and the menu of a row: corrects errors in the file system of the selected volume.</extracomment>
        <translation>&amp;Reparar</translation>
    </message>
    <message id="SHOW_IN_FILE_MANAGER_MENU_ITEM_TITLE">
        <source>&amp;Show in File Manager</source>
        <extracomment>Item of the Disk menu and the menu of a row: opens the folder at which the selected volume is mounted.</extracomment>
        <translation>Mos&amp;trar en el gestor de archivos</translation>
    </message>
    <message id="COPY_DEVICE_PATH_MENU_ITEM_TITLE">
        <source>Copy Device &amp;Path</source>
        <extracomment>Item of the menu of a row of the tree: puts the path of its device, such as /dev/sda1, on the clipboard.</extracomment>
        <translation>Copiar ruta del &amp;dispositivo</translation>
    </message>
    <message id="HELP_MENU_TITLE">
        <source>&amp;Help</source>
        <extracomment>Menu in the menu bar.</extracomment>
        <translation>Ay&amp;uda</translation>
    </message>
    <message id="MANUAL_MENU_ITEM_TITLE">
        <source>User &amp;Manual</source>
        <extracomment>Item of the Help menu: opens the manual, a PDF document.</extracomment>
        <translation>&amp;Manual de usuario</translation>
    </message>
    <message id="ABOUT_MENU_ITEM_TITLE">
        <source>&amp;About Zorvex Disk Manager</source>
        <extracomment>Item of the Help menu: shows the version and what the program is.</extracomment>
        <translation>&amp;Acerca de Zorvex Disk Manager</translation>
    </message>
    <message id="ABOUT_TEXT">
        <source>Version %@

Mounts, ejects, formats, checks and repairs disks and volumes.

MIT License
%@</source>
        <extracomment>Text of the About box below the name of the program. The first %@ is the version, such as 1.0.0; the second is the address of the program’s page on the web.</extracomment>
        <translation>Versión %@

Monta, expulsa, formatea, comprueba y repara discos y volúmenes.

Licencia MIT
%@</translation>
    </message>
    <message id="USER_MANUAL_NOT_FOUND_TITLE">
        <source>The user manual could not be opened</source>
        <extracomment>Title of the message when Help &gt; User Manual fails.</extracomment>
        <translation>No se pudo abrir el manual de usuario</translation>
    </message>
    <message id="USER_MANUAL_NOT_FOUND_TEXT">
        <source>The manual is not installed, or there is no program to open PDF documents.</source>
        <extracomment>Text of the message when Help &gt; User Manual fails.</extracomment>
        <translation>O bien el manual no está instalado, o bien no hay ningún programa que pueda mostrar documentos PDF.</translation>
    </message>
    <message id="DISK_TREE_ACCESSIBLE_NAME">
        <source>Disks and volumes</source>
        <extracomment>What a screen reader calls the tree of disks at the side of the window.</extracomment>
        <translation>Discos y volúmenes</translation>
    </message>
    <message id="NO_DISKS_TITLE">
        <source>No disks</source>
        <extracomment>In the empty tree, in bold.</extracomment>
        <translation>No hay discos</translation>
    </message>
    <message id="NO_DISKS_TEXT">
        <source>A disk that you connect appears here.</source>
        <extracomment>In the empty tree, below the words “No disks”.</extracomment>
        <translation>El disco que conecte aparece aquí.</translation>
    </message>
    <message id="NO_SERVICE_TITLE">
        <source>No disk service</source>
        <extracomment>In the empty tree, in bold, when the disk service is not there.</extracomment>
        <translation>Sin servicio de discos</translation>
    </message>
    <message id="NO_SERVICE_TEXT">
        <source>The disk service (udisks2) is not running.</source>
        <extracomment>In the empty tree, when the service that tells of disks (UDisks2) does not run.</extracomment>
        <translation>El servicio de discos (udisks2) no está en marcha.</translation>
    </message>
    <message id="ROW_MOUNTED_TEXT">
        <source>mounted</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a volume in the tree: files on it can be used.</extracomment>
        <translation>montado</translation>
    </message>
    <message id="ROW_NOT_MOUNTED_TEXT">
        <source>not mounted</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a volume in the tree: files on it cannot be used at present.</extracomment>
        <translation>sin montar</translation>
    </message>
    <message id="ROW_NO_CONTENT_TEXT">
        <source>none</source>
        <extracomment>Info page, in the place of the content type of a disk that has none.</extracomment>
        <translation>ninguno</translation>
    </message>
    <message id="ROW_BUSY_TEXT">
        <source>busy</source>
        <extracomment>Said of a row of the tree on whose disk an operation runs.</extracomment>
        <translation>ocupado</translation>
    </message>
    <message id="ROW_DISK_WITH_PARTITIONS_TEXT">
        <source>disk with partitions</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a whole disk in the tree that is divided into partitions.</extracomment>
        <translation>disco con particiones</translation>
    </message>
    <message id="LIST_SEPARATOR_TEXT">
        <source>, </source>
        <extracomment>Stands between what a screen reader says, and the tool tip shows, of a row: name, file system, state. With the space that follows it, where the language has one.</extracomment>
        <translation>, </translation>
    </message>
    <message id="DISK_ICON_ACCESSIBLE_NAME">
        <source>Disk icon</source>
        <extracomment>What a screen reader calls the large picture of the selected disk.</extracomment>
        <translation>Icono del disco</translation>
    </message>
    <message id="DISK_MAP_ACCESSIBLE_NAME">
        <source>Volumes on this disk</source>
        <extracomment>Name, for a screen reader, of the drawing on the Info page that shows the volumes of a disk side by side.</extracomment>
        <translation>Volúmenes de este disco</translation>
    </message>
    <message id="DIVIDER_ACCESSIBLE_NAME">
        <source>Divider</source>
        <extracomment>What a screen reader calls the line between the tree and the pages, which can be moved with the arrow keys.</extracomment>
        <translation>Separador</translation>
    </message>
    <message id="DIVIDER_TOOL_TIP">
        <source>Drag to resize the list of disks. With the keyboard: press Tab until the divider is selected, then Left or Right.</source>
        <extracomment>Tool tip of the bar between the list of disks and the pages, also read out by screen readers.</extracomment>
        <translation>Arrastre el separador para cambiar el ancho de la lista de discos. Con el teclado: llegue a él con Tab y pulse las flechas izquierda y derecha.</translation>
    </message>
    <message id="INFO_TAB_TITLE">
        <source>Info</source>
        <extracomment>Title of the tab with the properties of the selected disk or volume.</extracomment>
        <translation>Información</translation>
    </message>
    <message id="FORMAT_TAB_TITLE">
        <source>Format</source>
        <extracomment>Title of the tab on which a volume is formatted.</extracomment>
        <translation>Formatear</translation>
    </message>
    <message id="MAINTENANCE_TAB_TITLE">
        <source>Maintenance</source>
        <extracomment>Title of the tab on which a volume is checked and repaired.</extracomment>
        <translation>Mantenimiento</translation>
    </message>
    <message id="SELECT_A_DISK_TEXT">
        <source>Select a disk or volume</source>
        <extracomment>Shown in place of the name while nothing is selected in the tree.</extracomment>
        <translation>Seleccione un disco o volumen</translation>
    </message>
    <message id="SELECT_A_DISK_HINT_TEXT">
        <source>What it holds and what can be done with it appears here.</source>
        <extracomment>Shown below SELECT_A_DISK_TEXT.</extracomment>
        <translation>Aquí aparecen su contenido y lo que se puede hacer con él.</translation>
    </message>
    <message id="NO_SERVICE_HINT_TEXT">
        <source>Disks appear here as soon as the disk service runs. To start it:</source>
        <extracomment>On the Info page while the disk service is not there, above the command that starts it.</extracomment>
        <translation>Los discos aparecen aquí en cuanto el servicio de discos esté en marcha. Para iniciarlo:</translation>
    </message>
    <message id="PLACE_VOLUME_ON_FMT">
        <source>Volume on %@</source>
        <extracomment>Info page, below the space of a volume: which disk it is on. %@ is the name of the disk.</extracomment>
        <translation>Volumen en %@</translation>
    </message>
    <message id="MEDIUM_INTERNAL_TEXT">
        <source>Internal disk</source>
        <extracomment>Kind of a medium: a disk inside the computer.</extracomment>
        <translation>Disco interno</translation>
    </message>
    <message id="MEDIUM_EXTERNAL_TEXT">
        <source>External disk</source>
        <extracomment>Kind of a medium: a disk that is connected from outside.</extracomment>
        <translation>Disco externo</translation>
    </message>
    <message id="MEDIUM_REMOVABLE_TEXT">
        <source>Removable disk</source>
        <extracomment>Kind of disk: it can be removed. It may be a stick, or a card in a reader.</extracomment>
        <translation>Disco extraíble</translation>
    </message>
    <message id="MEDIUM_CARD_TEXT">
        <source>Memory card</source>
        <extracomment>Kind of a medium.</extracomment>
        <translation>Tarjeta de memoria</translation>
    </message>
    <message id="MEDIUM_DISC_TEXT">
        <source>Disc</source>
        <extracomment>Kind of a medium: an optical disc, such as a DVD.</extracomment>
        <translation>Disco óptico</translation>
    </message>
    <message id="MEDIUM_IMAGE_TEXT">
        <source>Disk image</source>
        <extracomment>Kind of a medium: a file that is attached as a disk.</extracomment>
        <translation>Imagen de disco</translation>
    </message>
    <message id="MEDIUM_UNLOCKED_TEXT">
        <source>Unlocked volume</source>
        <extracomment>Kind of a medium: what can be read of an encrypted volume that has been unlocked.</extracomment>
        <translation>Volumen desbloqueado</translation>
    </message>
    <message id="MOUNT_BUTTON_TITLE">
        <source>&amp;Mount</source>
        <extracomment>Button and menu item: makes the files of the selected volume accessible. Keep it short.</extracomment>
        <translation>&amp;Montar</translation>
    </message>
    <message id="UNMOUNT_BUTTON_TITLE">
        <source>&amp;Unmount</source>
        <extracomment>Button and menu item: finishes the use of the selected volume, so that its files are no longer accessible. Keep it short.</extracomment>
        <translation>De&amp;smontar</translation>
    </message>
    <message id="EJECT_BUTTON_TITLE">
        <source>E&amp;ject</source>
        <extracomment>Button and menu item: unmounts all volumes of the selected disk and makes it safe to take out. Keep it short.</extracomment>
        <translation>E&amp;xpulsar</translation>
    </message>
    <message id="FILESYSTEM_CAPTION">
        <source>File system:</source>
        <extracomment>Caption of a property: NTFS, exFAT and so on.</extracomment>
        <translation>Sistema de archivos:</translation>
    </message>
    <message id="BSD_NAME_CAPTION">
        <source>Device:</source>
        <extracomment>Caption of a property: the short name of the device, such as disk2s1.</extracomment>
        <translation>Dispositivo:</translation>
    </message>
    <message id="WHOLE_DEVICE_CAPTION">
        <source>Whole device:</source>
        <extracomment>Caption of a property answered by Yes or No: No for a partition of a device.</extracomment>
        <translation>Dispositivo completo:</translation>
    </message>
    <message id="REMOVABLE_CAPTION">
        <source>Removable:</source>
        <extracomment>Caption of a property answered by Yes or No: whether the medium can be taken out of its drive.</extracomment>
        <translation>Extraíble:</translation>
    </message>
    <message id="CONTENT_HINT_CAPTION">
        <source>Content type:</source>
        <extracomment>Caption of a property: what the partition table says is in the partition, such as Windows_NTFS.</extracomment>
        <translation>Tipo de contenido:</translation>
    </message>
    <message id="EJECTABLE_CAPTION">
        <source>Ejectable:</source>
        <extracomment>Caption of a property answered by Yes or No: whether the drive ejects its medium by itself.</extracomment>
        <translation>Expulsable:</translation>
    </message>
    <message id="BLOCK_SIZE_CAPTION">
        <source>Block size:</source>
        <extracomment>Caption of a property: the block size of the device, such as 512 bytes.</extracomment>
        <translation>Tamaño de bloque:</translation>
    </message>
    <message id="MOUNTED_AT_CAPTION">
        <source>Mounted at:</source>
        <extracomment>Caption of a property: the folder in which the files of the volume are found, shown as a link.</extracomment>
        <translation>Montado en:</translation>
    </message>
    <message id="MOUNT_PATH_ACCESSIBLE_NAME">
        <source>Mount point</source>
        <extracomment>What a screen reader calls the link to the folder at which the volume is mounted.</extracomment>
        <translation>Punto de montaje</translation>
    </message>
    <message id="MOUNT_PATH_LINK_DESCRIPTION">
        <source>Link: opens the file manager</source>
        <extracomment>Said by a screen reader after the mount point while it is shown as a link: what following it does.</extracomment>
        <translation>Enlace: abre el gestor de archivos</translation>
    </message>
    <message id="FOLDER_NOT_OPENED_TITLE">
        <source>The folder could not be opened</source>
        <extracomment>Title of the alert when the file manager could not open the folder at which a volume is mounted.</extracomment>
        <translation>No se pudo abrir la carpeta</translation>
    </message>
    <message id="FOLDER_NOT_OPENED_TEXT_FMT">
        <source>The volume is mounted at %@, but the file manager could not open that folder.</source>
        <extracomment>Text of the alert when the file manager could not open the folder at which a volume is mounted. %@ is the path of the folder.</extracomment>
        <translation>El volumen está montado en %@, pero el gestor de archivos no pudo abrir esa carpeta.</translation>
    </message>
    <message id="VOLUME_OUT_OF_REACH_TITLE">
        <source>You cannot open this volume</source>
        <extracomment>Title of the notice after a volume was mounted in a folder that the user may not open.</extracomment>
        <translation>No puede abrir este volumen</translation>
    </message>
    <message id="VOLUME_OUT_OF_REACH_TEXT_FMT">
        <source>The disk service could not mount “%@” for you. It is mounted at %@, which only the administrator can open.</source>
        <extracomment>Text of the notice after a volume was mounted in a folder that the user may not open. The first %@ is the name of the volume, the second the path of the folder.</extracomment>
        <translation>El servicio de discos no pudo montar «%@» para usted. Está montado en %@, una carpeta que solo el administrador puede abrir.</translation>
    </message>
    <message id="START_NOBODY_ASKS_TITLE">
        <source>The password cannot be asked for</source>
        <extracomment>Title of the message when no program in the session can ask for the password. No window opens.</extracomment>
        <translation>No se puede pedir la contraseña</translation>
    </message>
    <message id="START_NOBODY_ASKS_TEXT">
        <source>No program that asks for passwords (a polkit agent) is running in this session. Install one, such as lxpolkit or mate-polkit, log in again and start Zorvex Disk Manager. Members of the group zorvex-admin need no password.</source>
        <extracomment>Text of the message when no program in the session can ask for the password. Keep “polkit”, the names of the packages and “zorvex-admin”.</extracomment>
        <translation>En esta sesión no se está ejecutando ningún programa que pida contraseñas (un agente de polkit). Instale uno, como lxpolkit o mate-polkit, vuelva a iniciar la sesión y abra Zorvex Disk Manager. Los miembros del grupo zorvex-admin no necesitan contraseña.</translation>
    </message>
    <message id="START_REFUSED_TITLE">
        <source>Administrator rights were not granted</source>
        <extracomment>Title of the message when the user may not run the program as administrator, or the password was wrong. No window opens.</extracomment>
        <translation>No se han concedido derechos de administrador</translation>
    </message>
    <message id="START_REFUSED_TEXT">
        <source>Start Zorvex Disk Manager again and enter an administrator’s password, or ask an administrator to add you to the group zorvex-admin.</source>
        <extracomment>Text of the message when the user may not run the program as administrator, or the password was wrong. Keep “zorvex-admin”.</extracomment>
        <translation>Vuelva a abrir Zorvex Disk Manager e introduzca la contraseña de un administrador, o pida a un administrador que le añada al grupo zorvex-admin.</translation>
    </message>
    <message id="START_NO_AUTHORITY_TITLE">
        <source>Administrator rights cannot be requested</source>
        <extracomment>Title of the message when the authorization service cannot be reached. No window opens.</extracomment>
        <translation>No se pueden solicitar derechos de administrador</translation>
    </message>
    <message id="START_NO_AUTHORITY_TEXT">
        <source>The authorization service (polkit) does not answer. Make sure that the package polkitd is installed and the service is running, then start Zorvex Disk Manager again.</source>
        <extracomment>Text of the message when the authorization service cannot be reached. Keep “polkit” and “polkitd”.</extracomment>
        <translation>El servicio de autorización (polkit) no responde. Compruebe que el paquete polkitd está instalado y que el servicio se está ejecutando, y vuelva a abrir Zorvex Disk Manager.</translation>
    </message>
    <message id="START_NO_ANSWER_TITLE">
        <source>Zorvex Disk Manager does not answer</source>
        <extracomment>Title of the message when the program runs already and does not answer. No second window opens.</extracomment>
        <translation>Zorvex Disk Manager no responde</translation>
    </message>
    <message id="START_NO_ANSWER_TEXT">
        <source>It is running already, but its window does not respond. Wait until it does, or end it, then start it again.</source>
        <extracomment>Text of the message when the program runs already and does not answer.</extracomment>
        <translation>El programa ya se está ejecutando, pero su ventana no responde. Espere a que responda o ciérrelo, y vuelva a abrirlo.</translation>
    </message>
    <message id="DEVICE_NODE_TOOL_TIP_FMT">
        <source>Device node: %@</source>
        <extracomment>Tool tip of the device name. %@ is the system&apos;s name of the device, such as /dev/sda1.</extracomment>
        <translation>Archivo de dispositivo: %@</translation>
    </message>
    <message id="BOOLEAN_VALUE_YES_TEXT">
        <source>Yes</source>
        <extracomment>Value of a property.</extracomment>
        <translation>Sí</translation>
    </message>
    <message id="BOOLEAN_VALUE_NO_TEXT">
        <source>No</source>
        <extracomment>Value of a property.</extracomment>
        <translation>No</translation>
    </message>
    <message id="BYTES_TEXT">
        <source>bytes</source>
        <extracomment>Stands after an exact number of bytes, such as 512 or 1 000 000.</extracomment>
        <translation>bytes</translation>
    </message>
    <message id="EXABYTES_SHORT_TEXT">
        <source>EB</source>
        <extracomment>Abbreviation of exabyte (a million million million bytes), after a number.</extracomment>
        <translation>EB</translation>
    </message>
    <message id="PETABYTES_SHORT_TEXT">
        <source>PB</source>
        <extracomment>Abbreviation of petabyte (a thousand million million bytes), after a number.</extracomment>
        <translation>PB</translation>
    </message>
    <message id="TERABYTES_SHORT_TEXT">
        <source>TB</source>
        <extracomment>Abbreviation of terabyte (a million million bytes), after a number.</extracomment>
        <translation>TB</translation>
    </message>
    <message id="GIGABYTES_SHORT_TEXT">
        <source>GB</source>
        <extracomment>Abbreviation of gigabyte (a thousand million bytes), after a number.</extracomment>
        <translation>GB</translation>
    </message>
    <message id="MEGABYTES_SHORT_TEXT">
        <source>MB</source>
        <extracomment>Abbreviation of megabyte (a million bytes), after a number.</extracomment>
        <translation>MB</translation>
    </message>
    <message id="KILOBYTES_SHORT_TEXT">
        <source>kB</source>
        <extracomment>Abbreviation of kilobyte (a thousand bytes), after a number.</extracomment>
        <translation>kB</translation>
    </message>
    <message id="BYTES_SHORT_TEXT">
        <source>B</source>
        <extracomment>Abbreviation of byte, after a number below a thousand.</extracomment>
        <translation>B</translation>
    </message>
    <message id="AVAILABLE_SPACE_FMT">
        <source>%@ free of %@</source>
        <extracomment>Size of a volume. The first %@ is the free space, the second the total, each with its unit, such as 1.50 GB. Where the total comes first, write %2$@ for it and %1$@ for the free space.</extracomment>
        <translation>%@ libres de %@</translation>
    </message>
    <message id="USED_SPACE_FMT">
        <source>%@ used (%@%%)</source>
        <extracomment>Info page, below the bar of a mounted volume. The first %@ is the used space with its unit, the second one a percentage.</extracomment>
        <translation>%@ usados (%@ %%)</translation>
    </message>
    <message id="ALMOST_FULL_FMT">
        <source>%@ used (%@%%), almost full</source>
        <extracomment>In the place of USED_SPACE_FMT from 90 % on.</extracomment>
        <translation>%@ usados (%@ %%), casi lleno</translation>
    </message>
    <message id="PERCENT_FMT">
        <source>%@%%</source>
        <extracomment>A percentage beside a bar. %@ is the number, %% is shown as %.</extracomment>
        <translation>%@ %%</translation>
    </message>
    <message id="STATUS_SPACE_UNKNOWN_TEXT">
        <source>It is not known how full the volume is.</source>
        <extracomment>Info page: a mounted volume whose free space is not known.</extracomment>
        <translation>No se sabe cuánto espacio está ocupado.</translation>
    </message>
    <message id="STATUS_LOCKED_TEXT">
        <source>Encrypted and locked. Mount asks for the passphrase.</source>
        <extracomment>Info page: an encrypted volume that is locked. “Mount” is the button.</extracomment>
        <translation>Cifrado y bloqueado. «Montar» pide la frase de contraseña.</translation>
    </message>
    <message id="STATUS_UNLOCKED_TEXT">
        <source>Encrypted and unlocked. What it holds has a row of its own.</source>
        <extracomment>Info page: an encrypted volume whose content has a row of its own in the tree.</extracomment>
        <translation>Cifrado y desbloqueado. Su contenido tiene una fila propia.</translation>
    </message>
    <message id="STATUS_SWAP_TEXT">
        <source>Swap space: the system keeps memory here, not files.</source>
        <extracomment>Info page: swap space has no files to show.</extracomment>
        <translation>Espacio de intercambio: el sistema guarda aquí memoria, no archivos.</translation>
    </message>
    <message id="STATUS_LVM_TEXT">
        <source>Belongs to a volume group (LVM).</source>
        <extracomment>Info page: a part of a volume group of the Logical Volume Manager.</extracomment>
        <translation>Pertenece a un grupo de volúmenes (LVM).</translation>
    </message>
    <message id="STATUS_RAID_TEXT">
        <source>Belongs to a RAID array.</source>
        <extracomment>Info page: a part of a RAID array.</extracomment>
        <translation>Pertenece a un conjunto RAID.</translation>
    </message>
    <message id="STATUS_NOT_RECOGNIZED_TEXT">
        <source>No file system was recognized.</source>
        <extracomment>Info page: a medium without a known file system.</extracomment>
        <translation>No se reconoció ningún sistema de archivos.</translation>
    </message>
    <message id="STATUS_OTHER_CONTENT_TEXT">
        <source>It holds data that cannot be shown here.</source>
        <extracomment>Sentence on the Info page for a volume whose content was recognized, but is no file system that can be mounted: a journal, a part of a cluster. It stands below the bar.</extracomment>
        <translation>Contiene datos que no se pueden mostrar aquí.</translation>
    </message>
    <message id="GO_TO_FORMAT_TEXT">
        <source>Give it one on the Format page</source>
        <extracomment>Link on the Info page, below STATUS_NOT_RECOGNIZED_TEXT: shows the Format page.</extracomment>
        <translation>Crear uno en la página Formatear</translation>
    </message>
    <message id="STATUS_NOT_MOUNTED_TEXT">
        <source>Not mounted. Mount it to open it and to see how full it is.</source>
        <extracomment>Info page: a volume with a file system that is not mounted. “Mount” is the button.</extracomment>
        <translation>No está montado. Móntelo para abrirlo y ver su ocupación.</translation>
    </message>
    <message id="STATUS_READ_ONLY_TEXT">
        <source>Read-only: it can be checked, but not repaired or formatted.</source>
        <extracomment>Added to one of the sentences above it, for a volume that cannot be written.</extracomment>
        <translation>Solo lectura: se puede comprobar, pero no reparar ni formatear.</translation>
    </message>
    <message id="STATUS_PARTITIONS_FMT">
        <source>Volumes: %@, mounted: %@.</source>
        <extracomment>Info page: a disk with partitions. The first %@ is the number of its volumes, the second one that of the mounted ones.</extracomment>
        <translation>Volúmenes: %@, montados: %@.</translation>
    </message>
    <message id="STATUS_UNUSED_FMT">
        <source>%@ belong to no volume.</source>
        <extracomment>Added to STATUS_PARTITIONS_FMT. %@ is a size with its unit.</extracomment>
        <translation>%@ no pertenecen a ningún volumen.</translation>
    </message>
    <message id="STATUS_HIDDEN_FMT">
        <source>Partitions that are not listed, such as those that start the computer: %@.</source>
        <extracomment>Info page of a disk: partitions that have no row in the tree. %@ is their size with its unit.</extracomment>
        <translation>Particiones que no aparecen en la lista, como las de arranque: %@.</translation>
    </message>
    <message id="MAP_HIDDEN_FMT">
        <source>Partition that is not listed, %@</source>
        <extracomment>Tip of a part of the map of a disk: a partition that has no row in the tree. %@ is its size with its unit.</extracomment>
        <translation>Partición que no aparece en la lista, %@</translation>
    </message>
    <message id="FORCE_UNMOUNT_BUTTON_TITLE">
        <source>&amp;Force Unmount</source>
        <extracomment>Button of the question after a failed unmount: unmounts although the volume is in use.</extracomment>
        <translation>&amp;Forzar desmontaje</translation>
    </message>
    <message id="CANCEL_UNMOUNT_BUTTON_TITLE">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question after a failed unmount: leaves everything as it is.</extracomment>
        <translation>&amp;Cancelar</translation>
    </message>
    <message id="UNLOCK_DIALOG_TITLE">
        <source>Unlock the volume?</source>
        <extracomment>Title of the question for the passphrase of an encrypted volume.</extracomment>
        <translation>¿Desbloquear el volumen?</translation>
    </message>
    <message id="UNLOCK_DIALOG_TEXT_FMT">
        <source>%@ on %@, %@</source>
        <extracomment>Which volume the passphrase is for. The first %@ is its size, the second the name of its disk, the third its device, such as /dev/sdb3.</extracomment>
        <translation>%@ en %@, %@</translation>
    </message>
    <message id="PASSPHRASE_ACCESSIBLE_NAME">
        <source>Passphrase</source>
        <extracomment>What a screen reader calls the field for the passphrase of an encrypted volume.</extracomment>
        <translation>Frase de contraseña</translation>
    </message>
    <message id="WRONG_PASSPHRASE_TEXT">
        <source>That was not the passphrase. Try again.</source>
        <extracomment>In the question for a passphrase that is asked again, because the one before was wrong.</extracomment>
        <translation>Esa no era la frase de contraseña. Inténtelo de nuevo.</translation>
    </message>
    <message id="UNLOCK_BUTTON_TITLE">
        <source>&amp;Unlock</source>
        <extracomment>Button of the question for a passphrase: unlocks the encrypted volume and mounts it.</extracomment>
        <translation>&amp;Desbloquear</translation>
    </message>
    <message id="CANCEL_UNLOCK_BUTTON_TITLE">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question for a passphrase: leaves the volume locked.</extracomment>
        <translation>&amp;Cancelar</translation>
    </message>
    <message id="DISK_SERVICE_GAVE_NO_REASON_TEXT">
        <source>The disk service gave no reason.</source>
        <extracomment>Stands as the reason in an alert, after “Error while mounting disk2s1:”, when the disk service gives none.</extracomment>
        <translation>El servicio de discos no ha indicado el motivo.</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUME_TITLE">
        <source>The volume could not be unmounted</source>
        <extracomment>Title of the question after a failed unmount.</extracomment>
        <translation>No se pudo desmontar el volumen</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUME_BODY_FMT">
        <source>A program may still be using the volume %@. If you force the unmount, unsaved data may be lost.</source>
        <extracomment>Text of the question after a failed unmount. %@ is the name of the device, such as disk2s1.</extracomment>
        <translation>Es posible que un programa siga usando el volumen %@. Si fuerza el desmontaje, podrían perderse los datos no guardados.</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUMES_TITLE">
        <source>The disk could not be ejected</source>
        <extracomment>Title of the question when a disk cannot be ejected because one of its volumes is in use.</extracomment>
        <translation>No se pudo expulsar el disco</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUMES_BODY_FMT">
        <source>Programs may still be using volumes on the disk %@. If you force the unmount, unsaved data may be lost.</source>
        <extracomment>Text of the question when a disk cannot be ejected because one of its volumes is in use. %@ is the name of the device, such as disk2.</extracomment>
        <translation>Es posible que algunos programas sigan usando volúmenes del disco %@. Si fuerza el desmontaje, podrían perderse los datos no guardados.</translation>
    </message>
    <message id="FORMAT_FILESYSTEM_CAPTION">
        <source>File &amp;system:</source>
        <extracomment>Caption of the menu from which the file system of the formatted volume is chosen.</extracomment>
        <translation>Sis&amp;tema de archivos:</translation>
    </message>
    <message id="FORMAT_FILESYSTEM_PLACEHOLDER">
        <source>Choose a file system</source>
        <extracomment>Shown in the menu of file systems on the Format page while none is chosen.</extracomment>
        <translation>Elija un sistema de archivos</translation>
    </message>
    <message id="FORMAT_TOO_SMALL_FMT">
        <source>for volumes of %@ or more</source>
        <extracomment>In the menu of file systems, at the end of an item that is disabled because the disk is too small for it. %@ is the least size with its unit.</extracomment>
        <translation>para volúmenes de %@ o más</translation>
    </message>
    <message id="FORMAT_TOO_LARGE_FMT">
        <source>for volumes up to %@</source>
        <extracomment>In the menu of file systems, at the end of an item that is disabled because the disk is too large for it. %@ is the largest size with its unit.</extracomment>
        <translation>para volúmenes de hasta %@</translation>
    </message>
    <message id="FORMAT_LABEL_CAPTION">
        <source>Volume &amp;label:</source>
        <extracomment>Caption of the field for the name that the formatted volume gets.</extracomment>
        <translation>&amp;Nombre del volumen:</translation>
    </message>
    <message id="FORMAT_BUTTON_TITLE">
        <source>Fo&amp;rmat…</source>
        <extracomment>Button: asks for confirmation and then formats the selected volume.</extracomment>
        <translation>&amp;Formatear…</translation>
    </message>
    <message id="FORMAT_ERASES_FMT">
        <source>Formatting erases everything on %@.</source>
        <extracomment>Format page, beside the button. %@ is the name of the disk or volume.</extracomment>
        <translation>Formatear borra todo el contenido de %@.</translation>
    </message>
    <message id="LABEL_PLACEHOLDER_TEXT">
        <source>Untitled</source>
        <extracomment>Format page, in the empty field for the label of the new volume: it will have no label.</extracomment>
        <translation>Sin nombre</translation>
    </message>
    <message id="REASON_BUSY_TEXT">
        <source>Another task is running on this disk.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>Hay otra tarea en curso en este disco.</translation>
    </message>
    <message id="REASON_INTERNAL_TEXT">
        <source>Internal disks are not ejected.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>Los discos internos no se expulsan.</translation>
    </message>
    <message id="REASON_READ_ONLY_TEXT">
        <source>It can only be read.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>Es de solo lectura.</translation>
    </message>
    <message id="REASON_PARTITIONS_TEXT">
        <source>Select one of the volumes on this disk.</source>
        <extracomment>Tool tip of a disabled button: why it is. The disk is divided into volumes.</extracomment>
        <translation>Seleccione uno de los volúmenes de este disco.</translation>
    </message>
    <message id="REASON_NO_TOOL_TEXT">
        <source>There is no tool for this file system.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>No hay herramienta para este sistema de archivos.</translation>
    </message>
    <message id="PACKAGES_MISSING_FMT">
        <source>Needs a package that is not installed: %@.</source>
        <extracomment>Format page, and tool tip of “Check” and “Repair”: the tools of the file system are missing. The packages that have them.</extracomment>
        <translation>Necesita un paquete que no está instalado: %@.</translation>
    </message>
    <message id="REASON_NOT_WHOLE_TEXT">
        <source>Select the whole disk.</source>
        <extracomment>Why “Erase Disk…” is disabled: a volume is selected, not the disk that it is on.</extracomment>
        <translation>Seleccione el disco completo.</translation>
    </message>
    <message id="REASON_NO_PARTITIONS_TEXT">
        <source>This disk cannot have partitions.</source>
        <extracomment>Why “Erase Disk…” is disabled: there can be no partitions on such a disk.</extracomment>
        <translation>Este disco no admite particiones.</translation>
    </message>
    <message id="REASON_SYSTEM_TEXT">
        <source>The running system uses this disk.</source>
        <extracomment>Why “Erase Disk…” is disabled.</extracomment>
        <translation>El sistema en ejecución usa este disco.</translation>
    </message>
    <message id="REASON_NOT_EJECTABLE_TEXT">
        <source>This disk cannot be ejected.</source>
        <extracomment>Why “Eject” is disabled.</extracomment>
        <translation>Este disco no se puede expulsar.</translation>
    </message>
    <message id="INVALID_VOLUME_LABEL_TEXT">
        <source>The volume label is not valid</source>
        <extracomment>Title of the message about a volume label that the file system does not allow.</extracomment>
        <translation>El nombre del volumen no es válido</translation>
    </message>
    <message id="INVALID_NTFS_VOLUME_NAME_TEXT">
        <source>An NTFS volume label can be at most 128 characters long. Some characters, such as emoji, count as two.</source>
        <extracomment>Text of the message about a volume label that NTFS does not allow.</extracomment>
        <translation>El nombre de un volumen NTFS puede tener como máximo 128 caracteres. Algunos caracteres, como los emojis, cuentan como dos.</translation>
    </message>
    <message id="INVALID_FAT_VOLUME_NAME_TEXT">
        <source>A FAT volume label can have up to 11 characters: capital letters A to Z, digits, spaces and symbols, but none of these: " * / : &lt; &gt; ? \ |</source>
        <extracomment>Text of the message about a volume label that FAT does not allow. Small and accented letters are not allowed. Keep the nine signs as they are.</extracomment>
        <translation>El nombre de un volumen FAT puede tener como máximo 11 caracteres: letras mayúsculas de la A a la Z sin acentos, números, espacios y símbolos, pero ninguno de estos signos: " * / : &lt; &gt; ? \ |</translation>
    </message>
    <message id="INVALID_EXFAT_VOLUME_NAME_TEXT">
        <source>An exFAT volume label can have up to 11 characters; some, such as emoji, count as two. It must not contain control characters or any of these: " * / : &lt; &gt; ? \ |</source>
        <extracomment>Text of the message about a volume label that exFAT does not allow. Keep the nine signs as they are.</extracomment>
        <translation>El nombre de un volumen exFAT puede tener como máximo 11 caracteres; algunos, como los emojis, cuentan como dos. No puede contener caracteres de control ni ninguno de estos signos: " * / : &lt; &gt; ? \ |</translation>
    </message>
    <message id="LABEL_BYTES_LIMIT_FMT">
        <source>A volume label for %1$@ can be at most %2$@ bytes long. Accented letters and characters of many scripts take two or more.</source>
        <extracomment>Text of the message about a volume label that is too long. %1$@ is the file system, %2$@ the number of bytes.</extracomment>
        <translation>Un nombre de volumen para %1$@ puede ocupar como máximo %2$@ bytes. Las letras acentuadas y los caracteres de muchos sistemas de escritura ocupan dos o más.</translation>
    </message>
    <message id="LABEL_CHARACTERS_LIMIT_FMT">
        <source>A volume label for %1$@ can be at most %2$@ characters long. Some characters, such as emoji, count as two.</source>
        <extracomment>Text of the message about a volume label that is too long. %1$@ is the file system, %2$@ the number of characters.</extracomment>
        <translation>Un nombre de volumen para %1$@ puede tener como máximo %2$@ caracteres. Algunos caracteres, como los emojis, cuentan como dos.</translation>
    </message>
    <message id="LABEL_FORBIDDEN_CHARACTERS_FMT">
        <source>A volume label for %1$@ must not contain any of these characters: %2$@</source>
        <extracomment>Text of the message about a volume label with a character that the file system does not allow. %1$@ is the file system, %2$@ all such characters, with spaces between them.</extracomment>
        <translation>Un nombre de volumen para %1$@ no puede contener ninguno de estos caracteres: %2$@</translation>
    </message>
    <message id="LABEL_LEADING_SPACE_FMT">
        <source>A volume label for %@ must not begin with a space.</source>
        <extracomment>Text of the message about a volume label that begins with a space. %@ is the file system.</extracomment>
        <translation>Un nombre de volumen para %@ no puede empezar con un espacio.</translation>
    </message>
    <message id="LABEL_FORBIDDEN_FIRST_CHARACTER_FMT">
        <source>A volume label for %1$@ must not begin with “%2$@”.</source>
        <extracomment>Text of the message about a volume label that begins with a character that may not come first. %1$@ is the file system, %2$@ the character.</extracomment>
        <translation>Un nombre de volumen para %1$@ no puede empezar con «%2$@».</translation>
    </message>
    <message id="LABEL_ASCII_ONLY_FMT">
        <source>A volume label for %@ can only contain letters without accents, digits, spaces and symbols of ASCII.</source>
        <extracomment>Text of the message about a volume label with a character beyond ASCII. %@ is the file system.</extracomment>
        <translation>Un nombre de volumen para %@ solo puede contener letras sin acentos, cifras, espacios y símbolos ASCII.</translation>
    </message>
    <message id="LABEL_UNPRINTABLE_FMT">
        <source>A volume label for %@ must not contain control characters or the replacement character (U+FFFD).</source>
        <extracomment>Text of the message about a volume label with characters that cannot be seen or were lost. %@ is the file system. U+FFFD is the sign that stands for a character that was lost.</extracomment>
        <translation>Un nombre de volumen para %@ no puede contener caracteres de control ni el carácter de reemplazo (U+FFFD).</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_TITLE">
        <source>Erase all data and format?</source>
        <extracomment>Title of the question before formatting. The name, size and device of what will be formatted are shown with it.</extracomment>
        <translation>¿Borrar todos los datos y formatear?</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_BODY">
        <source>Formatting erases all data on the disk or volume. This cannot be undone.</source>
        <extracomment>Text of the question before formatting.</extracomment>
        <translation>Al formatear se borran todos los datos del disco o volumen. Esta acción no se puede deshacer.</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_CONTINUE_BUTTON_TEXT">
        <source>&amp;Erase and Format</source>
        <extracomment>Button of the question before formatting: starts it.</extracomment>
        <translation>&amp;Borrar y formatear</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question before formatting: changes nothing.</extracomment>
        <translation>&amp;Cancelar</translation>
    </message>
    <message id="FORMAT_TARGET_NAME_CAPTION">
        <source>Name:</source>
        <extracomment>Caption in the question before formatting: the name of the disk or volume.</extracomment>
        <translation>Nombre:</translation>
    </message>
    <message id="FORMAT_TARGET_SIZE_CAPTION">
        <source>Size:</source>
        <extracomment>Caption in the question before formatting: the size of the disk or volume.</extracomment>
        <translation>Tamaño:</translation>
    </message>
    <message id="FORMAT_TARGET_DEVICE_CAPTION">
        <source>Device:</source>
        <extracomment>Caption in the question before formatting: the device, such as disk2s1 (/dev/sda1).</extracomment>
        <translation>Dispositivo:</translation>
    </message>
    <message id="FORMAT_TARGET_CONTENT_CAPTION">
        <source>Current file system:</source>
        <extracomment>Caption in the question before formatting: the file system that will be erased.</extracomment>
        <translation>Sistema de archivos actual:</translation>
    </message>
    <message id="FORMAT_QUESTION_LINE_FMT">
        <source>%@ %@</source>
        <extracomment>A line of the question before formatting: a caption, such as “Current file system:”, and what it is. Without the space where the colon brings its own.</extracomment>
        <translation>%@ %@</translation>
    </message>
    <message id="FORMAT_TARGET_NOTHING_TEXT">
        <source>not recognized</source>
        <extracomment>Stands after “Current file system:” when no known file system was found. It does not mean that there is no data.</extracomment>
        <translation>no reconocido</translation>
    </message>
    <message id="ERASE_DISK_SHEET_TITLE">
        <source>Erase Disk</source>
        <extracomment>Title of the sheet that asks how a whole disk is to be erased.</extracomment>
        <translation>Borrar disco</translation>
    </message>
    <message id="ERASE_DISK_SCHEME_CAPTION">
        <source>&amp;Partition scheme:</source>
        <extracomment>Caption in that sheet: how the disk is divided into partitions, MBR or GPT. &amp; marks the letter that leads there.</extracomment>
        <translation>&amp;Esquema de particiones:</translation>
    </message>
    <message id="ERASE_DISK_CONTINUE_BUTTON_TEXT">
        <source>&amp;Erase…</source>
        <extracomment>Button of that sheet: a question follows before anything is erased. &amp; marks its letter.</extracomment>
        <translation>&amp;Borrar…</translation>
    </message>
    <message id="CONTENT_ENCRYPTED_TEXT">
        <source>encrypted</source>
        <extracomment>What is on a volume in the place of a file system: it is encrypted. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>cifrado</translation>
    </message>
    <message id="CONTENT_LVM_TEXT">
        <source>LVM member</source>
        <extracomment>What is on a volume in the place of a file system: it is a part of an LVM volume group. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>miembro de LVM</translation>
    </message>
    <message id="CONTENT_RAID_TEXT">
        <source>RAID member</source>
        <extracomment>What is on a volume in the place of a file system: it is a part of a RAID array. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>miembro de RAID</translation>
    </message>
    <message id="CONTENT_SWAP_TEXT">
        <source>swap space</source>
        <extracomment>What is on a volume in the place of a file system: swap space of a Linux system. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>espacio de intercambio</translation>
    </message>
    <message id="CONTENT_BASIC_DATA_TEXT">
        <source>Basic data</source>
        <extracomment>Beside the identifier of a partition's type: what it means.</extracomment>
        <translation>Datos básicos</translation>
    </message>
    <message id="CONTENT_LINUX_TEXT">
        <source>Linux file system</source>
        <extracomment>Beside the identifier of a partition's type: what it means.</extracomment>
        <translation>Sistema de archivos Linux</translation>
    </message>
    <message id="CONTENT_EFI_TEXT">
        <source>EFI system</source>
        <extracomment>Beside the identifier of a partition's type: the partition that a computer with EFI starts from.</extracomment>
        <translation>Sistema EFI</translation>
    </message>
    <message id="CONTENT_RECOVERY_TEXT">
        <source>Windows recovery</source>
        <extracomment>Beside the identifier of a partition's type: the tools by which Windows is repaired.</extracomment>
        <translation>Recuperación de Windows</translation>
    </message>
    <message id="FORMAT_NEW_FILESYSTEM_CAPTION">
        <source>New file system:</source>
        <extracomment>Caption in the question before formatting: the file system that the volume will have.</extracomment>
        <translation>Sistema de archivos nuevo:</translation>
    </message>
    <message id="FORMAT_NEW_LABEL_CAPTION">
        <source>New label:</source>
        <extracomment>Caption in the question before formatting: the label that the volume will have.</extracomment>
        <translation>Nombre nuevo:</translation>
    </message>
    <message id="FORMAT_NEW_SCHEME_CAPTION">
        <source>New partition scheme:</source>
        <extracomment>Caption in the question before a whole disk is erased: how the disk will be divided into partitions, MBR or GPT.</extracomment>
        <translation>Esquema de particiones nuevo:</translation>
    </message>
    <message id="FORMAT_REFUSED_TITLE">
        <source>The disk or volume cannot be formatted</source>
        <extracomment>Title of the message about a disk or volume that is not formatted because it is in use.</extracomment>
        <translation>No se puede formatear el disco o el volumen</translation>
    </message>
    <message id="FORMAT_REFUSED_SWAP_FMT">
        <source>“%@” is in use as swap space. Turn the swap space off first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>«%@» está en uso como espacio de intercambio. Desactive primero el espacio de intercambio.</translation>
    </message>
    <message id="FORMAT_REFUSED_SYSTEM_FMT">
        <source>“%@” belongs to the running system. To erase it, start the computer from another disk.</source>
        <extracomment>Why a disk or volume is not formatted. %@ is its name.</extracomment>
        <translation>«%@» pertenece al sistema en ejecución. Para borrarlo, inicie el equipo desde otro disco.</translation>
    </message>
    <message id="FORMAT_REFUSED_LVM_FMT">
        <source>“%@” belongs to an LVM volume group that is in use. Remove it from the volume group first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>«%@» pertenece a un grupo de volúmenes LVM en uso. Quítelo primero del grupo.</translation>
    </message>
    <message id="FORMAT_REFUSED_RAID_FMT">
        <source>“%@” belongs to a RAID array that is in use. Stop the array first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>«%@» pertenece a un conjunto RAID en uso. Detenga primero el conjunto.</translation>
    </message>
    <message id="FORMAT_REFUSED_UNLOCKED_FMT">
        <source>“%@” is encrypted and unlocked. Lock it first.</source>
        <extracomment>Why an encrypted volume is not formatted. %@ is its name.</extracomment>
        <translation>«%@» está cifrado y desbloqueado. Bloquéelo primero.</translation>
    </message>
    <message id="FORMAT_REFUSED_IN_USE_FMT">
        <source>Another device is made from “%@” and uses it. Remove that device first.</source>
        <extracomment>Why a disk or volume is not formatted: the system made another device from it. %@ is its name.</extracomment>
        <translation>Otro dispositivo se basa en «%@» y lo está usando. Elimine primero ese dispositivo.</translation>
    </message>
    <message id="FORMAT_TARGET_CHANGED_TITLE">
        <source>Nothing was erased</source>
        <extracomment>Title of the message when a medium is no longer as the question before formatting showed it.</extracomment>
        <translation>No se ha borrado nada</translation>
    </message>
    <message id="FORMAT_TARGET_CHANGED_FMT">
        <source>“%@” has changed since you were asked. Check what is on it before you format it.</source>
        <extracomment>Text of the message when a medium is no longer as the question before formatting showed it. %@ is its name.</extracomment>
        <translation>«%@» ha cambiado desde que se pidió la confirmación. Compruebe su contenido antes de formatear.</translation>
    </message>
    <message id="ACTIVITY_FORMATTING_FMT">
        <source>Formatting “%@”…</source>
        <extracomment>Shown while a volume is formatted. %@ is its name.</extracomment>
        <translation>Formateando «%@»…</translation>
    </message>
    <message id="ACTIVITY_MOUNTING_TEXT">
        <source>Mounting…</source>
        <extracomment>Info page, while the selected volume is mounted.</extracomment>
        <translation>Montando…</translation>
    </message>
    <message id="ACTIVITY_UNMOUNTING_TEXT">
        <source>Unmounting: what is still in memory is being written. Do not unplug the disk.</source>
        <extracomment>Info page, while the selected volume is unmounted.</extracomment>
        <translation>Desmontando: se está escribiendo lo que queda en memoria. No desconecte el disco.</translation>
    </message>
    <message id="ACTIVITY_EJECTING_TEXT">
        <source>Ejecting: what is still in memory is being written. Do not unplug the disk.</source>
        <extracomment>Info page, while the selected disk is ejected.</extracomment>
        <translation>Expulsando: se está escribiendo lo que queda en memoria. No desconecte el disco.</translation>
    </message>
    <message id="ACTIVITY_WAITING_TEXT">
        <source>Waiting for your answer.</source>
        <extracomment>Info page, in place of what runs, while the window asks the user something about it.</extracomment>
        <translation>A la espera de su respuesta.</translation>
    </message>
    <message id="CHECK_BUTTON_TITLE">
        <source>&amp;Check</source>
        <extracomment>Button: looks for errors in the file system of the volume and changes nothing.</extracomment>
        <translation>&amp;Comprobar</translation>
    </message>
    <message id="REPAIR_BUTTON_TITLE">
        <source>&amp;Repair</source>
        <extracomment>Button: corrects errors in the file system of the volume.</extracomment>
        <translation>&amp;Reparar</translation>
    </message>
    <message id="STOP_BUTTON_TITLE">
        <source>Stop</source>
        <extracomment>Button beside the progress of a check: ends it. Nothing on the volume has been changed.</extracomment>
        <translation>Detener</translation>
    </message>
    <message id="OUTPUT_ACCESSIBLE_NAME">
        <source>Check and repair output</source>
        <extracomment>What a screen reader calls the view that shows what the checking and repairing tools print.</extracomment>
        <translation>Salida de la comprobación y la reparación</translation>
    </message>
    <message id="OUTPUT_PLACEHOLDER_TEXT">
        <source>What the check prints appears here.</source>
        <extracomment>Maintenance page, in the empty field for the output.</extracomment>
        <translation>Aquí aparece la salida de la comprobación.</translation>
    </message>
    <message id="OUTPUT_PLACEHOLDER_REPAIR_TEXT">
        <source>What the repair prints appears here.</source>
        <extracomment>In the empty output view while a repair has not printed anything.</extracomment>
        <translation>Aquí aparece la salida de la reparación.</translation>
    </message>
    <message id="ACTIVITY_CHECKING_FMT">
        <source>Checking “%@”…</source>
        <extracomment>Shown while a volume is checked. %@ is its name.</extracomment>
        <translation>Comprobando «%@»…</translation>
    </message>
    <message id="ACTIVITY_REPAIRING_FMT">
        <source>Repairing “%@”…</source>
        <extracomment>Shown while a volume is repaired. %@ is its name.</extracomment>
        <translation>Reparando «%@»…</translation>
    </message>
    <message id="CHECK_HINT_TEXT">
        <source>A check only reads. A mounted volume is unmounted meanwhile.</source>
        <extracomment>Maintenance page, before anything has run: what a check does.</extracomment>
        <translation>La comprobación solo lee. Un volumen montado se desmonta mientras tanto.</translation>
    </message>
    <message id="VERDICT_CLEAN_FMT">
        <source>%@: no errors found</source>
        <extracomment>Maintenance page, after a check. %@ is the name of the volume.</extracomment>
        <translation>%@: no se encontraron errores</translation>
    </message>
    <message id="VERDICT_ERRORS_FMT">
        <source>%@: errors found, repair it</source>
        <extracomment>Maintenance page, after a check. %@ is the name of the volume.</extracomment>
        <translation>%@: hay errores, conviene repararlo</translation>
    </message>
    <message id="VERDICT_REPAIRED_FMT">
        <source>%@: in order after the repair</source>
        <extracomment>Maintenance page, after a repair. %@ is the name of the volume.</extracomment>
        <translation>%@: correcto tras la reparación</translation>
    </message>
    <message id="VERDICT_NOT_REPAIRED_FMT">
        <source>%@: errors remain</source>
        <extracomment>Maintenance page, after a repair. %@ is the name of the volume.</extracomment>
        <translation>%@: quedan errores</translation>
    </message>
    <message id="VERDICT_UNFINISHED_FMT">
        <source>%@: not finished, nothing is known</source>
        <extracomment>Maintenance page, after a check or repair that could not be carried out. %@ is the name of the volume.</extracomment>
        <translation>%@: sin terminar, estado desconocido</translation>
    </message>
    <message id="VERDICT_TIME_FMT">
        <source>%@, took %@</source>
        <extracomment>Beside the verdict. The first %@ is the time of day at which it ended, the second one how long it took, such as 2:51 (minutes and seconds).</extracomment>
        <translation>%@, duración %@</translation>
    </message>
    <message id="DEVICE_GONE_TITLE_FMT">
        <source>“%@” is no longer there</source>
        <extracomment>Title of a message: a disk was unplugged during a check or a repair. %@ is its name.</extracomment>
        <translation>«%@» ya no está</translation>
    </message>
    <message id="DEVICE_GONE_DURING_CHECK_TEXT">
        <source>It was removed before the check had ended. Whether the file system has errors is not known. Connect the disk again and repeat the check.</source>
        <extracomment>Below the title that tells that the disk is no longer there.</extracomment>
        <translation>El disco se retiró antes de que terminara la comprobación. No se sabe si el sistema de archivos tiene errores. Vuelva a conectar el disco y repita la comprobación.</translation>
    </message>
    <message id="DEVICE_GONE_DURING_REPAIR_TEXT">
        <source>It was removed before the repair had ended. The file system may be damaged. Connect the disk again and check it.</source>
        <extracomment>Below the title that tells that the disk is no longer there.</extracomment>
        <translation>El disco se retiró antes de que terminara la reparación. Es posible que el sistema de archivos esté dañado. Vuelva a conectar el disco y compruébelo.</translation>
    </message>
    <message id="DEVICE_UNREADABLE_TITLE_FMT">
        <source>“%@” cannot be read to its end</source>
        <extracomment>Title of a message: reads from a disk failed during a check or a repair. %@ is its name.</extracomment>
        <translation>«%@» no se puede leer hasta el final</translation>
    </message>
    <message id="DEVICE_UNREADABLE_TEXT">
        <source>The device reports errors, so it is not known what state the file system is in. Such a disk may be failing: copy what you need from it while you can.</source>
        <extracomment>Below the title that tells that a disk cannot be read to its end.</extracomment>
        <translation>El dispositivo notifica errores, por lo que no se sabe en qué estado está el sistema de archivos. Un disco así puede estar fallando: copie lo que necesite mientras sea posible.</translation>
    </message>
    <message id="CLOSE_QUESTION_REPAIRING_FMT">
        <source>“%@” is being repaired</source>
        <extracomment>Title of the question when the window is closed during a repair. %@ is the name of the volume.</extracomment>
        <translation>Se está reparando «%@»</translation>
    </message>
    <message id="CLOSE_QUESTION_FORMATTING_FMT">
        <source>“%@” is being formatted</source>
        <extracomment>Title of the question when the window is closed during a format. %@ is the name of the disk or volume.</extracomment>
        <translation>Se está formateando «%@»</translation>
    </message>
    <message id="CLOSE_QUESTION_SEVERAL_TITLE">
        <source>Several disks are being repaired or formatted</source>
        <extracomment>Title of the same question when several disks are at work.</extracomment>
        <translation>Se están reparando o formateando varios discos</translation>
    </message>
    <message id="CLOSE_QUESTION_TEXT">
        <source>If it is stopped now, the file system can be left damaged and data can be lost. Wait until it has finished.</source>
        <extracomment>Below the title of the question when the window is closed.</extracomment>
        <translation>Si se detiene ahora, el sistema de archivos puede quedar dañado y se pueden perder datos. Espere hasta que termine.</translation>
    </message>
    <message id="CLOSE_QUESTION_WAIT_BUTTON_TITLE">
        <source>&amp;Wait</source>
        <extracomment>Button of the question when the window is closed: leaves the window open.</extracomment>
        <translation>&amp;Esperar</translation>
    </message>
    <message id="CLOSE_QUESTION_STOP_BUTTON_TITLE">
        <source>&amp;Stop and Close</source>
        <extracomment>Button of the question when the window is closed: stops what is running and closes the window.</extracomment>
        <translation>&amp;Detener y cerrar</translation>
    </message>
</context>
</TS>
