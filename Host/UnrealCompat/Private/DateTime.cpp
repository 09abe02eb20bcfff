// FDateTime over the proleptic Gregorian calendar, ticks of 100 ns from 0001-01-01 00:00.
#include "Misc/DateTime.h"

#include <chrono>
#include <ctime>

namespace
{
	constexpr int64 TicksPerMillisecond = 10000;
	constexpr int64 TicksPerSecond = 1000 * TicksPerMillisecond;
	constexpr int64 TicksPerMinute = 60 * TicksPerSecond;
	constexpr int64 TicksPerHour = 60 * TicksPerMinute;
	constexpr int64 TicksPerDay = 24 * TicksPerHour;
	// Days from 0001-01-01 to 1970-01-01.
	constexpr int64 UnixEpochDays = 719162;

	// Days since 0001-01-01 of a civil date (Howard Hinnant's algorithm, shifted to year 1).
	int64 DaysFromCivil(int64 Year, int64 Month, int64 Day)
	{
		Year -= Month <= 2 ? 1 : 0;
		const int64 Era = (Year >= 0 ? Year : Year - 399) / 400;
		const int64 YearOfEra = Year - Era * 400;
		const int64 DayOfYear = (153 * (Month + (Month > 2 ? -3 : 9)) + 2) / 5 + Day - 1;
		const int64 DayOfEra = YearOfEra * 365 + YearOfEra / 4 - YearOfEra / 100 + DayOfYear;
		return Era * 146097 + DayOfEra - 719468 + UnixEpochDays;
	}

	void CivilFromDays(int64 Days, int32& OutYear, int32& OutMonth, int32& OutDay)
	{
		const int64 Shifted = Days - UnixEpochDays + 719468;
		const int64 Era = (Shifted >= 0 ? Shifted : Shifted - 146096) / 146097;
		const int64 DayOfEra = Shifted - Era * 146097;
		const int64 YearOfEra = (DayOfEra - DayOfEra / 1460 + DayOfEra / 36524 - DayOfEra / 146096) / 365;
		const int64 DayOfYear = DayOfEra - (365 * YearOfEra + YearOfEra / 4 - YearOfEra / 100);
		const int64 MonthIndex = (5 * DayOfYear + 2) / 153;
		OutDay = (int32)(DayOfYear - (153 * MonthIndex + 2) / 5 + 1);
		OutMonth = (int32)(MonthIndex < 10 ? MonthIndex + 3 : MonthIndex - 9);
		OutYear = (int32)(YearOfEra + Era * 400 + (OutMonth <= 2 ? 1 : 0));
	}

	FDateTime FromSystemTime(bool bLocal)
	{
		const auto Now = std::chrono::system_clock::now();
		const std::time_t Seconds = std::chrono::system_clock::to_time_t(Now);
		const int32 Milliseconds = (int32)(std::chrono::duration_cast<std::chrono::milliseconds>(Now.time_since_epoch()).count() % 1000);
		std::tm Parts{};
		if (bLocal)
		{
			localtime_r(&Seconds, &Parts);
		}
		else
		{
			gmtime_r(&Seconds, &Parts);
		}
		return FDateTime(Parts.tm_year + 1900, Parts.tm_mon + 1, Parts.tm_mday, Parts.tm_hour, Parts.tm_min, Parts.tm_sec, Milliseconds);
	}
}

FDateTime::FDateTime(int32 Year, int32 Month, int32 Day, int32 Hour, int32 Minute, int32 Second, int32 Millisecond)
{
	check(Validate(Year, Month, Day, Hour, Minute, Second, Millisecond));
	Ticks = DaysFromCivil(Year, Month, Day) * TicksPerDay + Hour * TicksPerHour + Minute * TicksPerMinute + Second * TicksPerSecond
		+ Millisecond * TicksPerMillisecond;
}

FDateTime FDateTime::Now()
{
	return FromSystemTime(true);
}

FDateTime FDateTime::UtcNow()
{
	return FromSystemTime(false);
}

bool FDateTime::IsLeapYear(int32 Year)
{
	return (Year % 4 == 0) && (Year % 100 != 0 || Year % 400 == 0);
}

