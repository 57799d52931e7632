<?xml version="1.0" encoding="utf-8"?>
<!-- SPDX-License-Identifier: MIT -->
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
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
        <translation>파일(&amp;F)</translation>
    </message>
    <message id="REFRESH_MENU_ITEM_TITLE">
        <source>&amp;Refresh</source>
        <extracomment>Item of the File menu: reads again which file systems are installed and which disks are there. It changes nothing.</extracomment>
        <translation>새로 고침(&amp;R)</translation>
    </message>
    <message id="CLOSE_MENU_ITEM_TITLE">
        <source>&amp;Close Window</source>
        <extracomment>Item of the File menu. Closing the window ends the program.</extracomment>
        <translation>창 닫기(&amp;C)</translation>
    </message>
    <message id="QUIT_MENU_ITEM_TITLE">
        <source>&amp;Quit</source>
        <extracomment>Item of the File menu: ends the program.</extracomment>
        <translation>끝내기(&amp;Q)</translation>
    </message>
    <message id="EDIT_MENU_TITLE">
        <source>&amp;Edit</source>
        <extracomment>Menu in the menu bar.</extracomment>
        <translation>편집(&amp;E)</translation>
    </message>
    <message id="UNDO_MENU_ITEM_TITLE">
        <source>&amp;Undo</source>
        <extracomment>Item of the Edit menu: takes back what was typed last.</extracomment>
        <translation>실행 취소(&amp;U)</translation>
    </message>
    <message id="CUT_MENU_ITEM_TITLE">
        <source>Cu&amp;t</source>
        <extracomment>Item of the Edit menu: moves the selected text of the field to the clipboard.</extracomment>
        <translation>잘라내기(&amp;T)</translation>
    </message>
    <message id="COPY_MENU_ITEM_TITLE">
        <source>&amp;Copy</source>
        <extracomment>Item of the Edit menu: copies the selected text. In the menu of a row of the tree: copies the name in the row.</extracomment>
        <translation>복사(&amp;C)</translation>
    </message>
    <message id="PASTE_MENU_ITEM_TITLE">
        <source>&amp;Paste</source>
        <extracomment>Item of the Edit menu: puts the text of the clipboard into the field.</extracomment>
        <translation>붙여넣기(&amp;P)</translation>
    </message>
    <message id="SELECT_ALL_MENU_ITEM_TITLE">
        <source>Select &amp;All</source>
        <extracomment>Item of the Edit menu: selects all text of the field or view.</extracomment>
        <translation>모두 선택(&amp;A)</translation>
    </message>
    <message id="DISK_MENU_TITLE">
        <source>&amp;Disk</source>
        <extracomment>Menu in the menu bar: what can be done with the selected disk or volume.</extracomment>
        <translation>디스크(&amp;D)</translation>
    </message>
    <message id="FORMAT_MENU_ITEM_TITLE">
        <source>&amp;Format…</source>
        <extracomment>Item of the Disk menu and the menu of a row: shows the page on which a volume is formatted. The dots say that nothing happens yet.</extracomment>
        <translation>포맷(&amp;F)…</translation>
    </message>
    <message id="ERASE_DISK_MENU_ITEM_TITLE">
        <source>Erase &amp;Disk…</source>
        <extracomment>Item of the Disk menu and of the menu of a row: opens a sheet that asks how the whole disk is to be erased. &amp; marks the letter that chooses it.</extracomment>
        <translation>디스크 지우기(&amp;D)…</translation>
    </message>
    <message id="CHECK_MENU_ITEM_TITLE">
        <source>Chec&amp;k</source>
        <extracomment>Item of the Disk menu and the menu of a row: looks for errors in the file system of the selected volume and changes nothing.</extracomment>
        <translation>검사(&amp;K)</translation>
    </message>
    <message id="REPAIR_MENU_ITEM_TITLE">
        <source>&amp;Repair</source>
        <extracomment>Item of the Disk menu and the menu of a row: corrects errors in the file system of the selected volume.</extracomment>
        <translation>복구(&amp;R)</translation>
    </message>
    <message id="SHOW_IN_FILE_MANAGER_MENU_ITEM_TITLE">
        <source>&amp;Show in File Manager</source>
        <extracomment>Item of the Disk menu and the menu of a row: opens the folder at which the selected volume is mounted.</extracomment>
        <translation>파일 관리자에서 보기(&amp;S)</translation>
    </message>
    <message id="COPY_DEVICE_PATH_MENU_ITEM_TITLE">
        <source>Copy Device &amp;Path</source>
        <extracomment>Item of the menu of a row of the tree: puts the path of its device, such as /dev/sda1, on the clipboard.</extracomment>
        <translation>장치 경로 복사(&amp;P)</translation>
    </message>
    <message id="HELP_MENU_TITLE">
        <source>&amp;Help</source>
        <extracomment>Menu in the menu bar.</extracomment>
        <translation>도움말(&amp;H)</translation>
    </message>
    <message id="MANUAL_MENU_ITEM_TITLE">
        <source>User &amp;Manual</source>
        <extracomment>Item of the Help menu: opens the manual, a PDF document.</extracomment>
        <translation>사용 설명서(&amp;M)</translation>
    </message>
    <message id="ABOUT_MENU_ITEM_TITLE">
        <source>&amp;About Zorvex Disk Manager</source>
        <extracomment>Item of the Help menu: shows the version and what the program is.</extracomment>
        <translation>Zorvex Disk Manager 정보(&amp;A)</translation>
    </message>
    <message id="ABOUT_TEXT">
        <source>Version %@

Mounts, ejects, formats, checks and repairs disks and volumes.

MIT License
%@</source>
        <extracomment>Text of the About box below the name of the program. The first %@ is the version, such as 1.0.0; the second is the address of the program’s page on the web.</extracomment>
        <translation>버전 %@

디스크와 볼륨을 마운트하거나 꺼내고, 포맷, 검사, 복구합니다.

