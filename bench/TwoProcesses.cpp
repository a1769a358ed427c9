#include "TwoProcesses.h"

#include "Heap.h"
#include "Processor.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <sched.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Bench {

namespace {

using Clock = std::chrono::steady_clock;

// In memory that all three processes share.
struct Meeting {
  std::atomic<int> here{0};
  std::atomic<bool> isOver{false}; // The reader has ended.
  Clock::time_point start;
  Clock::time_point end;
  double byWriter = 0;
  double byReader = 0;
  double allocationsByReader = 0;
};

constexpr unsigned kLimitSeconds = 60;

void waitForBoth(Meeting& meeting) {
  ++meeting.here;
  while (meeting.here < 2) std::this_thread::yield();
}

// Two processes that wait for each other go several times as fast, or as slow, on one processor as on two:
// each has its own in every run. Where there are fewer, they go where the system puts them.
void processorIs(std::size_t which) {
  cpu_set_t usable;
  if (::sched_getaffinity(0, sizeof usable, &usable) != 0 || CPU_COUNT(&usable) < 2) return;
  std::size_t cpu = 0;
  for (std::size_t before = which;; ++cpu)
    if (CPU_ISSET(cpu, &usable) && before-- == 0) break;
  CPU_ZERO(&usable);
  CPU_SET(cpu, &usable);
  ::sched_setaffinity(0, sizeof usable, &usable);
}

pid_t inAnotherProcess(std::size_t processor, std::function<void()> const& task) {
  std::fflush(nullptr);
  pid_t const child = ::fork();
  if (child != 0) return child;
  ::alarm(kLimitSeconds);
  processorIs(processor);
  try {
    task();
  } catch (std::exception const& error) {
    std::fprintf(stderr, "%s\n", error.what());
    ::_exit(1);
  }
  ::_exit(0);
}

bool endedWell(pid_t child) {
  int status = 0;
  return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

Taken timeBetween(Parties const& parties) {
  void* const shared =
      ::mmap(nullptr, sizeof(Meeting), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) throw std::runtime_error("no shared memory");
  auto* const meeting = new (shared) Meeting;
  pid_t const reader = inAnotherProcess(0, [&] {
    parties.openReader();
    waitForBoth(*meeting);
    double const before = processorTime();
    std::uint64_t const allocationsBefore = allocations();
    parties.read();
    meeting->end = Clock::now();
    meeting->byReader = processorTime() - before;
    meeting->allocationsByReader = static_cast<double>(allocations() - allocationsBefore);
  });
  pid_t const writer = inAnotherProcess(1, [&] {
    parties.openWriter();
    waitForBoth(*meeting);
    meeting->start = Clock::now();
    double const before = processorTime();
    parties.write();
    meeting->byWriter = processorTime() - before;
    while (!meeting->isOver) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  });
  bool const readerIsWell = endedWell(reader);
  meeting->isOver = true;
  bool const writerIsWell = endedWell(writer);
  Taken const taken{std::chrono::duration<double>(meeting->end - meeting->start).count(), meeting->byWriter,
                    meeting->byReader, meeting->allocationsByReader};
  ::munmap(shared, sizeof(Meeting));
  if (!readerIsWell || !writerIsWell) throw std::runtime_error("a process of the measurement failed");
  return taken;
}

} // namespace Bench
