#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/UIAction.h"
#include "Framework/Commands/UICommandInfo.h"
#include "Misc/Attribute.h"
#include "Textures/SlateIcon.h"
#include "UObject/Object.h"

struct FToolMenuOwner
{
	FToolMenuOwner();
	FToolMenuOwner(const void* InPointer);
	FToolMenuOwner(const FName InName);
	FToolMenuOwner(const TCHAR* InName);
};

struct FToolMenuOwnerScoped
{
	FToolMenuOwnerScoped(const FToolMenuOwner InOwner);
	~FToolMenuOwnerScoped();
};

struct FToolUIActionChoice
{
	FToolUIActionChoice();
	FToolUIActionChoice(const FUIAction& InAction);
};

struct FToolMenuInsert
{
	FToolMenuInsert();
};

struct FToolMenuEntry
{
};

struct FToolMenuSection
{
	FToolMenuEntry& AddMenuEntry(const FName InName, const TAttribute<FText>& InLabel, const TAttribute<FText>& InToolTip,
		const TAttribute<FSlateIcon>& InIcon, const FToolUIActionChoice& InAction,
		const EUserInterfaceActionType::Type UserInterfaceActionType = EUserInterfaceActionType::Button,
		const FName InTutorialHighlightName = NAME_None);
	FToolMenuEntry& AddSeparator(const FName InName);
	FToolMenuEntry& AddEntry(const FToolMenuEntry& Args);
};

class UToolMenu : public UObject
{
public:
	FToolMenuSection& FindOrAddSection(const FName SectionName);
	FToolMenuSection& FindOrAddSection(const FName SectionName, const TAttribute<FText>& InLabel, const FToolMenuInsert InPosition = FToolMenuInsert());
	FToolMenuSection& AddSection(const FName SectionName, const TAttribute<FText>& InLabel = TAttribute<FText>(), const FToolMenuInsert InPosition = FToolMenuInsert());
	FToolMenuSection* FindSection(const FName SectionName);
};

class UToolMenus : public UObject
{
public:
	static UToolMenus* Get();
	static UToolMenus* TryGet();
	static bool IsToolMenuUIEnabled();
	static FDelegateHandle RegisterStartupCallback(const FSimpleMulticastDelegate::FDelegate& InDelegate);
	static void UnRegisterStartupCallback(const void* UserPointer);
	static void UnRegisterStartupCallback(FDelegateHandle InHandle);
	static void UnregisterOwner(FToolMenuOwner Owner);
	UToolMenu* RegisterMenu(FName Name, const FName Parent = NAME_None);
	UToolMenu* ExtendMenu(const FName Name);
	UToolMenu* FindMenu(const FName Name);
	void RefreshAllWidgets();
	void RemoveSection(const FName MenuName, const FName Section);
};
