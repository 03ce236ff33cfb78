// CPU cost of the command runner while a tool prints one progress line every
// 10 ms: the program's own processor time (the child's is not counted) as a
// share of one core, with the runner waiting in the event loop as the program's
// does. Goal: at most 1 %.
//   bench_runner_cpu [seconds]     (default 20)
#include <sys/resource.h>

#include <QCoreApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "exec/DOSOutputs.h"
#include "platform/EventWait.h"

namespace {
double cpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
           static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}
}  // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 20;
    const int lines = seconds * 100;
    std::string command = std::string("\"") + SALTMARROW_FIXTURE_DIR + "/scripted_output\" lines " +
                          std::to_string(lines) + " 10 \"Wrote 12 of 300 MB (Buffer 100%).\"";

    saltmarrow::DOSOutputs dos;
    long received = 0, idle = 0;
    dos.pump = [] { QCoreApplication::processEvents(); };
    dos.waitForEvents = saltmarrow::platform::waitForEvents;
    dos.ReceiveOutputs = [&](const std::string &) { ++received; };
    dos.nullOutputs = [&] { ++idle; };

    const double cpu0 = cpuSeconds();
    const auto t0 = std::chrono::steady_clock::now();
    const bool ok = dos.ExecuteCommand(command, 256, 1);
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    const double cpu = cpuSeconds() - cpu0;

    std::printf("runner_cpu: %s, %ld lines, %ld idle turns in %.1f s\n", ok ? "ok" : "FAILED", received, idle,
                wall);
    std::printf("runner_cpu: own CPU %.3f s = %.2f %% of one core (goal <= 1 %%)\n", cpu, 100.0 * cpu / wall);
    return ok && 100.0 * cpu / wall <= 1.0 ? 0 : 1;
}
