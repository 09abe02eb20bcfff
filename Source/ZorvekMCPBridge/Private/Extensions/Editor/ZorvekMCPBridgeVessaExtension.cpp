// UZorvekMCPBridgeVessaExtension in the editor: the reflected class hands discovery, marshalling
// and calls to the shared extension code over the engine's function port, converting its
// Definition to and from the shared records.
#include "Extensions/ZorvekMCPBridgeVessaExtension.h"

#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Engine/Engine.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionLogic.h"
#include "Subsystems/AssetEditorSubsystem.h"
#include "UObject/Class.h"

static_assert((uint8)EZorvekMCPBridgeVessaExtensionParameterType::Object == (uint8)EZorvekMCPBridgeVessaParameterKind::Object
	&& (uint8)EZorvekMCPBridgeVessaExtensionParameterType::CustomStruct == (uint8)EZorvekMCPBridgeVessaParameterKind::CustomStruct
	&& (uint8)EZorvekMCPBridgeVessaExtensionParameterType::Transform == (uint8)EZorvekMCPBridgeVessaParameterKind::Transform,
	"The reflected parameter type and the shared one must number their values alike.");

namespace
{
	FZorvekMCPBridgeVessaParameterInfo VessaToParameterInfo(const FZorvekMCPBridgeVessaParameterDefinition& Definition)
	{
		FZorvekMCPBridgeVessaParameterInfo Info;
		Info.Name = Definition.Name.ToString();
		Info.ParameterType = (EZorvekMCPBridgeVessaParameterKind)Definition.ParameterType;
		Info.ArrayElementType = (EZorvekMCPBridgeVessaParameterKind)Definition.ArrayElementType;
		Info.StructElementPath = Definition.StructElementType.IsValid() ? Definition.StructElementType.Get()->GetPathName() : FString();
		Info.Description = Definition.Description;
		Info.ParameterTypeJsonString = Definition.ParameterTypeJsonString;
		return Info;
	}

	FZorvekMCPBridgeVessaParameterDefinition VessaFromParameterInfo(const FZorvekMCPBridgeVessaParameterInfo& Info)
	{
		FZorvekMCPBridgeVessaParameterDefinition Definition;
		Definition.Name = FName(*Info.Name);
		Definition.ParameterType = (EZorvekMCPBridgeVessaExtensionParameterType)Info.ParameterType;
		Definition.ArrayElementType = (EZorvekMCPBridgeVessaExtensionParameterType)Info.ArrayElementType;
		Definition.StructElementType = Info.StructElementPath.IsEmpty() ? nullptr : FindObject<UScriptStruct>(nullptr, Info.StructElementPath);
		Definition.Description = Info.Description;
		Definition.ParameterTypeJsonString = Info.ParameterTypeJsonString;
		return Definition;
	}

	template <typename DefinitionType>
	TArray<FZorvekMCPBridgeVessaParameterInfo> VessaToParameterInfos(const TArray<DefinitionType>& Definitions)
	{
		TArray<FZorvekMCPBridgeVessaParameterInfo> Infos;
		for (const DefinitionType& Definition : Definitions)
		{
			Infos.Add(VessaToParameterInfo(Definition));
		}
		return Infos;
	}

	TArray<FZorvekMCPBridgeVessaParameterDefinition> VessaFromParameterInfos(const TArray<FZorvekMCPBridgeVessaParameterInfo>& Infos)
	{
		TArray<FZorvekMCPBridgeVessaParameterDefinition> Definitions;
		for (const FZorvekMCPBridgeVessaParameterInfo& Info : Infos)
		{
			Definitions.Add(VessaFromParameterInfo(Info));
		}
		return Definitions;
	}

	// The engine's function port, for calls that start from the reflected class itself.
	FZorvekMCPBridgeEngineFunctions& VessaEngineFunctions()
	{
		static FZorvekMCPBridgeEngineFunctions Functions;
		return Functions;
	}
}

