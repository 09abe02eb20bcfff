// FCriticalSection: a recursive lock, as the engine's Windows critical section is (the same
// thread may take it again).
#pragma once

#include <mutex>

class FCriticalSection
{
public:
	FCriticalSection() = default;
	FCriticalSection(const FCriticalSection&) = delete;
	FCriticalSection& operator=(const FCriticalSection&) = delete;

	void Lock() { Mutex.lock(); }
	bool TryLock() { return Mutex.try_lock(); }
	void Unlock() { Mutex.unlock(); }

private:
	std::recursive_mutex Mutex;
};
