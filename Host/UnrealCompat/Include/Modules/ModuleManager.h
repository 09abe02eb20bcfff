// Module manager of the host: IMPLEMENT_MODULE registers a factory under the module's name;
// loading creates the module and runs StartupModule, unloading runs ShutdownModule.
#pragma once

#include "Modules/ModuleInterface.h"
#include "UObject/NameTypes.h"
#include "Containers/Map.h"
#include "Templates/Function.h"
#include "Templates/UniquePtr.h"

enum class ELoadModuleFlags
{
	None = 0,
	LogFailures = 1 << 0
};

class FModuleManager
{
public:
	typedef TFunction<IModuleInterface*()> FInitializeModuleFunction;

	static FModuleManager& Get();

	bool IsModuleLoaded(const FName InModuleName) const;
	bool ModuleExists(const TCHAR* ModuleName, FString* OutModuleFilePath = nullptr) const;
	IModuleInterface* LoadModule(const FName InModuleName, ELoadModuleFlags InLoadModuleFlags = ELoadModuleFlags::None);
	IModuleInterface& LoadModuleChecked(const FName InModuleName);
	IModuleInterface* GetModule(const FName InModuleName);
	bool UnloadModule(const FName InModuleName, bool bIsShutdown = false, bool bAllowUnloadCode = true);
	void UnloadModulesAtShutdown();

	template <typename TModuleInterface>
	static TModuleInterface* GetModulePtr(const FName ModuleName) { return static_cast<TModuleInterface*>(Get().GetModule(ModuleName)); }
	template <typename TModuleInterface>
	static TModuleInterface& GetModuleChecked(const FName ModuleName) { TModuleInterface* Module = GetModulePtr<TModuleInterface>(ModuleName); check(Module); return *Module; }
	template <typename TModuleInterface>
	static TModuleInterface* LoadModulePtr(const FName ModuleName) { return static_cast<TModuleInterface*>(Get().LoadModule(ModuleName)); }
	template <typename TModuleInterface>
	static TModuleInterface& LoadModuleChecked(const FName ModuleName) { return static_cast<TModuleInterface&>(Get().LoadModuleChecked(ModuleName)); }

	void RegisterModuleFactory(const FName InModuleName, FInitializeModuleFunction Factory);

private:
	TMap<FName, FInitializeModuleFunction> Factories;
	TMap<FName, TSharedPtr<IModuleInterface>> Loaded;
	TArray<FName> LoadOrder;
};

struct FModuleFactoryRegistrar
{
	FModuleFactoryRegistrar(const TCHAR* ModuleName, FModuleManager::FInitializeModuleFunction Factory)
	{
		FModuleManager::Get().RegisterModuleFactory(FName(ModuleName), MoveTemp(Factory));
	}
};

#define IMPLEMENT_MODULE(ModuleImplClass, ModuleName) \
	static FModuleFactoryRegistrar GModuleFactoryRegistrar##ModuleName(TEXT(#ModuleName), []() -> IModuleInterface* { return new ModuleImplClass(); });
