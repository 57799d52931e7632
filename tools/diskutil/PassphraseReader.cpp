// SPDX-License-Identifier: MIT
#include "tools/diskutil/PassphraseReader.h"

#include <QSocketNotifier>
#include <QStringDecoder>

#include <cerrno>
#include <cstring>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace {

// More than any encryption takes.
constexpr qsizetype longestLine = 4096;

} // namespace

// A terminal that shows the end of a line, but nothing else of what is typed, while this lives.
class PassphraseReader::QuietTerminal
{
public:
    explicit QuietTerminal(int terminal)
        : m_terminal(terminal)
    {
        m_isChanged = tcgetattr(terminal, &m_before) == 0;
        termios quiet = m_before;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        quiet.c_lflag |= ECHONL | ICANON;
        m_isChanged = m_isChanged && tcsetattr(terminal, TCSAFLUSH, &quiet) == 0;
    }
    ~QuietTerminal()
    {
        if (m_isChanged)
            tcsetattr(m_terminal, TCSAFLUSH, &m_before);
    }
    QuietTerminal(const QuietTerminal &) = delete;
    QuietTerminal &operator=(const QuietTerminal &) = delete;

private:
    int m_terminal;
    termios m_before = {};
    bool m_isChanged = false;
};

PassphraseReader::PassphraseReader(int input, QObject *parent)
    : QObject(parent)
    , m_input(input)
{
    m_line.reserve(longestLine); // so that no copy of a part of it stays behind
}

PassphraseReader::~PassphraseReader()
{
    explicit_bzero(m_line.data(), static_cast<std::size_t>(m_line.size()));
}

bool PassphraseReader::isTerminal() const
{
    return isatty(m_input) == 1;
}

void PassphraseReader::read(std::function<void(std::optional<Passphrase> passphrase)> done)
{
    m_done = std::move(done);
    if (isTerminal())
        m_terminal = std::make_unique<QuietTerminal>(m_input);
    m_notifier = std::make_unique<QSocketNotifier>(m_input, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &PassphraseReader::takeByte);
}

// What comes after the line is left to others.
void PassphraseReader::takeByte()
{
    char byte = 0;
    const ssize_t count = ::read(m_input, &byte, 1);
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count != 1 || byte == '\n') {
        finish();
        return;
    }
    m_isTooLong = m_isTooLong || m_line.size() == longestLine;
    if (!m_isTooLong)
        m_line.append(byte);
    explicit_bzero(&byte, 1);
}

void PassphraseReader::finish()
{
    m_notifier.release()->deleteLater(); // it is what calls this
    m_terminal.reset();
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(m_line);
    const bool isUsable = !m_isTooLong && !decoder.hasError() && !text.isEmpty();
    explicit_bzero(m_line.data(), static_cast<std::size_t>(m_line.size()));
    m_line.resize(0);
    m_isTooLong = false;
    Passphrase passphrase(std::move(text));
    const auto done = std::exchange(m_done, nullptr);
    if (isUsable)
        done(std::move(passphrase));
    else
        done(std::nullopt);
}
