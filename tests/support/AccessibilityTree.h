// SPDX-License-Identifier: MIT
//
// What the running programs tell assistive technologies, read over AT-SPI from the accessibility bus of the
// session.
#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

class AccessibilityTree
{
public:
    // Bits of AT-SPI's state sets.
    enum State { Enabled = 8, Focusable = 11, Focused = 12, Selected = 23, Showing = 25 };

    struct Reference
    {
        QString service;
        QDBusObjectPath path;
    };

    struct Element
    {
        QString name;
        QString role;
        quint64 states = 0;
        Reference reference;

        bool has(State state) const { return states >> state & 1; }
    };

    AccessibilityTree();
    ~AccessibilityTree();

    // All that there is at this moment.
    QList<Element> elements() const;

    // The first one that matches.
    std::optional<Element> find(const std::function<bool(const Element &)> &matches) const;
    std::optional<Element> find(const QString &role, const QString &name) const;

    QString descriptionOf(const Element &element) const;

    // What this element is told to be the caption of.
    std::optional<Element> labelledBy(const Element &caption) const;

    // What a text element shows.
    QString textOf(const Element &element) const;

    // One line for each element.
    static QString listed(const QList<Element> &elements);

private:
    Element read(const Reference &reference) const;
    void append(QList<Element> &all, const Reference &reference, int depth) const;
    QVariant property(const Reference &reference, const QString &interface, const QString &name) const;

    QDBusConnection m_bus;
};
