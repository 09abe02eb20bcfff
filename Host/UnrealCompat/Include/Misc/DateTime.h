// FDateTime: a point in time in 100-nanosecond ticks since 0001-01-01 00:00, as in the engine.
//
// ToString(Format) uses the engine's own specifiers, not strftime's: %M is the minute, %s the
// millisecond, %h the hour on a 12-hour clock, %a/%A am/pm, %D the day of the year.
#pragma once

#include "Containers/UnrealString.h"

struct FDateTime
{
public:
	FDateTime() = default;
	explicit FDateTime(int64 InTicks) : Ticks(InTicks) {}
	FDateTime(int32 Year, int32 Month, int32 Day, int32 Hour = 0, int32 Minute = 0, int32 Second = 0, int32 Millisecond = 0);

	// Local time.
	static FDateTime Now();
	static FDateTime UtcNow();
	static bool Validate(int32 Year, int32 Month, int32 Day, int32 Hour, int32 Minute, int32 Second, int32 Millisecond);
	static int32 DaysInMonth(int32 Year, int32 Month);
	static bool IsLeapYear(int32 Year);

	int32 GetYear() const;
	int32 GetMonth() const;
	int32 GetDay() const;
	int32 GetDayOfYear() const;
	int32 GetHour() const;
	int32 GetHour12() const;
	int32 GetMinute() const;
	int32 GetSecond() const;
	int32 GetMillisecond() const;
	int64 GetTicks() const { return Ticks; }

	// "%Y.%m.%d-%H.%M.%S"
	FString ToString() const;
	FString ToString(const TCHAR* Format) const;

	bool operator==(const FDateTime& Other) const { return Ticks == Other.Ticks; }
	bool operator!=(const FDateTime& Other) const { return Ticks != Other.Ticks; }

private:
	void GetDate(int32& OutYear, int32& OutMonth, int32& OutDay) const;

	int64 Ticks = 0;
};
