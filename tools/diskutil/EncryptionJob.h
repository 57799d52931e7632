// SPDX-License-Identifier: MIT
//
// Unlocks an encrypted volume and mounts it, or unmounts and locks it. Main thread only.
#pragma once

#include "tools/diskutil/CommandLine.h"
#include "tools/diskutil/MediaList.h"
#include "tools/diskutil/PassphraseReader.h"

#include <QObject>

class EncryptionJob : public QObject
{
    Q_OBJECT

public:
    // Whether a job of this kind carries out the verb.
    static bool isFor(Verb verb);

    // The session, the media and the reader outlive the job.
    EncryptionJob(CommandLine line, DASession &session, const MediaList &media, PassphraseReader &reader);

    // Begins. finished() may be emitted before this returns.
    void start();

    // Ends the job at once. What the disk service has been asked for goes on. The reason is a few words.
    void interrupt(const QString &reason);

Q_SIGNALS:
    // A line of the job's course, a question without an answer yet, and a line that says why something was
    // not done.
    void said(const QString &line);
    void asked(const QString &question);
    void complained(const QString &line);

    // Emitted once.
    void finished(ExitCode code);

private:
    void unlock();
    void askPassphrase(bool isRetry, const PassphraseAnswer &answer);
    void unlocked(const DADissenterRef &dissenter);
    void lock();
    void refuse(ExitCode code, const QString &reason);
    void finish(ExitCode code);

    const CommandLine m_line;
    DASession &m_session;
    const MediaList &m_media;
    PassphraseReader &m_reader;
    DADiskRef m_disk;
    QString m_name; // of the disk
    int m_questions = 0; // that were asked
    bool m_isWrong = false; // every passphrase that was given
    bool m_hasEnded = false;
};
