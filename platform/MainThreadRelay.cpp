// SPDX-License-Identifier: MIT
#include "platform/MainThreadRelay.h"

#include <QCoreApplication>

#include <condition_variable>
#include <mutex>

struct MainThreadRelay::State
{
    std::mutex mutex;
    std::condition_variable changed;
    bool isClosed = false;
};

MainThreadRelay::MainThreadRelay()
    : m_state(std::make_unique<State>())
{
}

MainThreadRelay::~MainThreadRelay() = default;

std::shared_ptr<MainThreadRelay> MainThreadRelay::create()
{
    return std::shared_ptr<MainThreadRelay>(new MainThreadRelay);
}

void MainThreadRelay::perform(std::function<void()> task)
{
    const std::lock_guard lock(m_state->mutex);
    // The application object is there as long as the relay is open.
    if (m_state->isClosed)
        return;
    QMetaObject::invokeMethod(
        qApp,
        [self = shared_from_this(), task = std::move(task)] {
            // Only the main thread closes the relay, so it stays open while the task runs.
            if (!self->m_state->isClosed)
                task();
        },
        Qt::QueuedConnection);
}

void MainThreadRelay::performAndWait(const std::function<void()> &task)
{
    const auto isDone = std::make_shared<bool>(false);
    perform([this, &task, isDone] {
        task();
        const std::lock_guard lock(m_state->mutex);
        *isDone = true;
        m_state->changed.notify_all();
    });
    std::unique_lock lock(m_state->mutex);
    m_state->changed.wait(lock, [this, isDone] { return *isDone || m_state->isClosed; });
}

void MainThreadRelay::close()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->isClosed = true;
    m_state->changed.notify_all();
}
