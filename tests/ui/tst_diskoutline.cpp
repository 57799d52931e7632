// SPDX-License-Identifier: MIT
//
// The disk tree in the real outline view.
#include "platform/SystemRelease.h"
#include "tests/support/TestController.h"

#include "ui/ImageButton.h"
#include "ui/OutlineModel.h"
#include "ui/OutlineView.h"
#include "ui/Units.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestDiskOutline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partitionMovesUnderItsDisk();
    void selectionStaysOnTheMedium();
    void selectionStaysWhenAnArrivalMovesOthers();
    void arrivalAboveTheSelectionCallsTheHandler();
    void arrivalThatIsNotShownIsLogged();
    void unmountedVolumeIsDrawnDisabled();
    void emptyTreeHasNoRowsAndNoExpandableRoot();
    void childBeyondTheLastIsTheFirst();
    void treeCannotBeChangedOrSaved();
    void onlyExpandableItemsAreAskedForChildren();
    void delegateDecidesOnEditing();
    void dataSourceDecidesOnADrag();
    void dataSourceDecidesOnADrop();
    void clickOnTheHeaderIsTold();
    void collapsedDiskStaysCollapsedThroughAReload();
    void whatACollapseHidesIsNotSelected();
    void collapseKeepsTheSelectionElsewhere();
    void reloadDoesNotScroll();
    void selectionIsToldOnce();
    void clickOnTheTriangleTogglesOnce_data();
    void clickOnTheTriangleTogglesOnce();
    void doubleClickOnlyShowsAndHidesWhatIsBelow();
    void clickAtTheLeftEdgeOfTheMirroredViewSelects();
    void mirroredFrames_data();
    void mirroredFrames();
    void triangleOfASelectedRowHasTheColorOfItsName();
    void treeBeginsBelowItsEdge();
    void closedTriangleLeadsToItsRow_data();
    void closedTriangleLeadsToItsRow();
    void mirroredViewFillsItsContainer();
    void plainViewIsNotFittedToItsContainer();
    void rowStaysWhileAssistiveTechnologiesAskAboutIt();
    void allOfARowIsDrawnWhenTheSelectionChanges_data();
    void allOfARowIsDrawnWhenTheSelectionChanges();
    void selectedRowOfAnInactiveWindowIsReadable_data();
    void selectedRowOfAnInactiveWindowIsReadable();
};

namespace {

// Counts how often the handler of the selection is called, and notes the selected row at the last call.
class CountingController : public ZorvexDiskManagerAppDelegate
{
public:
    using ZorvexDiskManagerAppDelegate::ZorvexDiskManagerAppDelegate;
    void outlineViewSelectionIsChanging() override
    {
        ++selectionIsChanging;
        ZorvexDiskManagerAppDelegate::outlineViewSelectionIsChanging();
    }
    void outlineViewSelectionDidChange() override
    {
        ++selectionChanges;
        isToldBefore = selectionIsChanging == selectionChanges;
        rowToldLast = leftOutlineView->selectedRow();
        ZorvexDiskManagerAppDelegate::outlineViewSelectionDidChange();
    }
    int selectionIsChanging = 0;
    int selectionChanges = 0;
    int rowToldLast = -1;
    bool isToldBefore = false; // that the selection was about to change, at the last change
};

// Notes what the view asks, and answers as it is told to or as the program does.
class AskedController : public ZorvexDiskManagerAppDelegate
{
public:
    using ZorvexDiskManagerAppDelegate::ZorvexDiskManagerAppDelegate;
    bool outlineView_isItemExpandable(OutlineView *view, const OutlineItem &item) override
    {
        return isExpandable && ZorvexDiskManagerAppDelegate::outlineView_isItemExpandable(view, item);
    }
    bool outlineView_shouldEditTableColumn_item(
        OutlineView *view, int column, const OutlineItem &item) override
    {
        return isEditable
            || ZorvexDiskManagerAppDelegate::outlineView_shouldEditTableColumn_item(view, column, item);
    }
    void outlineView_setObjectValue_forTableColumn_byItem(
        OutlineView *view, const QVariant &value, int column, const OutlineItem &item) override
    {
        asked += u"set %1 of %2"_s.arg(value.toString(), item->description());
        ZorvexDiskManagerAppDelegate::outlineView_setObjectValue_forTableColumn_byItem(
            view, value, column, item);
    }
    bool outlineView_writeItems_toPasteboard(
        OutlineView *view, const std::vector<OutlineItem> &items, QMimeData *pasteboard) override
    {
        asked += u"write "_s + items.at(0)->description();
        pasteboard->setText(u"written"_s);
        return isDraggable
            || ZorvexDiskManagerAppDelegate::outlineView_writeItems_toPasteboard(view, items, pasteboard);
    }
    Qt::DropAction outlineView_validateDrop_proposedItem_proposedChildIndex(
        OutlineView *view, const QMimeData *drop, const OutlineItem &item, int index) override
    {
        asked += u"validate %1 at %2"_s.arg(item ? item->description() : u"root"_s).arg(index);
        return validated == Qt::IgnoreAction
            ? ZorvexDiskManagerAppDelegate::outlineView_validateDrop_proposedItem_proposedChildIndex(
                  view, drop, item, index)
            : validated;
    }
    bool outlineView_acceptDrop_item_childIndex(
        OutlineView *view, const QMimeData *drop, const OutlineItem &item, int index) override
    {
        asked += u"accept %1 at %2"_s.arg(item ? item->description() : u"root"_s).arg(index);
        return isDroppable
            || ZorvexDiskManagerAppDelegate::outlineView_acceptDrop_item_childIndex(view, drop, item, index);
    }
    void outlineView_didClickTableColumn(OutlineView *view, int column) override
    {
        asked += u"clicked column %1"_s.arg(column);
        ZorvexDiskManagerAppDelegate::outlineView_didClickTableColumn(view, column);
    }

