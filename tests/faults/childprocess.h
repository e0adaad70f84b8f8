// SPDX-License-Identifier: MIT
#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

#include <QtGlobal>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

/// A copy of this process that does some work, for what may crash, hang or can be tried only once. It
/// writes no message, leaves no core file, and ends by SIGALRM where it hangs, before the toolkit's
/// limit of five minutes ends the test.
class ChildProcess
{
public:
    static const unsigned int longest = 240; ///< seconds

    /// `work` returns the exit status. Waits until all other threads of this process sleep: the child
    /// has only the calling one, and a lock that another one held would stay locked in it. The thread
    /// in which QtTest guards the time looks into the environment when a test function has begun, and
    /// that has a lock.
    template<typename Work>
    explicit ChildProcess(Work work, unsigned int seconds = longest) : m_id(forkBesideSleepers())
    {
        if (m_id < 0)
            qFatal("no process can be started");
        if (m_id > 0)
            return;
        keepQuiet();
        ::alarm(seconds);
        ::_exit(work());
    }

    ~ChildProcess()
    {
        if (m_id == 0)
            return;
        kill();
        wait();
    }

    void kill() { ::kill(m_id, SIGKILL); }

    /// The exit status, or the signal that ended it as a negative number. Only once.
    int wait()
    {
        const int status = waitForStatus();
        m_id = 0;
        return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    Q_DISABLE_COPY(ChildProcess)

    // A thread that has been woken counts as running from then on, whether it has a processor or not.
    static bool isAsleep(long thread)
    {
        char path[64];
        std::snprintf(path, sizeof path, "/proc/self/task/%ld/stat", thread);
        std::FILE *const file = std::fopen(path, "re");
        if (!file)
            return true; // it has ended
        char state = 0;
        const bool isAwake = std::fscanf(file, "%*d (%*[^)]) %c", &state) == 1 && state != 'S';
        std::fclose(file);
        return !isAwake;
    }

    static bool othersAreAsleep()
    {
        DIR *const threads = ::opendir("/proc/self/task");
        if (!threads)
            qFatal("the threads of this process are not to be seen");
        const long self = ::syscall(SYS_gettid);
        bool result = true;
        while (const dirent *const entry = ::readdir(threads)) {
            const long thread = std::strtol(entry->d_name, nullptr, 10); // 0: the folder itself
            result = result && (thread == 0 || thread == self || isAsleep(thread));
        }
        ::closedir(threads);
        return result;
    }

    static pid_t forkBesideSleepers()
    {
        while (!othersAreAsleep())
            ::usleep(100);
        return ::fork();
    }

    // The end of another child interrupts it: Qt 4 handles that signal.
    int waitForStatus() const
    {
        int status = 0;
        pid_t id = -1;
        do
            id = ::waitpid(m_id, &status, 0);
        while (id < 0 && errno == EINTR);
        if (id != m_id)
            qFatal("a process has gone without its status");
        return status;
    }

    static void keepQuiet()
    {
        const rlimit none = { 0, 0 };
        ::setrlimit(RLIMIT_CORE, &none);
        for (int signal : { SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGTERM, SIGALRM })
            std::signal(signal, SIG_DFL);
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, STDERR_FILENO);
    }

    pid_t m_id; ///< 0 when it has ended
};

#endif // CHILDPROCESS_H
