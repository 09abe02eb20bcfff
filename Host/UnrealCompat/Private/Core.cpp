// Logging, globals, ticker, game-thread tasks, configuration, console, modules and the small
// platform helpers of the host build.
#include "CoreMinimal.h"
#include "Async/Async.h"
#include "Containers/Ticker.h"
#include "HAL/IConsoleManager.h"
#include "HAL/PlatformMisc.h"
#include "HAL/PlatformProcess.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/EngineVersion.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"

#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <mutex>
#include <thread>
#include <unistd.h>

// ---------------------------------------------------------------------------------------------
// Logging

DEFINE_LOG_CATEGORY(LogTemp);
DEFINE_LOG_CATEGORY(LogJson);
DEFINE_LOG_CATEGORY(LogConsoleResponse);
DEFINE_LOG_CATEGORY(LogHttpListener);
DEFINE_LOG_CATEGORY(LogHttpServerModule);
DEFINE_LOG_CATEGORY(LogModuleManager);
DEFINE_LOG_CATEGORY(LogInit);

const TCHAR* ToString(ELogVerbosity::Type Verbosity)
{
	switch (Verbosity & ELogVerbosity::VerbosityMask)
	{
	case ELogVerbosity::NoLogging: return TEXT("NoLogging");
	case ELogVerbosity::Fatal: return TEXT("Fatal");
	case ELogVerbosity::Error: return TEXT("Error");
	case ELogVerbosity::Warning: return TEXT("Warning");
	case ELogVerbosity::Display: return TEXT("Display");
	case ELogVerbosity::Log: return TEXT("Log");
	case ELogVerbosity::Verbose: return TEXT("Verbose");
	case ELogVerbosity::VeryVerbose: return TEXT("VeryVerbose");
	default: return TEXT("Unknown");
	}
}

[[noreturn]] void UECompatFatalLog()
{
	GLog->Flush();
	std::abort();
}

FOutputDeviceRedirector* FOutputDeviceRedirector::Get()
{
	static FOutputDeviceRedirector Instance;
	return &Instance;
}

void FOutputDeviceRedirector::AddOutputDevice(FOutputDevice* Device)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	Devices.AddUnique(Device);
}

void FOutputDeviceRedirector::RemoveOutputDevice(FOutputDevice* Device)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	Devices.Remove(Device);
}

bool FOutputDeviceRedirector::IsRedirectingTo(FOutputDevice* Device)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	return Devices.Contains(Device);
}

void FOutputDeviceRedirector::Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	for (FOutputDevice* Device : Devices)
	{
		Device->Serialize(Text, Verbosity, Category);
	}
}

void FOutputDeviceRedirector::Flush()
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	for (FOutputDevice* Device : Devices)
	{
		Device->Flush();
	}
}

// ---------------------------------------------------------------------------------------------
// Globals

namespace
{
	FConfigCacheIni GConfigInstance;
	std::thread::id GGameThread = std::this_thread::get_id();
	std::atomic<bool> GExitRequested{false};
}

FConfigCacheIni* GConfig = &GConfigInstance;
FString GEngineIni = TEXT("Engine");
FString GEditorIni = TEXT("Editor");
FString GEditorPerProjectIni = TEXT("EditorPerProjectUserSettings");
FString GGameIni = TEXT("Game");
bool GIsEditor = true;
bool GExitPurge = false;
uint32 GGameThreadId = 0;

bool IsInGameThread()
{
	return std::this_thread::get_id() == GGameThread;
}

bool IsEngineExitRequested()
{
	return GExitRequested.load();
}

void RequestEngineExit(const TCHAR* ReasonString)
{
	UE_LOG(LogInit, Display, TEXT("Engine exit requested (reason: %s)"), ReasonString);
	GExitRequested = true;
	FGameThreadTaskQueue::Get().Wake();
}

void RequestEngineExit(const FString& ReasonString)
{
	RequestEngineExit(*ReasonString);
}

namespace
{
	std::atomic<bool> GRunningCommandlet{false};
}

