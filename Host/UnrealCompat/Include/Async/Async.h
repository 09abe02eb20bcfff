#pragma once

#include "Async/TaskGraphInterfaces.h"
#include "Templates/Function.h"

void AsyncTask(ENamedThreads::Type Thread, TUniqueFunction<void()> Function);

// The host's game-thread queue: AsyncTask to the game thread lands here and the main loop
// (or a test acting as the game thread) runs it.
class FGameThreadTaskQueue
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
