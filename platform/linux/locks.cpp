// The host's recursive lock, and the mutexes of the platform layer itself.
#include <cerrno>
#include <new>

#include "platform/linux/priority_mutex.h"
#include "platform/linux/system_names.h"

namespace {

pthread_mutex_t* stateOf(CRITICAL_SECTION* lock) {
    return lock == nullptr ? nullptr : static_cast<pthread_mutex_t*>(lock->state);
}

} // namespace

void initPriorityMutex(pthread_mutex_t* mutex, int type) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, type);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    if (pthread_mutex_init(mutex, &attributes) != 0) {
        pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_NONE);
        pthread_mutex_init(mutex, &attributes);
    }
    pthread_mutexattr_destroy(&attributes);
}

Condition::Condition() {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&m_condition, &attributes);
    pthread_condattr_destroy(&attributes);
}

bool Condition::waitUntil(PriorityMutex& mutex, Deadline deadline) {
    const auto sinceOrigin = deadline.time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(sinceOrigin);
    const auto rest = std::chrono::duration_cast<std::chrono::nanoseconds>(sinceOrigin - seconds);
    const timespec time = {static_cast<time_t>(seconds.count()), static_cast<long>(rest.count())};
    return pthread_cond_timedwait(&m_condition, mutex.native(), &time) != ETIMEDOUT;
}

void InitializeCriticalSection(CRITICAL_SECTION* lock) {
    if (lock == nullptr) {
        return;
    }
    auto* state = new pthread_mutex_t;
    initPriorityMutex(state, PTHREAD_MUTEX_RECURSIVE);
    lock->state = state;
}

void DeleteCriticalSection(CRITICAL_SECTION* lock) {
    pthread_mutex_t* state = stateOf(lock);
    if (state == nullptr) {
        return;
    }
    lock->state = nullptr;
    pthread_mutex_destroy(state);
    delete state;
}

void EnterCriticalSection(CRITICAL_SECTION* lock) {
    if (pthread_mutex_t* state = stateOf(lock)) {
        pthread_mutex_lock(state);
    }
}

void LeaveCriticalSection(CRITICAL_SECTION* lock) {
    if (pthread_mutex_t* state = stateOf(lock)) {
        pthread_mutex_unlock(state);
    }
}
