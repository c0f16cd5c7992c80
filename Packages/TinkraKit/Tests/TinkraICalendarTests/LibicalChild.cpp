#include "LibicalChild.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <libical/ical.h>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tinkra::ICalendar::Test {

namespace {

constexpr int kRefused = 3;
constexpr suseconds_t kMicroseconds =
    100'000; // of processor time; an ordinary rule needs less than one thousand
constexpr rlim_t kBytes = rlim_t{256} << 20U;

void limitSelf()
{
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages; // a sanitizer has reserved much already
    const rlim_t bytes = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + kBytes;
    const rlimit memory{bytes, bytes};
    setrlimit(RLIMIT_AS, &memory);
    const rlimit noCoreFile{0, 0};
    setrlimit(RLIMIT_CORE, &noCoreFile);
    const itimerval timer{{0, 0}, {0, kMicroseconds}};
    setitimer(ITIMER_PROF, &timer, nullptr);
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE})
        std::signal(signal, SIG_DFL); // no report of a sanitizer about another's fault
}

[[noreturn]] void expandInChild(
    int out, const std::string& start, const std::string& rule, std::size_t atMost)
{
    limitSelf();
    const auto parsed = icalrecurrencetype_from_string(rule.c_str());
    if (parsed.freq == ICAL_NO_RECURRENCE)
        _exit(kRefused);
    auto* iterator = icalrecur_iterator_new(parsed, icaltime_from_string(start.c_str()));
    if (!iterator)
        _exit(kRefused);
    std::FILE* file = fdopen(out, "w");
    for (std::size_t i = 0; i < atMost; ++i) {
        const auto time = icalrecur_iterator_next(iterator);
        if (icaltime_is_null_time(time) != 0)
            break;
        std::fprintf(file, "%04d%02d%02dT%02d%02d%02d\n", time.year, time.month, time.day, time.hour,
            time.minute, time.second);
    }
    std::fflush(file);
    _exit(0);
}

}

LibicalAnswer askLibical(const std::string& start, const std::string& rule, std::size_t atMost)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        throw std::runtime_error("no pipe");
    const auto child = fork();
    if (child < 0)
        throw std::runtime_error("no child process");
    if (child == 0) {
        close(ends[0]);
        expandInChild(ends[1], start, rule, atMost);
    }
    close(ends[1]);
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t size = 0; (size = read(ends[0], buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(size));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);

    LibicalAnswer answer;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        answer.times.push_back(line);
    if (WIFSIGNALED(status))
        answer.kind =
            WTERMSIG(status) == SIGPROF ? LibicalAnswer::Kind::TookTooLong : LibicalAnswer::Kind::Crashed;
    else if (WEXITSTATUS(status) == kRefused)
        answer.kind = LibicalAnswer::Kind::Refused;
    else if (WEXITSTATUS(status) != 0)
        answer.kind = LibicalAnswer::Kind::Crashed;
    return answer;
}

}
