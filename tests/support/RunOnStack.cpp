#include "tests/support/RunOnStack.h"

#include <pthread.h>

#include <exception>
#include <stdexcept>

namespace KVR::Test
{

namespace
{

// Code that is not optimised, for its coverage or for mistakes in it, has frames that are several times as large.
#ifdef KVR_LARGE_FRAMES
constexpr std::size_t kFrameFactor = 16;
#else
constexpr std::size_t kFrameFactor = 1;
#endif

struct Task
{
    std::function<void()> const& action;
    std::exception_ptr failure;
};

void* Run(void* argument)
{
    auto& task = *static_cast<Task*>(argument);
    try
    {
        task.action();
    }
    catch (...)
    {
        task.failure = std::current_exception();
    }
    return nullptr;
}

}  // namespace

void RunOnStack(std::size_t size, std::function<void()> const& action)
{
    Task task{action, nullptr};
    pthread_attr_t attributes;
    pthread_t thread;
    if (::pthread_attr_init(&attributes) != 0)
        throw std::runtime_error("no thread attributes");
    bool const isStarted = ::pthread_attr_setstacksize(&attributes, size * kFrameFactor) == 0 &&
                           ::pthread_create(&thread, &attributes, &Run, &task) == 0;
    ::pthread_attr_destroy(&attributes);
    if (!isStarted)
        throw std::runtime_error("no thread with such a stack");
    ::pthread_join(thread, nullptr);
    if (task.failure)
        std::rethrow_exception(task.failure);
}

}  // namespace KVR::Test
