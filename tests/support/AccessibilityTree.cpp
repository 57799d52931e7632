// SPDX-License-Identifier: MIT
#include "tests/support/AccessibilityTree.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(AccessibilityTree::Reference)

namespace {

const QString connectionName = u"accessibility"_s;
const QString accessible = u"org.a11y.atspi.Accessible"_s;

QString busAddress()
{
    const QDBusReply<QString> reply = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
        u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s));
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
    const QDBusReply<QDBusVariant> reply
        = ask(m_bus, reference, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, { interface, name });
    return reply.value().variant();
}

AccessibilityTree::Element AccessibilityTree::read(const Reference &reference) const
{
    Element element;
    element.reference = reference;
    element.name = property(reference, accessible, u"Name"_s).toString();
    element.role = QDBusReply<QString>(ask(m_bus, reference, accessible, u"GetRoleName"_s)).value();
    const QList<uint> states
        = QDBusReply<QList<uint>>(ask(m_bus, reference, accessible, u"GetState"_s)).value();
    element.states = static_cast<quint64>(states.value(1)) << 32 | states.value(0);
    return element;
}

void AccessibilityTree::append(QList<Element> &all, const Reference &reference, int depth) const
{
    constexpr int deepest = 24;
    all.append(read(reference));
    if (depth >= deepest)
        return;
    const QDBusReply<QList<Reference>> children = ask(m_bus, reference, accessible, u"GetChildren"_s);
    for (const Reference &child : children.value())
        append(all, child, depth + 1);
}

QList<AccessibilityTree::Element> AccessibilityTree::elements() const
{
    QList<Element> all;
    append(all, { u"org.a11y.atspi.Registry"_s, QDBusObjectPath(u"/org/a11y/atspi/accessible/root"_s) }, 0);
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
    return property(element.reference, accessible, u"Description"_s).toString();
}

std::optional<AccessibilityTree::Element> AccessibilityTree::labelledBy(const Element &caption) const
{
    constexpr uint labelFor = 1; // of AT-SPI's relation types
    const QDBusMessage reply = ask(m_bus, caption.reference, accessible, u"GetRelationSet"_s);
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
    const QDBusReply<QString> reply
        = ask(m_bus, element.reference, u"org.a11y.atspi.Text"_s, u"GetText"_s, { 0, -1 });
    return reply.value();
}

QString AccessibilityTree::listed(const QList<Element> &elements)
{
    QStringList lines;
    for (const Element &element : elements)
        lines.append(u"%1 \"%2\" %3"_s.arg(element.role, element.name).arg(element.states, 0, 16));
    return lines.join(u'\n');
}
