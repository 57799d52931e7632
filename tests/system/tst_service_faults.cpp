// SPDX-License-Identifier: MIT
//
// The disk service and the bus fail at every step of an operation: killed, hanging, gone and back. The
// service is a real one on a bus of the test's own, because it is killed; it works on real loop disks.
#include "tests/support/FaultCheck.h"
#include "tests/support/PatientFilesystem.h"
#include "tests/support/RecordingApplication.h"

#include "ui/AlertSheet.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int limit = 60000; // milliseconds

const QString noReply = u"Message recipient disconnected from message bus without replying"_s;

// Whether another service is there than that one.
bool isStartedAnew(pid_t former)
{
    const pid_t service = diskServicePid();
    return service != 0 && service != former;
}

QList<LoopDisk::Partition> oneVolume()
{
    return { { 20, QString::fromLatin1(LoopDisk::linuxType), u"ext4"_s, u"Backup"_s } };
}

// A window, a disk with a volume of the patient file system, and one that stands by.
struct Scene
{
    explicit Scene(const QString &filesystem = QString::fromLatin1(PatientFilesystem::plainName))
        : patient(filesystem)
        , disk(oneVolume())
        , check(window)
    {
        patient.makePipe(disk);
    }

    DiskRecord volume()
    {
        const bool isThere = QTest::qWaitFor(
            [&] {
                const DiskRecord record = window.recordOf(disk.node(1));
                return record && record->mountable && record->volumeKind
                    && record->volumeKind->endsWith(u"patient"_s);
            },
            limit);
        return isThere ? window.recordOf(disk.node(1)) : nullptr;
    }

    // The record of what the operation is asked of: the volume, or the whole disk for an eject.
    DiskRecord target(const QString &operation)
    {
        const DiskRecord record = volume();
        return operation == u"eject"_s && record ? window.recordOf(disk.node()) : record;
    }

    void begin(const QString &operation)
    {
        window.select(target(operation));
        if (operation == u"check"_s) {
            window.controller().checkButton->click();
        } else if (operation == u"format"_s || operation == u"rename"_s) {
            window.controller().formatFilesystemsPopupButton->setCurrentText(u"Patient"_s);
            window.controller().formatVolumeLabelField->setText(u"Renewed"_s);
            window.controller().formatButton->click();
            window.endSheet(AlertSheet::firstButtonReturn);
        } else {
            window.controller().mountUnmountButton->click();
        }
    }

    // Until the tool of a check or a format waits to be let go.
    bool hasToolBegun()
    {
        return QTest::qWaitFor(
            [&] {
                return patient.hasFormatBegun()
                    || window.controller().checkRepairOutputView->toPlainText().contains(u"looking at"_s);
            },
            limit);
    }

    QStringList told() const
    {
        QStringList texts;
        for (const AlertSheet *sheet : window.sheets())
            texts.append(sheet->informativeText());
        return texts;
    }

    PatientFilesystem patient;
    LoopDisk disk;
    RealWindow window;
    FaultCheck check;
};

bool usesTool(const QString &operation)
{
    return operation == u"check"_s || operation == u"format"_s || operation == u"rename"_s;
}

QString ownOrPlain(const QString &operation)
{
    return QString::fromLatin1(
        operation == u"rename"_s ? PatientFilesystem::ownName : PatientFilesystem::plainName);
}

} // namespace

class TestServiceFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void killedWhileNothingIsAsked();
    void killedDuring_data();
    void killedDuring();
    void hangsDuring_data();
    void hangsDuring();
    void killedWhileForceIsOffered_data();
    void killedWhileForceIsOffered();
    void pulledDuring_data();
    void pulledDuring();
    void busGoneAndBack(); // last: what Qt calls the system bus is lost after it

private:
    void mountIfNeeded(Scene &scene, const QString &operation);
};

void TestServiceFaults::initTestCase()
{
    QVERIFY2(!qEnvironmentVariableIsEmpty("ZORVEX_PRIVATE_BUS"),
        "not run inside tests/support/with-private-services");
}

// An unmount, and an eject, begin with a mounted volume.
void TestServiceFaults::mountIfNeeded(Scene &scene, const QString &operation)
{
    if (operation != u"unmount"_s && operation != u"eject"_s)
        return;
    scene.begin(u"mount"_s);
    QTRY_VERIFY_WITH_TIMEOUT(scene.volume()->volumePath && !scene.volume()->operationInProgress, limit);
}

