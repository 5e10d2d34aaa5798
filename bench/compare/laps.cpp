// laps.cpp - laps, and what they take.
#include "bench/compare/laps.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>

namespace {

constexpr std::int64_t enoughNanoseconds = 20'000'000;
constexpr const char* markOfLap = "fiid: a counted lap begins or ends";

std::int64_t Nanoseconds(clockid_t clock) {
    timespec time = {};
    clock_gettime(clock, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

std::int64_t Nanoseconds(const timeval& time) { return (std::int64_t{time.tv_sec} * 1'000'000 + time.tv_usec) * 1000; }

[[noreturn]] void Fail(const char* what) {
    std::perror(what);
    std::exit(2);
}

pid_t StartProgram(const char* program, const char* format, const char* list) {
    std::string words[] = {program, "--format", format, "--files-from", list};
    char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(), words[4].data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    const int status = posix_spawn(&process, program, &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (status != 0) Fail(program);
    return process;
}

}  // namespace

Paths ReadList(const char* list) {
    std::ifstream stream(list);
    if (!stream) Fail(list);
    Paths paths;
    for (std::string path; std::getline(stream, path);) paths.push_back(path);
    return paths;
}

std::size_t RunLap(const Contestant& contestant, const Paths& paths) {
    std::size_t failures = 0;
    for (const std::string& path : paths) failures += contestant.look(path.c_str()) != 0 ? 1 : 0;
    return failures;
}

extern "C" std::size_t RunCountedLap(const Contestant& contestant, const Paths& paths) {
    static_cast<void>(access(markOfLap, F_OK) == 0);
    const std::size_t failures = RunLap(contestant, paths);
    static_cast<void>(access(markOfLap, F_OK) == 0);
    return failures;
}

Cost TimeLap(const Contestant& contestant, const Paths& paths) {
    if (paths.empty()) return {0, 0};
    const std::int64_t wallStart = Nanoseconds(CLOCK_MONOTONIC);
    const std::int64_t cpuStart = Nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
    std::int64_t laps = 0;
    std::int64_t cpu = 0;
    do {
        RunLap(contestant, paths);
        ++laps;
        cpu = Nanoseconds(CLOCK_PROCESS_CPUTIME_ID) - cpuStart;
    } while (cpu < enoughNanoseconds);
    return {cpu / laps, (Nanoseconds(CLOCK_MONOTONIC) - wallStart) / laps};
}

Cost TimeProgram(const char* program, const char* format, const char* list) {
    const std::int64_t wall = Nanoseconds(CLOCK_MONOTONIC);
    const pid_t process = StartProgram(program, format, list);
    int status = 0;
    rusage usage = {};
    if (wait4(process, &status, 0, &usage) != process) Fail("wait4");
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "%s did not succeed over %s\n", program, list);
        std::exit(2);
    }
    return {Nanoseconds(usage.ru_utime) + Nanoseconds(usage.ru_stime), Nanoseconds(CLOCK_MONOTONIC) - wall};
}
