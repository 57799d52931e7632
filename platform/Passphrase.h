// SPDX-License-Identifier: MIT
//
// A passphrase on its way from the user to the disk service. Its memory is overwritten when it goes.
#pragma once

#include <QString>

#include <cstring>
#include <utility>

class Passphrase
{
public:
    // Takes the text over: what still shares its memory is overwritten with it.
    explicit Passphrase(QString &&text)
        : m_text(std::move(text))
    {
    }
    Passphrase(Passphrase &&other) noexcept
        : m_text(std::exchange(other.m_text, {}))
    {
    }
    Passphrase &operator=(Passphrase &&other) noexcept
    {
        clear();
        m_text = std::exchange(other.m_text, {});
        return *this;
    }
    Passphrase(const Passphrase &) = delete;
    Passphrase &operator=(const Passphrase &) = delete;
    ~Passphrase() { clear(); }

    const QString &text() const { return m_text; }

private:
    void clear()
    {
        // The text of a literal has no memory of its own.
        if (m_text.capacity() > 0)
            explicit_bzero(const_cast<QChar *>(m_text.constData()),
                static_cast<std::size_t>(m_text.size()) * sizeof(QChar));
    }

    QString m_text;
};
