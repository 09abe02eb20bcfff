#include "HostConsoleOutput.h"

#include <chrono>
#include <cstdio>
#include <ctime>

FString FHostConsoleOutput::FormatLine(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	const auto Now = std::chrono::system_clock::now();
	const std::time_t Seconds = std::chrono::system_clock::to_time_t(Now);
	const int Milliseconds = (int)(std::chrono::duration_cast<std::chrono::milliseconds>(Now.time_since_epoch()).count() % 1000);
	std::tm Utc{};
	gmtime_r(&Seconds, &Utc);
	char Stamp[64];
	std::snprintf(Stamp, sizeof(Stamp), "[%04d.%02d.%02d-%02d.%02d.%02d:%03d][  0]", Utc.tm_year + 1900, Utc.tm_mon + 1, Utc.tm_mday, Utc.tm_hour, Utc.tm_min, Utc.tm_sec, Milliseconds);

	FString Line = UECompatFromUtf8(Stamp);
	if (!Category.IsNone())
	{
		Line += Category.ToString() + TEXT(": ");
	}
	// The output log leaves the word out for the Log verbosity.
	if ((Verbosity & ELogVerbosity::VerbosityMask) != ELogVerbosity::Log)
	{
		Line += FString(ToString(Verbosity)) + TEXT(": ");
	}
	return Line + Text;
}

void FHostConsoleOutput::Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	const std::string Line = UECompatToUtf8(FormatLine(Text, Verbosity, Category));
	std::fprintf(stdout, "%s\n", Line.c_str());
	std::fflush(stdout);
}

void FHostConsoleOutput::Flush()
{
	std::fflush(stdout);
}