    QStringList asked;
    bool isExpandable = true;
    bool isEditable = false;
    bool isDraggable = false;
    Qt::DropAction validated = Qt::IgnoreAction;
    bool isDroppable = false;
};

// The window with a disk and its volume.
struct AskedTest : TestController
{
    AskedTest();
    AskedController &asked() { return static_cast<AskedController &>(controller()); }
    OutlineView *view() { return controller().leftOutlineView; }
    QAbstractItemModel *model() { return view()->model(); }
    QModelIndex diskIndex() { return model()->index(0, 0); }
};

void addDiskWithVolume(TestController &test)
{
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    test.add(disk);
    test.add(makePartition(u"disk2s1"_s, 1024));
}

AskedTest::AskedTest()
{
    makeController
        = [](const ApplicationPlatform &platform) { return std::make_unique<AskedController>(platform); };
    launch();
    addDiskWithVolume(*this);
}

} // namespace

void TestDiskOutline::partitionMovesUnderItsDisk()
{
    TestController test;
    test.launch();
    const QAbstractItemModelTester tester(test.controller().leftOutlineView->model());
    test.add(makePartition(u"disk2s1"_s, 1024));
    QCOMPARE(test.rowNames(), QStringList { u"disk2s1"_s });
    test.add(makeDisk(u"disk2"_s));
    QCOMPARE(test.rowNames(), (QStringList { u"disk2"_s, u"disk2s1"_s }));
    const OutlineView *view = test.controller().leftOutlineView;
    QCOMPARE(view->model()->rowCount(), 1);
    QCOMPARE(view->model()->rowCount(view->model()->index(0, 0)), 1);
}

void TestDiskOutline::selectionStaysOnTheMedium()
{
    TestController test;
    test.launch();
    for (const int number : { 1, 3, 4, 5 })
        test.add(makeDisk(u"disk%1"_s.arg(number)));
    test.select(u"disk5"_s);
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 3);
    test.add(makeDisk(u"disk2"_s));
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 4);
    QCOMPARE(test.controller().bsdNameLabel->text(), u"disk5"_s);
    test.add(makeDisk(u"disk9"_s));
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 4);
}

