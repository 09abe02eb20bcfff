#pragma once

#include "Async/Future.h"
#include "Async/TaskGraphInterfaces.h"
#include "Templates/Function.h"

#include <future>
#include <memory>
#include <thread>
#include <type_traits>

void AsyncTask(ENamedThreads::Type Thread, TUniqueFunction<void()> Function);

// Where Async runs its work.
enum class EAsyncExecution
{
	TaskGraph,
	TaskGraphMainThread,
	Thread,
	ThreadIfForkSafe,
	ThreadPool,
	LargeThreadPool,
};

// The host's game-thread queue: AsyncTask to the game thread lands here and the main loop
// (or a test acting as the game thread) runs it.
class UE_COMPAT_HOST_ONLY FGameThreadTaskQueue
{
public:
	static FGameThreadTaskQueue& Get();
	void Enqueue(TUniqueFunction<void()> Task);
	// Runs every task queued so far, in order; returns how many ran.
	int32 ProcessPendingTasks();
	// Blocks until a task is queued, Wake() is called or the timeout passes.
	void WaitForTasks(double TimeoutSeconds);
	void Wake();
	int32 NumPending() const;

private:
	struct FImpl;
	FImpl& GetImpl() const;
};

// Runs the callable elsewhere and returns its future at once. TaskGraphMainThread queues it for
// the game thread; every other choice runs it on a thread of its own here (the engine's task
// graph and pools are worker threads too). The completion callback runs right after it, on the
// same thread.
template <typename CallableType>
auto Async(EAsyncExecution Execution, CallableType&& Callable, TUniqueFunction<void()> CompletionCallback = nullptr)
	-> TFuture<decltype(Forward<CallableType>(Callable)())>
{
	using ResultType = decltype(Forward<CallableType>(Callable)());
	auto Promise = std::make_shared<std::promise<ResultType>>();
	TFuture<ResultType> Future(Promise->get_future().share());
	TUniqueFunction<void()> Work = [Promise, Task = std::decay_t<CallableType>(Forward<CallableType>(Callable)), Completion = MoveTemp(CompletionCallback)]() mutable
	{
		if constexpr (std::is_void_v<ResultType>)
		{
			Task();
			Promise->set_value();
		}
		else
		{
			Promise->set_value(Task());
		}
		if (Completion)
		{
			Completion();
		}
	};
	if (Execution == EAsyncExecution::TaskGraphMainThread)
	{
		AsyncTask(ENamedThreads::GameThread, MoveTemp(Work));
	}
	else
	{
		std::thread([Task = MoveTemp(Work)]() mutable { Task(); }).detach();
	}
	return Future;
}
