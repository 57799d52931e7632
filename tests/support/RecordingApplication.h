// SPDX-License-Identifier: MIT
//
// An application that records which event has kept the main thread busy the longest: processor time of the
// thread, so that a busy machine does not count. Events that are sent while another is handled belong to that
// one.
#pragma once

#include <QApplication>
#include <QByteArray>
#include <QTest>

#include <chrono>

class RecordingApplication : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;

    // One line: how long the longest took, its receiver, and its event.
    QByteArray longestHandler() const;
    // Prints it to the standard output.
    void printLongestHandler() const;

private:
    bool m_isHandling = false;
    std::chrono::nanoseconds m_longest {};
    QByteArray m_what; // the receiver and the event of the longest
};

// Runs the tests of the class in such an application.
template <typename Test> int runRecorded(int argc, char **argv)
{
    const RecordingApplication application(argc, argv);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi); // as in the other tests
    Test test;
    const int failures = QTest::qExec(&test, argc, argv);
    application.printLongestHandler();
    return failures;
}