bool IsRunningCommandlet()
{
	return GRunningCommandlet;
}

void UECompatSetRunningCommandlet(bool bRunningCommandlet)
{
	GRunningCommandlet = bRunningCommandlet;
}

// ---------------------------------------------------------------------------------------------
// Ticker

FTSTicker& FTSTicker::GetCoreTicker()
{
	static FTSTicker Instance;
	return Instance;
}

FTSTicker::FDelegateHandle FTSTicker::AddTicker(const FTickerDelegate& InDelegate, float InDelay)
{
	std::lock_guard<std::mutex> Lock(Mutex);
	TSharedPtr<FElement> Element = MakeShared<FElement>();
	Element->FireTime = CurrentTime + InDelay;
	Element->DelayTime = InDelay;
	Element->Delegate = InDelegate;
	Elements.Add(Element);
	FGameThreadTaskQueue::Get().Wake();
	return FDelegateHandle(Element);
}

FTSTicker::FDelegateHandle FTSTicker::AddTicker(const TCHAR* InName, float InDelay, TFunction<bool(float)> Function)
{
	(void)InName;
	return AddTicker(FTickerDelegate::CreateLambda(MoveTemp(Function)), InDelay);
}

void FTSTicker::RemoveTicker(FDelegateHandle Handle)
{
	if (TSharedPtr<FElement> Element = Handle.Pin())
	{
		Element->bRemoved = true;
	}
}

void FTSTicker::Tick(float DeltaTime)
{
	TArray<TSharedPtr<FElement>> Due;
	{
		std::lock_guard<std::mutex> Lock(Mutex);
		CurrentTime += DeltaTime;
		Elements.RemoveAll([](const TSharedPtr<FElement>& Element) { return Element->bRemoved; });
		for (const TSharedPtr<FElement>& Element : Elements)
		{
			if (Element->FireTime <= CurrentTime)
			{
				Due.Add(Element);
			}
		}
	}
	for (const TSharedPtr<FElement>& Element : Due)
	{
		if (Element->bRemoved)
		{
			continue;
		}
		const bool bKeep = Element->Delegate.IsBound() && Element->Delegate.Execute(DeltaTime);
		std::lock_guard<std::mutex> Lock(Mutex);
		if (bKeep)
		{
			Element->FireTime = CurrentTime + Element->DelayTime;
		}
		else
		{
			Element->bRemoved = true;
		}
	}
	std::lock_guard<std::mutex> Lock(Mutex);
	Elements.RemoveAll([](const TSharedPtr<FElement>& Element) { return Element->bRemoved; });
}

double FTSTicker::GetSecondsUntilNextFire() const
{
	std::lock_guard<std::mutex> Lock(Mutex);
	double Earliest = -1.0;
	for (const TSharedPtr<FElement>& Element : Elements)
	{
		if (!Element->bRemoved)
		{
			const double Wait = std::max(0.0, Element->FireTime - CurrentTime);
			Earliest = Earliest < 0.0 ? Wait : std::min(Earliest, Wait);
		}
	}
	return Earliest;
}

FTSTickerObjectBase::FTSTickerObjectBase(float InDelay, FTSTicker& InTicker)
{
	TickHandle = InTicker.AddTicker(FTickerDelegate::CreateLambda([this](float DeltaTime) { return Tick(DeltaTime); }), InDelay);
}

FTSTickerObjectBase::~FTSTickerObjectBase()
{
	FTSTicker::RemoveTicker(TickHandle);
}

// ---------------------------------------------------------------------------------------------
// Game-thread tasks

struct FGameThreadTaskQueue::FImpl
{
	mutable std::mutex Mutex;
	std::condition_variable Signal;
	std::deque<TUniqueFunction<void()>> Tasks;
	bool bWakeRequested = false;
};

FGameThreadTaskQueue& FGameThreadTaskQueue::Get()
{
	static FGameThreadTaskQueue Instance;
	return Instance;
}

FGameThreadTaskQueue::FImpl& FGameThreadTaskQueue::GetImpl() const
{
	static FImpl Impl;
	return Impl;
}

