// SPDX-License-Identifier: MIT
#include "app/LookProcess.h"

#include "app/startup_rules.h"

namespace {

constexpr int timeLimit = 1000; // milliseconds

} // namespace

LookProcess::LookProcess(const QString &program)
    : m_program(program)
{
}

LookProcess::~LookProcess()
{
    m_process.kill();
    m_process.waitForFinished();
}

void LookProcess::start()
{
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return;
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(m_program, { QString::fromLatin1(StartupRules::lookArgument) });
}

QByteArray LookProcess::finish()
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(timeLimit)) {
        m_process.kill();
        m_process.waitForFinished();
    }
    // What was cut off may read as something else.
    const bool isWhole
        = m_process.exitStatus() == QProcess::NormalExit && m_process.error() == QProcess::UnknownError;
    return isWhole && m_process.isReadable() ? m_process.readAllStandardOutput() : QByteArray();
}
