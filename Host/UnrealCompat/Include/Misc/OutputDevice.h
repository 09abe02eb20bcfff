#pragma once

#include "Logging/LogVerbosity.h"
#include "UObject/NameTypes.h"

class FOutputDevice
{
public:
	virtual ~FOutputDevice() = default;
	virtual void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) = 0;
	virtual void Flush() {}
	virtual bool CanBeUsedOnAnyThread() const { return false; }

	void Log(const TCHAR* Text) { Serialize(Text, ELogVerbosity::Log, FName()); }
	void Log(const FString& Text) { Serialize(*Text, ELogVerbosity::Log, FName()); }
	void Log(const FName& Category, ELogVerbosity::Type Verbosity, const FString& Text) { Serialize(*Text, Verbosity, Category); }
	template <typename FmtType, typename... Types>
	void Logf(const FmtType& Fmt, Types... Args) { Log(FString::Printf(Fmt, Args...)); }
};