void FGameThreadTaskQueue::Enqueue(TUniqueFunction<void()> Task)
{
	FImpl& Impl = GetImpl();
	{
		std::lock_guard<std::mutex> Lock(Impl.Mutex);
		Impl.Tasks.push_back(MoveTemp(Task));
	}
	Impl.Signal.notify_one();
}

int32 FGameThreadTaskQueue::ProcessPendingTasks()
{
	FImpl& Impl = GetImpl();
	std::deque<TUniqueFunction<void()>> Batch;
	{
		std::lock_guard<std::mutex> Lock(Impl.Mutex);
		Batch.swap(Impl.Tasks);
	}
	for (TUniqueFunction<void()>& Task : Batch)
	{
		Task();
	}
	return (int32)Batch.size();
}

void FGameThreadTaskQueue::WaitForTasks(double TimeoutSeconds)
{
	FImpl& Impl = GetImpl();
	std::unique_lock<std::mutex> Lock(Impl.Mutex);
	Impl.Signal.wait_for(Lock, std::chrono::duration<double>(std::max(0.0, TimeoutSeconds)), [&Impl]() { return !Impl.Tasks.empty() || Impl.bWakeRequested; });
	Impl.bWakeRequested = false;
}

void FGameThreadTaskQueue::Wake()
{
	FImpl& Impl = GetImpl();
	{
		std::lock_guard<std::mutex> Lock(Impl.Mutex);
		Impl.bWakeRequested = true;
	}
	Impl.Signal.notify_all();
}

int32 FGameThreadTaskQueue::NumPending() const
{
	FImpl& Impl = GetImpl();
	std::lock_guard<std::mutex> Lock(Impl.Mutex);
	return (int32)Impl.Tasks.size();
}

void AsyncTask(ENamedThreads::Type Thread, TUniqueFunction<void()> Function)
{
	if (Thread == ENamedThreads::GameThread)
	{
		FGameThreadTaskQueue::Get().Enqueue(MoveTemp(Function));
		return;
	}
	std::thread([Task = MoveTemp(Function)]() mutable { Task(); }).detach();
}

// ---------------------------------------------------------------------------------------------
// Configuration

bool FConfigCacheIni::GetString(const TCHAR* Section, const TCHAR* Key, FString& Value, const FString& Filename)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	const auto* File = Files.Find(Filename);
	const auto* Keys = File ? File->Find(FString(Section)) : nullptr;
	const TArray<FString>* Values = Keys ? Keys->Find(FString(Key)) : nullptr;
	if (!Values || Values->IsEmpty())
	{
		return false;
	}
	Value = (*Values)[0];
	return true;
}

bool FConfigCacheIni::GetBool(const TCHAR* Section, const TCHAR* Key, bool& Value, const FString& Filename)
{
	FString Text;
	if (!GetString(Section, Key, Text, Filename))
	{
		return false;
	}
	Value = Text.ToBool();
	return true;
}

bool FConfigCacheIni::GetInt(const TCHAR* Section, const TCHAR* Key, int32& Value, const FString& Filename)
{
	FString Text;
	if (!GetString(Section, Key, Text, Filename))
	{
		return false;
	}
	Value = FCString::Atoi(*Text);
	return true;
}

int32 FConfigCacheIni::GetArray(const TCHAR* Section, const TCHAR* Key, TArray<FString>& Value, const FString& Filename)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	Value.Reset();
	const auto* File = Files.Find(Filename);
	const auto* Keys = File ? File->Find(FString(Section)) : nullptr;
	if (const TArray<FString>* Values = Keys ? Keys->Find(FString(Key)) : nullptr)
	{
		Value = *Values;
	}
	return Value.Num();
}

void FConfigCacheIni::SetString(const TCHAR* Section, const TCHAR* Key, const TCHAR* Value, const FString& Filename)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	Files.FindOrAdd(Filename).FindOrAdd(FString(Section)).Add(FString(Key), TArray<FString>{FString(Value)});
}

