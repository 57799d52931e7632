// SPDX-License-Identifier: MIT
//
// What the pages say of the selected disk beside its values: where it is, how it is, what runs on it, and why
// a button is disabled. A part of the controller, which holds it. Main thread only.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"
#include "ui/DiskMap.h"
#include "ui/status_rules.h"

#include <QTimer>

#include <optional>
#include <vector>

class ElidingLabel;
class GlyphLabel;
class PageHeader;
class QBoxLayout;
class QFormLayout;
class QLabel;
class QLineEdit;
class QWidget;
class StatusRow;
class UsageBar;

// The widgets that show it. Set by the interface file's loader.
struct PanelStatusOutlets
{
    GlyphLabel *infoPlaceLabel = nullptr;
    QLineEdit *serviceCommandField = nullptr;
    QWidget *infoColumn = nullptr; // the whole of the page
    QBoxLayout *infoHeaderLayout = nullptr;
    QWidget *infoDetails = nullptr; // all below the header
    UsageBar *infoUsageBar = nullptr;
    DiskMap *infoDiskMap = nullptr;
    GlyphLabel *infoStatusLabel = nullptr;
    QLabel *goToFormatLink = nullptr;
    QFormLayout *infoFormLayout = nullptr;
    ElidingLabel *mountedPathGloss = nullptr;
    ElidingLabel *filesystemGloss = nullptr;
    ElidingLabel *contentGloss = nullptr;
    PageHeader *formatHeader = nullptr;
    PageHeader *maintenanceHeader = nullptr;
    StatusRow *formatStatusRow = nullptr;
    StatusRow *maintenanceStatusRow = nullptr;
    QLabel *formatRemarkLabel = nullptr;
};

class PanelStatus
{
public:
    explicit PanelStatus(ZorvexDiskManagerAppDelegate &controller);

    // Without the disk service, the empty Info page tells how it is started.
    void setServiceAvailable(bool isAvailable) { m_isServiceAvailable = isAvailable; }

    // The Info page with nothing selected, or with a medium.
    void showAsEmpty(bool isEmpty);
    // The free space is in bytes; absent when it is not known.
    void showStatusOf(const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace);
    void showGlossesOf(const ZorvexDiskManagerDisk &disk, const QString &filesystem);
    void showHeadersOf(const ZorvexDiskManagerDisk &disk, const QString &filesystem);
    // Why buttons are disabled; null for no disk.
    void showReasonsOf(const ZorvexDiskManagerDisk *disk);
    void showFormatRemark();

    // Shows what runs on the selected disk, and goes on to show for how long.
    void updateActivity();

private:
    struct Extent
    {
        qint64 start = 0; // bytes, as the size
        qint64 size = 0;
    };

    DiskRecord wholeDiskOf(const ZorvexDiskManagerDisk &disk) const; // null when it has no node
    QString placeTextOf(const ZorvexDiskManagerDisk &disk) const;
    StatusRules::Status statusOf(const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace) const;
    QString statusTextOf(const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace) const;
    QString partitionsTextOf(const ZorvexDiskManagerDisk &disk) const;
    // The partitions of the disk that have no row.
    std::vector<Extent> hiddenPartitionsOf(const ZorvexDiskManagerDisk &disk) const;
    DiskMap::Part mapPartOf(const DiskRecord &volume) const;
    void showMapOf(const ZorvexDiskManagerDisk &disk);
    static bool showsActivityOf(const ZorvexDiskManagerDisk &disk); // in the place of the status
    void showActivityOf(const ZorvexDiskManagerDisk &disk);
    void showFormatRowOf(const ZorvexDiskManagerDisk &disk);
    void showMaintenanceRowOf(const ZorvexDiskManagerDisk &disk);
    void layOutAgain();

    ZorvexDiskManagerAppDelegate &m_controller;
    QTimer m_timer; // while something runs
    bool m_isServiceAvailable = true;
};
