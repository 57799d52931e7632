// SPDX-License-Identifier: MIT
//
// The application's controller: delegate of the application, the window, the split view, the outline view and
// the mount path, and data source of the outline view. One class whose operations are kept by concern:
//
//   Lifecycle            app/Lifecycle.cpp
//   Alerts               app/Alerts.cpp
//   Help                 app/Help.cpp
//   Disk tree            disks/DiskTreeOperations.cpp
//   Disk events          disks/DiskEvents.cpp
//   Catalogue            filesystems/Catalogue.cpp
//   Operation state      operations/OperationState.cpp
//   Mount, unmount, eject  operations/MountUnmountEject.cpp
//   Encrypted volumes    operations/EncryptedVolumes.cpp
//   Volume labels        operations/VolumeLabel.cpp
//   Before an erase      operations/EraseQuestion.cpp
//   Format               operations/Format.cpp
//   Erase disk           operations/EraseDisk.cpp
//   Check and repair     operations/CheckRepair.cpp
//   Information panel    ui/InformationPanel.cpp
//   Presentation         ui/Presentation.cpp
//   Outline view         ui/DiskOutline.cpp
//   Split view           ui/DiskSplitView.cpp
//
// Main thread only, but for doFormat(), doEraseDisk(), doCheck() and doRepair(), which are the bodies of
// worker threads.
#pragma once

#include "app/ApplicationPlatform.h"
#include "app/CloseQuestion.h"
#include "app/MainWindowOutlets.h"
#include "app/ZorvexDiskManagerCommon.h"
#include "disks/DiskListBuilder.h"
#include "filesystems/format_menu_rules.h"
#include "operations/RunningOperations.h"
#include "platform/MainThreadRelay.h"
#include "ui/EraseSummary.h"
#include "ui/OutlineDataSource.h"
#include "ui/PanelStatus.h"
#include "ui/SplitView.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPixmap>

#include <chrono>
#include <memory>
#include <optional>
#include <unordered_map>

class AlertSheet;
class FreeSpaceReader;
class QMainWindow;
struct CheckRepairOutputChunk;
struct DiskutilFailure;
struct EraseDiskChoice;
struct FormatTarget;
struct NewVolume;

