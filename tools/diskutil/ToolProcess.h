// SPDX-License-Identifier: MIT
//
// Runs one program with a session and a terminal of its own. The terminal hangs up when diskutil goes,
// however it goes, so that nothing is left working on the medium alone. Main thread only.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class QSocketNotifier;

struct ToolCommand
{
    // A checker that writes into a pipe keeps everything to itself until its end; a formatter that has a
    // terminal may ask questions.
    enum class Output { Pipe, Terminal };

    QString program;
    QStringList arguments;
    Output output = Output::Pipe;
};

// How a program ended.
struct ToolEnd
{
    enum class Kind { NotStarted, Exited, Killed };
    Kind kind = Kind::NotStarted;
    int code = 0; // exit status
    QString message; // why it could not be started
};

// Folders in which the programs of the system are looked for, and the PATH that a tool runs with.
QStringList toolFolders();

class ToolProcess : public QObject
{
    Q_OBJECT

public:
    using OutputHandler = std::function<void(const QByteArray &bytes)>;

    explicit ToolProcess(OutputHandler handler, QObject *parent = nullptr);
    ~ToolProcess() override;

    // Starts the program; ended() tells its end.
    void start(const ToolCommand &command);

    // Ends the program and everything that it has started: politely first, then by force. ended() tells when
    // nothing of it is left.
    void stop();

Q_SIGNALS:
    // The program has taken the place of what was this process.
    void started();
    void ended(const ToolEnd &end);

private:
    class Descriptor;

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
    std::unique_ptr<Descriptor> m_terminal; // our end
    std::unique_ptr<Descriptor> m_childTerminal;
    std::unique_ptr<Descriptor> m_output; // what is read; the terminal when this is null
    std::unique_ptr<Descriptor> m_childOutput;
    std::unique_ptr<QSocketNotifier> m_notifier;
    qint64 m_group = 0; // process group of the program
    bool m_isStopping = false;
    int m_polls = 0;
    ToolEnd m_end;
};
