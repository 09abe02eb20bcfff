// The Vessa extension records as portable code holds them. The reflected types Blueprint authors
// see (Public/Extensions/) mirror these one to one; the editor build converts between the two,
// and the enum numbering is shared (checked by static_assert where both are visible).
#pragma once

#include "CoreMinimal.h"

// Parameter kinds. The numbering is serialized in Blueprint class defaults: never reorder.
enum class EZorvekMCPBridgeVessaParameterKind : uint8
{
	None = 0,
	String = 1,
	Int = 2,
	Float = 3,
	Bool = 4,
	Vector3 = 5,
	Color = 6,
	Rotator = 7,
	LinearColor = 8,
	Enum = 9,
	Array = 10,
	Transform = 11,
	CustomStruct = 12,
	Object = 13
};

enum class EZorvekMCPBridgeVessaContextKind : uint8
{
	Any = 0,
	AssetEditor = 1
};

namespace ZorvekMCPBridgeVessa
{
	// The type string parameter JSON uses; "Unknown" for None and every value outside 1..13.
	FString GetParameterStringForType(EZorvekMCPBridgeVessaParameterKind Kind);
	// The enumerator name the context enum reports ("Any", "AssetEditor").
	FString GetContextTypeName(EZorvekMCPBridgeVessaContextKind Kind);
}

struct FZorvekMCPBridgeVessaParameterInfo
{
	FString Name;
	EZorvekMCPBridgeVessaParameterKind ParameterType = EZorvekMCPBridgeVessaParameterKind::None;
	EZorvekMCPBridgeVessaParameterKind ArrayElementType = EZorvekMCPBridgeVessaParameterKind::None;
	// Path of the struct of a CustomStruct parameter; empty otherwise.
	FString StructElementPath;
	FString Description;
	// The parameter's JSON description, serialized.
	FString ParameterTypeJsonString;
};

struct FZorvekMCPBridgeVessaActionInfo
{
	FString FunctionName;
	FString Description;
	TArray<FZorvekMCPBridgeVessaParameterInfo> ParameterDefinitions;
};

struct FZorvekMCPBridgeVessaQueryInfo
{
	FString FunctionName;
	FString Description;
	TArray<FZorvekMCPBridgeVessaParameterInfo> ParameterDefinitions;
	TArray<FZorvekMCPBridgeVessaParameterInfo> ResultDefinitions;
};

struct FZorvekMCPBridgeVessaDefinitionData
{
	FString ExtensionId;
	FString ExtensionName;
	FString ExtensionDescription;
	EZorvekMCPBridgeVessaContextKind ContextType = EZorvekMCPBridgeVessaContextKind::Any;
	FString SelectedAssetType;
	TArray<FZorvekMCPBridgeVessaActionInfo> Actions;
	TArray<FZorvekMCPBridgeVessaQueryInfo> Queries;
	bool bIsSystemExtension = false;
};

struct FZorvekMCPBridgeVessaActionOutcome
{
	bool bActionCalled = false;
	bool bSuccess = false;
	bool bIsAsync = false;
	FString Result;
	FString ErrorMessage;

	static FZorvekMCPBridgeVessaActionOutcome ExtensionSuccess(const FString& Message)
	{
		return {true, true, false, Message, FString()};
	}
	static FZorvekMCPBridgeVessaActionOutcome ExtensionFailure(const FString& Message)
	{
		return {true, false, false, FString(), Message};
	}
	static FZorvekMCPBridgeVessaActionOutcome AsyncAction(const FString& Message)
	{
		return {true, true, true, Message, FString()};
	}
	static FZorvekMCPBridgeVessaActionOutcome NoAction()
	{
		return {};
	}
};

// The two process-wide report slots extensions write their outcome into (Blueprint extensions
// have no other way to return an action's result). Game thread only, like every action.
namespace ZorvekMCPBridgeVessaReports
{
	void ReportError(const FString& ErrorMessage);
	void ReportResults(const FString& ResultsMessage);
	const FString& GetError();
	const FString& GetResults();
	bool HasError();
	bool HasResults();
	void ClearError();
	void ClearResults();
}
