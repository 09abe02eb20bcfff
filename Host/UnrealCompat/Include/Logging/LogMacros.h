#pragma once

#include "Logging/LogVerbosity.h"
#include "Misc/OutputDeviceRedirector.h"

class FLogCategoryBase
{
public:
	FLogCategoryBase(const TCHAR* InName, ELogVerbosity::Type InDefaultVerbosity)
		: Name(InName), Verbosity(InDefaultVerbosity) {}
	const FName& GetCategoryName() const { return Name; }
	ELogVerbosity::Type GetVerbosity() const { return Verbosity; }
	void SetVerbosity(ELogVerbosity::Type NewVerbosity) { Verbosity = NewVerbosity; }
	bool IsSuppressed(ELogVerbosity::Type VerbosityLevel) const { return VerbosityLevel > Verbosity; }

private:
	FName Name;
	ELogVerbosity::Type Verbosity;
};

template <ELogVerbosity::Type InDefaultVerbosity, ELogVerbosity::Type InCompileTimeVerbosity>
struct FLogCategory : public FLogCategoryBase
{
	static constexpr ELogVerbosity::Type CompileTimeVerbosity = InCompileTimeVerbosity;
	explicit FLogCategory(const TCHAR* InName) : FLogCategoryBase(InName, InDefaultVerbosity) {}
};

[[noreturn]] void UECompatFatalLog();

#define DECLARE_LOG_CATEGORY_EXTERN(CategoryName, DefaultVerbosity, CompileTimeVerbosity) \
	extern struct FLogCategory##CategoryName : public FLogCategory<ELogVerbosity::DefaultVerbosity, ELogVerbosity::CompileTimeVerbosity> \
	{ \
		FLogCategory##CategoryName() : FLogCategory(TEXT(#CategoryName)) {} \
	} CategoryName;
#define DEFINE_LOG_CATEGORY(CategoryName) FLogCategory##CategoryName CategoryName;
#define DEFINE_LOG_CATEGORY_STATIC(CategoryName, DefaultVerbosity, CompileTimeVerbosity) \
	static struct FLogCategory##CategoryName : public FLogCategory<ELogVerbosity::DefaultVerbosity, ELogVerbosity::CompileTimeVerbosity> \
	{ \
		FLogCategory##CategoryName() : FLogCategory(TEXT(#CategoryName)) {} \
	} CategoryName;

#define UE_LOG(CategoryName, Verbosity, Format, ...) \
	do \
	{ \
		if (!CategoryName.IsSuppressed(ELogVerbosity::Verbosity)) \
		{ \
			GLog->Serialize(*FString::Printf(Format, ##__VA_ARGS__), ELogVerbosity::Verbosity, CategoryName.GetCategoryName()); \
			if (ELogVerbosity::Verbosity == ELogVerbosity::Fatal) \
			{ \
				UECompatFatalLog(); \
			} \
		} \
	} while (false)

#define UE_CLOG(Condition, CategoryName, Verbosity, Format, ...) \
	do \
	{ \
		if (Condition) \
		{ \
			UE_LOG(CategoryName, Verbosity, Format, ##__VA_ARGS__); \
		} \
	} while (false)

DECLARE_LOG_CATEGORY_EXTERN(LogTemp, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogJson, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogConsoleResponse, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogHttpListener, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogHttpServerModule, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogModuleManager, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogInit, Log, All);
