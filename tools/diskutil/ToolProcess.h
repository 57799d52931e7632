// SPDX-License-Identifier: MIT
//
// Runs a program with a session and a terminal of its own. The terminal hangs up when diskutil goes,
// however it goes, so that nothing is left at work on the medium. Main thread only.
#pragma once

#include "platform/FileDescriptor.h"
#include "tools/diskutil/ToolRunner.h"

#include <QByteArray>
#include <QProcess>

#include <functional>
#include <memory>

class QSocketNotifier;

class ToolProcess : public ToolRunner
{
    Q_OBJECT

public:
    using OutputHandler = std::function<void(const QByteArray &bytes)>;

    // The handler gets the output of the program as it comes.
    explicit ToolProcess(OutputHandler handler, QObject *parent = nullptr);
    ~ToolProcess() override;

    void start(const ToolCommand &command) override;
    void stop() override;

private:
    bool openChannels(ToolCommand::Output output);
    void prepareProcess();
    void readOutput();
    void programFinished(int code, QProcess::ExitStatus status);
    void programFailed(QProcess::ProcessError error);
    void awaitGroupEnd();
    bool isGroupAlive() const;
    void finish(const ToolEnd &end);

    OutputHandler m_handler;
    QProcess m_process;
    FileDescriptor m_terminal; // this process's end
    FileDescriptor m_childTerminal;
    FileDescriptor m_output; // what is read; not open when that is the terminal
    FileDescriptor m_childOutput;
    std::vector<int> m_inherited; // by the program
    std::unique_ptr<QSocketNotifier> m_notifier;
    qint64 m_group = 0; // process group of the program
    bool m_isStopping = false;
    int m_polls = 0;
    ToolEnd m_end;
};
