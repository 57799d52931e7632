// SPDX-License-Identifier: MIT
#include "platform/MainThreadRelay.h"

#include <QCoreApplication>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace {

// Called on the main thread, once for each task.
class Bell : public QObject
{
    Q_OBJECT

public:
    Bell(std::function<void()> answer, QObject *parent)
        : QObject(parent)
        , m_answer(std::move(answer))
    {
    }

    Q_INVOKABLE void ring() { m_answer(); }

private:
    std::function<void()> m_answer;
};

} // namespace

// The tasks lie in a queue of our own: tools that analyse threads cannot see the locks of Qt's own queue.
struct MainThreadRelay::State
{
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> tasks;
    Bell *bell = nullptr; // the application's child; null once the relay is closed

    // Main thread.
    void runNext();
};

void MainThreadRelay::State::runNext()
{
    std::function<void()> task;
    {
        const std::lock_guard lock(mutex);
        if (tasks.empty())
            return;
        task = std::move(tasks.front());
        tasks.pop_front();
    }
    // Only the main thread closes the relay, so it stays open while the task runs.
    task();
}

MainThreadRelay::MainThreadRelay()
    : m_state(std::make_shared<State>())
{
    m_state->bell = new Bell([state = m_state] { state->runNext(); }, qApp);
}

MainThreadRelay::~MainThreadRelay()
{
    const std::lock_guard lock(m_state->mutex);
    if (m_state->bell)
        m_state->bell->deleteLater(); // after what was handed over
}

std::shared_ptr<MainThreadRelay> MainThreadRelay::create()
{
    return std::shared_ptr<MainThreadRelay>(new MainThreadRelay);
}

void MainThreadRelay::perform(std::function<void()> task)
{
    const std::lock_guard lock(m_state->mutex);
    // The application object exists as long as the relay is open.
    if (!m_state->bell)
        return;
    m_state->tasks.push_back(std::move(task));
    QMetaObject::invokeMethod(m_state->bell, "ring", Qt::QueuedConnection);
}

void MainThreadRelay::performAndWait(const std::function<void()> &task)
{
    const auto isDone = std::make_shared<bool>(false);
    perform([state = m_state, &task, isDone] {
        task();
        const std::lock_guard lock(state->mutex);
        *isDone = true;
        state->changed.notify_all();
    });
    std::unique_lock lock(m_state->mutex);
    m_state->changed.wait(lock, [this, isDone] { return *isDone || !m_state->bell; });
}

void MainThreadRelay::close()
{
    std::deque<std::function<void()>> dropped; // freed when the lock is gone
    const std::lock_guard lock(m_state->mutex);
    if (!m_state->bell)
        return;
    std::exchange(m_state->bell, nullptr)->deleteLater();
    dropped.swap(m_state->tasks);
    m_state->changed.notify_all();
}

#include "MainThreadRelay.moc"
