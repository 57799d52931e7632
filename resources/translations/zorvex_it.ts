<?xml version="1.0" encoding="utf-8"?>
<!-- SPDX-License-Identifier: MIT -->
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
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
        <translation>&amp;File</translation>
    </message>
    <message id="REFRESH_MENU_ITEM_TITLE">
        <source>&amp;Refresh</source>
        <extracomment>Item of the File menu: reads again which file systems are installed and which disks are there. It changes nothing.</extracomment>
        <translation>A&amp;ggiorna</translation>
    </message>
    <message id="CLOSE_MENU_ITEM_TITLE">
        <source>&amp;Close Window</source>
        <extracomment>Item of the File menu. Closing the window ends the program.</extracomment>
        <translation>&amp;Chiudi finestra</translation>
    </message>
    <message id="QUIT_MENU_ITEM_TITLE">
        <source>&amp;Quit</source>
        <extracomment>Item of the File menu: ends the program.</extracomment>
        <translation>&amp;Esci</translation>
    </message>
    <message id="EDIT_MENU_TITLE">
        <source>&amp;Edit</source>
        <extracomment>Menu in the menu bar.</extracomment>
        <translation>&amp;Modifica</translation>
    </message>
    <message id="UNDO_MENU_ITEM_TITLE">
        <source>&amp;Undo</source>
        <extracomment>Item of the Edit menu: takes back what was typed last.</extracomment>
        <translation>&amp;Annulla</translation>
    </message>
    <message id="CUT_MENU_ITEM_TITLE">
        <source>Cu&amp;t</source>
        <extracomment>Item of the Edit menu: moves the selected text of the field to the clipboard.</extracomment>
        <translation>Ta&amp;glia</translation>
    </message>
    <message id="COPY_MENU_ITEM_TITLE">
        <source>&amp;Copy</source>
        <extracomment>Item of the Edit menu: copies the selected text. In the menu of a row of the tree: copies the name in the row.</extracomment>
        <translation>&amp;Copia</translation>
    </message>
    <message id="PASTE_MENU_ITEM_TITLE">
        <source>&amp;Paste</source>
        <extracomment>Item of the Edit menu: puts the text of the clipboard into the field.</extracomment>
        <translation>&amp;Incolla</translation>
    </message>
    <message id="SELECT_ALL_MENU_ITEM_TITLE">
        <source>Select &amp;All</source>
        <extracomment>Item of the Edit menu: selects all text of the field or view.</extracomment>
        <translation>Seleziona &amp;tutto</translation>
    </message>
    <message id="DISK_MENU_TITLE">
        <source>&amp;Disk</source>
        <extracomment>Menu in the menu bar: what can be done with the selected disk or volume.</extracomment>
        <translation>&amp;Disco</translation>
    </message>
    <message id="FORMAT_MENU_ITEM_TITLE">
        <source>&amp;Format…</source>
        <extracomment>Item of the Disk menu and the menu of a row: shows the page on which a volume is formatted. The dots say that nothing happens yet.</extracomment>
        <translation>&amp;Formatta…</translation>
    </message>
    <message id="ERASE_DISK_MENU_ITEM_TITLE">
        <source>Erase &amp;Disk…</source>
        <extracomment>Item of the Disk menu and of the menu of a row: opens a sheet that asks how the whole disk is to be erased. &amp; marks the letter that chooses it.</extracomment>
        <translation>Inizializza &amp;disco…</translation>
    </message>
    <message id="CHECK_MENU_ITEM_TITLE">
        <source>Chec&amp;k</source>
        <extracomment>Item of the Disk menu and the menu of a row: looks for errors in the file system of the selected volume and changes nothing.</extracomment>
        <translation>Con&amp;trolla</translation>
    </message>
    <message id="REPAIR_MENU_ITEM_TITLE">
        <source>&amp;Repair</source>
        <extracomment>Item of the Disk menu and the menu of a row: corrects errors in the file system of the selected volume.</extracomment>
        <translation>&amp;Ripara</translation>
    </message>
    <message id="SHOW_IN_FILE_MANAGER_MENU_ITEM_TITLE">
        <source>&amp;Show in File Manager</source>
        <extracomment>Item of the Disk menu and the menu of a row: opens the folder at which the selected volume is mounted.</extracomment>
        <translation>&amp;Mostra nel gestore dei file</translation>
    </message>
    <message id="COPY_DEVICE_PATH_MENU_ITEM_TITLE">
        <source>Copy Device &amp;Path</source>
        <extracomment>Item of the menu of a row of the tree: puts the path of its device, such as /dev/sda1, on the clipboard.</extracomment>
        <translation>Copia &amp;percorso del dispositivo</translation>
    </message>
    <message id="HELP_MENU_TITLE">
        <source>&amp;Help</source>
        <extracomment>Menu in the menu bar.</extracomment>
        <translation>&amp;Aiuto</translation>
    </message>
    <message id="MANUAL_MENU_ITEM_TITLE">
        <source>User &amp;Manual</source>
        <extracomment>Item of the Help menu: opens the manual, a PDF document.</extracomment>
        <translation>&amp;Manuale utente</translation>
    </message>
    <message id="ABOUT_MENU_ITEM_TITLE">
        <source>&amp;About Zorvex Disk Manager</source>
        <extracomment>Item of the Help menu: shows the version and what the program is.</extracomment>
        <translation>&amp;Informazioni su Zorvex Disk Manager</translation>
    </message>
    <message id="ABOUT_TEXT">
        <source>Version %@

Mounts, ejects, formats, checks and repairs disks and volumes.

MIT License
%@</source>
        <extracomment>Text of the About box below the name of the program. The first %@ is the version, such as 1.0.0; the second is the address of the program’s page on the web.</extracomment>
        <translation>Versione %@

Monta, espelle, formatta, controlla e ripara dischi e volumi.

