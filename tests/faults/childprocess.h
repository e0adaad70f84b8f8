#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

#include <QtGlobal>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// A copy of this process that does some work, for what may crash, hang or can be tried only once. It
/// writes no message and leaves no core file.
class ChildProcess
{
public:
    /// `work` returns the exit status.
    template<typename Work>
    explicit ChildProcess(Work work) : m_id(::fork())
    {
        if (m_id < 0)
            qFatal("no process can be started");
        if (m_id > 0)
            return;
        keepQuiet();
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
        for (int signal : { SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGTERM })
            std::signal(signal, SIG_DFL);
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, STDERR_FILENO);
    }

    pid_t m_id; ///< 0 when it has ended
};

#endif // CHILDPROCESS_H