void TestDiskOutline::selectionStaysWhenAnArrivalMovesOthers()
{
    TestController test;
    test.launch();
    addDiskWithVolume(test);
    test.add(makeDisk(u"disk3"_s));
    test.add(makePartition(u"disk5s1"_s, 1024));
    test.add(makePartition(u"disk7s1"_s, 1024));
    OutlineView *const view = test.controller().leftOutlineView;
    const auto isSelected = [&](const QString &name) {
        return view->itemAtRow(view->selectedRow()) == test.recordOf(name)
            && test.controller().bsdNameLabel->text() == name;
    };
    // One that stands alone, while another disk is collapsed.
    view->collapse(view->model()->index(0, 0));
    test.select(u"disk3"_s);
    test.add(makeDisk(u"disk1"_s));
    QVERIFY(test.recordOf(u"disk2s1"_s));
    QVERIFY(isSelected(u"disk3"_s));
    // One that takes a partition from above the selection to below it.
    test.add(makeDisk(u"disk5"_s));
    QVERIFY(isSelected(u"disk3"_s));
    // One that takes the selected partition.
    test.select(u"disk7s1"_s);
    test.add(makeDisk(u"disk7"_s));
    QVERIFY(isSelected(u"disk7s1"_s));
}

void TestDiskOutline::arrivalAboveTheSelectionCallsTheHandler()
{
    TestController test;
    test.makeController
        = [](const ApplicationPlatform &platform) { return std::make_unique<CountingController>(platform); };
    test.launch();
    const auto &controller = static_cast<CountingController &>(test.controller());
    test.add(makeDisk(u"disk5"_s));
    QCOMPARE(controller.selectionChanges, 0); // nothing is selected
    test.select(u"disk5"_s);
    QCOMPARE(controller.selectionChanges, 1);
    QCOMPARE(controller.rowToldLast, 0);
    test.add(makeDisk(u"disk2"_s));
    QCOMPARE(controller.rowToldLast, 1);
    QCOMPARE(controller.selectionChanges, 2);
    test.add(makeDisk(u"disk9"_s));
    QCOMPARE(controller.selectionChanges, 2);
    QCOMPARE(controller.leftOutlineView->selectedRow(), 1);
}

// The view has no data source before the launch has come to it: a tree that is rebuilt has no rows by then.
void TestDiskOutline::arrivalThatIsNotShownIsLogged()
{
    TestController test;
    test.makeController
        = [](const ApplicationPlatform &platform) { return std::make_unique<CountingController>(platform); };
    test.service.addDisk(makePartition(u"disk2s1"_s, 1024));
    test.service.addDisk(makeDisk(u"disk2"_s));
    test.launch();
    const auto lineOf = [](const ZorvexDiskManagerDiskListItem *item) {
        return QString::asprintf("No index found for item %p (disk %p)!", static_cast<const void *>(item),
            static_cast<const void *>(item->disk.get()));
    };
    const ZorvexDiskManagerDiskListItem *const disk = test.controller().disk_list;
    QCOMPARE(test.log.lines(), QStringList { lineOf(disk) });
    QCOMPARE(static_cast<CountingController &>(test.controller()).selectionChanges, 0);
    QCOMPARE(test.rowNames(), (QStringList { u"disk2"_s, u"disk2s1"_s }));
}

void TestDiskOutline::unmountedVolumeIsDrawnDisabled()
{
    TestController test;
    test.launch();
    test.add(makeDisk(u"disk2"_s));
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024);
    setMounted(volume, u"/media/A"_s);
    test.add(volume);
    const OutlineView *view = test.controller().leftOutlineView;
    const QModelIndex index = view->model()->index(0, 0, view->model()->index(0, 0));
    QCOMPARE(index.data(OutlineModel::CellEnabledRole), QVariant(true));
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(index.data(OutlineModel::CellEnabledRole), QVariant(false));
    QVERIFY(index.flags().testFlag(Qt::ItemIsSelectable));
}

void TestDiskOutline::emptyTreeHasNoRowsAndNoExpandableRoot()
{
    TestController test;
    test.launch();
    auto &source = test.controller();
    QCOMPARE(source.leftOutlineView->numberOfRows(), 0);
    QCOMPARE(source.outlineView_numberOfChildrenOfItem(nullptr, nullptr), 0);
    QVERIFY(!source.outlineView_isItemExpandable(nullptr, nullptr));
    QVERIFY(!source.outlineView_child_ofItem(nullptr, 0, nullptr));
    addDiskWithVolume(test);
    QVERIFY(source.outlineView_isItemExpandable(nullptr, nullptr));
    QVERIFY(source.outlineView_isItemExpandable(nullptr, test.recordOf(u"disk2"_s)));
    QVERIFY(!source.outlineView_isItemExpandable(nullptr, test.recordOf(u"disk2s1"_s)));
}

