// SPDX-License-Identifier: MIT
#include "tests/support/AccessibilityTree.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QStringList>

Q_DECLARE_METATYPE(AccessibilityTree::Reference)

namespace {

const QString connectionName = QStringLiteral("accessibility");
const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");

QString busAddress()
{
    const QDBusReply<QString> reply
        = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"),
            QStringLiteral("/org/a11y/bus"), QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
    return reply.value();
}

QDBusMessage ask(const QDBusConnection &bus, const AccessibilityTree::Reference &reference,
    const QString &interface, const QString &method, const QVariantList &arguments = {})
{
    QDBusMessage call
        = QDBusMessage::createMethodCall(reference.service, reference.path.path(), interface, method);
    call.setArguments(arguments);
    return bus.call(call);
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const AccessibilityTree::Reference &reference)
{
    argument.beginStructure();
    argument << reference.service << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, AccessibilityTree::Reference &reference)
{
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

AccessibilityTree::AccessibilityTree()
    : m_bus(QDBusConnection::connectToBus(busAddress(), connectionName))
{
    qDBusRegisterMetaType<Reference>();
    qDBusRegisterMetaType<QList<Reference>>();
}

AccessibilityTree::~AccessibilityTree()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

QVariant AccessibilityTree::property(
    const Reference &reference, const QString &interface, const QString &name) const
{
    const QDBusReply<QDBusVariant> reply = ask(m_bus, reference,
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"), { interface, name });
    return reply.value().variant();
}

AccessibilityTree::Element AccessibilityTree::read(const Reference &reference) const
{
    Element element;
    element.reference = reference;
    element.name = property(reference, accessible, QStringLiteral("Name")).toString();
    element.role
        = QDBusReply<QString>(ask(m_bus, reference, accessible, QStringLiteral("GetRoleName"))).value();
    const QList<uint> states
        = QDBusReply<QList<uint>>(ask(m_bus, reference, accessible, QStringLiteral("GetState"))).value();
    element.states = static_cast<quint64>(states.value(1)) << 32 | states.value(0);
    return element;
}

void AccessibilityTree::append(QList<Element> &all, const Reference &reference, int depth) const
{
    constexpr int deepest = 24;
    all.append(read(reference));
    if (depth >= deepest)
        return;
    const QDBusReply<QList<Reference>> children
        = ask(m_bus, reference, accessible, QStringLiteral("GetChildren"));
    for (const Reference &child : children.value())
        append(all, child, depth + 1);
}

QList<AccessibilityTree::Element> AccessibilityTree::elements() const
{
    QList<Element> all;
    append(all,
        { QStringLiteral("org.a11y.atspi.Registry"),
            QDBusObjectPath(QStringLiteral("/org/a11y/atspi/accessible/root")) },
        0);
    return all;
}

std::optional<AccessibilityTree::Element> AccessibilityTree::find(
    const std::function<bool(const Element &)> &matches) const
{
    for (const Element &element : elements()) {
        if (matches(element))
            return element;
    }
    return std::nullopt;
}

std::optional<AccessibilityTree::Element> AccessibilityTree::find(
    const QString &role, const QString &name) const
{
    return find([&](const Element &element) { return element.role == role && element.name == name; });
}

QString AccessibilityTree::descriptionOf(const Element &element) const
{
    return property(element.reference, accessible, QStringLiteral("Description")).toString();
}

std::optional<AccessibilityTree::Element> AccessibilityTree::labelledBy(const Element &caption) const
{
    constexpr uint labelFor = 1; // of AT-SPI's relation types
    const QDBusMessage reply = ask(m_bus, caption.reference, accessible, QStringLiteral("GetRelationSet"));
    const auto relations = reply.arguments().value(0).value<QDBusArgument>();
    std::optional<Element> labelled;
    relations.beginArray();
    while (!relations.atEnd()) {
        uint type = 0;
        QList<Reference> targets;
        relations.beginStructure();
        relations >> type >> targets;
        relations.endStructure();
        if (type == labelFor && targets.size() == 1)
            labelled = read(targets.constFirst());
    }
    relations.endArray();
    return labelled;
}

QString AccessibilityTree::textOf(const Element &element) const
{
    const QDBusReply<QString> reply = ask(m_bus, element.reference, QStringLiteral("org.a11y.atspi.Text"),
        QStringLiteral("GetText"), { 0, -1 });
    return reply.value();
}

QString AccessibilityTree::listed(const QList<Element> &elements)
{
    QStringList lines;
    for (const Element &element : elements)
        lines.append(
            QStringLiteral("%1 \"%2\" %3").arg(element.role, element.name).arg(element.states, 0, 16));
    return lines.join(u'\n');
}