Licenza MIT
%@</translation>
    </message>
    <message id="USER_MANUAL_NOT_FOUND_TITLE">
        <source>The user manual could not be opened</source>
        <extracomment>Title of the message when Help &gt; User Manual fails.</extracomment>
        <translation>Impossibile aprire il manuale utente</translation>
    </message>
    <message id="USER_MANUAL_NOT_FOUND_TEXT">
        <source>The manual is not installed, or there is no program to open PDF documents.</source>
        <extracomment>Text of the message when Help &gt; User Manual fails.</extracomment>
        <translation>Il manuale non è installato oppure non c’è alcun programma in grado di mostrare documenti PDF.</translation>
    </message>
    <message id="DISK_TREE_ACCESSIBLE_NAME">
        <source>Disks and volumes</source>
        <extracomment>What a screen reader calls the tree of disks at the side of the window.</extracomment>
        <translation>Dischi e volumi</translation>
    </message>
    <message id="NO_DISKS_TITLE">
        <source>No disks</source>
        <extracomment>In the empty tree, in bold.</extracomment>
        <translation>Nessun disco</translation>
    </message>
    <message id="NO_DISKS_TEXT">
        <source>A disk that you connect appears here.</source>
        <extracomment>In the empty tree, below the words “No disks”.</extracomment>
        <translation>Quello che colleghi compare qui.</translation>
    </message>
    <message id="NO_SERVICE_TITLE">
        <source>No disk service</source>
        <extracomment>In the empty tree, in bold, when the disk service is not there.</extracomment>
        <translation>Nessun servizio dei dischi</translation>
    </message>
    <message id="NO_SERVICE_TEXT">
        <source>The disk service (udisks2) is not running.</source>
        <extracomment>In the empty tree, when the service that tells of disks (UDisks2) does not run.</extracomment>
        <translation>Il servizio dei dischi (udisks2) non è in esecuzione.</translation>
    </message>
    <message id="ROW_MOUNTED_TEXT">
        <source>mounted</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a volume in the tree: files on it can be used.</extracomment>
        <translation>montato</translation>
    </message>
    <message id="ROW_NOT_MOUNTED_TEXT">
        <source>not mounted</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a volume in the tree: files on it cannot be used at present.</extracomment>
        <translation>non montato</translation>
    </message>
    <message id="ROW_NO_CONTENT_TEXT">
        <source>none</source>
        <extracomment>Info page, in the place of the content type of a disk that has none.</extracomment>
        <translation>nessuno</translation>
    </message>
    <message id="ROW_BUSY_TEXT">
        <source>busy</source>
        <extracomment>Said of a row of the tree on whose disk an operation runs.</extracomment>
        <translation>occupato</translation>
    </message>
    <message id="ROW_DISK_WITH_PARTITIONS_TEXT">
        <source>disk with partitions</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a whole disk in the tree that is divided into partitions.</extracomment>
        <translation>disco con partizioni</translation>
    </message>
    <message id="LIST_SEPARATOR_TEXT">
        <source>, </source>
        <extracomment>Stands between what a screen reader says, and the tool tip shows, of a row: name, file system, state. With the space that follows it, where the language has one.</extracomment>
        <translation>, </translation>
    </message>
    <message id="DISK_ICON_ACCESSIBLE_NAME">
        <source>Disk icon</source>
        <extracomment>What a screen reader calls the large picture of the selected disk.</extracomment>
        <translation>Icona del disco</translation>
    </message>
    <message id="DISK_MAP_ACCESSIBLE_NAME">
        <source>Volumes on this disk</source>
        <extracomment>Name, for a screen reader, of the drawing on the Info page that shows the volumes of a disk side by side.</extracomment>
        <translation>Volumi su questo disco</translation>
    </message>
    <message id="DIVIDER_ACCESSIBLE_NAME">
        <source>Divider</source>
        <extracomment>What a screen reader calls the line between the tree and the pages, which can be moved with the arrow keys.</extracomment>
        <translation>Separatore</translation>
    </message>
    <message id="DIVIDER_TOOL_TIP">
        <source>Drag to resize the list of disks. With the keyboard: press Tab until the divider is selected, then Left or Right.</source>
        <extracomment>Tool tip of the bar between the list of disks and the pages, also read out by screen readers.</extracomment>
        <translation>Trascina il separatore per ridimensionare l’elenco dei dischi. Da tastiera: raggiungilo con Tab e premi le frecce sinistra e destra.</translation>
    </message>
    <message id="INFO_TAB_TITLE">
        <source>Info</source>
        <extracomment>Title of the tab with the properties of the selected disk or volume.</extracomment>
        <translation>Informazioni</translation>
    </message>
    <message id="FORMAT_TAB_TITLE">
        <source>Format</source>
        <extracomment>Title of the tab on which a volume is formatted.</extracomment>
        <translation>Formatta</translation>
    </message>
    <message id="MAINTENANCE_TAB_TITLE">
        <source>Maintenance</source>
        <extracomment>Title of the tab on which a volume is checked and repaired.</extracomment>
        <translation>Manutenzione</translation>
    </message>
    <message id="SELECT_A_DISK_TEXT">
        <source>Select a disk or volume</source>
        <extracomment>Shown in place of the name while nothing is selected in the tree.</extracomment>
        <translation>Seleziona un disco o un volume</translation>
    </message>
    <message id="SELECT_A_DISK_HINT_TEXT">
        <source>What it holds and what can be done with it appears here.</source>
        <extracomment>Shown below SELECT_A_DISK_TEXT.</extracomment>
        <translation>Qui compare che cosa contiene e che cosa se ne può fare.</translation>
    </message>
    <message id="NO_SERVICE_HINT_TEXT">
        <source>Disks appear here as soon as the disk service runs. To start it:</source>
        <extracomment>On the Info page while the disk service is not there, above the command that starts it.</extracomment>
        <translation>I dischi compaiono qui appena il servizio dei dischi è in esecuzione. Per avviarlo:</translation>
    </message>
    <message id="PLACE_VOLUME_ON_FMT">
        <source>Volume on %@</source>
        <extracomment>Info page, below the space of a volume: which disk it is on. %@ is the name of the disk.</extracomment>
        <translation>Volume su %@</translation>
    </message>
    <message id="MEDIUM_INTERNAL_TEXT">
        <source>Internal disk</source>
        <extracomment>Kind of a medium: a disk inside the computer.</extracomment>
        <translation>Disco interno</translation>
    </message>
    <message id="MEDIUM_EXTERNAL_TEXT">
        <source>External disk</source>
        <extracomment>Kind of a medium: a disk that is connected from outside.</extracomment>
        <translation>Disco esterno</translation>
    </message>
    <message id="MEDIUM_REMOVABLE_TEXT">
        <source>Removable disk</source>
        <extracomment>Kind of disk: it can be removed. It may be a stick, or a card in a reader.</extracomment>
        <translation>Disco rimovibile</translation>
    </message>
    <message id="MEDIUM_CARD_TEXT">
        <source>Memory card</source>
        <extracomment>Kind of a medium.</extracomment>
        <translation>Scheda di memoria</translation>
    </message>
    <message id="MEDIUM_DISC_TEXT">
        <source>Disc</source>
        <extracomment>Kind of a medium: an optical disc, such as a DVD.</extracomment>
        <translation>Disco ottico</translation>
    </message>
    <message id="MEDIUM_IMAGE_TEXT">
        <source>Disk image</source>
        <extracomment>Kind of a medium: a file that is attached as a disk.</extracomment>
        <translation>Immagine disco</translation>
    </message>
    <message id="MEDIUM_UNLOCKED_TEXT">
        <source>Unlocked volume</source>
        <extracomment>Kind of a medium: what can be read of an encrypted volume that has been unlocked.</extracomment>
        <translation>Volume sbloccato</translation>
    </message>
    <message id="MOUNT_BUTTON_TITLE">
        <source>&amp;Mount</source>
        <extracomment>Button and menu item: makes the files of the selected volume accessible. Keep it short.</extracomment>
        <translation>Mo&amp;nta</translation>
    </message>
    <message id="UNMOUNT_BUTTON_TITLE">
        <source>&amp;Unmount</source>
        <extracomment>Button and menu item: finishes the use of the selected volume, so that its files are no longer accessible. Keep it short.</extracomment>
        <translation>&amp;Smonta</translation>
    </message>
    <message id="EJECT_BUTTON_TITLE">
        <source>E&amp;ject</source>
        <extracomment>Button and menu item: unmounts all volumes of the selected disk and makes it safe to take out. Keep it short.</extracomment>
        <translation>&amp;Espelli</translation>
    </message>
    <message id="FILESYSTEM_CAPTION">
        <source>File system:</source>
        <extracomment>Caption of a property: NTFS, exFAT and so on.</extracomment>
        <translation>File system:</translation>
    </message>
    <message id="BSD_NAME_CAPTION">
        <source>Device:</source>
        <extracomment>Caption of a property: the short name of the device, such as disk2s1.</extracomment>
        <translation>Dispositivo:</translation>
    </message>
    <message id="WHOLE_DEVICE_CAPTION">
        <source>Whole device:</source>
        <extracomment>Caption of a property answered by Yes or No: No for a partition of a device.</extracomment>
        <translation>Dispositivo intero:</translation>
    </message>
    <message id="REMOVABLE_CAPTION">
        <source>Removable:</source>
        <extracomment>Caption of a property answered by Yes or No: whether the medium can be taken out of its drive.</extracomment>
        <translation>Rimovibile:</translation>
    </message>
    <message id="CONTENT_HINT_CAPTION">
        <source>Content type:</source>
        <extracomment>Caption of a property: what the partition table says is in the partition, such as Windows_NTFS.</extracomment>
        <translation>Tipo di contenuto:</translation>
    </message>
    <message id="EJECTABLE_CAPTION">
        <source>Ejectable:</source>
        <extracomment>Caption of a property answered by Yes or No: whether the drive ejects its medium by itself.</extracomment>
        <translation>Espellibile:</translation>
    </message>
    <message id="BLOCK_SIZE_CAPTION">
        <source>Block size:</source>
        <extracomment>Caption of a property: the block size of the device, such as 512 bytes.</extracomment>
        <translation>Dimensione dei blocchi:</translation>
    </message>
    <message id="MOUNTED_AT_CAPTION">
        <source>Mounted at:</source>
        <extracomment>Caption of a property: the folder in which the files of the volume are found, shown as a link.</extracomment>
        <translation>Montato su:</translation>
    </message>
    <message id="MOUNT_PATH_ACCESSIBLE_NAME">
        <source>Mount point</source>
        <extracomment>What a screen reader calls the link to the folder at which the volume is mounted.</extracomment>
        <translation>Punto di montaggio</translation>
    </message>
    <message id="MOUNT_PATH_LINK_DESCRIPTION">
        <source>Link: opens the file manager</source>
        <extracomment>Said by a screen reader after the mount point while it is shown as a link: what following it does.</extracomment>
        <translation>Collegamento: apre il gestore dei file</translation>
    </message>
    <message id="FOLDER_NOT_OPENED_TITLE">
        <source>The folder could not be opened</source>
        <extracomment>Title of the alert when the file manager could not open the folder at which a volume is mounted.</extracomment>
        <translation>Impossibile aprire la cartella</translation>
    </message>
    <message id="FOLDER_NOT_OPENED_TEXT_FMT">
        <source>The volume is mounted at %@, but the file manager could not open that folder.</source>
        <extracomment>Text of the alert when the file manager could not open the folder at which a volume is mounted. %@ is the path of the folder.</extracomment>
        <translation>Il volume è montato in %@, ma il gestore dei file non è riuscito ad aprire la cartella.</translation>
    </message>
    <message id="VOLUME_OUT_OF_REACH_TITLE">
        <source>You cannot open this volume</source>
        <extracomment>Title of the notice after a volume was mounted in a folder that the user may not open.</extracomment>
        <translation>Non puoi aprire questo volume</translation>
    </message>
    <message id="VOLUME_OUT_OF_REACH_TEXT_FMT">
        <source>The disk service could not mount “%@” for you. It is mounted at %@, which only the administrator can open.</source>
        <extracomment>Text of the notice after a volume was mounted in a folder that the user may not open. The first %@ is the name of the volume, the second the path of the folder.</extracomment>
        <translation>Il servizio dei dischi non ha potuto montare “%@” per te. Il volume è montato in %@, che solo l’amministratore può aprire.</translation>
    </message>
    <message id="START_NOBODY_ASKS_TITLE">
        <source>The password cannot be asked for</source>
        <extracomment>Title of the message when no program in the session can ask for the password. No window opens.</extracomment>
        <translation>Non è possibile chiedere la password</translation>
    </message>
    <message id="START_NOBODY_ASKS_TEXT">
        <source>No program that asks for passwords (a polkit agent) is running in this session. Install one, such as lxpolkit or mate-polkit, log in again and start Zorvex Disk Manager. Members of the group zorvex-admin need no password.</source>
        <extracomment>Text of the message when no program in the session can ask for the password. Keep “polkit”, the names of the packages and “zorvex-admin”.</extracomment>
        <translation>In questa sessione non è in esecuzione alcun programma che chieda le password (un agente polkit). Installane uno, ad esempio lxpolkit o mate-polkit, accedi di nuovo e avvia Zorvex Disk Manager. Ai membri del gruppo zorvex-admin non serve la password.</translation>
    </message>
    <message id="START_REFUSED_TITLE">
        <source>Administrator rights were not granted</source>
        <extracomment>Title of the message when the user may not run the program as administrator, or the password was wrong. No window opens.</extracomment>
        <translation>I diritti di amministratore non sono stati concessi</translation>
    </message>
    <message id="START_REFUSED_TEXT">
        <source>Start Zorvex Disk Manager again and enter an administrator’s password, or ask an administrator to add you to the group zorvex-admin.</source>
        <extracomment>Text of the message when the user may not run the program as administrator, or the password was wrong. Keep “zorvex-admin”.</extracomment>
        <translation>Avvia di nuovo Zorvex Disk Manager e inserisci la password di un amministratore, oppure chiedi a un amministratore di aggiungerti al gruppo zorvex-admin.</translation>
    </message>
    <message id="START_NO_AUTHORITY_TITLE">
        <source>Administrator rights cannot be requested</source>
        <extracomment>Title of the message when the authorization service cannot be reached. No window opens.</extracomment>
        <translation>Non è possibile richiedere i diritti di amministratore</translation>
    </message>
    <message id="START_NO_AUTHORITY_TEXT">
        <source>The authorization service (polkit) does not answer. Make sure that the package polkitd is installed and the service is running, then start Zorvex Disk Manager again.</source>
        <extracomment>Text of the message when the authorization service cannot be reached. Keep “polkit” and “polkitd”.</extracomment>
        <translation>Il servizio di autorizzazione (polkit) non risponde. Verifica che il pacchetto polkitd sia installato e che il servizio sia in esecuzione, poi avvia di nuovo Zorvex Disk Manager.</translation>
    </message>
    <message id="START_NO_ANSWER_TITLE">
        <source>Zorvex Disk Manager does not answer</source>
        <extracomment>Title of the message when the program runs already and does not answer. No second window opens.</extracomment>
        <translation>Zorvex Disk Manager non risponde</translation>
    </message>
    <message id="START_NO_ANSWER_TEXT">
        <source>It is running already, but its window does not respond. Wait until it does, or end it, then start it again.</source>
        <extracomment>Text of the message when the program runs already and does not answer.</extracomment>
        <translation>Il programma è già in esecuzione, ma la sua finestra non risponde. Attendi che risponda o terminalo, poi avvialo di nuovo.</translation>
    </message>
    <message id="DEVICE_NODE_TOOL_TIP_FMT">
        <source>Device node: %@</source>
        <extracomment>Tool tip of the device name. %@ is the system&apos;s name of the device, such as /dev/sda1.</extracomment>
        <translation>File di dispositivo: %@</translation>
    </message>
    <message id="BOOLEAN_VALUE_YES_TEXT">
        <source>Yes</source>
        <extracomment>Value of a property.</extracomment>
        <translation>Sì</translation>
    </message>
    <message id="BOOLEAN_VALUE_NO_TEXT">
        <source>No</source>
        <extracomment>Value of a property.</extracomment>
        <translation>No</translation>
    </message>
    <message id="BYTES_TEXT">
        <source>bytes</source>
        <extracomment>Stands after an exact number of bytes, such as 512 or 1 000 000.</extracomment>
        <translation>byte</translation>
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
        <translation>%@ liberi su %@</translation>
    </message>
    <message id="USED_SPACE_FMT">
        <source>%@ used (%@%%)</source>
        <extracomment>Info page, below the bar of a mounted volume. The first %@ is the used space with its unit, the second one a percentage.</extracomment>
        <translation>%@ usati (%@%%)</translation>
    </message>
    <message id="ALMOST_FULL_FMT">
        <source>%@ used (%@%%), almost full</source>
        <extracomment>In the place of USED_SPACE_FMT from 90 % on.</extracomment>
        <translation>%@ usati (%@%%), quasi pieno</translation>
    </message>
    <message id="PERCENT_FMT">
        <source>%@%%</source>
        <extracomment>A percentage beside a bar. %@ is the number, %% is shown as %.</extracomment>
        <translation>%@%%</translation>
    </message>
    <message id="STATUS_SPACE_UNKNOWN_TEXT">
        <source>It is not known how full the volume is.</source>
        <extracomment>Info page: a mounted volume whose free space is not known.</extracomment>
        <translation>Non si sa quanto sia pieno il volume.</translation>
    </message>
    <message id="STATUS_LOCKED_TEXT">
        <source>Encrypted and locked. Mount asks for the passphrase.</source>
        <extracomment>Info page: an encrypted volume that is locked. “Mount” is the button.</extracomment>
        <translation>Crittografato e bloccato. “Monta” chiede la frase segreta.</translation>
    </message>
    <message id="STATUS_UNLOCKED_TEXT">
        <source>Encrypted and unlocked. What it holds has a row of its own.</source>
        <extracomment>Info page: an encrypted volume whose content has a row of its own in the tree.</extracomment>
        <translation>Crittografato e sbloccato. Il contenuto ha una riga propria.</translation>
    </message>
    <message id="STATUS_SWAP_TEXT">
        <source>Swap space: the system keeps memory here, not files.</source>
        <extracomment>Info page: swap space has no files to show.</extracomment>
        <translation>Spazio di swap: qui il sistema conserva memoria, non file.</translation>
    </message>
    <message id="STATUS_LVM_TEXT">
        <source>Belongs to a volume group (LVM).</source>
        <extracomment>Info page: a part of a volume group of the Logical Volume Manager.</extracomment>
        <translation>Appartiene a un gruppo di volumi (LVM).</translation>
    </message>
    <message id="STATUS_RAID_TEXT">
        <source>Belongs to a RAID array.</source>
        <extracomment>Info page: a part of a RAID array.</extracomment>
        <translation>Appartiene a un array RAID.</translation>
    </message>
    <message id="STATUS_NOT_RECOGNIZED_TEXT">
        <source>No file system was recognized.</source>
        <extracomment>Info page: a medium without a known file system.</extracomment>
        <translation>Nessun file system riconosciuto.</translation>
    </message>
    <message id="STATUS_OTHER_CONTENT_TEXT">
        <source>It holds data that cannot be shown here.</source>
        <extracomment>Sentence on the Info page for a volume whose content was recognized, but is no file system that can be mounted: a journal, a part of a cluster. It stands below the bar.</extracomment>
        <translation>Contiene dati che qui non si possono mostrare.</translation>
    </message>
    <message id="GO_TO_FORMAT_TEXT">
        <source>Give it one on the Format page</source>
        <extracomment>Link on the Info page, below STATUS_NOT_RECOGNIZED_TEXT: shows the Format page.</extracomment>
        <translation>Creane uno nella pagina Formatta</translation>
    </message>
    <message id="STATUS_NOT_MOUNTED_TEXT">
        <source>Not mounted. Mount it to open it and to see how full it is.</source>
        <extracomment>Info page: a volume with a file system that is not mounted. “Mount” is the button.</extracomment>
        <translation>Non montato. Montalo per aprirlo e vedere quanto è pieno.</translation>
    </message>
    <message id="STATUS_READ_ONLY_TEXT">
        <source>Read-only: it can be checked, but not repaired or formatted.</source>
        <extracomment>Added to one of the sentences above it, for a volume that cannot be written.</extracomment>
        <translation>Sola lettura: si può controllare, ma non riparare né formattare.</translation>
    </message>
    <message id="STATUS_PARTITIONS_FMT">
        <source>Volumes: %@, mounted: %@.</source>
        <extracomment>Info page: a disk with partitions. The first %@ is the number of its volumes, the second one that of the mounted ones.</extracomment>
        <translation>Volumi: %@, montati: %@.</translation>
    </message>
    <message id="STATUS_UNUSED_FMT">
        <source>%@ belong to no volume.</source>
        <extracomment>Added to STATUS_PARTITIONS_FMT. %@ is a size with its unit.</extracomment>
        <translation>%@ non appartengono a nessun volume.</translation>
    </message>
    <message id="STATUS_HIDDEN_FMT">
        <source>Partitions that are not listed, such as those that start the computer: %@.</source>
        <extracomment>Info page of a disk: partitions that have no row in the tree. %@ is their size with its unit.</extracomment>
        <translation>Partizioni non elencate, ad esempio di avvio: %@.</translation>
    </message>
    <message id="MAP_HIDDEN_FMT">
        <source>Partition that is not listed, %@</source>
        <extracomment>Tip of a part of the map of a disk: a partition that has no row in the tree. %@ is its size with its unit.</extracomment>
        <translation>Partizione non elencata, %@</translation>
    </message>
    <message id="FORCE_UNMOUNT_BUTTON_TITLE">
        <source>&amp;Force Unmount</source>
        <extracomment>Button of the question after a failed unmount: unmounts although the volume is in use.</extracomment>
        <translation>&amp;Forza smontaggio</translation>
    </message>
    <message id="CANCEL_UNMOUNT_BUTTON_TITLE">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question after a failed unmount: leaves everything as it is.</extracomment>
        <translation>&amp;Annulla</translation>
    </message>
    <message id="UNLOCK_DIALOG_TITLE">
        <source>Unlock the volume?</source>
        <extracomment>Title of the question for the passphrase of an encrypted volume.</extracomment>
        <translation>Sbloccare il volume?</translation>
    </message>
    <message id="UNLOCK_DIALOG_TEXT_FMT">
        <source>%@ on %@, %@</source>
        <extracomment>Which volume the passphrase is for. The first %@ is its size, the second the name of its disk, the third its device, such as /dev/sdb3.</extracomment>
        <translation>%@ su %@, %@</translation>
    </message>
    <message id="PASSPHRASE_ACCESSIBLE_NAME">
        <source>Passphrase</source>
        <extracomment>What a screen reader calls the field for the passphrase of an encrypted volume.</extracomment>
        <translation>Frase segreta</translation>
    </message>
    <message id="WRONG_PASSPHRASE_TEXT">
        <source>That was not the passphrase. Try again.</source>
        <extracomment>In the question for a passphrase that is asked again, because the one before was wrong.</extracomment>
        <translation>La frase segreta non è corretta. Riprova.</translation>
    </message>
    <message id="UNLOCK_BUTTON_TITLE">
        <source>&amp;Unlock</source>
        <extracomment>Button of the question for a passphrase: unlocks the encrypted volume and mounts it.</extracomment>
        <translation>&amp;Sblocca</translation>
    </message>
    <message id="CANCEL_UNLOCK_BUTTON_TITLE">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question for a passphrase: leaves the volume locked.</extracomment>
        <translation>&amp;Annulla</translation>
    </message>
    <message id="DISK_SERVICE_GAVE_NO_REASON_TEXT">
        <source>The disk service gave no reason.</source>
        <extracomment>Stands as the reason in an alert, after “Error while mounting disk2s1:”, when the disk service gives none.</extracomment>
        <translation>Il servizio dei dischi non ha indicato il motivo.</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUME_TITLE">
        <source>The volume could not be unmounted</source>
        <extracomment>Title of the question after a failed unmount.</extracomment>
        <translation>Impossibile smontare il volume</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUME_BODY_FMT">
        <source>A program may still be using the volume %@. If you force the unmount, unsaved data may be lost.</source>
        <extracomment>Text of the question after a failed unmount. %@ is the name of the device, such as disk2s1.</extracomment>
        <translation>È possibile che un programma stia ancora usando il volume %@. Forzando lo smontaggio, i dati non salvati potrebbero andare persi.</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUMES_TITLE">
        <source>The disk could not be ejected</source>
        <extracomment>Title of the question when a disk cannot be ejected because one of its volumes is in use.</extracomment>
        <translation>Impossibile espellere il disco</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUMES_BODY_FMT">
        <source>Programs may still be using volumes on the disk %@. If you force the unmount, unsaved data may be lost.</source>
        <extracomment>Text of the question when a disk cannot be ejected because one of its volumes is in use. %@ is the name of the device, such as disk2.</extracomment>
        <translation>È possibile che alcuni programmi stiano ancora usando volumi del disco %@. Forzando lo smontaggio, i dati non salvati potrebbero andare persi.</translation>
    </message>
    <message id="FORMAT_FILESYSTEM_CAPTION">
        <source>File &amp;system:</source>
        <extracomment>Caption of the menu from which the file system of the formatted volume is chosen.</extracomment>
        <translation>Fi&amp;le system:</translation>
    </message>
    <message id="FORMAT_FILESYSTEM_PLACEHOLDER">
        <source>Choose a file system</source>
        <extracomment>Shown in the menu of file systems on the Format page while none is chosen.</extracomment>
        <translation>Scegli un file system</translation>
    </message>
    <message id="FORMAT_TOO_SMALL_FMT">
        <source>for volumes of %@ or more</source>
        <extracomment>In the menu of file systems, at the end of an item that is disabled because the disk is too small for it. %@ is the least size with its unit.</extracomment>
        <translation>per volumi da %@ in su</translation>
    </message>
    <message id="FORMAT_TOO_LARGE_FMT">
        <source>for volumes up to %@</source>
        <extracomment>In the menu of file systems, at the end of an item that is disabled because the disk is too large for it. %@ is the largest size with its unit.</extracomment>
        <translation>per volumi fino a %@</translation>
    </message>
    <message id="FORMAT_LABEL_CAPTION">
        <source>Volume &amp;label:</source>
        <extracomment>Caption of the field for the name that the formatted volume gets.</extracomment>
        <translation>Nome del &amp;volume:</translation>
    </message>
    <message id="FORMAT_BUTTON_TITLE">
        <source>Fo&amp;rmat…</source>
        <extracomment>Button: asks for confirmation and then formats the selected volume.</extracomment>
        <translation>F&amp;ormatta…</translation>
    </message>
    <message id="FORMAT_ERASES_FMT">
        <source>Formatting erases everything on %@.</source>
        <extracomment>Format page, beside the button. %@ is the name of the disk or volume.</extracomment>
        <translation>La formattazione cancella tutto su %@.</translation>
    </message>
    <message id="LABEL_PLACEHOLDER_TEXT">
        <source>Untitled</source>
        <extracomment>Format page, in the empty field for the label of the new volume: it will have no label.</extracomment>
        <translation>Senza nome</translation>
    </message>
    <message id="REASON_BUSY_TEXT">
        <source>Another task is running on this disk.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>Su questo disco è in corso un’altra attività.</translation>
    </message>
    <message id="REASON_INTERNAL_TEXT">
        <source>Internal disks are not ejected.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>I dischi interni non si espellono.</translation>
    </message>
    <message id="REASON_READ_ONLY_TEXT">
        <source>It can only be read.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>È di sola lettura.</translation>
    </message>
    <message id="REASON_PARTITIONS_TEXT">
        <source>Select one of the volumes on this disk.</source>
        <extracomment>Tool tip of a disabled button: why it is. The disk is divided into volumes.</extracomment>
        <translation>Seleziona uno dei volumi su questo disco.</translation>
    </message>
    <message id="REASON_NO_TOOL_TEXT">
        <source>There is no tool for this file system.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>Non c’è uno strumento per questo file system.</translation>
    </message>
    <message id="PACKAGES_MISSING_FMT">
        <source>Needs a package that is not installed: %@.</source>
        <extracomment>Format page, and tool tip of “Check” and “Repair”: the tools of the file system are missing. The packages that have them.</extracomment>
        <translation>Richiede un pacchetto che non è installato: %@.</translation>
    </message>
    <message id="REASON_NOT_WHOLE_TEXT">
        <source>Select the whole disk.</source>
        <extracomment>Why “Erase Disk…” is disabled: a volume is selected, not the disk that it is on.</extracomment>
        <translation>Seleziona l’intero disco.</translation>
    </message>
    <message id="REASON_NO_PARTITIONS_TEXT">
        <source>This disk cannot have partitions.</source>
        <extracomment>Why “Erase Disk…” is disabled: there can be no partitions on such a disk.</extracomment>
        <translation>Questo disco non può avere partizioni.</translation>
    </message>
    <message id="REASON_SYSTEM_TEXT">
        <source>The running system uses this disk.</source>
        <extracomment>Why “Erase Disk…” is disabled.</extracomment>
        <translation>Il sistema in esecuzione usa questo disco.</translation>
    </message>
    <message id="REASON_NOT_EJECTABLE_TEXT">
        <source>This disk cannot be ejected.</source>
        <extracomment>Why “Eject” is disabled.</extracomment>
        <translation>Questo disco non si può espellere.</translation>
    </message>
    <message id="INVALID_VOLUME_LABEL_TEXT">
        <source>The volume label is not valid</source>
        <extracomment>Title of the message about a volume label that the file system does not allow.</extracomment>
        <translation>Il nome del volume non è valido</translation>
    </message>
    <message id="INVALID_NTFS_VOLUME_NAME_TEXT">
        <source>An NTFS volume label can be at most 128 characters long. Some characters, such as emoji, count as two.</source>
        <extracomment>Text of the message about a volume label that NTFS does not allow.</extracomment>
        <translation>Il nome di un volume NTFS può contenere al massimo 128 caratteri. Alcuni caratteri, come le emoji, contano come due.</translation>
    </message>
    <message id="INVALID_FAT_VOLUME_NAME_TEXT">
        <source>A FAT volume label can have up to 11 characters: capital letters A to Z, digits, spaces and symbols, but none of these: " * / : &lt; &gt; ? \ |</source>
        <extracomment>Text of the message about a volume label that FAT does not allow. Small and accented letters are not allowed. Keep the nine signs as they are.</extracomment>
        <translation>Il nome di un volume FAT può contenere al massimo 11 caratteri: lettere maiuscole dalla A alla Z senza accenti, cifre, spazi e simboli, ma nessuno di questi segni: " * / : &lt; &gt; ? \ |</translation>
    </message>
    <message id="INVALID_EXFAT_VOLUME_NAME_TEXT">
        <source>An exFAT volume label can have up to 11 characters; some, such as emoji, count as two. It must not contain control characters or any of these: " * / : &lt; &gt; ? \ |</source>
        <extracomment>Text of the message about a volume label that exFAT does not allow. Keep the nine signs as they are.</extracomment>
        <translation>Il nome di un volume exFAT può contenere al massimo 11 caratteri; alcuni, come le emoji, contano come due. Non può contenere caratteri di controllo né alcuno di questi segni: " * / : &lt; &gt; ? \ |</translation>
    </message>
    <message id="LABEL_BYTES_LIMIT_FMT">
        <source>A volume label for %1$@ can be at most %2$@ bytes long. Accented letters and characters of many scripts take two or more.</source>
        <extracomment>Text of the message about a volume label that is too long. %1$@ is the file system, %2$@ the number of bytes.</extracomment>
        <translation>Un nome di volume per %1$@ può occupare al massimo %2$@ byte. Le lettere accentate e i caratteri di molte scritture ne occupano due o più.</translation>
    </message>
    <message id="LABEL_CHARACTERS_LIMIT_FMT">
        <source>A volume label for %1$@ can be at most %2$@ characters long. Some characters, such as emoji, count as two.</source>
        <extracomment>Text of the message about a volume label that is too long. %1$@ is the file system, %2$@ the number of characters.</extracomment>
        <translation>Un nome di volume per %1$@ può avere al massimo %2$@ caratteri. Alcuni caratteri, come le emoji, contano per due.</translation>
    </message>
    <message id="LABEL_FORBIDDEN_CHARACTERS_FMT">
        <source>A volume label for %1$@ must not contain any of these characters: %2$@</source>
        <extracomment>Text of the message about a volume label with a character that the file system does not allow. %1$@ is the file system, %2$@ all such characters, with spaces between them.</extracomment>
        <translation>Un nome di volume per %1$@ non può contenere nessuno di questi caratteri: %2$@</translation>
    </message>
    <message id="LABEL_LEADING_SPACE_FMT">
        <source>A volume label for %@ must not begin with a space.</source>
        <extracomment>Text of the message about a volume label that begins with a space. %@ is the file system.</extracomment>
        <translation>Un nome di volume per %@ non può iniziare con uno spazio.</translation>
    </message>
    <message id="LABEL_FORBIDDEN_FIRST_CHARACTER_FMT">
        <source>A volume label for %1$@ must not begin with “%2$@”.</source>
        <extracomment>Text of the message about a volume label that begins with a character that may not come first. %1$@ is the file system, %2$@ the character.</extracomment>
        <translation>Un nome di volume per %1$@ non può iniziare con “%2$@”.</translation>
    </message>
    <message id="LABEL_ASCII_ONLY_FMT">
        <source>A volume label for %@ can only contain letters without accents, digits, spaces and symbols of ASCII.</source>
        <extracomment>Text of the message about a volume label with a character beyond ASCII. %@ is the file system.</extracomment>
        <translation>Un nome di volume per %@ può contenere solo lettere non accentate, cifre, spazi e simboli ASCII.</translation>
    </message>
    <message id="LABEL_UNPRINTABLE_FMT">
        <source>A volume label for %@ must not contain control characters or the replacement character (U+FFFD).</source>
        <extracomment>Text of the message about a volume label with characters that cannot be seen or were lost. %@ is the file system. U+FFFD is the sign that stands for a character that was lost.</extracomment>
        <translation>Un nome di volume per %@ non può contenere caratteri di controllo né il carattere di sostituzione (U+FFFD).</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_TITLE">
        <source>Erase all data and format?</source>
        <extracomment>Title of the question before formatting. The name, size and device of what will be formatted are shown with it.</extracomment>
        <translation>Cancellare tutti i dati e formattare?</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_BODY">
        <source>Formatting erases all data on the disk or volume. This cannot be undone.</source>
        <extracomment>Text of the question before formatting.</extracomment>
        <translation>La formattazione cancella tutti i dati sul disco o sul volume. L’operazione non può essere annullata.</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_CONTINUE_BUTTON_TEXT">
        <source>&amp;Erase and Format</source>
        <extracomment>Button of the question before formatting: starts it.</extracomment>
        <translation>&amp;Cancella e formatta</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question before formatting: changes nothing.</extracomment>
        <translation>&amp;Annulla</translation>
    </message>
    <message id="FORMAT_TARGET_NAME_CAPTION">
        <source>Name:</source>
        <extracomment>Caption in the question before formatting: the name of the disk or volume.</extracomment>
        <translation>Nome:</translation>
    </message>
    <message id="FORMAT_TARGET_SIZE_CAPTION">
        <source>Size:</source>
        <extracomment>Caption in the question before formatting: the size of the disk or volume.</extracomment>
        <translation>Dimensione:</translation>
    </message>
    <message id="FORMAT_TARGET_DEVICE_CAPTION">
        <source>Device:</source>
        <extracomment>Caption in the question before formatting: the device, such as disk2s1 (/dev/sda1).</extracomment>
        <translation>Dispositivo:</translation>
    </message>
    <message id="FORMAT_TARGET_CONTENT_CAPTION">
        <source>Current file system:</source>
        <extracomment>Caption in the question before formatting: the file system that will be erased.</extracomment>
        <translation>File system attuale:</translation>
    </message>
    <message id="FORMAT_QUESTION_LINE_FMT">
        <source>%@ %@</source>
        <extracomment>A line of the question before formatting: a caption, such as “Current file system:”, and what it is. Without the space where the colon brings its own.</extracomment>
        <translation>%@ %@</translation>
    </message>
    <message id="FORMAT_TARGET_NOTHING_TEXT">
        <source>not recognized</source>
        <extracomment>Stands after “Current file system:” when no known file system was found. It does not mean that there is no data.</extracomment>
        <translation>non riconosciuto</translation>
    </message>
    <message id="ERASE_DISK_SHEET_TITLE">
        <source>Erase Disk</source>
        <extracomment>Title of the sheet that asks how a whole disk is to be erased.</extracomment>
        <translation>Inizializza disco</translation>
    </message>
    <message id="ERASE_DISK_SCHEME_CAPTION">
        <source>&amp;Partition scheme:</source>
        <extracomment>Caption in that sheet: how the disk is divided into partitions, MBR or GPT. &amp; marks the letter that leads there.</extracomment>
        <translation>&amp;Schema delle partizioni:</translation>
    </message>
    <message id="ERASE_DISK_CONTINUE_BUTTON_TEXT">
        <source>&amp;Erase…</source>
        <extracomment>Button of that sheet: a question follows before anything is erased. &amp; marks its letter.</extracomment>
        <translation>&amp;Inizializza…</translation>
    </message>
    <message id="CONTENT_ENCRYPTED_TEXT">
        <source>encrypted</source>
        <extracomment>What is on a volume in the place of a file system: it is encrypted. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>crittografato</translation>
    </message>
    <message id="CONTENT_LVM_TEXT">
        <source>LVM member</source>
        <extracomment>What is on a volume in the place of a file system: it is a part of an LVM volume group. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>membro di LVM</translation>
    </message>
    <message id="CONTENT_RAID_TEXT">
        <source>RAID member</source>
        <extracomment>What is on a volume in the place of a file system: it is a part of a RAID array. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>membro di RAID</translation>
    </message>
    <message id="CONTENT_SWAP_TEXT">
        <source>swap space</source>
        <extracomment>What is on a volume in the place of a file system: swap space of a Linux system. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>spazio di swap</translation>
    </message>
    <message id="CONTENT_BASIC_DATA_TEXT">
        <source>Basic data</source>
        <extracomment>Beside the identifier of a partition's type: what it means.</extracomment>
        <translation>Dati di base</translation>
    </message>
    <message id="CONTENT_LINUX_TEXT">
        <source>Linux file system</source>
        <extracomment>Beside the identifier of a partition's type: what it means.</extracomment>
        <translation>File system Linux</translation>
    </message>
    <message id="CONTENT_EFI_TEXT">
        <source>EFI system</source>
        <extracomment>Beside the identifier of a partition's type: the partition that a computer with EFI starts from.</extracomment>
        <translation>Sistema EFI</translation>
    </message>
    <message id="CONTENT_RECOVERY_TEXT">
        <source>Windows recovery</source>
        <extracomment>Beside the identifier of a partition's type: the tools by which Windows is repaired.</extracomment>
        <translation>Ripristino di Windows</translation>
    </message>
    <message id="FORMAT_NEW_FILESYSTEM_CAPTION">
        <source>New file system:</source>
        <extracomment>Caption in the question before formatting: the file system that the volume will have.</extracomment>
        <translation>Nuovo file system:</translation>
    </message>
    <message id="FORMAT_NEW_LABEL_CAPTION">
        <source>New label:</source>
        <extracomment>Caption in the question before formatting: the label that the volume will have.</extracomment>
        <translation>Nuovo nome:</translation>
    </message>
    <message id="FORMAT_NEW_SCHEME_CAPTION">
        <source>New partition scheme:</source>
        <extracomment>Caption in the question before a whole disk is erased: how the disk will be divided into partitions, MBR or GPT.</extracomment>
        <translation>Nuovo schema delle partizioni:</translation>
    </message>
    <message id="FORMAT_REFUSED_TITLE">
        <source>The disk or volume cannot be formatted</source>
        <extracomment>Title of the message about a disk or volume that is not formatted because it is in use.</extracomment>
        <translation>Impossibile formattare il disco o il volume</translation>
    </message>
    <message id="FORMAT_REFUSED_SWAP_FMT">
        <source>“%@” is in use as swap space. Turn the swap space off first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>“%@” è in uso come spazio di swap. Disattiva prima lo spazio di swap.</translation>
    </message>
    <message id="FORMAT_REFUSED_SYSTEM_FMT">
        <source>“%@” belongs to the running system. To erase it, start the computer from another disk.</source>
        <extracomment>Why a disk or volume is not formatted. %@ is its name.</extracomment>
        <translation>“%@” appartiene al sistema in esecuzione. Per cancellarlo, avvia il computer da un altro disco.</translation>
    </message>
    <message id="FORMAT_REFUSED_LVM_FMT">
        <source>“%@” belongs to an LVM volume group that is in use. Remove it from the volume group first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>“%@” appartiene a un gruppo di volumi LVM in uso. Rimuovilo prima dal gruppo.</translation>
    </message>
    <message id="FORMAT_REFUSED_RAID_FMT">
        <source>“%@” belongs to a RAID array that is in use. Stop the array first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>“%@” appartiene a un array RAID in uso. Ferma prima l’array.</translation>
    </message>
    <message id="FORMAT_REFUSED_UNLOCKED_FMT">
        <source>“%@” is encrypted and unlocked. Lock it first.</source>
        <extracomment>Why an encrypted volume is not formatted. %@ is its name.</extracomment>
        <translation>“%@” è crittografato e sbloccato. Bloccalo prima.</translation>
    </message>
    <message id="FORMAT_REFUSED_IN_USE_FMT">
        <source>Another device is made from “%@” and uses it. Remove that device first.</source>
        <extracomment>Why a disk or volume is not formatted: the system made another device from it. %@ is its name.</extracomment>
        <translation>Un altro dispositivo si basa su “%@” e lo sta usando. Rimuovi prima quel dispositivo.</translation>
    </message>
    <message id="FORMAT_TARGET_CHANGED_TITLE">
        <source>Nothing was erased</source>
        <extracomment>Title of the message when a medium is no longer as the question before formatting showed it.</extracomment>
        <translation>Non è stato cancellato nulla</translation>
    </message>
    <message id="FORMAT_TARGET_CHANGED_FMT">
        <source>“%@” has changed since you were asked. Check what is on it before you format it.</source>
        <extracomment>Text of the message when a medium is no longer as the question before formatting showed it. %@ is its name.</extracomment>
        <translation>“%@” è cambiato dopo la richiesta di conferma. Controlla che cosa contiene prima di formattare.</translation>
    </message>
    <message id="ACTIVITY_FORMATTING_FMT">
        <source>Formatting “%@”…</source>
        <extracomment>Shown while a volume is formatted. %@ is its name.</extracomment>
        <translation>Formattazione di «%@»…</translation>
    </message>
    <message id="ACTIVITY_MOUNTING_TEXT">
        <source>Mounting…</source>
        <extracomment>Info page, while the selected volume is mounted.</extracomment>
        <translation>Montaggio in corso…</translation>
    </message>
    <message id="ACTIVITY_UNMOUNTING_TEXT">
        <source>Unmounting: what is still in memory is being written. Do not unplug the disk.</source>
        <extracomment>Info page, while the selected volume is unmounted.</extracomment>
        <translation>Smontaggio: i dati ancora in memoria vengono scritti. Non scollegare il disco.</translation>
    </message>
    <message id="ACTIVITY_EJECTING_TEXT">
        <source>Ejecting: what is still in memory is being written. Do not unplug the disk.</source>
        <extracomment>Info page, while the selected disk is ejected.</extracomment>
        <translation>Espulsione: i dati ancora in memoria vengono scritti. Non scollegare il disco.</translation>
    </message>
    <message id="ACTIVITY_WAITING_TEXT">
        <source>Waiting for your answer.</source>
        <extracomment>Info page, in place of what runs, while the window asks the user something about it.</extracomment>
        <translation>In attesa della tua risposta.</translation>
    </message>
    <message id="CHECK_BUTTON_TITLE">
        <source>&amp;Check</source>
        <extracomment>Button: looks for errors in the file system of the volume and changes nothing.</extracomment>
        <translation>&amp;Controlla</translation>
    </message>
    <message id="REPAIR_BUTTON_TITLE">
        <source>&amp;Repair</source>
        <extracomment>Button: corrects errors in the file system of the volume.</extracomment>
        <translation>&amp;Ripara</translation>
    </message>
    <message id="STOP_BUTTON_TITLE">
        <source>Stop</source>
        <extracomment>Button beside the progress of a check: ends it. Nothing on the volume has been changed.</extracomment>
        <translation>Interrompi</translation>
    </message>
    <message id="OUTPUT_ACCESSIBLE_NAME">
        <source>Check and repair output</source>
        <extracomment>What a screen reader calls the view that shows what the checking and repairing tools print.</extracomment>
        <translation>Output di controllo e riparazione</translation>
    </message>
    <message id="OUTPUT_PLACEHOLDER_TEXT">
        <source>What the check prints appears here.</source>
        <extracomment>Maintenance page, in the empty field for the output.</extracomment>
        <translation>Qui compare l’output del controllo.</translation>
    </message>
    <message id="OUTPUT_PLACEHOLDER_REPAIR_TEXT">
        <source>What the repair prints appears here.</source>
        <extracomment>In the empty output view while a repair has not printed anything.</extracomment>
        <translation>Qui compare l’output della riparazione.</translation>
    </message>
    <message id="ACTIVITY_CHECKING_FMT">
        <source>Checking “%@”…</source>
        <extracomment>Shown while a volume is checked. %@ is its name.</extracomment>
        <translation>Controllo di «%@»…</translation>
    </message>
    <message id="ACTIVITY_REPAIRING_FMT">
        <source>Repairing “%@”…</source>
        <extracomment>Shown while a volume is repaired. %@ is its name.</extracomment>
        <translation>Riparazione di «%@»…</translation>
    </message>
    <message id="CHECK_HINT_TEXT">
        <source>A check only reads. A mounted volume is unmounted meanwhile.</source>
        <extracomment>Maintenance page, before anything has run: what a check does.</extracomment>
        <translation>Il controllo legge soltanto. Un volume montato viene smontato nel frattempo.</translation>
    </message>
    <message id="VERDICT_CLEAN_FMT">
        <source>%@: no errors found</source>
        <extracomment>Maintenance page, after a check. %@ is the name of the volume.</extracomment>
        <translation>%@: nessun errore trovato</translation>
    </message>
    <message id="VERDICT_ERRORS_FMT">
        <source>%@: errors found, repair it</source>
        <extracomment>Maintenance page, after a check. %@ is the name of the volume.</extracomment>
        <translation>%@: errori trovati, da riparare</translation>
    </message>
    <message id="VERDICT_REPAIRED_FMT">
        <source>%@: in order after the repair</source>
        <extracomment>Maintenance page, after a repair. %@ is the name of the volume.</extracomment>
        <translation>%@: in ordine dopo la riparazione</translation>
    </message>
    <message id="VERDICT_NOT_REPAIRED_FMT">
        <source>%@: errors remain</source>
        <extracomment>Maintenance page, after a repair. %@ is the name of the volume.</extracomment>
        <translation>%@: restano errori</translation>
    </message>
    <message id="VERDICT_UNFINISHED_FMT">
        <source>%@: not finished, nothing is known</source>
        <extracomment>Maintenance page, after a check or repair that could not be carried out. %@ is the name of the volume.</extracomment>
        <translation>%@: non terminato, stato sconosciuto</translation>
    </message>
    <message id="VERDICT_TIME_FMT">
        <source>%@, took %@</source>
        <extracomment>Beside the verdict. The first %@ is the time of day at which it ended, the second one how long it took, such as 2:51 (minutes and seconds).</extracomment>
        <translation>%@, durata %@</translation>
    </message>
    <message id="DEVICE_GONE_TITLE_FMT">
        <source>“%@” is no longer there</source>
        <extracomment>Title of a message: a disk was unplugged during a check or a repair. %@ is its name.</extracomment>
        <translation>“%@” non è più presente</translation>
    </message>
    <message id="DEVICE_GONE_DURING_CHECK_TEXT">
        <source>It was removed before the check had ended. Whether the file system has errors is not known. Connect the disk again and repeat the check.</source>
        <extracomment>Below the title that tells that the disk is no longer there.</extracomment>
        <translation>Il disco è stato rimosso prima della fine del controllo. Non è noto se il file system contenga errori. Ricollega il disco e ripeti il controllo.</translation>
    </message>
    <message id="DEVICE_GONE_DURING_REPAIR_TEXT">
        <source>It was removed before the repair had ended. The file system may be damaged. Connect the disk again and check it.</source>
        <extracomment>Below the title that tells that the disk is no longer there.</extracomment>
        <translation>Il disco è stato rimosso prima della fine della riparazione. Il file system potrebbe essere danneggiato. Ricollega il disco e controllalo.</translation>
    </message>
    <message id="DEVICE_UNREADABLE_TITLE_FMT">
        <source>“%@” cannot be read to its end</source>
        <extracomment>Title of a message: reads from a disk failed during a check or a repair. %@ is its name.</extracomment>
        <translation>“%@” non può essere letto fino alla fine</translation>
    </message>
    <message id="DEVICE_UNREADABLE_TEXT">
        <source>The device reports errors, so it is not known what state the file system is in. Such a disk may be failing: copy what you need from it while you can.</source>
        <extracomment>Below the title that tells that a disk cannot be read to its end.</extracomment>
        <translation>Il dispositivo segnala errori, quindi non è noto in che stato sia il file system. Un disco così potrebbe guastarsi: copia ciò che ti serve finché è possibile.</translation>
    </message>
    <message id="CLOSE_QUESTION_REPAIRING_FMT">
        <source>“%@” is being repaired</source>
        <extracomment>Title of the question when the window is closed during a repair. %@ is the name of the volume.</extracomment>
        <translation>“%@” è in riparazione</translation>
    </message>
    <message id="CLOSE_QUESTION_FORMATTING_FMT">
        <source>“%@” is being formatted</source>
        <extracomment>Title of the question when the window is closed during a format. %@ is the name of the disk or volume.</extracomment>
        <translation>“%@” è in formattazione</translation>
    </message>
    <message id="CLOSE_QUESTION_SEVERAL_TITLE">
        <source>Several disks are being repaired or formatted</source>
        <extracomment>Title of the same question when several disks are at work.</extracomment>
        <translation>Più dischi sono in riparazione o in formattazione</translation>
    </message>
    <message id="CLOSE_QUESTION_TEXT">
        <source>If it is stopped now, the file system can be left damaged and data can be lost. Wait until it has finished.</source>
        <extracomment>Below the title of the question when the window is closed.</extracomment>
        <translation>Se l’operazione viene interrotta ora, il file system può restare danneggiato e si possono perdere dati. Attendi che sia terminata.</translation>
    </message>
    <message id="CLOSE_QUESTION_WAIT_BUTTON_TITLE">
        <source>&amp;Wait</source>
        <extracomment>Button of the question when the window is closed: leaves the window open.</extracomment>
        <translation>&amp;Attendi</translation>
    </message>
    <message id="CLOSE_QUESTION_STOP_BUTTON_TITLE">
        <source>&amp;Stop and Close</source>
        <extracomment>Button of the question when the window is closed: stops what is running and closes the window.</extracomment>
        <translation>&amp;Interrompi e chiudi</translation>
    </message>
</context>
</TS>
