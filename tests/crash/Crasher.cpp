// Loaded into the program by the test: commits, when signalled, one of the faults that a program
// dies of, on the thread that the signal goes to, or makes it quit. The environment says which. A
// worker thread of the program itself is met where it opens another program's frames.

#include <QCoreApplication>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

int overflow(int depth)
{
    volatile char page[4096];
    page[0] = char(depth);
    return overflow(depth + 1) + page[0];
}

void commit()
{
    const char *fault = std::getenv("TEST_FAULT");
    if (std::strcmp(fault, "null") == 0)
        *static_cast<volatile int *>(nullptr) = 1;
    else if (std::strcmp(fault, "abort") == 0)
        std::abort();
    else if (std::strncmp(fault, "overflow", 8) == 0)
        std::exit(overflow(0));
    else
        QMetaObject::invokeMethod(qApp, "quit", Qt::QueuedConnection);
}

void onMainThread(int)
{
    commit();
}

void *worker(void *)
{
    prctl(PR_SET_NAME, "test-worker");
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGUSR2);
    int signal = 0;
    sigwait(&set, &signal);
    commit();
    return nullptr;
}

__attribute__((constructor)) void prepare()
{
    if (!std::getenv("TEST_FAULT"))
        return;
    std::signal(SIGUSR1, onMainThread);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGUSR2);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    pthread_t thread;
    pthread_create(&thread, nullptr, worker, nullptr);
}

} // namespace

extern "C" int shm_open(const char *name, int flags, mode_t mode)
{
    const char *fault = std::getenv("TEST_FAULT");
    if (fault && std::strcmp(fault, "overflow of its own") == 0)
        commit();
    using Open = int (*)(const char *, int, mode_t);
    return reinterpret_cast<Open>(dlsym(RTLD_NEXT, "shm_open"))(name, flags, mode);
}
