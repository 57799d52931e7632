// SPDX-License-Identifier: MIT
//
// What the recorder of long event handlers tells.
#include "tests/support/RecordingApplication.h"

#include <QEvent>

#include <ctime>

using namespace Qt::Literals::StringLiterals;

namespace {

// Uses up processor time at each event; sends one to another receiver meanwhile.
class Slow : public QObject
{
public:
    bool event(QEvent *event) override
    {
        if (inner) {
            QEvent other(QEvent::EnabledChange);
            QCoreApplication::sendEvent(inner, &other);
        }
        const std::clock_t start = std::clock();
        while (std::clock() - start < duration * CLOCKS_PER_SEC / 1000) { }
        return QObject::event(event);
    }

    int duration = 0; // milliseconds
    Slow *inner = nullptr;
};

} // namespace

class TestRecordingApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void longestIsTold();
    void sentMeanwhileBelongsToTheOther();
};

void TestRecordingApplication::longestIsTold()
{
    const auto &recorder = *static_cast<RecordingApplication *>(qApp);
    Slow slow;
    slow.setObjectName(u"slow"_s);
    slow.duration = 40;
    QEvent event(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&slow, &event);
    QVERIFY(recorder.longestHandler().endsWith(" ms: QObject \"slow\", LanguageChange"));
    const QByteArray longest = recorder.longestHandler();
    slow.duration = 1;
    QEvent shorter(QEvent::StyleChange);
    QCoreApplication::sendEvent(&slow, &shorter);
    QCOMPARE(recorder.longestHandler(), longest);
}

void TestRecordingApplication::sentMeanwhileBelongsToTheOther()
{
    const auto &recorder = *static_cast<RecordingApplication *>(qApp);
    Slow inner;
    inner.duration = 80;
    Slow outer;
    outer.inner = &inner;
    QEvent event(QEvent::FontChange);
    QCoreApplication::sendEvent(&outer, &event);
    QVERIFY(recorder.longestHandler().endsWith(" ms: QObject \"\", FontChange"));
}

int main(int argc, char **argv)
{
    return runRecorded<TestRecordingApplication>(argc, argv);
}

#include "tst_recordingapplication.moc"