void TestDiskOutline::childBeyondTheLastIsTheFirst()
{
    TestController test;
    test.launch();
    for (const int number : { 1, 2, 3 })
        test.add(makeDisk(u"disk%1"_s.arg(number)));
    auto &source = test.controller();
    const auto nameAt = [&source](int index) {
        return source.outlineView_child_ofItem(nullptr, index, nullptr)->description();
    };
    QCOMPARE(nameAt(2), u"disk3"_s);
    QCOMPARE(nameAt(3), u"disk1"_s);
    QCOMPARE(nameAt(100), u"disk1"_s);
}

void TestDiskOutline::treeCannotBeChangedOrSaved()
{
    TestController test;
    test.launch();
    addDiskWithVolume(test);
    auto &source = test.controller();
    const DiskRecord disk = test.recordOf(u"disk2"_s);
    source.outlineView_setObjectValue_forTableColumn_byItem(nullptr, u"x"_s, 0, disk);
    QCOMPARE(source.outlineView_objectValueForTableColumn_byItem(nullptr, 7, disk), u"disk2"_s);
    QVERIFY(!source.outlineView_acceptDrop_item_childIndex(nullptr, nullptr, disk, 0));
    QCOMPARE(source.outlineView_validateDrop_proposedItem_proposedChildIndex(nullptr, nullptr, disk, 0),
        Qt::IgnoreAction);
    QVERIFY(source.outlineView_namesOfPromisedFilesDroppedAtDestination_forDraggedItems(nullptr, {}, { disk })
            .isEmpty());
    QVERIFY(!source.outlineView_itemForPersistentObject(nullptr, 1));
    QVERIFY(!source.outlineView_persistentObjectForItem(nullptr, disk).isValid());
    QVERIFY(!source.outlineView_writeItems_toPasteboard(nullptr, { disk }, nullptr));
    QVERIFY(!source.outlineView_shouldEditTableColumn_item(nullptr, 0, disk));
    const OutlineView *const view = source.leftOutlineView;
    const QModelIndex index = view->model()->index(0, 0);
    QVERIFY(!index.flags().testFlag(Qt::ItemIsEditable));
    QVERIFY(!view->model()->setData(index, u"x"_s));
    QCOMPARE(index.data(), QVariant(u"disk2"_s));
    QCOMPARE(view->editTriggers(), QAbstractItemView::NoEditTriggers);
    const std::unique_ptr<QMimeData> dragged(view->model()->mimeData({ index }));
    QVERIFY(!dragged);
    QVERIFY(!view->isSortingEnabled());
}

void TestDiskOutline::onlyExpandableItemsAreAskedForChildren()
{
    AskedTest test;
    QVERIFY(test.model()->hasChildren(test.diskIndex()));
    test.asked().isExpandable = false;
    test.view()->reloadData();
    QCOMPARE(test.rowNames(), QStringList());
    test.asked().isExpandable = true;
    test.view()->reloadData();
    QVERIFY(test.model()->hasChildren(test.diskIndex()));
    QVERIFY(!test.model()->hasChildren(test.model()->index(0, 0, test.diskIndex())));
}

void TestDiskOutline::delegateDecidesOnEditing()
{
    AskedTest test;
    QVERIFY(!test.model()->setData(test.diskIndex(), u"new"_s));
    QCOMPARE(test.asked().asked, QStringList());
    test.asked().isEditable = true;
    QVERIFY(test.diskIndex().flags().testFlag(Qt::ItemIsEditable));
    QVERIFY(test.model()->setData(test.diskIndex(), u"new"_s));
    QCOMPARE(test.asked().asked, QStringList { u"set new of disk2"_s });
    QCOMPARE(test.diskIndex().data(), QVariant(u"disk2"_s)); // the data source takes no value
}