void FConfigCacheIni::SetBool(const TCHAR* Section, const TCHAR* Key, bool Value, const FString& Filename)
{
	SetString(Section, Key, Value ? TEXT("True") : TEXT("False"), Filename);
}

bool FConfigCacheIni::LoadFromText(const FString& Filename, const FString& IniText)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	TMap<FString, TMap<FString, TArray<FString>>> Sections;
	TArray<FString> Lines;
	IniText.ParseIntoArrayLines(Lines);
	FString CurrentSection;
	for (const FString& RawLine : Lines)
	{
		const FString Line = RawLine.TrimStartAndEnd();
		if (Line.IsEmpty() || Line.StartsWith(TEXT(";")) || Line.StartsWith(TEXT("#")))
		{
			continue;
		}
		if (Line.StartsWith(TEXT("[")) && Line.EndsWith(TEXT("]")))
		{
			CurrentSection = Line.Mid(1, Line.Len() - 2);
			Sections.FindOrAdd(CurrentSection);
			continue;
		}
		FString Key;
		FString Value;
		if (CurrentSection.IsEmpty() || !Line.Split(TEXT("="), &Key, &Value))
		{
			return false;
		}
		Key.TrimStartAndEndInline();
		Value = Value.TrimStartAndEnd().TrimQuotes();
		TArray<FString>& Values = Sections.FindOrAdd(CurrentSection).FindOrAdd(Key.StartsWith(TEXT("+")) ? Key.RightChop(1) : Key);
		if (Key.StartsWith(TEXT("+")))
		{
			Values.Add(Value);
		}
		else
		{
			Values = TArray<FString>{Value};
		}
	}
	Files.Add(Filename, MoveTemp(Sections));
	return true;
}

void FConfigCacheIni::Clear(const FString& Filename)
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	Files.Remove(Filename);
}

// ---------------------------------------------------------------------------------------------
// Console commands

namespace
{
	class FCompatConsoleCommand : public IConsoleCommand
	{
	public:
		FCompatConsoleCommand(const TCHAR* InHelp, TFunction<void(const TArray<FString>&, FOutputDevice&)> InRun)
			: Help(InHelp), Run(MoveTemp(InRun)) {}
		const TCHAR* GetHelp() const override { return *Help; }
		bool Execute(const TArray<FString>& Args, UWorld* InWorld, FOutputDevice& OutputDevice) override
		{
			(void)InWorld;
			Run(Args, OutputDevice);
			return true;
		}

	private:
		FString Help;
		TFunction<void(const TArray<FString>&, FOutputDevice&)> Run;
	};
}

IConsoleManager& IConsoleManager::Get()
{
	static IConsoleManager Instance;
	return Instance;
}

IConsoleCommand* IConsoleManager::RegisterConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandDelegate& Command, uint32 Flags)
{
	return RegisterConsoleCommand(Name, Help, FConsoleCommandWithArgsAndOutputDeviceDelegate::CreateLambda([Command](const TArray<FString>&, FOutputDevice&) { Command.ExecuteIfBound(); }), Flags);
}

IConsoleCommand* IConsoleManager::RegisterConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsDelegate& Command, uint32 Flags)
{
	return RegisterConsoleCommand(Name, Help, FConsoleCommandWithArgsAndOutputDeviceDelegate::CreateLambda([Command](const TArray<FString>& Args, FOutputDevice&) { Command.ExecuteIfBound(Args); }), Flags);
}

IConsoleCommand* IConsoleManager::RegisterConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsAndOutputDeviceDelegate& Command, uint32 Flags)
{
	(void)Flags;
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	if (Commands.Contains(FString(Name)))
	{
		UE_LOG(LogConsoleResponse, Warning, TEXT("Console object named '%s' already exists but is being registered again."), Name);
	}
	TSharedPtr<IConsoleCommand> Created = MakeShared<FCompatConsoleCommand>(Help, [Command](const TArray<FString>& Args, FOutputDevice& Ar) { Command.ExecuteIfBound(Args, Ar); });
	Commands.Add(FString(Name), Created);
	return Created.Get();
}