FZorvekMCPBridgeVessaDefinitionData UZorvekMCPBridgeVessaExtension::ToDefinitionData() const
{
	FZorvekMCPBridgeVessaDefinitionData Data;
	Data.ExtensionId = Definition.ExtensionId;
	Data.ExtensionName = Definition.ExtensionName;
	Data.ExtensionDescription = Definition.ExtensionDescription;
	Data.ContextType = (EZorvekMCPBridgeVessaContextKind)Definition.ContextType;
	Data.SelectedAssetType = Definition.SelectedAssetType;
	for (const FZorvekMCPBridgeVessaActionDefinition& Action : Definition.Actions)
	{
		FZorvekMCPBridgeVessaActionInfo Info;
		Info.FunctionName = Action.FunctionName.ToString();
		Info.Description = Action.Description;
		Info.ParameterDefinitions = VessaToParameterInfos(Action.ParameterDefinitions);
		Data.Actions.Add(Info);
	}
	for (const FZorvekMCPBridgeVessaQueryDefinition& Query : Definition.Queries)
	{
		FZorvekMCPBridgeVessaQueryInfo Info;
		Info.FunctionName = Query.FunctionName.ToString();
		Info.Description = Query.Description;
		Info.ParameterDefinitions = VessaToParameterInfos(Query.ParameterDefinitions);
		Info.ResultDefinitions = VessaToParameterInfos(Query.ResultDefinitions);
		Data.Queries.Add(Info);
	}
	Data.bIsSystemExtension = IsSystemExtension();
	return Data;
}

void UZorvekMCPBridgeVessaExtension::FromDefinitionData(const FZorvekMCPBridgeVessaDefinitionData& Data)
{
	Definition.ExtensionId = Data.ExtensionId;
	Definition.ExtensionName = Data.ExtensionName;
	Definition.ExtensionDescription = Data.ExtensionDescription;
	Definition.ContextType = (EZorvekMCPBridgeVessaExtensionContextType)Data.ContextType;
	Definition.SelectedAssetType = Data.SelectedAssetType;
	Definition.Actions.Empty();
	for (const FZorvekMCPBridgeVessaActionInfo& Info : Data.Actions)
	{
		FZorvekMCPBridgeVessaActionDefinition Action;
		Action.FunctionName = FName(*Info.FunctionName);
		Action.Description = Info.Description;
		Action.ParameterDefinitions = VessaFromParameterInfos(Info.ParameterDefinitions);
		Definition.Actions.Add(Action);
	}
	Definition.Queries.Empty();
	for (const FZorvekMCPBridgeVessaQueryInfo& Info : Data.Queries)
	{
		FZorvekMCPBridgeVessaQueryDefinition Query;
		Query.FunctionName = FName(*Info.FunctionName);
		Query.Description = Info.Description;
		Query.ParameterDefinitions = VessaFromParameterInfos(Info.ParameterDefinitions);
		Query.ResultDefinitions = VessaFromParameterInfos(Info.ResultDefinitions);
		Definition.Queries.Add(Query);
	}
	Definition.bIsSystemExtension = Data.bIsSystemExtension;
}

bool UZorvekMCPBridgeVessaExtension::IsActive_Implementation() const
{
	return true;
}

bool UZorvekMCPBridgeVessaExtension::IsSystemExtension() const
{
	return false;
}

bool UZorvekMCPBridgeVessaExtension::MatchesContext(TWeakObjectPtr<UObject> ContextObject) const
{
	const UObject* Object = ContextObject.Get();
	return ZorvekMCPBridgeVessa::MatchesContext(ToDefinitionData(), IsValid(Object), Object ? Object->GetClass()->GetName() : FString());
}

TSharedPtr<FZorvekMCPBridgeVessaExtensionDefinition> UZorvekMCPBridgeVessaExtension::GetExtensionDefinition() const
{
	return MakeShared<FZorvekMCPBridgeVessaExtensionDefinition>(Definition);
}

void UZorvekMCPBridgeVessaExtension::DiscoverActionsAndQueries()
{
	FZorvekMCPBridgeVessaDefinitionData Data = ToDefinitionData();
	ZorvekMCPBridgeVessa::DiscoverActionsAndQueries(VessaEngineFunctions(), GetClass()->GetPathName(), Data);
	FromDefinitionData(Data);
}

