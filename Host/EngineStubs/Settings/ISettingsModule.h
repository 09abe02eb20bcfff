#pragma once

#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"
#include "UObject/WeakObjectPtrTemplates.h"

class ISettingsSection;
class SWidget;

class ISettingsModule : public IModuleInterface
{
public:
	virtual TSharedPtr<ISettingsSection> RegisterSettings(const FName& ContainerName, const FName& CategoryName, const FName& SectionName,
		const FText& DisplayName, const FText& Description, const TWeakObjectPtr<UObject>& SettingsObject) = 0;
	virtual TSharedPtr<ISettingsSection> RegisterSettings(const FName& ContainerName, const FName& CategoryName, const FName& SectionName,
		const FText& DisplayName, const FText& Description, const TSharedRef<SWidget>& CustomWidget) = 0;
	virtual void UnregisterSettings(const FName& ContainerName, const FName& CategoryName, const FName& SectionName) = 0;
	virtual void ShowViewer(const FName& ContainerName, const FName& CategoryName, const FName& SectionName) = 0;
};