void IConsoleManager::UnregisterConsoleObject(IConsoleObject* ConsoleObject, bool bKeepState)
{
	(void)bKeepState;
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	FString Found;
	for (const auto& Pair : Commands)
	{
		if (Pair.Value.Get() == ConsoleObject)
		{
			Found = Pair.Key;
			break;
		}
	}
	if (!Found.IsEmpty())
	{
		Commands.Remove(Found);
	}
}

IConsoleObject* IConsoleManager::FindConsoleObject(const TCHAR* Name) const
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	const TSharedPtr<IConsoleCommand>* Command = Commands.Find(FString(Name));
	return Command ? Command->Get() : nullptr;
}

bool IConsoleManager::ProcessUserConsoleInput(const TCHAR* Input, FOutputDevice& Ar, UWorld* InWorld)
{
	TArray<FString> Words;
	FString(Input).ParseIntoArrayWS(Words);
	if (Words.IsEmpty())
	{
		return false;
	}
	TSharedPtr<IConsoleCommand> Command;
	{
		std::lock_guard<std::recursive_mutex> Lock(Mutex);
		Command = Commands.FindRef(Words[0]);
	}
	if (!Command.IsValid())
	{
		return false;
	}
	Words.RemoveAt(0);
	return Command->Execute(Words, InWorld, Ar);
}

void IConsoleManager::ForEachCommandName(const TFunction<void(const FString& Name, const TCHAR* Help)>& Visitor) const
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	for (const auto& Pair : Commands)
	{
		Visitor(Pair.Key, Pair.Value->GetHelp());
	}
}

// ---------------------------------------------------------------------------------------------
// Modules

FModuleManager& FModuleManager::Get()
{
	static FModuleManager Instance;
	return Instance;
}

void FModuleManager::RegisterModuleFactory(const FName InModuleName, FInitializeModuleFunction Factory)
{
	Factories.Add(InModuleName, MoveTemp(Factory));
}

bool FModuleManager::IsModuleLoaded(const FName InModuleName) const
{
	return Loaded.Contains(InModuleName);
}

bool FModuleManager::ModuleExists(const TCHAR* ModuleName, FString* OutModuleFilePath) const
{
	if (OutModuleFilePath)
	{
		OutModuleFilePath->Reset();
	}
	return Factories.Contains(FName(ModuleName));
}

IModuleInterface* FModuleManager::GetModule(const FName InModuleName)
{
	const TSharedPtr<IModuleInterface>* Module = Loaded.Find(InModuleName);
	return Module ? Module->Get() : nullptr;
}

IModuleInterface* FModuleManager::LoadModule(const FName InModuleName, ELoadModuleFlags InLoadModuleFlags)
{
	if (IModuleInterface* Existing = GetModule(InModuleName))
	{
		return Existing;
	}
	const FInitializeModuleFunction* Factory = Factories.Find(InModuleName);
	if (!Factory)
	{
		if (InLoadModuleFlags == ELoadModuleFlags::LogFailures)
		{
			UE_LOG(LogModuleManager, Warning, TEXT("ModuleManager: Unable to load module '%s' because the file couldn't be loaded by the OS."), *InModuleName.ToString());
		}
		return nullptr;
	}
	TSharedPtr<IModuleInterface> Module((*Factory)());
	Loaded.Add(InModuleName, Module);
	LoadOrder.Add(InModuleName);
	Module->StartupModule();
	return Module.Get();
}

IModuleInterface& FModuleManager::LoadModuleChecked(const FName InModuleName)
{
	IModuleInterface* Module = LoadModule(InModuleName);
	check(Module);
	return *Module;
}

bool FModuleManager::UnloadModule(const FName InModuleName, bool bIsShutdown, bool bAllowUnloadCode)
{
	(void)bIsShutdown;
	(void)bAllowUnloadCode;
	TSharedPtr<IModuleInterface> Module = Loaded.FindRef(InModuleName);
	if (!Module.IsValid())
	{
		return false;
	}
	Module->PreUnloadCallback();
	Module->ShutdownModule();
	Loaded.Remove(InModuleName);
	LoadOrder.Remove(InModuleName);
	return true;
}