void TestDiskOutline::dataSourceDecidesOnADrag()
{
    AskedTest test;
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    QWidget *const viewport = test.view()->viewport();
    const QPoint name = test.view()->frameOfCellAtColumn(0, 1).center();
    const QPoint above = test.view()->frameOfCellAtColumn(0, 0).center();
    QTest::mousePress(viewport, Qt::LeftButton, {}, name);
    for (const QPoint &position : { name + QPoint(1, 0), name + QPoint(50, 0), above }) {
        QMouseEvent move(QEvent::MouseMove, position, viewport->mapToGlobal(position), Qt::NoButton,
            Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &move);
    }
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, above);
    QCOMPARE(test.asked().asked, QStringList { u"write disk2s1"_s });
    // No drag has begun: the mouse continues to select.
    QCOMPARE(test.view()->selectedRow(), 0);

    test.asked().isDraggable = true;
    const std::unique_ptr<QMimeData> dragged(test.model()->mimeData({ test.diskIndex() }));
    QVERIFY(dragged);
    QCOMPARE(dragged->text(), u"written"_s);
}

void TestDiskOutline::dataSourceDecidesOnADrop()
{
    AskedTest test;
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    QWidget *const viewport = test.view()->viewport();
    const QPoint name = test.view()->frameOfCellAtColumn(0, 0).center();
    QMimeData text;
    text.setText(u"text"_s);
    const auto isTaken = [&] {
        QDragEnterEvent enter(name, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &enter);
        QDragMoveEvent move(name, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &move);
        return move.isAccepted();
    };
    QVERIFY(!isTaken());
    QVERIFY(test.asked().asked.contains(u"validate disk2 at -1"_s));
    test.asked().validated = Qt::CopyAction;
    QVERIFY(isTaken());

    test.asked().asked.clear();
    QVERIFY(!test.model()->dropMimeData(&text, Qt::CopyAction, 0, 0, {}));
    test.asked().isDroppable = true;
    QVERIFY(test.model()->dropMimeData(&text, Qt::CopyAction, -1, -1, test.diskIndex()));
    QCOMPARE(test.asked().asked, (QStringList { u"accept root at 0"_s, u"accept disk2 at -1"_s }));
}

void TestDiskOutline::clickOnTheHeaderIsTold()
{
    AskedTest test;
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    test.view()->setHeaderHidden(false);
    QHeaderView *const header = test.view()->header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, header->viewport()->rect().center());
    QCOMPARE(test.asked().asked, QStringList { u"clicked column 0"_s });
}

void TestDiskOutline::collapsedDiskStaysCollapsedThroughAReload()
{
    TestController test;
    test.launch();
    addDiskWithVolume(test);
    OutlineView *const view = test.controller().leftOutlineView;
    view->collapse(view->model()->index(0, 0));
    QCOMPARE(test.rowNames(), QStringList { u"disk2"_s });
    view->reloadData();
    QCOMPARE(test.rowNames(), QStringList { u"disk2"_s });
    QVERIFY(!view->isExpanded(view->model()->index(0, 0)));
}

void TestDiskOutline::whatACollapseHidesIsNotSelected()
{
    TestController test;
    test.launch();
    addDiskWithVolume(test);
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    test.select(u"disk2s1"_s);
    const auto &controller = test.controller();
    QVERIFY(controller.mountUnmountButton->isEnabled());
    QTest::mouseClick(controller.leftOutlineView->viewport(), Qt::LeftButton, {},
        controller.leftOutlineView->frameOfOutlineCellAtRow(0).center());
    QCOMPARE(test.rowNames(), QStringList { u"disk2"_s });
    QCOMPARE(controller.bsdNameLabel->text(), QString());
    QVERIFY(!controller.mountUnmountButton->isEnabled());
    QCOMPARE(controller.rightTabView->count(), 1);
    // It is not selected either when it is shown again.
    controller.leftOutlineView->expandAllItems();
    QCOMPARE(test.rowNames(), (QStringList { u"disk2"_s, u"disk2s1"_s }));
    QCOMPARE(controller.leftOutlineView->selectedRow(), -1);
}

void TestDiskOutline::collapseKeepsTheSelectionElsewhere()
{
    TestController test;
    test.launch();
    addDiskWithVolume(test);
    test.add(makeDisk(u"disk3"_s));
    OutlineView *const view = test.controller().leftOutlineView;
    for (const QString &name : { u"disk2"_s, u"disk3"_s }) {
        view->expandAllItems();
        test.select(name);
        view->collapse(view->model()->index(0, 0));
        QCOMPARE(view->selectedRow(), view->rowForItem(test.recordOf(name)));
        QCOMPARE(test.controller().bsdNameLabel->text(), name);
    }
}

