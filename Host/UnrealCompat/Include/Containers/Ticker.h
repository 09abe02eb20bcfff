// The core ticker. Delays accumulate the delta times handed to Tick, as in the engine: a ticker
// added with a delay of 0.1 runs in the first Tick whose accumulated time reaches 0.1.
#pragma once

#include "Delegates/Delegate.h"
#include <mutex>

DECLARE_DELEGATE_RetVal_OneParam(bool, FTickerDelegate, float);

class FTSTicker
{
public:
	struct FElement
	{
		double FireTime = 0.0;
		float DelayTime = 0.0f;
		FTickerDelegate Delegate;
		bool bRemoved = false;
	};
	using FDelegateHandle = TWeakPtr<FElement>;

	static FTSTicker& GetCoreTicker();

	FDelegateHandle AddTicker(const FTickerDelegate& InDelegate, float InDelay = 0.0f);
	FDelegateHandle AddTicker(const TCHAR* InName, float InDelay, TFunction<bool(float)> Function);
	static void RemoveTicker(FDelegateHandle Handle);
	void Tick(float DeltaTime);

	// Host main loop support: seconds until the earliest ticker is due, or a negative value
	// when none is registered.
	UE_COMPAT_HOST_ONLY double GetSecondsUntilNextFire() const;

private:
	mutable std::mutex Mutex;
	TArray<TSharedPtr<FElement>> Elements;
	double CurrentTime = 0.0;
};

class FTSTickerObjectBase
{
public:
	explicit FTSTickerObjectBase(float InDelay = 0.0f, FTSTicker& InTicker = FTSTicker::GetCoreTicker());
	virtual ~FTSTickerObjectBase();
	virtual bool Tick(float DeltaTime) = 0;

private:
	FTSTicker::FDelegateHandle TickHandle;
};