MIT 라이선스
%@</translation>
    </message>
    <message id="USER_MANUAL_NOT_FOUND_TITLE">
        <source>The user manual could not be opened</source>
        <extracomment>Title of the message when Help &gt; User Manual fails.</extracomment>
        <translation>사용 설명서를 열 수 없습니다</translation>
    </message>
    <message id="USER_MANUAL_NOT_FOUND_TEXT">
        <source>The manual is not installed, or there is no program to open PDF documents.</source>
        <extracomment>Text of the message when Help &gt; User Manual fails.</extracomment>
        <translation>설명서가 설치되어 있지 않거나 PDF 문서를 표시할 수 있는 프로그램이 없습니다.</translation>
    </message>
    <message id="DISK_TREE_ACCESSIBLE_NAME">
        <source>Disks and volumes</source>
        <extracomment>What a screen reader calls the tree of disks at the side of the window.</extracomment>
        <translation>디스크 및 볼륨</translation>
    </message>
    <message id="NO_DISKS_TITLE">
        <source>No disks</source>
        <extracomment>In the empty tree, in bold.</extracomment>
        <translation>디스크 없음</translation>
    </message>
    <message id="NO_DISKS_TEXT">
        <source>A disk that you connect appears here.</source>
        <extracomment>In the empty tree, below the words “No disks”.</extracomment>
        <translation>연결하면 여기에 표시됩니다.</translation>
    </message>
    <message id="NO_SERVICE_TITLE">
        <source>No disk service</source>
        <extracomment>In the empty tree, in bold, when the disk service is not there.</extracomment>
        <translation>디스크 서비스 없음</translation>
    </message>
    <message id="NO_SERVICE_TEXT">
        <source>The disk service (udisks2) is not running.</source>
        <extracomment>In the empty tree, when the service that tells of disks (UDisks2) does not run.</extracomment>
        <translation>디스크 서비스(udisks2)가 실행되고 있지 않습니다.</translation>
    </message>
    <message id="ROW_MOUNTED_TEXT">
        <source>mounted</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a volume in the tree: files on it can be used.</extracomment>
        <translation>마운트됨</translation>
    </message>
    <message id="ROW_NOT_MOUNTED_TEXT">
        <source>not mounted</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a volume in the tree: files on it cannot be used at present.</extracomment>
        <translation>마운트되지 않음</translation>
    </message>
    <message id="ROW_NO_CONTENT_TEXT">
        <source>none</source>
        <extracomment>Info page, in the place of the content type of a disk that has none.</extracomment>
        <translation>없음</translation>
    </message>
    <message id="ROW_BUSY_TEXT">
        <source>busy</source>
        <extracomment>Said of a row of the tree on whose disk an operation runs.</extracomment>
        <translation>작업 중</translation>
    </message>
    <message id="ROW_DISK_WITH_PARTITIONS_TEXT">
        <source>disk with partitions</source>
        <extracomment>Said by a screen reader, and shown in the tool tip of the row, after the name of a whole disk in the tree that is divided into partitions.</extracomment>
        <translation>파티션이 있는 디스크</translation>
    </message>
    <message id="LIST_SEPARATOR_TEXT">
        <source>, </source>
        <extracomment>Stands between what a screen reader says, and the tool tip shows, of a row: name, file system, state. With the space that follows it, where the language has one.</extracomment>
        <translation>, </translation>
    </message>
    <message id="DISK_ICON_ACCESSIBLE_NAME">
        <source>Disk icon</source>
        <extracomment>What a screen reader calls the large picture of the selected disk.</extracomment>
        <translation>디스크 아이콘</translation>
    </message>
    <message id="DISK_MAP_ACCESSIBLE_NAME">
        <source>Volumes on this disk</source>
        <extracomment>Name, for a screen reader, of the drawing on the Info page that shows the volumes of a disk side by side.</extracomment>
        <translation>이 디스크의 볼륨</translation>
    </message>
    <message id="DIVIDER_ACCESSIBLE_NAME">
        <source>Divider</source>
        <extracomment>What a screen reader calls the line between the tree and the pages, which can be moved with the arrow keys.</extracomment>
        <translation>구분선</translation>
    </message>
    <message id="DIVIDER_TOOL_TIP">
        <source>Drag to resize the list of disks. With the keyboard: press Tab until the divider is selected, then Left or Right.</source>
        <extracomment>Tool tip of the bar between the list of disks and the pages, also read out by screen readers.</extracomment>
        <translation>끌어서 디스크 목록의 너비를 조절합니다. 키보드에서는 Tab 키로 구분선으로 이동한 다음 왼쪽이나 오른쪽 화살표 키를 누릅니다.</translation>
    </message>
    <message id="INFO_TAB_TITLE">
        <source>Info</source>
        <extracomment>Title of the tab with the properties of the selected disk or volume.</extracomment>
        <translation>정보</translation>
    </message>
    <message id="FORMAT_TAB_TITLE">
        <source>Format</source>
        <extracomment>Title of the tab on which a volume is formatted.</extracomment>
        <translation>포맷</translation>
    </message>
    <message id="MAINTENANCE_TAB_TITLE">
        <source>Maintenance</source>
        <extracomment>Title of the tab on which a volume is checked and repaired.</extracomment>
        <translation>유지 관리</translation>
    </message>
    <message id="SELECT_A_DISK_TEXT">
        <source>Select a disk or volume</source>
        <extracomment>Shown in place of the name while nothing is selected in the tree.</extracomment>
        <translation>디스크 또는 볼륨을 선택하십시오</translation>
    </message>
    <message id="SELECT_A_DISK_HINT_TEXT">
        <source>What it holds and what can be done with it appears here.</source>
        <extracomment>Shown below SELECT_A_DISK_TEXT.</extracomment>
        <translation>내용과 할 수 있는 작업이 여기에 표시됩니다.</translation>
    </message>
    <message id="NO_SERVICE_HINT_TEXT">
        <source>Disks appear here as soon as the disk service runs. To start it:</source>
        <extracomment>On the Info page while the disk service is not there, above the command that starts it.</extracomment>
        <translation>디스크 서비스가 실행되면 디스크가 여기에 표시됩니다. 시작하는 명령:</translation>
    </message>
    <message id="PLACE_VOLUME_ON_FMT">
        <source>Volume on %@</source>
        <extracomment>Info page, below the space of a volume: which disk it is on. %@ is the name of the disk.</extracomment>
        <translation>%@의 볼륨</translation>
    </message>
    <message id="MEDIUM_INTERNAL_TEXT">
        <source>Internal disk</source>
        <extracomment>Kind of a medium: a disk inside the computer.</extracomment>
        <translation>내장 디스크</translation>
    </message>
    <message id="MEDIUM_EXTERNAL_TEXT">
        <source>External disk</source>
        <extracomment>Kind of a medium: a disk that is connected from outside.</extracomment>
        <translation>외장 디스크</translation>
    </message>
    <message id="MEDIUM_REMOVABLE_TEXT">
        <source>Removable disk</source>
        <extracomment>Kind of disk: it can be removed. It may be a stick, or a card in a reader.</extracomment>
        <translation>이동식 디스크</translation>
    </message>
    <message id="MEDIUM_CARD_TEXT">
        <source>Memory card</source>
        <extracomment>Kind of a medium.</extracomment>
        <translation>메모리 카드</translation>
    </message>
    <message id="MEDIUM_DISC_TEXT">
        <source>Disc</source>
        <extracomment>Kind of a medium: an optical disc, such as a DVD.</extracomment>
        <translation>광디스크</translation>
    </message>
    <message id="MEDIUM_IMAGE_TEXT">
        <source>Disk image</source>
        <extracomment>Kind of a medium: a file that is attached as a disk.</extracomment>
        <translation>디스크 이미지</translation>
    </message>
    <message id="MEDIUM_UNLOCKED_TEXT">
        <source>Unlocked volume</source>
        <extracomment>Kind of a medium: what can be read of an encrypted volume that has been unlocked.</extracomment>
        <translation>잠금 해제된 볼륨</translation>
    </message>
    <message id="MOUNT_BUTTON_TITLE">
        <source>&amp;Mount</source>
        <extracomment>Button and menu item: makes the files of the selected volume accessible. Keep it short.</extracomment>
        <translation>마운트(&amp;M)</translation>
    </message>
    <message id="UNMOUNT_BUTTON_TITLE">
        <source>&amp;Unmount</source>
        <extracomment>Button and menu item: finishes the use of the selected volume, so that its files are no longer accessible. Keep it short.</extracomment>
        <translation>마운트 해제(&amp;U)</translation>
    </message>
    <message id="EJECT_BUTTON_TITLE">
        <source>E&amp;ject</source>
        <extracomment>Button and menu item: unmounts all volumes of the selected disk and makes it safe to take out. Keep it short.</extracomment>
        <translation>꺼내기(&amp;J)</translation>
    </message>
    <message id="FILESYSTEM_CAPTION">
        <source>File system:</source>
        <extracomment>Caption of a property: NTFS, exFAT and so on.</extracomment>
        <translation>파일 시스템:</translation>
    </message>
    <message id="BSD_NAME_CAPTION">
        <source>Device:</source>
        <extracomment>Caption of a property: the short name of the device, such as disk2s1.</extracomment>
        <translation>장치:</translation>
    </message>
    <message id="WHOLE_DEVICE_CAPTION">
        <source>Whole device:</source>
        <extracomment>Caption of a property answered by Yes or No: No for a partition of a device.</extracomment>
        <translation>장치 전체:</translation>
    </message>
    <message id="REMOVABLE_CAPTION">
        <source>Removable:</source>
        <extracomment>Caption of a property answered by Yes or No: whether the medium can be taken out of its drive.</extracomment>
        <translation>이동식:</translation>
    </message>
    <message id="CONTENT_HINT_CAPTION">
        <source>Content type:</source>
        <extracomment>Caption of a property: what the partition table says is in the partition, such as Windows_NTFS.</extracomment>
        <translation>내용 형식:</translation>
    </message>
    <message id="EJECTABLE_CAPTION">
        <source>Ejectable:</source>
        <extracomment>Caption of a property answered by Yes or No: whether the drive ejects its medium by itself.</extracomment>
        <translation>꺼낼 수 있음:</translation>
    </message>
    <message id="BLOCK_SIZE_CAPTION">
        <source>Block size:</source>
        <extracomment>Caption of a property: the block size of the device, such as 512 bytes.</extracomment>
        <translation>블록 크기:</translation>
    </message>
    <message id="MOUNTED_AT_CAPTION">
        <source>Mounted at:</source>
        <extracomment>Caption of a property: the folder in which the files of the volume are found, shown as a link.</extracomment>
        <translation>마운트 위치:</translation>
    </message>
    <message id="MOUNT_PATH_ACCESSIBLE_NAME">
        <source>Mount point</source>
        <extracomment>What a screen reader calls the link to the folder at which the volume is mounted.</extracomment>
        <translation>마운트 지점</translation>
    </message>
    <message id="MOUNT_PATH_LINK_DESCRIPTION">
        <source>Link: opens the file manager</source>
        <extracomment>Said by a screen reader after the mount point while it is shown as a link: what following it does.</extracomment>
        <translation>링크: 파일 관리자를 엽니다</translation>
    </message>
    <message id="FOLDER_NOT_OPENED_TITLE">
        <source>The folder could not be opened</source>
        <extracomment>Title of the alert when the file manager could not open the folder at which a volume is mounted.</extracomment>
        <translation>폴더를 열 수 없습니다</translation>
    </message>
    <message id="FOLDER_NOT_OPENED_TEXT_FMT">
        <source>The volume is mounted at %@, but the file manager could not open that folder.</source>
        <extracomment>Text of the alert when the file manager could not open the folder at which a volume is mounted. %@ is the path of the folder.</extracomment>
        <translation>볼륨이 %@에 마운트되어 있지만 파일 관리자에서 이 폴더를 열 수 없습니다.</translation>
    </message>
    <message id="VOLUME_OUT_OF_REACH_TITLE">
        <source>You cannot open this volume</source>
        <extracomment>Title of the notice after a volume was mounted in a folder that the user may not open.</extracomment>
        <translation>이 볼륨을 열 수 없습니다</translation>
    </message>
    <message id="VOLUME_OUT_OF_REACH_TEXT_FMT">
        <source>The disk service could not mount “%@” for you. It is mounted at %@, which only the administrator can open.</source>
        <extracomment>Text of the notice after a volume was mounted in a folder that the user may not open. The first %@ is the name of the volume, the second the path of the folder.</extracomment>
        <translation>디스크 서비스가 ‘%@’ 볼륨을 사용자용으로 마운트하지 못했습니다. 볼륨은 %@에 마운트되어 있으며, 이 폴더는 관리자만 열 수 있습니다.</translation>
    </message>
    <message id="START_NOBODY_ASKS_TITLE">
        <source>The password cannot be asked for</source>
        <extracomment>Title of the message when no program in the session can ask for the password. No window opens.</extracomment>
        <translation>암호를 물어볼 수 없습니다</translation>
    </message>
    <message id="START_NOBODY_ASKS_TEXT">
        <source>No program that asks for passwords (a polkit agent) is running in this session. Install one, such as lxpolkit or mate-polkit, log in again and start Zorvex Disk Manager. Members of the group zorvex-admin need no password.</source>
        <extracomment>Text of the message when no program in the session can ask for the password. Keep “polkit”, the names of the packages and “zorvex-admin”.</extracomment>
        <translation>이 세션에서 암호를 묻는 프로그램(polkit 에이전트)이 실행되고 있지 않습니다. lxpolkit이나 mate-polkit 등을 설치하고 다시 로그인한 다음 Zorvex Disk Manager를 시작하십시오. zorvex-admin 그룹의 구성원은 암호가 필요 없습니다.</translation>
    </message>
    <message id="START_REFUSED_TITLE">
        <source>Administrator rights were not granted</source>
        <extracomment>Title of the message when the user may not run the program as administrator, or the password was wrong. No window opens.</extracomment>
        <translation>관리자 권한을 받지 못했습니다</translation>
    </message>
    <message id="START_REFUSED_TEXT">
        <source>Start Zorvex Disk Manager again and enter an administrator’s password, or ask an administrator to add you to the group zorvex-admin.</source>
        <extracomment>Text of the message when the user may not run the program as administrator, or the password was wrong. Keep “zorvex-admin”.</extracomment>
        <translation>Zorvex Disk Manager를 다시 시작하여 관리자의 암호를 입력하거나, zorvex-admin 그룹에 추가해 달라고 관리자에게 요청하십시오.</translation>
    </message>
    <message id="START_NO_AUTHORITY_TITLE">
        <source>Administrator rights cannot be requested</source>
        <extracomment>Title of the message when the authorization service cannot be reached. No window opens.</extracomment>
        <translation>관리자 권한을 요청할 수 없습니다</translation>
    </message>
    <message id="START_NO_AUTHORITY_TEXT">
        <source>The authorization service (polkit) does not answer. Make sure that the package polkitd is installed and the service is running, then start Zorvex Disk Manager again.</source>
        <extracomment>Text of the message when the authorization service cannot be reached. Keep “polkit” and “polkitd”.</extracomment>
        <translation>인증 서비스(polkit)가 응답하지 않습니다. polkitd 패키지가 설치되어 있고 서비스가 실행 중인지 확인한 다음 Zorvex Disk Manager를 다시 시작하십시오.</translation>
    </message>
    <message id="START_NO_ANSWER_TITLE">
        <source>Zorvex Disk Manager does not answer</source>
        <extracomment>Title of the message when the program runs already and does not answer. No second window opens.</extracomment>
        <translation>Zorvex Disk Manager가 응답하지 않습니다</translation>
    </message>
    <message id="START_NO_ANSWER_TEXT">
        <source>It is running already, but its window does not respond. Wait until it does, or end it, then start it again.</source>
        <extracomment>Text of the message when the program runs already and does not answer.</extracomment>
        <translation>이미 실행 중이지만 창이 응답하지 않습니다. 응답할 때까지 기다리거나 프로그램을 끝낸 다음 다시 시작하십시오.</translation>
    </message>
    <message id="DEVICE_NODE_TOOL_TIP_FMT">
        <source>Device node: %@</source>
        <extracomment>Tool tip of the device name. %@ is the system&apos;s name of the device, such as /dev/sda1.</extracomment>
        <translation>장치 파일: %@</translation>
    </message>
    <message id="BOOLEAN_VALUE_YES_TEXT">
        <source>Yes</source>
        <extracomment>Value of a property.</extracomment>
        <translation>예</translation>
    </message>
    <message id="BOOLEAN_VALUE_NO_TEXT">
        <source>No</source>
        <extracomment>Value of a property.</extracomment>
        <translation>아니요</translation>
    </message>
    <message id="BYTES_TEXT">
        <source>bytes</source>
        <extracomment>Stands after an exact number of bytes, such as 512 or 1 000 000.</extracomment>
        <translation>바이트</translation>
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
        <translation>%2$@ 중 %1$@ 사용 가능</translation>
    </message>
    <message id="USED_SPACE_FMT">
        <source>%@ used (%@%%)</source>
        <extracomment>Info page, below the bar of a mounted volume. The first %@ is the used space with its unit, the second one a percentage.</extracomment>
        <translation>%@ 사용됨 (%@%%)</translation>
    </message>
    <message id="ALMOST_FULL_FMT">
        <source>%@ used (%@%%), almost full</source>
        <extracomment>In the place of USED_SPACE_FMT from 90 % on.</extracomment>
        <translation>%@ 사용됨 (%@%%), 거의 가득 참</translation>
    </message>
    <message id="PERCENT_FMT">
        <source>%@%%</source>
        <extracomment>A percentage beside a bar. %@ is the number, %% is shown as %.</extracomment>
        <translation>%@%%</translation>
    </message>
    <message id="STATUS_SPACE_UNKNOWN_TEXT">
        <source>It is not known how full the volume is.</source>
        <extracomment>Info page: a mounted volume whose free space is not known.</extracomment>
        <translation>볼륨의 사용량을 알 수 없습니다.</translation>
    </message>
    <message id="STATUS_LOCKED_TEXT">
        <source>Encrypted and locked. Mount asks for the passphrase.</source>
        <extracomment>Info page: an encrypted volume that is locked. “Mount” is the button.</extracomment>
        <translation>암호화되어 잠겨 있습니다. ‘마운트’를 누르면 암호문을 묻습니다.</translation>
    </message>
    <message id="STATUS_UNLOCKED_TEXT">
        <source>Encrypted and unlocked. What it holds has a row of its own.</source>
        <extracomment>Info page: an encrypted volume whose content has a row of its own in the tree.</extracomment>
        <translation>암호화되어 있고 잠금이 해제되었습니다. 내용은 별도의 행에 표시됩니다.</translation>
    </message>
    <message id="STATUS_SWAP_TEXT">
        <source>Swap space: the system keeps memory here, not files.</source>
        <extracomment>Info page: swap space has no files to show.</extracomment>
        <translation>스왑 공간: 파일이 아니라 메모리 내용이 저장됩니다.</translation>
    </message>
    <message id="STATUS_LVM_TEXT">
        <source>Belongs to a volume group (LVM).</source>
        <extracomment>Info page: a part of a volume group of the Logical Volume Manager.</extracomment>
        <translation>볼륨 그룹(LVM)에 속합니다.</translation>
    </message>
    <message id="STATUS_RAID_TEXT">
        <source>Belongs to a RAID array.</source>
        <extracomment>Info page: a part of a RAID array.</extracomment>
        <translation>RAID 어레이에 속합니다.</translation>
    </message>
    <message id="STATUS_NOT_RECOGNIZED_TEXT">
        <source>No file system was recognized.</source>
        <extracomment>Info page: a medium without a known file system.</extracomment>
        <translation>파일 시스템을 인식할 수 없습니다.</translation>
    </message>
    <message id="STATUS_OTHER_CONTENT_TEXT">
        <source>It holds data that cannot be shown here.</source>
        <extracomment>Sentence on the Info page for a volume whose content was recognized, but is no file system that can be mounted: a journal, a part of a cluster. It stands below the bar.</extracomment>
        <translation>여기에 표시할 수 없는 데이터가 들어 있습니다.</translation>
    </message>
    <message id="GO_TO_FORMAT_TEXT">
        <source>Give it one on the Format page</source>
        <extracomment>Link on the Info page, below STATUS_NOT_RECOGNIZED_TEXT: shows the Format page.</extracomment>
        <translation>‘포맷’ 페이지에서 만들기</translation>
    </message>
    <message id="STATUS_NOT_MOUNTED_TEXT">
        <source>Not mounted. Mount it to open it and to see how full it is.</source>
        <extracomment>Info page: a volume with a file system that is not mounted. “Mount” is the button.</extracomment>
        <translation>마운트되지 않았습니다. 마운트하면 열 수 있고 사용량이 표시됩니다.</translation>
    </message>
    <message id="STATUS_READ_ONLY_TEXT">
        <source>Read-only: it can be checked, but not repaired or formatted.</source>
        <extracomment>Added to one of the sentences above it, for a volume that cannot be written.</extracomment>
        <translation>읽기 전용: 검사할 수 있지만 복구하거나 포맷할 수 없습니다.</translation>
    </message>
    <message id="STATUS_PARTITIONS_FMT">
        <source>Volumes: %@, mounted: %@.</source>
        <extracomment>Info page: a disk with partitions. The first %@ is the number of its volumes, the second one that of the mounted ones.</extracomment>
        <translation>볼륨: %@, 마운트됨: %@.</translation>
    </message>
    <message id="STATUS_UNUSED_FMT">
        <source>%@ belong to no volume.</source>
        <extracomment>Added to STATUS_PARTITIONS_FMT. %@ is a size with its unit.</extracomment>
        <translation>%@는 어떤 볼륨에도 속하지 않습니다.</translation>
    </message>
    <message id="STATUS_HIDDEN_FMT">
        <source>Partitions that are not listed, such as those that start the computer: %@.</source>
        <extracomment>Info page of a disk: partitions that have no row in the tree. %@ is their size with its unit.</extracomment>
        <translation>목록에 없는 파티션(시동용 등): %@.</translation>
    </message>
    <message id="MAP_HIDDEN_FMT">
        <source>Partition that is not listed, %@</source>
        <extracomment>Tip of a part of the map of a disk: a partition that has no row in the tree. %@ is its size with its unit.</extracomment>
        <translation>목록에 없는 파티션, %@</translation>
    </message>
    <message id="FORCE_UNMOUNT_BUTTON_TITLE">
        <source>&amp;Force Unmount</source>
        <extracomment>Button of the question after a failed unmount: unmounts although the volume is in use.</extracomment>
        <translation>강제 마운트 해제(&amp;F)</translation>
    </message>
    <message id="CANCEL_UNMOUNT_BUTTON_TITLE">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question after a failed unmount: leaves everything as it is.</extracomment>
        <translation>취소(&amp;C)</translation>
    </message>
    <message id="UNLOCK_DIALOG_TITLE">
        <source>Unlock the volume?</source>
        <extracomment>Title of the question for the passphrase of an encrypted volume.</extracomment>
        <translation>볼륨의 잠금을 해제하시겠습니까?</translation>
    </message>
    <message id="UNLOCK_DIALOG_TEXT_FMT">
        <source>%@ on %@, %@</source>
        <extracomment>Which volume the passphrase is for. The first %@ is its size, the second the name of its disk, the third its device, such as /dev/sdb3.</extracomment>
        <translation>%2$@의 %1$@, %3$@</translation>
    </message>
    <message id="PASSPHRASE_ACCESSIBLE_NAME">
        <source>Passphrase</source>
        <extracomment>What a screen reader calls the field for the passphrase of an encrypted volume.</extracomment>
        <translation>암호문</translation>
    </message>
    <message id="WRONG_PASSPHRASE_TEXT">
        <source>That was not the passphrase. Try again.</source>
        <extracomment>In the question for a passphrase that is asked again, because the one before was wrong.</extracomment>
        <translation>암호문이 올바르지 않습니다. 다시 입력하십시오.</translation>
    </message>
    <message id="UNLOCK_BUTTON_TITLE">
        <source>&amp;Unlock</source>
        <extracomment>Button of the question for a passphrase: unlocks the encrypted volume and mounts it.</extracomment>
        <translation>잠금 해제(&amp;U)</translation>
    </message>
    <message id="CANCEL_UNLOCK_BUTTON_TITLE">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question for a passphrase: leaves the volume locked.</extracomment>
        <translation>취소(&amp;C)</translation>
    </message>
    <message id="DISK_SERVICE_GAVE_NO_REASON_TEXT">
        <source>The disk service gave no reason.</source>
        <extracomment>Stands as the reason in an alert, after “Error while mounting disk2s1:”, when the disk service gives none.</extracomment>
        <translation>디스크 서비스가 이유를 알려 주지 않았습니다.</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUME_TITLE">
        <source>The volume could not be unmounted</source>
        <extracomment>Title of the question after a failed unmount.</extracomment>
        <translation>볼륨을 마운트 해제할 수 없습니다</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUME_BODY_FMT">
        <source>A program may still be using the volume %@. If you force the unmount, unsaved data may be lost.</source>
        <extracomment>Text of the question after a failed unmount. %@ is the name of the device, such as disk2s1.</extracomment>
        <translation>볼륨 %@을(를) 아직 사용 중인 프로그램이 있을 수 있습니다. 강제로 마운트 해제하면 저장하지 않은 데이터가 손실될 수 있습니다.</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUMES_TITLE">
        <source>The disk could not be ejected</source>
        <extracomment>Title of the question when a disk cannot be ejected because one of its volumes is in use.</extracomment>
        <translation>디스크를 꺼낼 수 없습니다</translation>
    </message>
    <message id="FAILED_TO_UNMOUNT_VOLUMES_BODY_FMT">
        <source>Programs may still be using volumes on the disk %@. If you force the unmount, unsaved data may be lost.</source>
        <extracomment>Text of the question when a disk cannot be ejected because one of its volumes is in use. %@ is the name of the device, such as disk2.</extracomment>
        <translation>디스크 %@의 볼륨을 아직 사용 중인 프로그램이 있을 수 있습니다. 강제로 마운트 해제하면 저장하지 않은 데이터가 손실될 수 있습니다.</translation>
    </message>
    <message id="FORMAT_FILESYSTEM_CAPTION">
        <source>File &amp;system:</source>
        <extracomment>Caption of the menu from which the file system of the formatted volume is chosen.</extracomment>
        <translation>파일 시스템(&amp;S):</translation>
    </message>
    <message id="FORMAT_FILESYSTEM_PLACEHOLDER">
        <source>Choose a file system</source>
        <extracomment>Shown in the menu of file systems on the Format page while none is chosen.</extracomment>
        <translation>파일 시스템 선택</translation>
    </message>
    <message id="FORMAT_TOO_SMALL_FMT">
        <source>for volumes of %@ or more</source>
        <extracomment>In the menu of file systems, at the end of an item that is disabled because the disk is too small for it. %@ is the least size with its unit.</extracomment>
        <translation>%@ 이상의 볼륨용</translation>
    </message>
    <message id="FORMAT_TOO_LARGE_FMT">
        <source>for volumes up to %@</source>
        <extracomment>In the menu of file systems, at the end of an item that is disabled because the disk is too large for it. %@ is the largest size with its unit.</extracomment>
        <translation>%@ 이하의 볼륨용</translation>
    </message>
    <message id="FORMAT_LABEL_CAPTION">
        <source>Volume &amp;label:</source>
        <extracomment>Caption of the field for the name that the formatted volume gets.</extracomment>
        <translation>볼륨 이름(&amp;L):</translation>
    </message>
    <message id="FORMAT_BUTTON_TITLE">
        <source>Fo&amp;rmat…</source>
        <extracomment>Button: asks for confirmation and then formats the selected volume.</extracomment>
        <translation>포맷(&amp;R)…</translation>
    </message>
    <message id="FORMAT_ERASES_FMT">
        <source>Formatting erases everything on %@.</source>
        <extracomment>Format page, beside the button. %@ is the name of the disk or volume.</extracomment>
        <translation>포맷하면 %@의 모든 내용이 지워집니다.</translation>
    </message>
    <message id="LABEL_PLACEHOLDER_TEXT">
        <source>Untitled</source>
        <extracomment>Format page, in the empty field for the label of the new volume: it will have no label.</extracomment>
        <translation>이름 없음</translation>
    </message>
    <message id="REASON_BUSY_TEXT">
        <source>Another task is running on this disk.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>이 디스크에서 다른 작업이 실행 중입니다.</translation>
    </message>
    <message id="REASON_INTERNAL_TEXT">
        <source>Internal disks are not ejected.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>내장 디스크는 꺼낼 수 없습니다.</translation>
    </message>
    <message id="REASON_READ_ONLY_TEXT">
        <source>It can only be read.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>읽기 전용입니다.</translation>
    </message>
    <message id="REASON_PARTITIONS_TEXT">
        <source>Select one of the volumes on this disk.</source>
        <extracomment>Tool tip of a disabled button: why it is. The disk is divided into volumes.</extracomment>
        <translation>이 디스크의 볼륨 하나를 선택하십시오.</translation>
    </message>
    <message id="REASON_NO_TOOL_TEXT">
        <source>There is no tool for this file system.</source>
        <extracomment>Tool tip of a disabled button: why it is.</extracomment>
        <translation>이 파일 시스템용 도구가 없습니다.</translation>
    </message>
    <message id="PACKAGES_MISSING_FMT">
        <source>Needs a package that is not installed: %@.</source>
        <extracomment>Format page, and tool tip of “Check” and “Repair”: the tools of the file system are missing. The packages that have them.</extracomment>
        <translation>설치되지 않은 패키지가 필요합니다: %@</translation>
    </message>
    <message id="REASON_NOT_WHOLE_TEXT">
        <source>Select the whole disk.</source>
        <extracomment>Why “Erase Disk…” is disabled: a volume is selected, not the disk that it is on.</extracomment>
        <translation>전체 디스크를 선택하십시오.</translation>
    </message>
    <message id="REASON_NO_PARTITIONS_TEXT">
        <source>This disk cannot have partitions.</source>
        <extracomment>Why “Erase Disk…” is disabled: there can be no partitions on such a disk.</extracomment>
        <translation>이 디스크에는 파티션을 만들 수 없습니다.</translation>
    </message>
    <message id="REASON_SYSTEM_TEXT">
        <source>The running system uses this disk.</source>
        <extracomment>Why “Erase Disk…” is disabled.</extracomment>
        <translation>실행 중인 시스템이 이 디스크를 사용합니다.</translation>
    </message>
    <message id="REASON_NOT_EJECTABLE_TEXT">
        <source>This disk cannot be ejected.</source>
        <extracomment>Why “Eject” is disabled.</extracomment>
        <translation>이 디스크는 꺼낼 수 없습니다.</translation>
    </message>
    <message id="INVALID_VOLUME_LABEL_TEXT">
        <source>The volume label is not valid</source>
        <extracomment>Title of the message about a volume label that the file system does not allow.</extracomment>
        <translation>볼륨 이름이 올바르지 않습니다</translation>
    </message>
    <message id="INVALID_NTFS_VOLUME_NAME_TEXT">
        <source>An NTFS volume label can be at most 128 characters long. Some characters, such as emoji, count as two.</source>
        <extracomment>Text of the message about a volume label that NTFS does not allow.</extracomment>
        <translation>NTFS 볼륨 이름은 최대 128자까지 사용할 수 있습니다. 이모지와 같은 일부 문자는 두 자로 계산됩니다.</translation>
    </message>
    <message id="INVALID_FAT_VOLUME_NAME_TEXT">
        <source>A FAT volume label can have up to 11 characters: capital letters A to Z, digits, spaces and symbols, but none of these: " * / : &lt; &gt; ? \ |</source>
        <extracomment>Text of the message about a volume label that FAT does not allow. Small and accented letters are not allowed. Keep the nine signs as they are.</extracomment>
        <translation>FAT 볼륨 이름은 최대 11자까지 사용할 수 있습니다. 영문 대문자 A~Z, 숫자, 공백, 기호를 쓸 수 있지만 다음 기호는 쓸 수 없습니다: " * / : &lt; &gt; ? \ |</translation>
    </message>
    <message id="INVALID_EXFAT_VOLUME_NAME_TEXT">
        <source>An exFAT volume label can have up to 11 characters; some, such as emoji, count as two. It must not contain control characters or any of these: " * / : &lt; &gt; ? \ |</source>
        <extracomment>Text of the message about a volume label that exFAT does not allow. Keep the nine signs as they are.</extracomment>
        <translation>exFAT 볼륨 이름은 최대 11자까지 사용할 수 있습니다. 이모지와 같은 일부 문자는 두 자로 계산됩니다. 제어 문자와 다음 기호는 쓸 수 없습니다: " * / : &lt; &gt; ? \ |</translation>
    </message>
    <message id="LABEL_BYTES_LIMIT_FMT">
        <source>A volume label for %1$@ can be at most %2$@ bytes long. Accented letters and characters of many scripts take two or more.</source>
        <extracomment>Text of the message about a volume label that is too long. %1$@ is the file system, %2$@ the number of bytes.</extracomment>
        <translation>%1$@ 볼륨 이름은 최대 %2$@바이트까지 사용할 수 있습니다. 한글과 같은 문자는 2바이트 이상을 차지합니다.</translation>
    </message>
    <message id="LABEL_CHARACTERS_LIMIT_FMT">
        <source>A volume label for %1$@ can be at most %2$@ characters long. Some characters, such as emoji, count as two.</source>
        <extracomment>Text of the message about a volume label that is too long. %1$@ is the file system, %2$@ the number of characters.</extracomment>
        <translation>%1$@ 볼륨 이름은 최대 %2$@자까지 사용할 수 있습니다. 이모지와 같은 일부 문자는 두 자로 계산됩니다.</translation>
    </message>
    <message id="LABEL_FORBIDDEN_CHARACTERS_FMT">
        <source>A volume label for %1$@ must not contain any of these characters: %2$@</source>
        <extracomment>Text of the message about a volume label with a character that the file system does not allow. %1$@ is the file system, %2$@ all such characters, with spaces between them.</extracomment>
        <translation>%1$@ 볼륨 이름에는 다음 문자를 쓸 수 없습니다: %2$@</translation>
    </message>
    <message id="LABEL_LEADING_SPACE_FMT">
        <source>A volume label for %@ must not begin with a space.</source>
        <extracomment>Text of the message about a volume label that begins with a space. %@ is the file system.</extracomment>
        <translation>%@ 볼륨 이름은 공백으로 시작할 수 없습니다.</translation>
    </message>
    <message id="LABEL_FORBIDDEN_FIRST_CHARACTER_FMT">
        <source>A volume label for %1$@ must not begin with “%2$@”.</source>
        <extracomment>Text of the message about a volume label that begins with a character that may not come first. %1$@ is the file system, %2$@ the character.</extracomment>
        <translation>%1$@ 볼륨 이름은 ‘%2$@’(으)로 시작할 수 없습니다.</translation>
    </message>
    <message id="LABEL_ASCII_ONLY_FMT">
        <source>A volume label for %@ can only contain letters without accents, digits, spaces and symbols of ASCII.</source>
        <extracomment>Text of the message about a volume label with a character beyond ASCII. %@ is the file system.</extracomment>
        <translation>%@ 볼륨 이름에는 영문자, 숫자, 공백, ASCII 기호만 쓸 수 있습니다.</translation>
    </message>
    <message id="LABEL_UNPRINTABLE_FMT">
        <source>A volume label for %@ must not contain control characters or the replacement character (U+FFFD).</source>
        <extracomment>Text of the message about a volume label with characters that cannot be seen or were lost. %@ is the file system. U+FFFD is the sign that stands for a character that was lost.</extracomment>
        <translation>%@ 볼륨 이름에는 제어 문자와 대체 문자(U+FFFD)를 쓸 수 없습니다.</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_TITLE">
        <source>Erase all data and format?</source>
        <extracomment>Title of the question before formatting. The name, size and device of what will be formatted are shown with it.</extracomment>
        <translation>모든 데이터를 지우고 포맷하시겠습니까?</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_BODY">
        <source>Formatting erases all data on the disk or volume. This cannot be undone.</source>
        <extracomment>Text of the question before formatting.</extracomment>
        <translation>포맷하면 디스크 또는 볼륨의 모든 데이터가 지워집니다. 이 작업은 되돌릴 수 없습니다.</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_CONTINUE_BUTTON_TEXT">
        <source>&amp;Erase and Format</source>
        <extracomment>Button of the question before formatting: starts it.</extracomment>
        <translation>지우고 포맷(&amp;E)</translation>
    </message>
    <message id="CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT">
        <source>&amp;Cancel</source>
        <extracomment>Button of the question before formatting: changes nothing.</extracomment>
        <translation>취소(&amp;C)</translation>
    </message>
    <message id="FORMAT_TARGET_NAME_CAPTION">
        <source>Name:</source>
        <extracomment>Caption in the question before formatting: the name of the disk or volume.</extracomment>
        <translation>이름:</translation>
    </message>
    <message id="FORMAT_TARGET_SIZE_CAPTION">
        <source>Size:</source>
        <extracomment>Caption in the question before formatting: the size of the disk or volume.</extracomment>
        <translation>크기:</translation>
    </message>
    <message id="FORMAT_TARGET_DEVICE_CAPTION">
        <source>Device:</source>
        <extracomment>Caption in the question before formatting: the device, such as disk2s1 (/dev/sda1).</extracomment>
        <translation>장치:</translation>
    </message>
    <message id="FORMAT_TARGET_CONTENT_CAPTION">
        <source>Current file system:</source>
        <extracomment>Caption in the question before formatting: the file system that will be erased.</extracomment>
        <translation>현재 파일 시스템:</translation>
    </message>
    <message id="FORMAT_QUESTION_LINE_FMT">
        <source>%@ %@</source>
        <extracomment>A line of the question before formatting: a caption, such as “Current file system:”, and what it is. Without the space where the colon brings its own.</extracomment>
        <translation>%@ %@</translation>
    </message>
    <message id="FORMAT_TARGET_NOTHING_TEXT">
        <source>not recognized</source>
        <extracomment>Stands after “Current file system:” when no known file system was found. It does not mean that there is no data.</extracomment>
        <translation>인식되지 않음</translation>
    </message>
    <message id="ERASE_DISK_SHEET_TITLE">
        <source>Erase Disk</source>
        <extracomment>Title of the sheet that asks how a whole disk is to be erased.</extracomment>
        <translation>디스크 지우기</translation>
    </message>
    <message id="ERASE_DISK_SCHEME_CAPTION">
        <source>&amp;Partition scheme:</source>
        <extracomment>Caption in that sheet: how the disk is divided into partitions, MBR or GPT. &amp; marks the letter that leads there.</extracomment>
        <translation>파티션 방식(&amp;P):</translation>
    </message>
    <message id="ERASE_DISK_CONTINUE_BUTTON_TEXT">
        <source>&amp;Erase…</source>
        <extracomment>Button of that sheet: a question follows before anything is erased. &amp; marks its letter.</extracomment>
        <translation>지우기(&amp;E)…</translation>
    </message>
    <message id="CONTENT_ENCRYPTED_TEXT">
        <source>encrypted</source>
        <extracomment>What is on a volume in the place of a file system: it is encrypted. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>암호화됨</translation>
    </message>
    <message id="CONTENT_LVM_TEXT">
        <source>LVM member</source>
        <extracomment>What is on a volume in the place of a file system: it is a part of an LVM volume group. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>LVM 구성원</translation>
    </message>
    <message id="CONTENT_RAID_TEXT">
        <source>RAID member</source>
        <extracomment>What is on a volume in the place of a file system: it is a part of a RAID array. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>RAID 구성원</translation>
    </message>
    <message id="CONTENT_SWAP_TEXT">
        <source>swap space</source>
        <extracomment>What is on a volume in the place of a file system: swap space of a Linux system. Stands after “File system:” and “Current file system:”, and in the tool tip of a row.</extracomment>
        <translation>스왑 공간</translation>
    </message>
    <message id="CONTENT_BASIC_DATA_TEXT">
        <source>Basic data</source>
        <extracomment>Beside the identifier of a partition's type: what it means.</extracomment>
        <translation>기본 데이터</translation>
    </message>
    <message id="CONTENT_LINUX_TEXT">
        <source>Linux file system</source>
        <extracomment>Beside the identifier of a partition's type: what it means.</extracomment>
        <translation>Linux 파일 시스템</translation>
    </message>
    <message id="CONTENT_EFI_TEXT">
        <source>EFI system</source>
        <extracomment>Beside the identifier of a partition's type: the partition that a computer with EFI starts from.</extracomment>
        <translation>EFI 시스템</translation>
    </message>
    <message id="CONTENT_RECOVERY_TEXT">
        <source>Windows recovery</source>
        <extracomment>Beside the identifier of a partition's type: the tools by which Windows is repaired.</extracomment>
        <translation>Windows 복구</translation>
    </message>
    <message id="FORMAT_NEW_FILESYSTEM_CAPTION">
        <source>New file system:</source>
        <extracomment>Caption in the question before formatting: the file system that the volume will have.</extracomment>
        <translation>새 파일 시스템:</translation>
    </message>
    <message id="FORMAT_NEW_LABEL_CAPTION">
        <source>New label:</source>
        <extracomment>Caption in the question before formatting: the label that the volume will have.</extracomment>
        <translation>새 이름:</translation>
    </message>
    <message id="FORMAT_NEW_SCHEME_CAPTION">
        <source>New partition scheme:</source>
        <extracomment>Caption in the question before a whole disk is erased: how the disk will be divided into partitions, MBR or GPT.</extracomment>
        <translation>새 파티션 방식:</translation>
    </message>
    <message id="FORMAT_REFUSED_TITLE">
        <source>The disk or volume cannot be formatted</source>
        <extracomment>Title of the message about a disk or volume that is not formatted because it is in use.</extracomment>
        <translation>디스크 또는 볼륨을 포맷할 수 없습니다</translation>
    </message>
    <message id="FORMAT_REFUSED_SWAP_FMT">
        <source>“%@” is in use as swap space. Turn the swap space off first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>‘%@’은(는) 스왑 공간으로 사용 중입니다. 먼저 스왑을 끄십시오.</translation>
    </message>
    <message id="FORMAT_REFUSED_SYSTEM_FMT">
        <source>“%@” belongs to the running system. To erase it, start the computer from another disk.</source>
        <extracomment>Why a disk or volume is not formatted. %@ is its name.</extracomment>
        <translation>‘%@’은(는) 실행 중인 시스템에 속합니다. 지우려면 다른 디스크로 컴퓨터를 시작하십시오.</translation>
    </message>
    <message id="FORMAT_REFUSED_LVM_FMT">
        <source>“%@” belongs to an LVM volume group that is in use. Remove it from the volume group first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>‘%@’은(는) 사용 중인 LVM 볼륨 그룹에 속해 있습니다. 먼저 볼륨 그룹에서 제거하십시오.</translation>
    </message>
    <message id="FORMAT_REFUSED_RAID_FMT">
        <source>“%@” belongs to a RAID array that is in use. Stop the array first.</source>
        <extracomment>Why a volume is not formatted. %@ is its name.</extracomment>
        <translation>‘%@’은(는) 사용 중인 RAID 배열에 속해 있습니다. 먼저 배열을 중지하십시오.</translation>
    </message>
    <message id="FORMAT_REFUSED_UNLOCKED_FMT">
        <source>“%@” is encrypted and unlocked. Lock it first.</source>
        <extracomment>Why an encrypted volume is not formatted. %@ is its name.</extracomment>
        <translation>‘%@’은(는) 암호화되어 있으며 잠금이 해제되어 있습니다. 먼저 잠그십시오.</translation>
    </message>
    <message id="FORMAT_REFUSED_IN_USE_FMT">
        <source>Another device is made from “%@” and uses it. Remove that device first.</source>
        <extracomment>Why a disk or volume is not formatted: the system made another device from it. %@ is its name.</extracomment>
        <translation>‘%@’을(를) 기반으로 만든 다른 장치가 사용 중입니다. 먼저 그 장치를 제거하십시오.</translation>
    </message>
    <message id="FORMAT_TARGET_CHANGED_TITLE">
        <source>Nothing was erased</source>
        <extracomment>Title of the message when a medium is no longer as the question before formatting showed it.</extracomment>
        <translation>아무것도 지우지 않았습니다</translation>
    </message>
    <message id="FORMAT_TARGET_CHANGED_FMT">
        <source>“%@” has changed since you were asked. Check what is on it before you format it.</source>
        <extracomment>Text of the message when a medium is no longer as the question before formatting showed it. %@ is its name.</extracomment>
        <translation>확인하는 동안 ‘%@’이(가) 변경되었습니다. 내용을 확인한 다음 포맷하십시오.</translation>
    </message>
    <message id="ACTIVITY_FORMATTING_FMT">
        <source>Formatting “%@”…</source>
        <extracomment>Shown while a volume is formatted. %@ is its name.</extracomment>
        <translation>포맷 중: ‘%@’…</translation>
    </message>
    <message id="ACTIVITY_MOUNTING_TEXT">
        <source>Mounting…</source>
        <extracomment>Info page, while the selected volume is mounted.</extracomment>
        <translation>마운트 중…</translation>
    </message>
    <message id="ACTIVITY_UNMOUNTING_TEXT">
        <source>Unmounting: what is still in memory is being written. Do not unplug the disk.</source>
        <extracomment>Info page, while the selected volume is unmounted.</extracomment>
        <translation>마운트 해제 중: 메모리에 남은 데이터를 기록하고 있습니다. 디스크를 빼지 마십시오.</translation>
    </message>
    <message id="ACTIVITY_EJECTING_TEXT">
        <source>Ejecting: what is still in memory is being written. Do not unplug the disk.</source>
        <extracomment>Info page, while the selected disk is ejected.</extracomment>
        <translation>꺼내는 중: 메모리에 남은 데이터를 기록하고 있습니다. 디스크를 빼지 마십시오.</translation>
    </message>
    <message id="ACTIVITY_WAITING_TEXT">
        <source>Waiting for your answer.</source>
        <extracomment>Info page, in place of what runs, while the window asks the user something about it.</extracomment>
        <translation>응답을 기다리고 있습니다.</translation>
    </message>
    <message id="CHECK_BUTTON_TITLE">
        <source>&amp;Check</source>
        <extracomment>Button: looks for errors in the file system of the volume and changes nothing.</extracomment>
        <translation>검사(&amp;C)</translation>
    </message>
    <message id="REPAIR_BUTTON_TITLE">
        <source>&amp;Repair</source>
        <extracomment>Button: corrects errors in the file system of the volume.</extracomment>
        <translation>복구(&amp;R)</translation>
    </message>
    <message id="STOP_BUTTON_TITLE">
        <source>Stop</source>
        <extracomment>Button beside the progress of a check: ends it. Nothing on the volume has been changed.</extracomment>
        <translation>중지</translation>
    </message>
    <message id="OUTPUT_ACCESSIBLE_NAME">
        <source>Check and repair output</source>
        <extracomment>What a screen reader calls the view that shows what the checking and repairing tools print.</extracomment>
        <translation>검사 및 복구 출력</translation>
    </message>
    <message id="OUTPUT_PLACEHOLDER_TEXT">
        <source>What the check prints appears here.</source>
        <extracomment>Maintenance page, in the empty field for the output.</extracomment>
        <translation>검사 출력이 여기에 표시됩니다.</translation>
    </message>
    <message id="OUTPUT_PLACEHOLDER_REPAIR_TEXT">
        <source>What the repair prints appears here.</source>
        <extracomment>In the empty output view while a repair has not printed anything.</extracomment>
        <translation>복구 출력이 여기에 표시됩니다.</translation>
    </message>
    <message id="ACTIVITY_CHECKING_FMT">
        <source>Checking “%@”…</source>
        <extracomment>Shown while a volume is checked. %@ is its name.</extracomment>
        <translation>검사 중: ‘%@’…</translation>
    </message>
    <message id="ACTIVITY_REPAIRING_FMT">
        <source>Repairing “%@”…</source>
        <extracomment>Shown while a volume is repaired. %@ is its name.</extracomment>
        <translation>복구 중: ‘%@’…</translation>
    </message>
    <message id="CHECK_HINT_TEXT">
        <source>A check only reads. A mounted volume is unmounted meanwhile.</source>
        <extracomment>Maintenance page, before anything has run: what a check does.</extracomment>
        <translation>검사는 읽기만 합니다. 마운트된 볼륨은 그동안 마운트 해제됩니다.</translation>
    </message>
    <message id="VERDICT_CLEAN_FMT">
        <source>%@: no errors found</source>
        <extracomment>Maintenance page, after a check. %@ is the name of the volume.</extracomment>
        <translation>%@: 오류 없음</translation>
    </message>
    <message id="VERDICT_ERRORS_FMT">
        <source>%@: errors found, repair it</source>
        <extracomment>Maintenance page, after a check. %@ is the name of the volume.</extracomment>
        <translation>%@: 오류 발견, 복구 필요</translation>
    </message>
    <message id="VERDICT_REPAIRED_FMT">
        <source>%@: in order after the repair</source>
        <extracomment>Maintenance page, after a repair. %@ is the name of the volume.</extracomment>
        <translation>%@: 복구 후 정상</translation>
    </message>
    <message id="VERDICT_NOT_REPAIRED_FMT">
        <source>%@: errors remain</source>
        <extracomment>Maintenance page, after a repair. %@ is the name of the volume.</extracomment>
        <translation>%@: 오류가 남아 있음</translation>
    </message>
    <message id="VERDICT_UNFINISHED_FMT">
        <source>%@: not finished, nothing is known</source>
        <extracomment>Maintenance page, after a check or repair that could not be carried out. %@ is the name of the volume.</extracomment>
        <translation>%@: 완료되지 않음, 상태 알 수 없음</translation>
    </message>
    <message id="VERDICT_TIME_FMT">
        <source>%@, took %@</source>
        <extracomment>Beside the verdict. The first %@ is the time of day at which it ended, the second one how long it took, such as 2:51 (minutes and seconds).</extracomment>
        <translation>%@, 소요 시간 %@</translation>
    </message>
    <message id="DEVICE_GONE_TITLE_FMT">
        <source>“%@” is no longer there</source>
        <extracomment>Title of a message: a disk was unplugged during a check or a repair. %@ is its name.</extracomment>
        <translation>‘%@’이(가) 더 이상 없습니다</translation>
    </message>
    <message id="DEVICE_GONE_DURING_CHECK_TEXT">
        <source>It was removed before the check had ended. Whether the file system has errors is not known. Connect the disk again and repeat the check.</source>
        <extracomment>Below the title that tells that the disk is no longer there.</extracomment>
        <translation>검사가 끝나기 전에 디스크가 제거되었습니다. 파일 시스템에 오류가 있는지 알 수 없습니다. 디스크를 다시 연결하고 검사를 다시 하십시오.</translation>
    </message>
    <message id="DEVICE_GONE_DURING_REPAIR_TEXT">
        <source>It was removed before the repair had ended. The file system may be damaged. Connect the disk again and check it.</source>
        <extracomment>Below the title that tells that the disk is no longer there.</extracomment>
        <translation>복구가 끝나기 전에 디스크가 제거되었습니다. 파일 시스템이 손상되었을 수 있습니다. 디스크를 다시 연결하고 검사하십시오.</translation>
    </message>
    <message id="DEVICE_UNREADABLE_TITLE_FMT">
        <source>“%@” cannot be read to its end</source>
        <extracomment>Title of a message: reads from a disk failed during a check or a repair. %@ is its name.</extracomment>
        <translation>‘%@’을(를) 끝까지 읽을 수 없습니다</translation>
    </message>
    <message id="DEVICE_UNREADABLE_TEXT">
        <source>The device reports errors, so it is not known what state the file system is in. Such a disk may be failing: copy what you need from it while you can.</source>
        <extracomment>Below the title that tells that a disk cannot be read to its end.</extracomment>
        <translation>장치가 오류를 보고하여 파일 시스템의 상태를 알 수 없습니다. 이런 디스크는 고장 나고 있을 수 있습니다. 가능할 때 필요한 것을 복사해 두십시오.</translation>
    </message>
    <message id="CLOSE_QUESTION_REPAIRING_FMT">
        <source>“%@” is being repaired</source>
        <extracomment>Title of the question when the window is closed during a repair. %@ is the name of the volume.</extracomment>
        <translation>‘%@’을(를) 복구하고 있습니다</translation>
    </message>
    <message id="CLOSE_QUESTION_FORMATTING_FMT">
        <source>“%@” is being formatted</source>
        <extracomment>Title of the question when the window is closed during a format. %@ is the name of the disk or volume.</extracomment>
        <translation>‘%@’을(를) 포맷하고 있습니다</translation>
    </message>
    <message id="CLOSE_QUESTION_SEVERAL_TITLE">
        <source>Several disks are being repaired or formatted</source>
        <extracomment>Title of the same question when several disks are at work.</extracomment>
        <translation>여러 디스크를 복구하거나 포맷하고 있습니다</translation>
    </message>
    <message id="CLOSE_QUESTION_TEXT">
        <source>If it is stopped now, the file system can be left damaged and data can be lost. Wait until it has finished.</source>
        <extracomment>Below the title of the question when the window is closed.</extracomment>
        <translation>지금 중단하면 파일 시스템이 손상된 채로 남고 데이터를 잃을 수 있습니다. 끝날 때까지 기다리십시오.</translation>
    </message>
    <message id="CLOSE_QUESTION_WAIT_BUTTON_TITLE">
        <source>&amp;Wait</source>
        <extracomment>Button of the question when the window is closed: leaves the window open.</extracomment>
        <translation>기다리기(&amp;W)</translation>
    </message>
    <message id="CLOSE_QUESTION_STOP_BUTTON_TITLE">
        <source>&amp;Stop and Close</source>
        <extracomment>Button of the question when the window is closed: stops what is running and closes the window.</extracomment>
        <translation>중단하고 닫기(&amp;S)</translation>
    </message>
</context>
</TS>
