#pragma once

// The lock of what a headset's thread and the drawing and interface threads share (pose, values of
// the view state); a member of the object that owns the values, taken on any thread for a copy.

#include <omp.h>

#if defined(__SANITIZE_THREAD__)
#define ORBILENS_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define ORBILENS_THREAD_SANITIZER
#endif
#endif

#ifdef ORBILENS_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif

/// An OpenMP lock for std::lock_guard, told to the thread sanitizer, which cannot see into the
/// OpenMP runtime.
class PoseLock
{
public:
    PoseLock() { omp_init_lock(&m_lock); }
    ~PoseLock() { omp_destroy_lock(&m_lock); }
    PoseLock(const PoseLock &) = delete;
    PoseLock &operator=(const PoseLock &) = delete;

    void lock()
    {
        omp_set_lock(&m_lock);
        tellAcquired();
    }
    void unlock()
    {
        tellReleased();
        omp_unset_lock(&m_lock);
    }

private:
#ifdef ORBILENS_THREAD_SANITIZER
    void tellAcquired()
    {
        __tsan_acquire(&m_lock);
    }
    void tellReleased()
    {
        __tsan_release(&m_lock);
    }
#else
    void tellAcquired() {}
    void tellReleased() {}
#endif

    omp_lock_t m_lock;
};
