// SPDX-License-Identifier: MIT
#include "DisplayWatcher.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <X11/extensions/Xdamage.h>
#include <X11/extensions/XShm.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

// A text cursor is at most 2 by 20 pixels.
constexpr int fewPixels = 40;

[[noreturn]] void fail(const char *what)
{
    std::fprintf(stderr, "screen: %s\n", what);
    std::exit(EXIT_FAILURE);
}

} // namespace

std::int64_t monotonicTime()
{
    timespec time {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t { time.tv_sec } * 1'000'000'000 + time.tv_nsec;
}

struct DisplayWatcher::Private
{
    Display *display = nullptr;
    Window root = 0;
    Damage damage = 0;
    int damageEvent = 0;
    XShmSegmentInfo segment {};
    XImage *image = nullptr;
};

DisplayWatcher::DisplayWatcher()
    : d(std::make_unique<Private>())
{
    d->display = XOpenDisplay(nullptr);
    if (!d->display)
        fail("no display");
    d->root = DefaultRootWindow(d->display);
    int damageError = 0;
    if (!XDamageQueryExtension(d->display, &d->damageEvent, &damageError))
        fail("the display tells no damage");
    const int screen = DefaultScreen(d->display);
    d->image = XShmCreateImage(d->display, DefaultVisual(d->display, screen),
        static_cast<unsigned>(DefaultDepth(d->display, screen)), ZPixmap, nullptr, &d->segment,
        static_cast<unsigned>(DisplayWidth(d->display, screen)),
        static_cast<unsigned>(DisplayHeight(d->display, screen)));
    if (!d->image || d->image->bits_per_pixel != 32)
        fail("the display has no 32-bit pictures in shared memory");
    d->segment.shmid = shmget(IPC_PRIVATE,
        static_cast<std::size_t>(d->image->bytes_per_line) * static_cast<std::size_t>(d->image->height),
        IPC_CREAT | 0600);
    if (d->segment.shmid < 0)
        fail("no shared memory");
    d->segment.shmaddr = d->image->data = static_cast<char *>(shmat(d->segment.shmid, nullptr, 0));
    if (!XShmAttach(d->display, &d->segment))
        fail("the display takes no shared memory");
    XSync(d->display, False);
    shmctl(d->segment.shmid, IPC_RMID, nullptr); // goes with its last user
    d->damage = XDamageCreate(d->display, d->root, XDamageReportRawRectangles);
    XSync(d->display, False);
}

DisplayWatcher::~DisplayWatcher()
{
    XDamageDestroy(d->display, d->damage);
    XShmDetach(d->display, &d->segment);
    XDestroyImage(d->image);
    shmdt(d->segment.shmaddr);
    XCloseDisplay(d->display);
}

int DisplayWatcher::descriptor() const
{
    return ConnectionNumber(d->display);
}

bool DisplayWatcher::takeChanges()
{
    bool changed = false;
    while (XPending(d->display) > 0) {
        XEvent event;
        XNextEvent(d->display, &event);
        changed = changed || event.type == d->damageEvent + XDamageNotify;
    }
    return changed;
}

std::vector<std::uint32_t> DisplayWatcher::pixels() const
{
    if (!XShmGetImage(d->display, d->root, d->image, 0, 0, AllPlanes))
        fail("no picture of the display");
    std::vector<std::uint32_t> result(
        static_cast<std::size_t>(d->image->width) * static_cast<std::size_t>(d->image->height));
    std::memcpy(result.data(), d->image->data, result.size() * sizeof(std::uint32_t));
    return result;
}

bool DisplayWatcher::differ(const std::vector<std::uint32_t> &a, const std::vector<std::uint32_t> &b)
{
    int count = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i] && ++count > fewPixels)
            return true;
    }
    return a.size() != b.size();
}
