// SPDX-License-Identifier: MIT
#pragma once

/// The task type of the project database's network operations.
///
/// On Windows it is the compiler's own Parallel Patterns Library. Elsewhere these three names give what is
/// used of it: a task that is waited for, the exception of a cancelled task, and the event that completes a
/// task.

#ifdef _WIN32

#include <ppltasks.h>

#else

#include <atomic>
#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <utility>

namespace Concurrency
{

/// Thrown by task::get when the operation was cancelled before it had a result.
class task_canceled : public std::exception
{
public:
    [[nodiscard]] const char* what() const noexcept override { return "task canceled"; }
};

template<class Result>
class task;

/// The producer's end of a task: set it once, with a result or with an exception. Copies share one event.
/// Dropping the last copy without setting it cancels the task.
template<class Result>
class task_completion_event
{
public:
    task_completion_event()
        : m_state(std::make_shared<State>())
    {
    }

    /// Completes the task. Returns false when it was completed already.
    bool set(Result result) const
    {
        if (m_state->completed.exchange(true))
            return false;
        m_state->promise.set_value(std::move(result));
        return true;
    }

    /// Completes the task with an exception; task::get throws it. Returns false when it was completed
    /// already.
    template<class Exception>
    bool set_exception(Exception exception) const
    {
        if (m_state->completed.exchange(true))
            return false;
        m_state->promise.set_exception(std::make_exception_ptr(std::move(exception)));
        return true;
    }

private:
    friend class task<Result>;

    struct State {
        State() = default;
        State(const State&) = delete;
        State& operator=(const State&) = delete;
        ~State()
        {
            if (!completed.exchange(true))
                promise.set_exception(std::make_exception_ptr(task_canceled()));
        }

        std::promise<Result> promise;
        std::shared_future<Result> future = promise.get_future().share();
        std::atomic<bool> completed = false;
    };

    std::shared_ptr<State> m_state;
};

/// A result that is still to come. A value type: copies wait for the same result. Any thread may wait.
template<class Result>
class task
{
public:
    explicit task(const task_completion_event<Result>& event)
        : m_future(event.m_state->future)
    {
    }

    /// Waits for the result. Throws task_canceled when the operation was cancelled.
    [[nodiscard]] Result get() const { return m_future.get(); }

    /// True when get() would not wait.
    [[nodiscard]] bool is_done() const
    {
        return m_future.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }

private:
    std::shared_future<Result> m_future;
};

} // namespace Concurrency

#endif