void TestServiceFaults::killedWhileNothingIsAsked()
{
    Scene scene;
    QVERIFY(scene.volume());
    scene.window.select(scene.volume());
    const QStringList rows = scene.window.nodesOfDisk(scene.disk.node());
    QCOMPARE(rows.size(), 2);
    for (int i = 0; i < 2; ++i) {
        const pid_t first = diskServicePid();
        kill(first, SIGKILL);
        // It is started again, and tells the same media once.
        QTRY_VERIFY_WITH_TIMEOUT(isStartedAnew(first), limit);
        QTRY_COMPARE_WITH_TIMEOUT(scene.window.nodesOfDisk(scene.disk.node()), rows, limit);
        QCOMPARE(scene.check.problem({}), QString());
    }
}

void TestServiceFaults::killedDuring_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("alert"); // %1: the BSD name
    QTest::newRow("mount") << u"mount"_s << QString(u"Error while mounting %1: "_s + noReply);
    QTest::newRow("check") << u"check"_s << QString();
    QTest::newRow("format") << u"format"_s << QString();
    QTest::newRow("rename") << u"rename"_s << QString();
}

void TestServiceFaults::killedDuring()
{
    QFETCH(const QString, operation);
    QFETCH(const QString, alert);
    Scene scene(ownOrPlain(operation));
    const DiskRecord record = scene.target(operation);
    QVERIFY(record);
    const pid_t service = diskServicePid();
    if (usesTool(operation)) {
        scene.begin(operation);
        QVERIFY(scene.hasToolBegun());
    } else {
        kill(service, SIGSTOP); // so that it is asked, and does not answer
        scene.begin(operation);
        QVERIFY(record->operationInProgress);
    }
    QVERIFY(scene.check.windowAnswers());
    kill(service, SIGKILL);
    if (usesTool(operation)) {
        QTRY_VERIFY_WITH_TIMEOUT(scene.window.recordOf(scene.disk.node(1)) != record, limit);
        QTRY_VERIFY_WITH_TIMEOUT(scene.window.recordOf(scene.disk.node(1)), limit);
        scene.patient.release(scene.disk, "go on");
    }
    QTRY_VERIFY_WITH_TIMEOUT(!record->operationInProgress, limit);
    QVERIFY(scene.volume());
    QCOMPARE(scene.check.problem(alert.isEmpty() ? QStringList() : QStringList(alert.arg(*record->bsdName))),
        QString());
    if (operation == u"format"_s || operation == u"rename"_s)
        QCOMPARE(probed(scene.disk.node(1), u"LABEL"_s), u"Renewed"_s);
}

void TestServiceFaults::hangsDuring_data()
{
    QTest::addColumn<QString>("operation");
    for (const char *operation : { "mount", "unmount", "eject", "check", "format", "rename" })
        QTest::newRow(operation) << QString::fromLatin1(operation);
}

void TestServiceFaults::hangsDuring()
{
    QFETCH(const QString, operation);
    Scene scene(ownOrPlain(operation));
    mountIfNeeded(scene, operation);
    const DiskRecord record = scene.target(operation);
    QVERIFY(record);
    const pid_t service = diskServicePid();
    if (!usesTool(operation))
        kill(service, SIGSTOP);
    scene.begin(operation);
    if (usesTool(operation)) {
        QVERIFY(scene.hasToolBegun());
        kill(service, SIGSTOP);
        scene.patient.release(scene.disk, "go on");
    }
    QVERIFY(scene.check.windowAnswers());
    // A second click starts nothing, whatever the first is waiting for.
    scene.window.controller().mountUnmountButton->click();
    QVERIFY(scene.check.windowAnswers());
    kill(service, SIGCONT);
    QTRY_VERIFY_WITH_TIMEOUT(!record->operationInProgress, limit);
    QCOMPARE(scene.check.problem({}), QString());
    if (operation == u"mount"_s)
        QVERIFY(record->volumePath);
    if (operation == u"unmount"_s)
        QVERIFY(!record->volumePath);
    if (operation == u"eject"_s)
        QVERIFY(!scene.disk.isAttached());
    if (operation == u"format"_s || operation == u"rename"_s)
        QCOMPARE(probed(scene.disk.node(1), u"LABEL"_s), u"Renewed"_s);
}

void TestServiceFaults::killedWhileForceIsOffered_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("force");
    QTest::newRow("unmount, cancel") << u"unmount"_s << false;
    QTest::newRow("unmount, force") << u"unmount"_s << true;
    QTest::newRow("eject, cancel") << u"eject"_s << false;
    QTest::newRow("eject, force") << u"eject"_s << true;
}