void TestDiskOutline::reloadDoesNotScroll()
{
    TestController test;
    test.launch();
    for (int number = 100; number < 150; ++number)
        test.add(makeDisk(u"disk%1"_s.arg(number)));
    test.select(u"disk100"_s);
    QScrollBar *const bar = test.controller().leftOutlineView->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum());
    test.controller().leftOutlineView->reloadData();
    QCOMPARE(bar->value(), bar->maximum());
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 0);
}

void TestDiskOutline::selectionIsToldOnce()
{
    TestController test;
    test.makeController
        = [](const ApplicationPlatform &platform) { return std::make_unique<CountingController>(platform); };
    test.launch();
    addDiskWithVolume(test);
    auto &controller = static_cast<CountingController &>(test.controller());
    controller.selectionIsChanging = controller.selectionChanges = 0;
    controller.leftOutlineView->selectRow(0);
    QCOMPARE(controller.selectionChanges, 1);
    QVERIFY(controller.isToldBefore);
    controller.leftOutlineView->selectRow(0);
    QCOMPARE(controller.selectionChanges, 1);
    controller.leftOutlineView->reloadData();
    QCOMPARE(controller.selectionChanges, 1);
    QTest::keyClick(controller.leftOutlineView, Qt::Key_Down);
    QCOMPARE(controller.selectionChanges, 2);
    QCOMPARE(controller.leftOutlineView->selectedRow(), 1);
    controller.leftOutlineView->selectRow(-1);
    QCOMPARE(controller.selectionChanges, 3);
}

void TestDiskOutline::clickOnTheTriangleTogglesOnce_data()
{
    QTest::addColumn<QString>("localization");
    QTest::newRow("left to right") << u"en"_s;
    QTest::newRow("right to left") << u"ar"_s;
}

void TestDiskOutline::clickOnTheTriangleTogglesOnce()
{
    QFETCH(QString, localization);
    TestController test(localization);
    test.launch();
    addDiskWithVolume(test);
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    OutlineView *const view = test.controller().leftOutlineView;
    const QPoint triangle = view->frameOfOutlineCellAtRow(0).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, triangle);
    QCOMPARE(view->numberOfRows(), 1);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, triangle);
    QCOMPARE(view->numberOfRows(), 2);
    QCOMPARE(view->selectedRow(), -1);
}

void TestDiskOutline::doubleClickOnlyShowsAndHidesWhatIsBelow()
{
    TestController test;
    test.launch();
    addDiskWithVolume(test);
    OutlineView *const view = test.controller().leftOutlineView;
    const auto doubleClick = [view](int row) {
        const QPoint name = view->frameOfCellAtColumn(0, row).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, name);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, name);
    };
    doubleClick(1);
    QCOMPARE(view->selectedRow(), 1);
    QCOMPARE(view->numberOfRows(), 2);
    doubleClick(0);
    QCOMPARE(view->selectedRow(), 0);
    QCOMPARE(view->numberOfRows(), 1);
    doubleClick(0);
    QCOMPARE(view->numberOfRows(), 2);
    // No name is edited, and nothing is done to a disk.
    QVERIFY(view->findChildren<QLineEdit *>().isEmpty());
    QVERIFY(test.service.requests().empty());
}

void TestDiskOutline::clickAtTheLeftEdgeOfTheMirroredViewSelects()
{
    TestController test(u"ar"_s);
    test.launch();
    addDiskWithVolume(test);
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    OutlineView *const view = test.controller().leftOutlineView;
    // The text starts here; the plain view has its triangle here.
    const QPoint leftEdge(8, view->frameOfCellAtColumn(0, 0).center().y());
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, leftEdge);
    QCOMPARE(view->selectedRow(), 0);
    QCOMPARE(view->numberOfRows(), 2);
}

void TestDiskOutline::mirroredFrames_data()
{
    QTest::addColumn<QByteArray>("release");
    QTest::addColumn<bool>("moves");
    QTest::newRow("8.11.1") << QByteArray("8.11.1") << false;
    QTest::newRow("10.8.0") << QByteArray("10.8.0") << true;
}

