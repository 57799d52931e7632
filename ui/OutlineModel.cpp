// SPDX-License-Identifier: MIT
#include "ui/OutlineModel.h"

#include "platform/Localization.h"
#include "ui/ImageAndTextCell.h"
#include "ui/OutlineView.h"

#include <QMimeData>

#include <algorithm>

namespace {

// A data source whose children never end does not stop the program.
constexpr int deepestLevel = 32;

} // namespace

OutlineModel::OutlineModel(OutlineView *view)
    : m_view(view)
{
    m_root.isExpanded = true;
}

OutlineModel::~OutlineModel() = default;

void OutlineModel::reload()
{
    synchronize(&m_root, 0);
    if (!m_root.children.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, 0));
}

// Rows that are gone, or come from elsewhere, are taken out first; those that stay get their order at once.
void OutlineModel::synchronize(Node *node, int depth)
{
    std::vector<OutlineItem> wanted;
    if (m_source && depth < deepestLevel && m_source->outlineView_isItemExpandable(m_view, node->item))
        wanted = m_source->outlineView_childrenOfItem(m_view, node->item);
    NodeList &rows = node->children;
    const auto isAsWanted
        = [](const std::unique_ptr<Node> &row, const OutlineItem &item) { return row->item == item; };
    if (!std::equal(rows.begin(), rows.end(), wanted.begin(), wanted.end(), isAsWanted)) {
        QHash<const ZorvexDiskManagerDisk *, int> places;
        for (const OutlineItem &item : wanted) {
            places.insert(item.get(), static_cast<int>(places.size()));
            Node *const elsewhere = m_nodes.value(item.get());
            if (elsewhere && elsewhere->parent != node)
                takeRow(elsewhere->parent, elsewhere->row);
        }
        for (int row = static_cast<int>(rows.size()) - 1; row >= 0; --row) {
            if (!places.contains(rows[static_cast<std::size_t>(row)]->item.get()))
                takeRow(node, row);
        }
        order(node, places);
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (i == rows.size() || rows[i]->item != wanted[i])
                putRow(node, static_cast<int>(i), wanted[i]);
        }
    }
    for (const std::unique_ptr<Node> &child : rows)
        synchronize(child.get(), depth + 1);
    if (node != &m_root && !rows.empty())
        Q_EMIT dataChanged(
            index(0, 0, indexOf(node)), index(static_cast<int>(rows.size()) - 1, 0, indexOf(node)));
}

// Puts the rows in the order of these places.
void OutlineModel::order(Node *node, const QHash<const ZorvexDiskManagerDisk *, int> &places)
{
    NodeList &rows = node->children;
    const auto isBefore = [&places](const std::unique_ptr<Node> &a, const std::unique_ptr<Node> &b) {
        return places.value(a->item.get()) < places.value(b->item.get());
    };
    if (std::is_sorted(rows.begin(), rows.end(), isBefore))
        return;
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::sort(rows.begin(), rows.end(), isBefore);
    numberFrom(node, 0);
    QModelIndexList after;
    for (const QModelIndex &index : before)
        after.append(indexOf(nodeAt(index)));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

bool OutlineModel::insert(const OutlineItem &item, const OutlineItem &parent, int row)
{
    Node *const node = parent ? m_nodes.value(parent.get()) : &m_root;
    if (!node || m_nodes.contains(item.get()) || row < 0 || row > static_cast<int>(node->children.size()))
        return false;
    putRow(node, row, item);
    return true;
}

void OutlineModel::remove(const OutlineItem &item)
{
    if (const Node *const node = m_nodes.value(item.get()))
        takeRow(node->parent, node->row);
}

void OutlineModel::takeRow(Node *node, int row)
{
    beginRemoveRows(indexOf(node), row, row);
    Node *const child = node->children[static_cast<std::size_t>(row)].get();
    addShownRows(node, -1 - child->shownBelow);
    forgetBelow(child);
    node->children.erase(node->children.begin() + row);
    numberFrom(node, row);
    noteCollapsed(node);
    endRemoveRows();
}

void OutlineModel::putRow(Node *node, int row, const OutlineItem &item)
{
    auto child = std::make_unique<Node>();
    child->item = item;
    child->parent = node;
    beginInsertRows(indexOf(node), row, row);
    m_nodes.insert(item.get(), child.get());
    node->children.insert(node->children.begin() + row, std::move(child));
    numberFrom(node, row);
    addShownRows(node, 1);
    noteCollapsed(node);
    endInsertRows();
}

void OutlineModel::forgetBelow(Node *node)
{
    m_nodes.remove(node->item.get());
    m_collapsed.erase(node);
    for (const std::unique_ptr<Node> &child : node->children)
        forgetBelow(child.get());
}

void OutlineModel::numberFrom(Node *node, int row)
{
    for (int i = row; i < static_cast<int>(node->children.size()); ++i)
        node->children[static_cast<std::size_t>(i)]->row = i;
}

// Call it for a node whose children or whose expansion have changed.
void OutlineModel::noteCollapsed(Node *node)
{
    if (node->isExpanded || node->children.empty())
        m_collapsed.erase(node);
    else
        m_collapsed.insert(node);
}

QModelIndex OutlineModel::anyCollapsedItem() const
{
    return m_collapsed.empty() ? QModelIndex() : indexOf(*m_collapsed.begin());
}

// Below a node that is not expanded nothing is shown, and above it nothing changes.
void OutlineModel::addShownRows(Node *node, int count)
{
    for (; node && node->isExpanded; node = node->parent)
        node->shownBelow += count;
}

void OutlineModel::setExpanded(const QModelIndex &index, bool isExpanded)
{
    Node *const node = nodeAt(index);
    if (node == &m_root || node->isExpanded == isExpanded)
        return;
    node->isExpanded = isExpanded;
    noteCollapsed(node);
    int count = 0;
    for (const std::unique_ptr<Node> &child : node->children)
        count += 1 + child->shownBelow;
    node->shownBelow = isExpanded ? count : 0;
    addShownRows(node->parent, isExpanded ? count : -count);
}

int OutlineModel::shownRowOf(const OutlineItem &item) const
{
    int result = -1;
    for (const Node *node = m_nodes.value(item.get()); node != &m_root; node = node->parent) {
        if (!node || !node->parent->isExpanded)
            return -1;
        for (int row = 0; row < node->row; ++row)
            result += 1 + node->parent->children[static_cast<std::size_t>(row)]->shownBelow;
        ++result;
    }
    return result;
}

OutlineItem OutlineModel::itemAtShownRow(int row) const
{
    if (row < 0 || row >= m_root.shownBelow)
        return nullptr;
    const Node *node = &m_root;
    for (auto child = node->children.begin();;) {
        const int rows = 1 + (*child)->shownBelow;
        if (row == 0)
            return (*child)->item;
        if (row < rows) {
            node = child->get();
            child = node->children.begin();
            --row;
        } else {
            row -= rows;
            ++child;
        }
    }
}

OutlineModel::Node *OutlineModel::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Node *>(index.internalPointer()) : const_cast<Node *>(&m_root);
}

