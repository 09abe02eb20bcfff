#pragma once

#include "Delegates/Delegate.h"
#include "Misc/OutputDevice.h"
#include "Containers/Map.h"
#include <mutex>

class UWorld;

enum EConsoleVariableFlags
{
	ECVF_Default = 0,
	ECVF_Cheat = 1,
	ECVF_ReadOnly = 4,
	ECVF_Unregistered = 8,
};

DECLARE_DELEGATE(FConsoleCommandDelegate)
DECLARE_DELEGATE_OneParam(FConsoleCommandWithArgsDelegate, const TArray<FString>&)
DECLARE_DELEGATE_OneParam(FConsoleCommandWithOutputDeviceDelegate, FOutputDevice&)
DECLARE_DELEGATE_TwoParams(FConsoleCommandWithArgsAndOutputDeviceDelegate, const TArray<FString>&, FOutputDevice&)

class IConsoleObject
{
public:
	virtual ~IConsoleObject() = default;
	virtual const TCHAR* GetHelp() const = 0;
};

class IConsoleCommand : public IConsoleObject
{
public:
	virtual bool Execute(const TArray<FString>& Args, UWorld* InWorld, FOutputDevice& OutputDevice) = 0;
};

class IConsoleManager
{
public:
	static IConsoleManager& Get();

	IConsoleCommand* RegisterConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandDelegate& Command, uint32 Flags = ECVF_Default);
	IConsoleCommand* RegisterConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsDelegate& Command, uint32 Flags = ECVF_Default);
	IConsoleCommand* RegisterConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsAndOutputDeviceDelegate& Command, uint32 Flags = ECVF_Default);
	void UnregisterConsoleObject(IConsoleObject* ConsoleObject, bool bKeepState = true);
	IConsoleObject* FindConsoleObject(const TCHAR* Name) const;
	// Runs "Name arg arg"; returns false when no command of that name is registered.
	bool ProcessUserConsoleInput(const TCHAR* Input, FOutputDevice& Ar, UWorld* InWorld);
	void ForEachCommandName(const TFunction<void(const FString& Name, const TCHAR* Help)>& Visitor) const;

private:
	mutable std::recursive_mutex Mutex;
	TMap<FString, TSharedPtr<IConsoleCommand>> Commands;
};

class FAutoConsoleObject
{
public:
	IConsoleObject* AsVariable() const { return Target; }

protected:
	explicit FAutoConsoleObject(IConsoleObject* InTarget) : Target(InTarget) {}
	~FAutoConsoleObject() { IConsoleManager::Get().UnregisterConsoleObject(Target); }

private:
	IConsoleObject* Target;
};

class FAutoConsoleCommand : private FAutoConsoleObject
{
public:
	FAutoConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandDelegate& Command, uint32 Flags = ECVF_Default)
		: FAutoConsoleObject(IConsoleManager::Get().RegisterConsoleCommand(Name, Help, Command, Flags)) {}
	FAutoConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsDelegate& Command, uint32 Flags = ECVF_Default)
		: FAutoConsoleObject(IConsoleManager::Get().RegisterConsoleCommand(Name, Help, Command, Flags)) {}
	FAutoConsoleCommand(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsAndOutputDeviceDelegate& Command, uint32 Flags = ECVF_Default)
		: FAutoConsoleObject(IConsoleManager::Get().RegisterConsoleCommand(Name, Help, Command, Flags)) {}
};