void FModuleManager::UnloadModulesAtShutdown()
{
	// Reverse order of start-up completion, as the engine does.
	while (!LoadOrder.IsEmpty())
	{
		UnloadModule(LoadOrder.Last(), true);
	}
}

// ---------------------------------------------------------------------------------------------
// Platform helpers

const FEngineVersion& FEngineVersion::Current()
{
	static const FEngineVersion Version(5, 7, 0, 0, TEXT("ZorvekBridgeHost-SimulatedEditor"));
	return Version;
}

FString FEngineVersion::ToString(EVersionComponent LastComponent) const
{
	FString Result = FString::Printf(TEXT("%u"), (uint32)Major);
	if (LastComponent >= EVersionComponent::Minor)
	{
		Result += FString::Printf(TEXT(".%u"), (uint32)Minor);
	}
	if (LastComponent >= EVersionComponent::Patch)
	{
		Result += FString::Printf(TEXT(".%u"), (uint32)Patch);
	}
	if (LastComponent >= EVersionComponent::Changelist)
	{
		Result += FString::Printf(TEXT("-%u"), Changelist);
	}
	if (LastComponent >= EVersionComponent::Branch && !Branch.IsEmpty())
	{
		Result += TEXT("+") + Branch;
	}
	return Result;
}

FString FPlatformMisc::GetEnvironmentVariable(const TCHAR* VariableName)
{
	const char* Value = std::getenv(UECompatToUtf8(FStringView(VariableName)).c_str());
	return Value ? UECompatFromUtf8(Value) : FString();
}

void FPlatformMisc::SetEnvironmentVar(const TCHAR* VariableName, const TCHAR* Value)
{
	const std::string Name = UECompatToUtf8(FStringView(VariableName));
	if (!Value || !*Value)
	{
		::unsetenv(Name.c_str());
	}
	else
	{
		::setenv(Name.c_str(), UECompatToUtf8(FStringView(Value)).c_str(), 1);
	}
}

uint32 FPlatformProcess::GetCurrentProcessId()
{
	return (uint32)::getpid();
}

namespace
{
	FString& HostProjectDir()
	{
		static FString Directory;
		return Directory;
	}

	std::filesystem::path ToPath(const FString& Path)
	{
		return std::filesystem::path(UECompatToUtf8(Path));
	}
}

FString FPaths::ProjectDir()
{
	FString Directory = HostProjectDir().IsEmpty() ? UECompatFromUtf8(std::filesystem::current_path().string()) : HostProjectDir();
	NormalizeDirectoryName(Directory);
	return Directory + TEXT("/");
}

FString FPaths::ProjectSavedDir()
{
	return ProjectDir() + TEXT("Saved/");
}

FString FPaths::ProjectConfigDir()
{
	return ProjectDir() + TEXT("Config/");
}

void FPaths::SetProjectDirForHost(const FString& Directory)
{
	HostProjectDir() = Directory;
}

FString FPaths::GetPath(const FString& InPath)
{
	int32 Slash = INDEX_NONE;
	FString Normalized = InPath;
	NormalizeFilename(Normalized);
	return Normalized.FindLastChar(u'/', Slash) ? Normalized.Left(Slash) : FString();
}

FString FPaths::GetCleanFilename(const FString& InPath)
{
	int32 Slash = INDEX_NONE;
	FString Normalized = InPath;
	NormalizeFilename(Normalized);
	return Normalized.FindLastChar(u'/', Slash) ? Normalized.Mid(Slash + 1) : Normalized;
}

FString FPaths::GetBaseFilename(const FString& InPath, bool bRemovePath)
{
	FString Name = bRemovePath ? GetCleanFilename(InPath) : InPath;
	int32 Dot = INDEX_NONE;
	if (Name.FindLastChar(u'.', Dot))
	{
		int32 Slash = INDEX_NONE;
		if (!Name.FindLastChar(u'/', Slash) || Slash < Dot)
		{
			Name = Name.Left(Dot);
		}
	}
	return Name;
}

