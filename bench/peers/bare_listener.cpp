// SPDX-License-Identifier: MIT
//
// The floor of hot-plug: writes a line for each signal of the disk service as soon as it is here, "TIME
// PATH", with the time in nanoseconds of the monotonic clock.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>

#include <cstdio>
#include <ctime>

class Listener : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void added(const QDBusMessage &message)
    {
        write(message.arguments().constFirst().value<QDBusObjectPath>().path());
    }
    void changed(const QDBusMessage &message) { write(message.path()); }

private:
    static void write(const QString &path)
    {
        timespec time {};
        clock_gettime(CLOCK_MONOTONIC, &time);
        std::printf("%lld%09ld %s\n", static_cast<long long>(time.tv_sec), time.tv_nsec, qPrintable(path));
        std::fflush(stdout);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QDBusConnection bus = QDBusConnection::systemBus();
    const QString owner = bus.interface()->serviceOwner(QStringLiteral("org.freedesktop.UDisks2"));
    Listener listener;
    bus.connect(owner, {}, QStringLiteral("org.freedesktop.DBus.ObjectManager"),
        QStringLiteral("InterfacesAdded"), &listener, SLOT(added(QDBusMessage)));
    bus.connect(owner, {}, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("PropertiesChanged"), &listener, SLOT(changed(QDBusMessage)));
    return QCoreApplication::exec();
}

#include "bare_listener.moc"
