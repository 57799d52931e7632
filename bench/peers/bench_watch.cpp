// SPDX-License-Identifier: MIT
//
// Starts a program and writes a line for each change of what the display shows, until standard input ends:
//
//   start TIME PID
//   frame TIME OWN SERVICES
//
// with times in nanoseconds of the monotonic clock, and the processor time that the program with its children
// and the services that are given by their process ids (bench_watch PID,PID -- COMMAND) had taken when the
// change was drawn.
#include "bench/peers/DisplayWatcher.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

pid_t startProgram(char **command)
{
    const pid_t process = fork();
    if (process == 0) {
        const int nowhere = open("/dev/null", O_RDWR);
        for (const int standard : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO })
            dup2(nowhere, standard);
        execvp(command[0], command);
        _exit(127);
    }
    return process;
}

// The process and all below it.
std::vector<pid_t> familyOf(pid_t process)
{
    std::vector<pid_t> members { process };
    for (std::size_t i = 0; i < members.size(); ++i) {
        std::error_code gone;
        const std::string threads = "/proc/" + std::to_string(members[i]) + "/task";
        for (const auto &thread : std::filesystem::directory_iterator(threads, gone)) {
            std::ifstream children(thread.path() / "children");
            pid_t child = 0;
            while (children >> child)
                members.push_back(child);
        }
    }
    return members;
}

// Nanoseconds so far, of all threads; a process that has gone counts nothing.
std::int64_t processorTimeOf(const std::vector<pid_t> &processes)
{
    std::int64_t sum = 0;
    for (const pid_t process : processes) {
        clockid_t clock {};
        timespec time {};
        if (clock_getcpuclockid(process, &clock) == 0 && clock_gettime(clock, &time) == 0)
            sum += std::int64_t { time.tv_sec } * 1'000'000'000 + time.tv_nsec;
    }
    return sum;
}

void writeFrame(std::int64_t time, std::int64_t own, std::int64_t services)
{
    std::printf("frame %lld %lld %lld\n", static_cast<long long>(time), static_cast<long long>(own),
        static_cast<long long>(services));
}

void watch(DisplayWatcher &display, pid_t program, const std::vector<pid_t> &services)
{
    std::vector<std::uint32_t> shown = display.pixels();
    std::array<pollfd, 2> descriptors { { { display.descriptor(), POLLIN, 0 },
        { STDIN_FILENO, POLLIN, 0 } } };
    while (descriptors[1].revents == 0) {
        const std::int64_t time = monotonicTime();
        if (!display.takeChanges()) {
            poll(descriptors.data(), descriptors.size(), -1);
            continue;
        }
        const std::int64_t own = processorTimeOf(familyOf(program));
        const std::int64_t served = processorTimeOf(services);
        std::vector<std::uint32_t> pixels = display.pixels();
        if (DisplayWatcher::differ(pixels, shown))
            writeFrame(time, own, served);
        shown = std::move(pixels);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4 || std::strcmp(argv[2], "--") != 0) {
        std::fprintf(stderr, "usage: bench_watch PID,PID -- COMMAND [ARGUMENT...]\n");
        return EXIT_FAILURE;
    }
    std::vector<pid_t> services;
    std::istringstream list(argv[1]);
    for (std::string pid; std::getline(list, pid, ',');)
        services.push_back(std::stoi(pid));
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    DisplayWatcher display;
    writeFrame(monotonicTime(), 0, processorTimeOf(services));
    const std::int64_t start = monotonicTime();
    const pid_t program = startProgram(argv + 3);
    std::printf("start %lld %d\n", static_cast<long long>(start), program);
    watch(display, program, services);
    for (const pid_t member : familyOf(program))
        kill(member, SIGTERM);
    waitpid(program, nullptr, 0);
}