QModelIndex OutlineModel::indexOf(const Node *node) const
{
    return node == &m_root ? QModelIndex() : createIndex(node->row, 0, node);
}

OutlineItem OutlineModel::itemAt(const QModelIndex &index) const
{
    return nodeAt(index)->item;
}

QModelIndex OutlineModel::indexOf(const OutlineItem &item) const
{
    const Node *const node = m_nodes.value(item.get());
    return node ? indexOf(node) : QModelIndex();
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, nodeAt(parent)->children[static_cast<std::size_t>(row)].get());
}

QModelIndex OutlineModel::parent(const QModelIndex &child) const
{
    return child.isValid() ? indexOf(nodeAt(child)->parent) : QModelIndex();
}

int OutlineModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(nodeAt(parent)->children.size());
}

int OutlineModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant OutlineModel::data(const QModelIndex &index, int role) const
{
    const OutlineItem item = index.isValid() ? itemAt(index) : nullptr;
    if (!item || !m_source)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return m_source->outlineView_objectValueForTableColumn_byItem(m_view, index.column(), item);
    case Qt::AccessibleTextRole:
        return m_source->outlineView_accessibleTextByItem(m_view, item);
    case CellEnabledRole:
        return m_view->preparedCell(item)->enabled;
    default:
        return {};
    }
}

QVariant OutlineModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section != 0 || orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return localizedString("DISK_TREE_ACCESSIBLE_NAME");
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    Qt::ItemFlags flags
        = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
    flags.setFlag(Qt::ItemIsEditable, m_view->shouldEdit(itemAt(index), index.column()));
    return flags;
}

bool OutlineModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!m_source || role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    m_source->outlineView_setObjectValue_forTableColumn_byItem(m_view, value, index.column(), itemAt(index));
    Q_EMIT dataChanged(index, index);
    return true;
}

QMimeData *OutlineModel::mimeData(const QModelIndexList &indexes) const
{
    std::vector<OutlineItem> items;
    for (const QModelIndex &index : indexes)
        items.push_back(itemAt(index));
    auto pasteboard = std::make_unique<QMimeData>();
    const bool isWritten
        = m_source && m_source->outlineView_writeItems_toPasteboard(m_view, items, pasteboard.get());
    return isWritten ? pasteboard.release() : nullptr; // without data the view begins no drag
}

Qt::DropActions OutlineModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

bool OutlineModel::canDropMimeData(
    const QMimeData *data, Qt::DropAction, int row, int, const QModelIndex &parent) const
{
    return m_source
        && m_source->outlineView_validateDrop_proposedItem_proposedChildIndex(
               m_view, data, itemAt(parent), row)
        != Qt::IgnoreAction;
}

bool OutlineModel::dropMimeData(
    const QMimeData *data, Qt::DropAction, int row, int, const QModelIndex &parent)
{
    return m_source && m_source->outlineView_acceptDrop_item_childIndex(m_view, data, itemAt(parent), row);
}
