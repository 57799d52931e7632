// SPDX-License-Identifier: MIT
#include "ui/MenuToolTips.h"

#include <QAccessible>
#include <QMenu>
#include <QPointer>

namespace {

// The menu that shows the tool tip of this item, the open one first; null when there is none.
QMenu *menuOf(const QAction &item)
{
    QMenu *found = nullptr;
    for (QObject *holder : item.associatedObjects()) {
        auto *const menu = qobject_cast<QMenu *>(holder);
        if (menu && menu->toolTipsVisible() && (!found || menu->isVisible()))
            found = menu;
    }
    return found;
}

QString withoutMnemonic(QString text)
{
    return text.remove(u'&');
}

// As Qt tells of an item, and its tool tip while it is disabled.
class ItemInterface : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    explicit ItemInterface(QAction *item)
        : m_item(item)
    {
    }

    bool isValid() const override { return m_item && menuOf(*m_item); }
    QObject *object() const override { return m_item; }
    QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(menuOf(*m_item));
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::MenuItem; }

    QString text(QAccessible::Text kind) const override
    {
        QString name = withoutMnemonic(m_item->text());
        switch (kind) {
        case QAccessible::Name:
            return name;
        case QAccessible::Accelerator:
            return m_item->shortcut().toString();
        case QAccessible::Description: // without a tool tip of its own, the item has its name as one
            return m_item->isEnabled() || m_item->toolTip() == name ? QString() : m_item->toolTip();
        default:
            return {};
        }
    }
    void setText(QAccessible::Text, const QString &) override { }

    QRect rect() const override
    {
        const QMenu *const menu = menuOf(*m_item);
        if (!menu)
            return {};
        const QRect place = menu->actionGeometry(m_item);
        return { menu->mapToGlobal(place.topLeft()), place.size() };
    }

    QAccessible::State state() const override
    {
        const QMenu *const menu = menuOf(*m_item);
        QAccessible::State state;
        state.focusable = true;
        state.disabled = !m_item->isEnabled();
        state.invisible = !menu || !menu->isVisible() || !m_item->isVisible();
        state.focused = !state.invisible && menu->activeAction() == m_item;
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return { pressAction() }; }
    void doAction(const QString &name) override
    {
        if (name == pressAction())
            m_item->trigger();
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QPointer<QAction> m_item;
};

QAccessibleInterface *interfaceFor(const QString &, QObject *object)
{
    auto *const item = qobject_cast<QAction *>(object);
    const bool isItem = item && !item->isSeparator() && !item->menu() && menuOf(*item);
    return isItem ? new ItemInterface(item) : nullptr;
}

} // namespace

void showToolTipsOf(QMenu *menu)
{
    menu->setToolTipsVisible(true);
    QAccessible::installFactory(&interfaceFor); // does nothing the second time
}