// The service dies while it is asked to unmount: the volume was not unmounted, so force is offered, and by
// then there is a service again.
void TestServiceFaults::killedWhileForceIsOffered()
{
    QFETCH(const QString, operation);
    QFETCH(const bool, force);
    Scene scene;
    mountIfNeeded(scene, operation);
    const DiskRecord record = scene.target(operation);
    QVERIFY(record);
    const pid_t service = diskServicePid();
    kill(service, SIGSTOP);
    scene.begin(operation);
    QVERIFY(scene.check.windowAnswers());
    kill(service, SIGKILL);
    QTRY_COMPARE_WITH_TIMEOUT(scene.window.sheets().size(), 1, limit);
    QVERIFY(scene.window.sheets().constFirst()->informativeText().contains(*record->bsdName));
    QTRY_VERIFY_WITH_TIMEOUT(isStartedAnew(service) && scene.volume(), limit);
    scene.window.endSheet(AlertSheet::firstButtonReturn + (force ? 0 : 1));
    QTRY_VERIFY_WITH_TIMEOUT(!record->operationInProgress, limit);
    QCOMPARE(scene.check.problem({}), QString());
    QCOMPARE(mountPointsOf(scene.disk.node(1)).isEmpty(), force);
    QCOMPARE(scene.disk.isAttached(), !(force && operation == u"eject"_s));
}

void TestServiceFaults::pulledDuring_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("alert"); // how it begins; %1: the BSD name
    QTest::newRow("mount") << u"mount"_s << u"Error while mounting %1: "_s;
    QTest::newRow("unmount") << u"unmount"_s << QString();
    QTest::newRow("eject") << u"eject"_s << u"Error while ejecting %1: "_s;
    QTest::newRow("check") << u"check"_s << u"It was removed before the check had ended."_s;
    QTest::newRow("format") << u"format"_s << u"diskutil returned error code: 18"_s;
    QTest::newRow("rename") << u"rename"_s << u"diskutil returned error code: 18"_s;
}

void TestServiceFaults::pulledDuring()
{
    QFETCH(const QString, operation);
    QFETCH(const QString, alert);
    Scene scene(ownOrPlain(operation));
    mountIfNeeded(scene, operation);
    const DiskRecord record = scene.target(operation);
    QVERIFY(record);
    const QString expected = alert.contains(u'%') ? alert.arg(*record->bsdName) : alert;
    const pid_t service = diskServicePid();
    if (!usesTool(operation))
        kill(service, SIGSTOP);
    scene.begin(operation);
    if (usesTool(operation))
        QVERIFY(scene.hasToolBegun());
    scene.disk.pull();
    if (usesTool(operation))
        scene.patient.release(scene.disk, "go on");
    kill(service, SIGCONT);
    QTRY_VERIFY2_WITH_TIMEOUT(!record->operationInProgress, qPrintable(scene.told().join(u'|')), limit);
    QTRY_VERIFY_WITH_TIMEOUT(!scene.window.recordOf(scene.disk.node(1)), limit);
    QTRY_COMPARE_WITH_TIMEOUT(scene.window.sheets().size(), expected.isEmpty() ? 0 : 1, limit);
    for (const QString &text : scene.told())
        QVERIFY2(text.startsWith(expected), qPrintable(text));
    QCOMPARE(scene.check.problem(scene.told()), QString());
}

void TestServiceFaults::busGoneAndBack()
{
    Scene scene;
    QVERIFY(scene.volume());
    const QStringList rows = scene.window.nodesOfDisk(scene.disk.node());
    QCOMPARE(rows.size(), 2);
    kill(static_cast<pid_t>(qgetenv("ZORVEX_PRIVATE_BUS").toLong()), SIGKILL);
    // What cannot be asked for any more is not shown as if it could.
    QTRY_COMPARE_WITH_TIMEOUT(scene.window.rowNames(), QStringList(), limit);
    QVERIFY(scene.check.windowAnswers());

    QProcess bus;
    bus.start(u"dbus-daemon"_s, { u"--system"_s, u"--nofork"_s, u"--nopidfile"_s });
    QVERIFY(bus.waitForStarted());
    QTRY_COMPARE_WITH_TIMEOUT(scene.window.nodesOfDisk(scene.disk.node()), rows, limit);
    scene.begin(u"mount"_s);
    QTRY_VERIFY_WITH_TIMEOUT(scene.volume()->volumePath && !scene.volume()->operationInProgress, limit);
    scene.begin(u"unmount"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!scene.volume()->volumePath && !scene.volume()->operationInProgress, limit);
    QVERIFY(scene.window.sheets().isEmpty());
    bus.kill();
    bus.waitForFinished();
    QTRY_COMPARE_WITH_TIMEOUT(scene.window.rowNames(), QStringList(), limit);
    QCOMPARE(scene.check.problem({}), QString());
}

int main(int argc, char **argv)
{
    return runRecorded<TestServiceFaults>(argc, argv);
}

#include "tst_service_faults.moc"
