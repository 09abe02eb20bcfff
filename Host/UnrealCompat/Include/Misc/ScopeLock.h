// FScopeLock: holds a critical section for its scope.
#pragma once

#include "HAL/CriticalSection.h"

class FScopeLock
{
public:
	explicit FScopeLock(FCriticalSection* InSynchObject)
		: SynchObject(InSynchObject)
	{
		SynchObject->Lock();
	}
	~FScopeLock()
	{
		SynchObject->Unlock();
	}
	FScopeLock(const FScopeLock&) = delete;
	FScopeLock& operator=(const FScopeLock&) = delete;

private:
	FCriticalSection* SynchObject;
};