void TestDiskOutline::mirroredFrames()
{
    QFETCH(QByteArray, release);
    QFETCH(bool, moves);
    const SystemReleaseOverride system(release);
    TestController test(u"ar"_s);
    test.launch();
    addDiskWithVolume(test);
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    OutlineView *const view = test.controller().leftOutlineView;
    const QRect triangle = view->frameOfOutlineCellAtRow(0);
    const int indentation = view->indentation();
    QCOMPARE(triangle.width(), indentation);
    QCOMPARE(triangle.x(), moves ? view->viewport()->width() - indentation - 6 : 0);
    QCOMPARE(view->frameOfCellAtColumn(0, 1).x(), moves ? 0 : 2 * indentation);
    QVERIFY(view->frameOfOutlineCellAtRow(1).isEmpty());
}

void TestDiskOutline::triangleOfASelectedRowHasTheColorOfItsName()
{
    QApplication::setStyle(u"Fusion"_s);
    QPalette palette(Qt::white);
    palette.setColor(QPalette::Highlight, Qt::blue);
    palette.setColor(QPalette::HighlightedText, Qt::red);
    TestController test;
    test.launch();
    addDiskWithVolume(test);
    test.controller().leftOutlineView->setPalette(palette);
    test.select(u"disk2"_s);
    OutlineView *const view = test.controller().leftOutlineView;
    const QImage triangle = view->viewport()->grab(view->frameOfOutlineCellAtRow(0)).toImage();
    int reddest = 0;
    for (int x = 0; x < triangle.width(); ++x) {
        for (int y = 0; y < triangle.height(); ++y)
            reddest = std::max(reddest, triangle.pixelColor(x, y).red());
    }
    QVERIFY2(reddest > 120, qPrintable(QString::number(reddest)));
}

void TestDiskOutline::treeBeginsBelowItsEdge()
{
    TestController test;
    test.launch();
    const QWidget *const container = test.controller().outlineViewContainer;
    const QWidget *const tree = test.controller().leftOutlineView;
    QCOMPARE(tree->mapTo(container, QPoint()), QPoint(0, units(4)));
    // The room above the first row looks as the tree does.
    const QImage picture = test.controller().outlineViewContainer->grab().toImage();
    QCOMPARE(picture.pixelColor(5, 0), picture.pixelColor(5, picture.height() - 1));
}

void TestDiskOutline::closedTriangleLeadsToItsRow_data()
{
    QTest::addColumn<QString>("localization");
    QTest::addColumn<QByteArray>("release");
    QTest::addColumn<bool>("pointsLeft");
    QTest::newRow("left to right") << u"en"_s << QByteArray("10.8.0") << false;
    QTest::newRow("right to left") << u"ar"_s << QByteArray("10.8.0") << true;
    QTest::newRow("right to left, not mirrored") << u"ar"_s << QByteArray("8.11.1") << false;
}

void TestDiskOutline::closedTriangleLeadsToItsRow()
{
    QFETCH(QString, localization);
    QFETCH(QByteArray, release);
    QFETCH(bool, pointsLeft);
    const SystemReleaseOverride system(release);
    TestController test(localization);
    test.launch();
    addDiskWithVolume(test);
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    OutlineView *const view = test.controller().leftOutlineView;
    view->collapse(view->model()->index(0, 0));
    // Without the margin, into which a mirrored row's image reaches.
    const QRect frame = view->frameOfOutlineCellAtRow(0).adjusted(6, 0, 0, 0);
    const QImage triangle = view->viewport()->grab(frame).toImage().convertToFormat(QImage::Format_RGB32);
    // Painted pixels by column: one at the tip, most at the base.
    QList<int> columns;
    for (int x = 0; x < triangle.width(); ++x) {
        int painted = 0;
        for (int y = 0; y < triangle.height(); ++y)
            painted += triangle.pixel(x, y) != triangle.pixel(0, 0) ? 1 : 0;
        if (painted > 0)
            columns.append(painted);
    }
    QVERIFY(columns.size() > 1);
    QCOMPARE(columns.constFirst() < columns.constLast(), pointsLeft);
}

void TestDiskOutline::mirroredViewFillsItsContainer()
{
    TestController test(u"ar"_s);
    test.launch();
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    OutlineView *const view = test.controller().leftOutlineView;
    const QSize container = test.controller().outlineViewScrollContainer->size();
    {
        const SystemReleaseOverride old("8.11.1");
        view->resize(50, 50);
        test.controller().resizeOutlineView();
        QCOMPARE(view->size(), QSize(50, 50));
    }
    test.controller().outlineView_child_ofItem(view, 0, nullptr);
    QCOMPARE(view->size(), container);
    // It tells its new width, and is fitted again.
    view->resize(50, 50);
    QCOMPARE(view->size(), container);
}

