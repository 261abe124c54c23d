// A lock and a condition for state that the timer thread shares with host threads: whoever holds
// the lock inherits the priority of a real-time thread that waits for it.
#pragma once

#include <pthread.h>

#include <chrono>

/// Makes a pthread mutex with priority inheritance where the system has it. Type as
/// PTHREAD_MUTEX_...
void initPriorityMutex(pthread_mutex_t* mutex, int type);

class PriorityMutex {
public:
    PriorityMutex() {
        initPriorityMutex(&m_mutex, PTHREAD_MUTEX_NORMAL);
    }
    ~PriorityMutex() {
        pthread_mutex_destroy(&m_mutex);
    }
    PriorityMutex(const PriorityMutex&) = delete;
    PriorityMutex& operator=(const PriorityMutex&) = delete;

    void lock() {
        pthread_mutex_lock(&m_mutex);
    }
    void unlock() {
        pthread_mutex_unlock(&m_mutex);
    }
    pthread_mutex_t* native() {
        return &m_mutex;
    }

private:
    pthread_mutex_t m_mutex;
};

/// A condition that waits on the monotonic clock. The caller holds the mutex; wakes without reason
/// happen.
class Condition {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    Condition();
    ~Condition() {
        pthread_cond_destroy(&m_condition);
    }
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    void notifyOne() {
        pthread_cond_signal(&m_condition);
    }
    void notifyAll() {
        pthread_cond_broadcast(&m_condition);
    }
    void wait(PriorityMutex& mutex) {
        pthread_cond_wait(&m_condition, mutex.native());
    }
    /// False once the deadline has passed.
    bool waitUntil(PriorityMutex& mutex, Deadline deadline);

private:
    pthread_cond_t m_condition;
};