int32 FDateTime::DaysInMonth(int32 Year, int32 Month)
{
	static const int32 Days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
	check(Month >= 1 && Month <= 12);
	return Month == 2 && IsLeapYear(Year) ? 29 : Days[Month - 1];
}

bool FDateTime::Validate(int32 Year, int32 Month, int32 Day, int32 Hour, int32 Minute, int32 Second, int32 Millisecond)
{
	return Year >= 1 && Year <= 9999 && Month >= 1 && Month <= 12 && Day >= 1 && Day <= DaysInMonth(Year, Month)
		&& Hour >= 0 && Hour <= 23 && Minute >= 0 && Minute <= 59 && Second >= 0 && Second <= 59 && Millisecond >= 0 && Millisecond <= 999;
}

void FDateTime::GetDate(int32& OutYear, int32& OutMonth, int32& OutDay) const
{
	CivilFromDays(Ticks / TicksPerDay, OutYear, OutMonth, OutDay);
}

int32 FDateTime::GetYear() const
{
	int32 Year, Month, Day;
	GetDate(Year, Month, Day);
	return Year;
}

int32 FDateTime::GetMonth() const
{
	int32 Year, Month, Day;
	GetDate(Year, Month, Day);
	return Month;
}

int32 FDateTime::GetDay() const
{
	int32 Year, Month, Day;
	GetDate(Year, Month, Day);
	return Day;
}

int32 FDateTime::GetDayOfYear() const
{
	int32 Year, Month, Day;
	GetDate(Year, Month, Day);
	return (int32)(Ticks / TicksPerDay - DaysFromCivil(Year, 1, 1)) + 1;
}

int32 FDateTime::GetHour() const
{
	return (int32)((Ticks / TicksPerHour) % 24);
}

int32 FDateTime::GetHour12() const
{
	const int32 Hour = GetHour();
	return Hour < 1 ? 12 : (Hour > 12 ? Hour - 12 : Hour);
}

int32 FDateTime::GetMinute() const
{
	return (int32)((Ticks / TicksPerMinute) % 60);
}

int32 FDateTime::GetSecond() const
{
	return (int32)((Ticks / TicksPerSecond) % 60);
}

int32 FDateTime::GetMillisecond() const
{
	return (int32)((Ticks / TicksPerMillisecond) % 1000);
}

FString FDateTime::ToString() const
{
	return ToString(TEXT("%Y.%m.%d-%H.%M.%S"));
}

FString FDateTime::ToString(const TCHAR* Format) const
{
	FString Result;
	if (!Format)
	{
		return Result;
	}
	for (const TCHAR* Cursor = Format; *Cursor; ++Cursor)
	{
		if (*Cursor != u'%' || Cursor[1] == 0)
		{
			Result.AppendChar(*Cursor);
			continue;
		}
		++Cursor;
		switch (*Cursor)
		{
		case u'a': Result += GetHour() < 12 ? TEXT("am") : TEXT("pm"); break;
		case u'A': Result += GetHour() < 12 ? TEXT("AM") : TEXT("PM"); break;
		case u'd': Result += FString::Printf(TEXT("%02i"), GetDay()); break;
		case u'D': Result += FString::Printf(TEXT("%03i"), GetDayOfYear()); break;
		case u'm': Result += FString::Printf(TEXT("%02i"), GetMonth()); break;
		case u'y': Result += FString::Printf(TEXT("%02i"), GetYear() % 100); break;
		case u'Y': Result += FString::Printf(TEXT("%04i"), GetYear()); break;
		case u'h': Result += FString::Printf(TEXT("%02i"), GetHour12()); break;
		case u'H': Result += FString::Printf(TEXT("%02i"), GetHour()); break;
		case u'M': Result += FString::Printf(TEXT("%02i"), GetMinute()); break;
		case u'S': Result += FString::Printf(TEXT("%02i"), GetSecond()); break;
		case u's': Result += FString::Printf(TEXT("%03i"), GetMillisecond()); break;
		default: Result.AppendChar(*Cursor); break;
		}
	}
	return Result;
}