void TestDiskOutline::plainViewIsNotFittedToItsContainer()
{
    TestController test;
    test.launch();
    OutlineView *const view = test.controller().leftOutlineView;
    view->resize(50, 50);
    test.controller().resizeOutlineView();
    test.controller().outlineViewColumnDidResize();
    test.controller().outlineView_child_ofItem(view, 0, nullptr);
    QCOMPARE(view->size(), QSize(50, 50));
}

// Whoever looks at the tree with a screen reader plugs in a stick: the newer releases of Qt crashed.
void TestDiskOutline::rowStaysWhileAssistiveTechnologiesAskAboutIt()
{
    TestController test;
    test.launch();
    QAccessible::setActive(true);
    test.add(makeDisk(u"disk1"_s));
    QAccessibleInterface *const tree
        = QAccessible::queryAccessibleInterface(test.controller().leftOutlineView);
    addDiskWithVolume(test);
    const int children = tree->childCount();
    QVERIFY(children >= 3);
    for (int number = 0; number < children; ++number) {
        QAccessibleInterface *const told = tree->child(number);
        QVERIFY(told);
        const QAccessible::Id id = QAccessible::uniqueId(told);
        told->state();
        QCOMPARE(QAccessible::accessibleInterface(id), told);
    }
    QAccessible::setActive(false);
}

void TestDiskOutline::allOfARowIsDrawnWhenTheSelectionChanges_data()
{
    QTest::addColumn<QString>("localization");
    QTest::newRow("left to right") << u"en"_s;
    QTest::newRow("right to left") << u"ar"_s;
}

void TestDiskOutline::allOfARowIsDrawnWhenTheSelectionChanges()
{
    QFETCH(QString, localization);
    TestController test(localization);
    test.launch();
    addDiskWithVolume(test);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    OutlineView *const view = test.controller().leftOutlineView;
    view->setFocus();
    // What stands on the screen, and what would if all of the view were drawn.
    const auto onScreen = [&] {
        const QRect area(view->viewport()->mapTo(&test.window(), QPoint()), view->viewport()->size());
        return test.window()
            .screen()
            ->grabWindow(test.window().winId(), area.x(), area.y(), area.width(), area.height())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    };
    const auto drawn
        = [&] { return view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32); };
    QTRY_COMPARE(onScreen(), drawn());
    for (const int row : { 1, 0, 1 }) {
        const QImage before = onScreen();
        view->selectRow(row);
        QTRY_VERIFY(onScreen() != before);
        QCOMPARE(onScreen(), drawn());
    }
}

void TestDiskOutline::selectedRowOfAnInactiveWindowIsReadable_data()
{
    QTest::addColumn<QString>("style");
    for (const QString &style : QStyleFactory::keys())
        QTest::newRow(qPrintable(style)) << style;
}

void TestDiskOutline::selectedRowOfAnInactiveWindowIsReadable()
{
    QFETCH(QString, style);
    TestController test;
    test.launch();
    addDiskWithVolume(test);
    OutlineView *const view = test.controller().leftOutlineView;
    const std::unique_ptr<QStyle> drawing(QStyleFactory::create(style));
    view->setStyle(drawing.get());
    // As some desktops have it: dark and light, and the other way round in an inactive window.
    QPalette palette = view->palette();
    palette.setColor(QPalette::Active, QPalette::Highlight, Qt::darkBlue);
    palette.setColor(QPalette::Active, QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(240, 240, 250));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, Qt::black);
    view->setPalette(palette);
    test.select(u"disk2"_s);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!view->isActiveWindow());
    const QRect cell = view->frameOfCellAtColumn(0, 0);
    const QRect row(0, cell.top(), view->viewport()->width(), cell.height());
    const QImage image = view->viewport()->grab(row).toImage();
    // A pixel that nothing but the selection reaches.
    const QColor fill = image.pixelColor(image.width() - 5, image.height() / 2);
    QVERIFY2(fill.lightness() < 128, qPrintable(fill.name()));
    view->setStyle(nullptr);
}

QTEST_MAIN(TestDiskOutline)
#include "tst_diskoutline.moc"