class ZorvexDiskManagerAppDelegate : public QObject,
                                     public OutlineDataSource,
                                     public OutlineDelegate,
                                     public SplitViewDelegate,
                                     public MainWindowOutlets
{
    Q_OBJECT

public:
    explicit ZorvexDiskManagerAppDelegate(ApplicationPlatform platform);
    ~ZorvexDiskManagerAppDelegate() override;

    // --- State ---

    bool fieldsEnabled = false; // inert
    bool alertInProgress = false; // an alert sheet is showing
    RunningOperations runningOperations;
    CloseQuestion closeQuestion { *this };
    std::unique_ptr<DASession> session; // the one session; null when there is no system bus
    // The lists are absent until the first scan.
    std::optional<FilesystemBundleList> allFilesystemBundlesList;
    std::optional<FilesystemBundleList> formatFilesystemBundlesList;
    std::optional<FilesystemBundleList> checkFilesystemBundlesList;
    std::optional<FilesystemBundleList> repairFilesystemBundlesList;
    ZorvexDiskManagerDiskListItem *disk_list = nullptr; // first top-level node of the disk tree

    // --- Lifecycle. Implemented in app/Lifecycle.cpp ---

    // Called once each, in this order, when the interface file is loaded and when the application is up.
    void awakeFromNib();
    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    void windowDidBecomeKey();
    void windowWillClose();
    // Whether the user interface runs in Arabic, the one language laid out from right to left.
    bool isRightToLeftLocalization() const;
    bool eventFilter(QObject *watched, QEvent *event) override;

    // --- Alerts. Implemented in app/Alerts.cpp ---

    // One sheet at a time: an alert that is asked for while another is showing is dropped with a log line.
    // The selector names an invokable of this class that follows the sheet's end; null for none.
    void messageWithTitle(const QString &title, const QString &infoText, unsigned alertStyle,
        const char *didEndSelector = nullptr);
    void errorMessageWithTitle(const QString &title, const QString &infoText);
    Q_INVOKABLE void errorMessage(const QString &text);
    void infoMessageWithTitle(const QString &title, const QString &infoText);
    void alertDidEnd(AlertSheet *alert, int returnCode, const char *contextInfo);

    // --- Help. Implemented in app/Help.cpp ---

    Q_INVOKABLE void clickHelpMenuItem(QObject *sender);
    Q_INVOKABLE void clickAboutButton(QObject *sender);
    // Fills the view with the text styled as a link. What a click opens is the selected disk's mount point.
    void makeHyperlink(LinkTextView *textView, const QString &fromString, const QUrl &withURL);
    void textViewDidChangeSelection();
    // Opens the mount point of the selected disk in the file manager.
    Q_INVOKABLE void showInFileManager();

    // --- Disk tree. Implemented in disks/DiskTreeOperations.cpp ---

    // Rebuilds the tree with the new node, refreshes the outline view and keeps the selection on its medium.
    void addDiskListItem(std::unique_ptr<ZorvexDiskManagerDiskListItem> item);
    // Calls the function, which reports what appeared and changed at once, and shows it afterwards.
    void followBurst(const std::function<void()> &report);

    // --- Disk events. Implemented in disks/DiskEvents.cpp ---

    void diskArbitrationDiskPeek(const DADiskRef &disk);
    void diskArbitrationDiskAppeared(const DADiskRef &disk);
    void diskArbitrationDiskDisappeared(const DADiskRef &disk);
    void diskArbitrationDiskDescriptionChanged(const DADiskRef &disk, const QStringList &keys);
    // Whether the selected medium took the place of one that went a moment ago: what is pressed now was meant
    // for the other.
    bool hasSelectionJustMoved() const;

    // Reads the bundles and asks the disk service for its media again. Changes nothing on a disk.
    Q_INVOKABLE void clickRefreshMenuItem(QObject *sender);

    // --- Catalogue. Implemented in filesystems/Catalogue.cpp ---

    void refreshFilesystems();
    // The personality's name in the user's language, as its bundle words it.
    QString getFilesystemTypeString(const ZorvexDiskManagerFSBundle &bundle) const;
    void refreshFormatFilesystemsPopupButton();
    // The menu for a disk of this size in bytes, with why an item of it is disabled.
    FormatMenuRules::FormatMenu formatMenuFor(
        std::optional<qint64> mediaSize, const FilesystemBundleRef &remembered) const;
    // What the file system needs and the system lacks, in a sentence; empty when all is there, or for null.
    QString missingPackagesText(const ZorvexDiskManagerFSBundle *filesystem) const;

    // --- Operation state. Implemented in operations/OperationState.cpp ---

    // Marks the medium as busy and refreshes the window. Controls of a busy medium are disabled.
    void beginOperation(const DiskRecord &disk, RunningOperation operation);
    // Marks it as idle and refreshes the window. What there is to report has been reported before.
    void finishOperation(const DiskRecord &disk);
    // The operation stands still while the user is asked something, or goes on.
    void setWaitsForAnswer(const DiskRecord &disk, bool waits);
    // Brings the rows and the information panel up to date with the records.
    void refreshAfterStateChange();

    // --- Mount, unmount, eject. Implemented in operations/MountUnmountEject.cpp ---

    Q_INVOKABLE void clickMountUnmountButton(QObject *sender);
    // Unmounts every volume of the selected disk, or of the disk that the selected medium is on, and ejects
    // it.
    Q_INVOKABLE void clickEjectMenuItem(QObject *sender);
    void unmountDidUnmountDisk(
        const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &daDisk);
    void unmountForceUnmountDialogDidEnd(AlertSheet *alert, int returnCode, const DiskRecord &contextInfo);
    void ejectDidUnmountDisk(const DiskRecord &disk, const DADissenterRef &dissenter);
    void ejectForceUnmountDialogDidEnd(AlertSheet *alert, int returnCode, const DiskRecord &contextInfo);
    void ejectDidForceUnmountDisk(const DiskRecord &disk, const DADissenterRef &dissenter);
    void diskArbitrationDiskDidMount(const DiskRecord &disk, const DADissenterRef &withDissenter);
    void diskArbitrationDiskDidUnmount(const DiskRecord &disk, const DADissenterRef &withDissenter);
    void diskArbitrationDiskDidEject(const DiskRecord &disk, const DADissenterRef &withDissenter);
    static QString dissenterStatusToString(const DADissenter &dissenter);

    // --- Encrypted volumes. Implemented in operations/EncryptedVolumes.cpp ---

    // Asks for the passphrase of a locked volume, again when the last one was wrong.
    void askForPassphrase(const DADiskRef &disk, bool isRetry, PassphraseAnswer answer);
    // Locks the volume that has been unmounted, if it was unlocked, and reports the end.
    void finishUnmount(const DADiskRef &disk, const DiskRecord &record);

    // --- Volume labels. Implemented in operations/VolumeLabel.cpp ---

    // Whether the file system can hold the label; false after an alert that says why not.
    bool validateVolumeLabel(const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem);
    // The same for the rule that the file system's own bundle declares.
    bool bundleAllowsLabel(const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem);

    // --- Before an erase. Implemented in operations/EraseQuestion.cpp ---

    // True after an alert that says how the medium is in use, beyond what an unmount ends.
    bool refusesToFormat(const ZorvexDiskManagerDisk &disk);
    // The medium as the question before an erase shows it.
    FormatTarget formatTargetOf(const ZorvexDiskManagerDisk &disk) const;
    // Asks whether what the block tells of is to be erased, and names what will be there instead.
    void askBeforeErase(const SummaryBlock &target, const NewVolume &newVolume,
        std::function<void(AlertSheet *alert, int returnCode)> didEnd);

    // --- Format. Implemented in operations/Format.cpp ---

    Q_INVOKABLE void clickFormatButton(QObject *sender);
    void formatWarningAlertDidEnd(
        AlertSheet *alert, int returnCode, const std::shared_ptr<ZorvexDiskManagerFormatParams> &contextInfo);
    void formatFinished(const std::shared_ptr<ZorvexDiskManagerFormatParams> &params);
    void postFormatRenameFinished(
        const std::shared_ptr<ZorvexDiskManagerFormatParams> &params, const DADissenterRef &dissenter);
    void postFormatRenameUnmountFinished(
        const std::shared_ptr<ZorvexDiskManagerFormatParams> &params, const DADissenterRef &dissenter);
    void postFormatRenameMountFinished(
        const std::shared_ptr<ZorvexDiskManagerFormatParams> &params, const DADissenterRef &dissenter);

    // --- Erase disk. Implemented in operations/EraseDisk.cpp ---

    // The string key of the reason why the menus do not offer to erase this medium; null when they do. It is
    // a whole disk then that can be written and does not carry the system.
    const char *eraseDiskReasonKey(const ZorvexDiskManagerDisk &disk) const;
    Q_INVOKABLE void clickEraseDiskMenuItem(QObject *sender);
    // Ends the operation, and selects the new volume unless the user has gone elsewhere meanwhile.
    void eraseDiskFinished(const DiskRecord &disk, bool hasFailed);

    // --- Check and repair. Implemented in operations/CheckRepair.cpp ---

    Q_INVOKABLE void clickCheckButton(QObject *sender);
    Q_INVOKABLE void clickRepairButton(QObject *sender);
    void stopCheck(); // of the selected volume
    void clickCheckRepairButton(QObject *sender, bool isRepair);
    void updateCheckRepairOutput(const CheckRepairOutputChunk &chunk);
    void checkRepairFinished(const DiskRecord &disk);

    // --- Information panel. Implemented in ui/InformationPanel.cpp ---

    // Rebuilds the right-hand side of the window from the selected disk.
    void outlineViewSelectionDidChange() override;
    void outlineViewSelectionIsChanging() override;

    // --- Presentation. Implemented in ui/Presentation.cpp ---

    // Sizes in bytes; a null free space leaves it out.
    QString getSizeString(qint64 size) const;
    QString getDiskSpaceStringWithDiskSize(qint64 diskSize, const qint64 *freeSpace) const;
    QString getAlternateDiskSpaceStringWithDiskSize(qint64 diskSize, const qint64 *freeSpace) const;
    // Asks the mounted volume for its free space in bytes (-1 when it does not tell) and its subtype; either
    // may be null. False when the volume is not mounted.
    bool getVolumeData(const ZorvexDiskManagerDisk &disk, qint64 *freeSpace, qint16 *subType) const;
    static QString getDisplayNameForDisk(const ZorvexDiskManagerDisk &disk);
    // Returns std::nullopt when the program has no image of that name.
    std::optional<QPixmap> getUIImageforDisk(const ZorvexDiskManagerDisk &disk, bool needBigImage) const;
    std::optional<QPixmap> getImageNamed(const QString &name) const;
    void setMountImageWithIsUnmountable(bool isUnmountable);
    // Draws all pictures again: the window is on another screen, or its text has another size.
    void redrawPictures();
    void showBigImage(const QString &name);

    // --- Outline view. Implemented in ui/DiskOutline.cpp ---

    int outlineView_numberOfChildrenOfItem(OutlineView *view, const OutlineItem &item) override;
    OutlineItem outlineView_child_ofItem(OutlineView *view, int index, const OutlineItem &item) override;
    std::vector<OutlineItem> outlineView_childrenOfItem(OutlineView *view, const OutlineItem &item) override;
    bool outlineView_isItemExpandable(OutlineView *view, const OutlineItem &item) override;
    QString outlineView_objectValueForTableColumn_byItem(
        OutlineView *view, int column, const OutlineItem &item) override;
    bool outlineView_isItemBusy(OutlineView *view, const OutlineItem &item) override;
    QString outlineView_glyphOfItem(OutlineView *view, const OutlineItem &item) override;
    QString outlineView_accessibleTextByItem(OutlineView *view, const OutlineItem &item) override;
    void outlineView_setObjectValue_forTableColumn_byItem(
        OutlineView *view, const QVariant &value, int column, const OutlineItem &item) override;
    bool outlineView_acceptDrop_item_childIndex(
        OutlineView *view, const QMimeData *drop, const OutlineItem &item, int index) override;
    Qt::DropAction outlineView_validateDrop_proposedItem_proposedChildIndex(
        OutlineView *view, const QMimeData *drop, const OutlineItem &item, int index) override;
    QStringList outlineView_namesOfPromisedFilesDroppedAtDestination_forDraggedItems(
        OutlineView *view, const QString &destination, const std::vector<OutlineItem> &items) override;
    OutlineItem outlineView_itemForPersistentObject(OutlineView *view, const QVariant &object) override;
    QVariant outlineView_persistentObjectForItem(OutlineView *view, const OutlineItem &item) override;
    bool outlineView_writeItems_toPasteboard(
        OutlineView *view, const std::vector<OutlineItem> &items, QMimeData *pasteboard) override;
    void outlineView_sortDescriptorsDidChange(OutlineView *view, const QStringList &oldDescriptors) override;
    void outlineView_willDisplayCell_forTableColumn_item(
        OutlineView *view, TextFieldCell *cell, int column, const OutlineItem &item) override;
    bool outlineView_shouldEditTableColumn_item(
        OutlineView *view, int column, const OutlineItem &item) override;
    void outlineView_didClickTableColumn(OutlineView *view, int column) override;
    void outlineViewColumnDidResize() override;
    // Fits the outline view into its container, in a right-to-left layout.
    void resizeOutlineView();

    // --- Split view. Implemented in ui/DiskSplitView.cpp ---

    int splitView_constrainMinCoordinate_ofSubviewAt(SplitView *view, int proposed, int index) override;
    int splitView_constrainMaxCoordinate_ofSubviewAt(SplitView *view, int proposed, int index) override;
    void splitView_resizeSubviewsWithOldSize(SplitView *view, const QSize &oldSize) override;

Q_SIGNALS:
    // The medium has gone, or is about to: its record still stands in the tree.
    void diskWillDisappear(const DADiskRef &disk);
    // The information panel has been rebuilt and shows this disk; null for none.
    void panelDidChange(const DiskRecord &disk);

private:
    // app/Lifecycle.cpp
    void swapPanes();
    void setLeastSize(); // of the window, for its text
    void colorOutput(); // in the colour of the window's text
    void serviceDidChange(bool isAvailable); // the disk service

    // disks/DiskTreeOperations.cpp
    void releaseDiskListItem(ZorvexDiskManagerDiskListItem *item);
    void showBurst();
    bool showAdded(const std::vector<ZorvexDiskManagerDiskListItem *> &added);

    // operations/MountUnmountEject.cpp
    void showForceDialog(const DiskRecord &disk, const char *titleKey, const char *bodyKey,
        std::function<void(AlertSheet *, int)> didEnd);
    void reportOutcome(const DiskRecord &disk, const QString &format, const DADissenterRef &dissenter,
        const std::optional<QString> &reason = {});
    // Tells the user where the volume is mounted, if that is a place where they cannot go.
    void reportVolumeOutOfReach(const ZorvexDiskManagerDisk &disk);

    // operations/EncryptedVolumes.cpp
    QString lockedVolumeText(const ZorvexDiskManagerDisk &volume);

    // operations/VolumeLabel.cpp
    // The sentence of the first rule, the application's or the bundle's, that the label does not keep.
    std::optional<QString> bundleObjection(
        const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem) const;
    std::optional<QString> volumeLabelObjection(
        const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem) const;
    bool reportObjection(const std::optional<QString> &objection); // whether there is none
    // What to know before such a volume is made, in a sentence; empty when there is nothing, or for null.
    QString formatRemark(const ZorvexDiskManagerFSBundle *forFilesystem, const QString &name) const;

    // operations/EraseQuestion.cpp
    void refuseToErase(const char *key, const QString &name);
    SummaryBlock formatTargetBlock(const ZorvexDiskManagerDisk &disk, const QString &content) const;
    QString contentTextOf(const ZorvexDiskManagerDisk &disk) const;
    void reportNothingErased(const ZorvexDiskManagerDisk &disk);

    // operations/OperationState.cpp
    // The pipe for the tool of an operation that has begun.
    std::shared_ptr<ShellPipe> createPipeFor(const DiskRecord &disk);

    // operations/EraseDisk.cpp
    SummaryBlock eraseTargetBlock(const ZorvexDiskManagerDisk &disk) const;
    bool refusesToEraseDisk(const ZorvexDiskManagerDisk &disk);
    std::vector<FormatTarget> eraseTargetsOf(const ZorvexDiskManagerDisk &disk) const;
    void confirmEraseDisk(const DiskRecord &disk, EraseDiskChoice choice);
    void beginEraseDisk(const DiskRecord &disk, const EraseDiskChoice &choice);
    static void doEraseDisk(const DiskRecord &disk, const QString &arguments,
        const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe); // on a worker thread

    // operations/Format.cpp, operations/CheckRepair.cpp: bodies of worker threads
    static void doFormat(const std::shared_ptr<ZorvexDiskManagerFormatParams> &params, const QString &bsdName,
        const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe);
    static void doCheck(const DiskRecord &disk, const QString &bsdName,
        const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe);
    static void doRepair(const DiskRecord &disk, const QString &bsdName,
        const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe);
    static void doCheckRepair(const DiskRecord &disk, const QString &bsdName,
        const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe, bool isRepair);
    void reportCheckRepairFailure(
        const ZorvexDiskManagerDisk &disk, const DiskutilFailure &failure, bool isRepair);
    void scheduleOutputRefresh();

    // ui/DiskOutline.cpp
    DiskRecord selectedDisk() const; // null for none
    void selectMedium(const QString &bsdName); // nothing when it has no row
    QString rowTextOf(const ZorvexDiskManagerDisk &disk, const QString &filesystem) const;

    // ui/InformationPanel.cpp
    struct PanelTexts;
    PanelTexts textsOf(ZorvexDiskManagerDisk &disk);
    // The name of the file system of this subtype; what is there instead when there is none; else empty.
    QString filesystemTextOf(const ZorvexDiskManagerDisk &disk, qint32 subtype) const;
    QString deviceNodeTextOf(const ZorvexDiskManagerDisk &disk) const;
    QString leftToRightInWindow(const QString &text) const; // set apart where the window is mirrored
    void showOutputOf(const ZorvexDiskManagerDisk &disk);
    void showMountPathOf(const ZorvexDiskManagerDisk *disk);
    bool enableControls(const ZorvexDiskManagerDisk &disk);
    void disableControls();
    void updateTabs(const ZorvexDiskManagerDisk *disk, bool canFormat);

    ApplicationPlatform m_platform;
    std::shared_ptr<MainThreadRelay> m_relay;
    std::unique_ptr<FreeSpaceReader> m_freeSpaces;
    std::unordered_map<ZorvexDiskManagerDiskListItem *, std::unique_ptr<ZorvexDiskManagerDiskListItem>>
        m_diskListItems; // owns the nodes of the tree
    DiskListBuilder m_diskListBuilder;
    DiskListBurst m_burst;
    DiskRecord m_movedSelection; // the medium to which the selection has moved by itself
    QElapsedTimer m_sinceSelectionMoved; // not valid until then
    friend class PanelStatus;
    PanelStatus m_status { *this };
    QString m_bigImageName; // of the disk that was shown last
    bool m_outputRefreshScheduled = false;
    std::chrono::milliseconds m_outputInterval {}; // from output that comes to the refresh that shows it
};
