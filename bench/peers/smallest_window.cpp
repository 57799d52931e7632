// SPDX-License-Identifier: MIT
//
// The floor of the start: the smallest window of this toolkit that shows the disk service's block devices,
// filled from one asynchronous listing.
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTreeWidget>

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<Objects>();
    const auto listing = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.UDisks2"),
        QStringLiteral("/org/freedesktop/UDisks2"), QStringLiteral("org.freedesktop.DBus.ObjectManager"),
        QStringLiteral("GetManagedObjects"));
    QDBusPendingCallWatcher reply(QDBusConnection::systemBus().asyncCall(listing));
    QTreeWidget window;
    window.setHeaderHidden(true);
    window.resize(800, 450);
    QObject::connect(&reply, &QDBusPendingCallWatcher::finished, &window, [&] {
        const QDBusPendingReply<Objects> objects = reply;
        QList<QTreeWidgetItem *> rows;
        const Objects all = objects.value();
        for (auto object = all.begin(); object != all.end(); ++object) {
            const auto block = object.value().constFind(QStringLiteral("org.freedesktop.UDisks2.Block"));
            if (block != object.value().constEnd() && block->value(QStringLiteral("Size")).toULongLong() > 0)
                rows.append(new QTreeWidgetItem({ object.key().path().section(u'/', -1) }));
        }
        window.addTopLevelItems(rows);
    });
    window.show();
    return QApplication::exec();
}
