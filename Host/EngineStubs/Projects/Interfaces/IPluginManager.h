#pragma once

#include "CoreMinimal.h"

class IPlugin
{
public:
	virtual ~IPlugin();

	const FString& GetName() const;
	const FString& GetFriendlyName() const;
	FString GetBaseDir() const;
	FString GetContentDir() const;
	FString GetMountedAssetPath() const;
	bool IsEnabled() const;
	bool IsMounted() const;
	bool CanContainContent() const;
};

class IPluginManager
{
public:
	virtual ~IPluginManager();

	static IPluginManager& Get();
	virtual TSharedPtr<IPlugin> FindPlugin(const FStringView Name) = 0;
	virtual TSharedPtr<IPlugin> FindPlugin(const ANSICHAR* Name) = 0;
	virtual TSharedPtr<IPlugin> FindEnabledPlugin(const FStringView Name) = 0;
	virtual TSharedPtr<IPlugin> FindPluginFromPath(const FString& PluginPath) = 0;
	virtual TArray<TSharedRef<IPlugin>> GetEnabledPlugins() = 0;
	virtual TArray<TSharedRef<IPlugin>> GetDiscoveredPlugins() = 0;
};
