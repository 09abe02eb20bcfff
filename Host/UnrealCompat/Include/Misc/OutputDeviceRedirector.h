#pragma once

#include "Misc/OutputDevice.h"
#include "Containers/Array.h"
#include <mutex>

// GLog: hands every line to each added output device, from any thread.
class FOutputDeviceRedirector : public FOutputDevice
{
public:
	static FOutputDeviceRedirector* Get();
	void AddOutputDevice(FOutputDevice* Device);
	void RemoveOutputDevice(FOutputDevice* Device);
	bool IsRedirectingTo(FOutputDevice* Device);
	void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) override;
	void Flush() override;
	bool CanBeUsedOnAnyThread() const override { return true; }

private:
	std::recursive_mutex Mutex;
	TArray<FOutputDevice*> Devices;
};

#define GLog FOutputDeviceRedirector::Get()