FZorvekMCPBridgeVessaActionResult UZorvekMCPBridgeVessaExtension::ExecuteAction(const TSharedPtr<FJsonObject>& Request)
{
	const FZorvekMCPBridgeVessaActionOutcome Outcome = ZorvekMCPBridgeVessa::ExecuteAction(VessaEngineFunctions(),
		FZorvekMCPBridgeEngineEditorPort::ToHandle(this), GetClass()->GetPathName(), ToDefinitionData(), Request);
	FZorvekMCPBridgeVessaActionResult Result;
	Result.bActionCalled = Outcome.bActionCalled;
	Result.bSuccess = Outcome.bSuccess;
	Result.bIsAsync = Outcome.bIsAsync;
	Result.Result = Outcome.Result;
	Result.ErrorMessage = Outcome.ErrorMessage;
	return Result;
}

TSharedPtr<FJsonValue> UZorvekMCPBridgeVessaExtension::ExecuteQuery(const TSharedPtr<FJsonObject>& Request)
{
	return ZorvekMCPBridgeVessa::ExecuteQuery(VessaEngineFunctions(), FZorvekMCPBridgeEngineEditorPort::ToHandle(this), GetClass()->GetPathName(),
		ToDefinitionData(), Request);
}

void UZorvekMCPBridgeVessaExtension::ReportExtensionError(const FString& ErrorMessage)
{
	ZorvekMCPBridgeVessaReports::ReportError(ErrorMessage);
}

void UZorvekMCPBridgeVessaExtension::ReportExtensionResults(const FString& ResultsMessage)
{
	ZorvekMCPBridgeVessaReports::ReportResults(ResultsMessage);
}

FString UZorvekMCPBridgeVessaExtension::GetExtensionError()
{
	return ZorvekMCPBridgeVessaReports::GetError();
}

FString UZorvekMCPBridgeVessaExtension::GetExtensionResults()
{
	return ZorvekMCPBridgeVessaReports::GetResults();
}

bool UZorvekMCPBridgeVessaExtension::HasExtensionError()
{
	return ZorvekMCPBridgeVessaReports::HasError();
}

bool UZorvekMCPBridgeVessaExtension::HasExtensionResults()
{
	return ZorvekMCPBridgeVessaReports::HasResults();
}

void UZorvekMCPBridgeVessaExtension::ClearExtensionError()
{
	ZorvekMCPBridgeVessaReports::ClearError();
}

void UZorvekMCPBridgeVessaExtension::ClearExtensionResults()
{
	ZorvekMCPBridgeVessaReports::ClearResults();
}

UObject* UZorvekMCPBridgeVessaExtension::GetCurrentlyEditedAsset()
{
	UAssetEditorSubsystem* AssetEditors = GEditor ? GEditor->GetEditorSubsystem<UAssetEditorSubsystem>() : nullptr;
	if (!AssetEditors)
	{
		return nullptr;
	}
	const TArray<UObject*> Edited = AssetEditors->GetAllEditedAssets();
	return Edited.Num() > 0 ? Edited[0] : nullptr;
}

UWorld* UZorvekMCPBridgeVessaExtension::GetWorldEditorContext()
{
	return GEditor ? GEditor->GetEditorWorldContext().World() : nullptr;
}

void UZorvekMCPBridgeVessaExtension::PostInitProperties()
{
	UObject::PostInitProperties();
	RefreshExtension();
}

#if WITH_EDITOR
void UZorvekMCPBridgeVessaExtension::PostCDOCompiled(const FPostCDOCompiledContext& Context)
{
	UObject::PostCDOCompiled(Context);
	RefreshExtension();
}
#endif

bool UZorvekMCPBridgeVessaExtension::ShouldAddCDOTagsToBlueprintClass() const
{
	return true;
}

void UZorvekMCPBridgeVessaExtension::RefreshExtension()
{
	if (!HasAnyFlags(RF_ClassDefaultObject) || GetClass() == UZorvekMCPBridgeVessaExtension::StaticClass())
	{
		return;
	}
	FZorvekMCPBridgeVessaDefinitionData Data = ToDefinitionData();
	ZorvekMCPBridgeVessa::RefreshExtension(VessaEngineFunctions(), GetClass()->GetPathName(), Data);
	FromDefinitionData(Data);
}
