// SPDX-License-Identifier: MIT
//
// The rows of an outline view as an item model. It holds the tree as the data source last told it, and
// changes row by row to what the source tells at a reload, so that a view keeps what it shows of the rows
// that stay. Main thread only.
#pragma once

#include "ui/OutlineDataSource.h"

#include <QAbstractItemModel>
#include <QHash>

#include <memory>
#include <unordered_set>
#include <vector>

class OutlineModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    // Whether the row's cell is drawn enabled.
    static constexpr int CellEnabledRole = Qt::UserRole + 1;

    explicit OutlineModel(OutlineView *view);
    ~OutlineModel() override;

    void setDataSource(OutlineDataSource *source) { m_source = source; }

    // Asks the data source for the whole tree: for the children of every item that it calls expandable.
    void reload();

    // Inserts the one item that the data source's tree has and the rows have not. Returns false, with nothing
    // changed, when it does not fit there.
    bool insert(const OutlineItem &item, const OutlineItem &parent, int row);

    // Removes the item with all below it, if it has a row.
    void remove(const OutlineItem &item);

    // Rows that are shown: the children of an item that is not expanded are not. The view tells what it
    // expands.
    void setExpanded(const QModelIndex &index, bool isExpanded);
    // One that has children and is not expanded; invalid when there is none.
    QModelIndex anyCollapsedItem() const;
    int shownRowCount() const { return m_root.shownBelow; }
    int shownRowOf(const OutlineItem &item) const; // -1 when it is not shown
    OutlineItem itemAtShownRow(int row) const; // null when there is no such row

    OutlineItem itemAt(const QModelIndex &index) const;
    QModelIndex indexOf(const OutlineItem &item) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    // The delegate says what can be edited, the data source what becomes of it, and what can be dragged and
    // dropped.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
        const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
        const QModelIndex &parent) override;

private:
    struct Node
    {
        OutlineItem item;
        Node *parent = nullptr;
        int row = 0; // among its siblings
        bool isExpanded = false;
        int shownBelow = 0; // rows that are shown when this one is, without it
        std::vector<std::unique_ptr<Node>> children;
    };
    using NodeList = std::vector<std::unique_ptr<Node>>;

    void synchronize(Node *node, int depth);
    void order(Node *node, const QHash<const ZorvexDiskManagerDisk *, int> &places);
    void takeRow(Node *node, int row);
    void putRow(Node *node, int row, const OutlineItem &item);
    void forgetBelow(Node *node);
    void numberFrom(Node *node, int row);
    void addShownRows(Node *node, int count);
    void noteCollapsed(Node *node);
    Node *nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(const Node *node) const;

    OutlineView *m_view;
    OutlineDataSource *m_source = nullptr;
    Node m_root;
    QHash<const ZorvexDiskManagerDisk *, Node *> m_nodes;
    std::unordered_set<Node *> m_collapsed; // have children and are not expanded
};
