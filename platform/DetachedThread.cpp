// SPDX-License-Identifier: MIT
#include "platform/DetachedThread.h"

#include <cerrno>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

int startDetachedThread(std::function<void()> task)
{
    try {
        std::thread(std::move(task)).detach();
        return 0;
    } catch (const std::system_error &error) {
        return error.code().value();
    } catch (const std::bad_alloc &) {
        return ENOMEM;
    }
}
