// SPDX-License-Identifier: MIT
#ifndef SMALLSTACKTHREAD_H
#define SMALLSTACKTHREAD_H

#include <QtGlobal>

#include <pthread.h>

/// Runs `work` in a thread whose stack has 256 KiB, as small devices give it, and waits for its
/// end.
template<typename Work>
void runOnSmallStack(Work work)
{
    struct Entry {
        static void *run(void *argument)
        {
            (*static_cast<Work *>(argument))();
            return nullptr;
        }
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_t thread = pthread_t(); // not every toolkit says that qFatal() does not return
    if (pthread_attr_setstacksize(&attributes, 256 * 1024) != 0
        || pthread_create(&thread, &attributes, Entry::run, &work) != 0)
        qFatal("no thread with a small stack can be started");
    pthread_attr_destroy(&attributes);
    pthread_join(thread, nullptr);
}

#endif // SMALLSTACKTHREAD_H