FString FPaths::GetExtension(const FString& InPath, bool bIncludeDot)
{
	const FString Name = GetCleanFilename(InPath);
	int32 Dot = INDEX_NONE;
	if (!Name.FindLastChar(u'.', Dot))
	{
		return FString();
	}
	return Name.Mid(bIncludeDot ? Dot : Dot + 1);
}

bool FPaths::FileExists(const FString& InPath)
{
	std::error_code Error;
	return std::filesystem::is_regular_file(ToPath(InPath), Error);
}

bool FPaths::DirectoryExists(const FString& InPath)
{
	std::error_code Error;
	return std::filesystem::is_directory(ToPath(InPath), Error);
}

void FPaths::NormalizeFilename(FString& InPath)
{
	InPath.ReplaceInline(TEXT("\\"), TEXT("/"));
}

void FPaths::NormalizeDirectoryName(FString& InPath)
{
	NormalizeFilename(InPath);
	while (InPath.Len() > 1 && InPath.EndsWith(TEXT("/")))
	{
		InPath.LeftChopInline(1);
	}
}

FString FPaths::ConvertRelativePathToFull(const FString& InPath)
{
	std::error_code Error;
	const std::filesystem::path Full = std::filesystem::absolute(ToPath(InPath), Error).lexically_normal();
	return UECompatFromUtf8(Full.generic_string());
}

bool FPaths::IsRelative(const FString& InPath)
{
	return !InPath.StartsWith(TEXT("/"));
}

void FPaths::AppendPart(FString& Result, const FString& Part)
{
	if (Part.IsEmpty())
	{
		return;
	}
	if (!Result.IsEmpty() && !Result.EndsWith(TEXT("/")) && !Part.StartsWith(TEXT("/")))
	{
		Result += TEXT("/");
	}
	else if (Result.EndsWith(TEXT("/")) && Part.StartsWith(TEXT("/")))
	{
		Result.LeftChopInline(1);
	}
	Result += Part;
}

// ---------------------------------------------------------------------------------------------
// Text

namespace
{
	FText FormatWith(const FText& Pattern, const TFunction<const FFormatArgumentValue*(const FString&)>& Lookup)
	{
		const FString& Source = Pattern.ToString();
		FString Out;
		for (int32 Index = 0; Index < Source.Len(); ++Index)
		{
			// A backtick escapes the next brace, as in the engine's text formatter.
			if (Source[Index] == u'`' && Index + 1 < Source.Len() && (Source[Index + 1] == u'{' || Source[Index + 1] == u'}'))
			{
				Out += Source[++Index];
				continue;
			}
			if (Source[Index] == u'{')
			{
				const int32 Close = Source.Find(TEXT("}"), ESearchCase::CaseSensitive, ESearchDir::FromStart, Index);
				if (Close != INDEX_NONE)
				{
					const FString Name = Source.Mid(Index + 1, Close - Index - 1);
					if (const FFormatArgumentValue* Value = Lookup(Name))
					{
						Out += Value->Text;
						Index = Close;
						continue;
					}
				}
			}
			Out += Source[Index];
		}
		return FText::FromString(Out);
	}
}

FText FText::Format(const FText& Pattern, const FFormatOrderedArguments& Arguments)
{
	return FormatWith(Pattern, [&Arguments](const FString& Name) -> const FFormatArgumentValue*
	{
		if (!Name.IsNumeric())
		{
			return nullptr;
		}
		const int32 Index = FCString::Atoi(*Name);
		return Arguments.IsValidIndex(Index) ? &Arguments[Index] : nullptr;
	});
}

FText FText::Format(const FText& Pattern, const FFormatNamedArguments& Arguments)
{
	return FormatWith(Pattern, [&Arguments](const FString& Name) { return Arguments.Find(Name); });
}
