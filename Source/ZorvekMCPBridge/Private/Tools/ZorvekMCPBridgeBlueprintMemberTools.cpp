#include "Tools/ZorvekMCPBridgeBlueprintMemberTools.h"

#include "Blueprint/ZorvekMCPBridgeBlueprintMembers.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	// A key under its name or, when absent, under its legacy name.
	FString ReadMemberString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, const TCHAR* LegacyKey)
	{
		return ZorvekMCPBridgeToolArguments::ReadString(Arguments, Key, ZorvekMCPBridgeToolArguments::ReadString(Arguments, LegacyKey, FString()));
	}

	FString ReadMemberString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key)
	{
		return ZorvekMCPBridgeToolArguments::ReadString(Arguments, Key, FString());
	}

	// The object at Key; null when absent or not an object.
	TSharedPtr<FJsonObject> ReadMemberObject(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key)
	{
		const TSharedPtr<FJsonObject>* Object = nullptr;
		return Arguments.IsValid() && Arguments->TryGetObjectField(Key, Object) && Object ? *Object : nullptr;
	}

	// Runs the operation on the context's editor, or answers that there is none.
	template <typename TParams>
	TSharedPtr<FJsonObject> RunMemberTool(FZorvekMCPBridgeToolContext& Context, const TCHAR* ToolName, const TParams& Params,
		TSharedPtr<FJsonObject> (*Operation)(IZorvekMCPBridgeEditorPort&, const TParams&))
	{
		if (!Context.EditorPort)
		{
			return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
		}
		return Operation(*Context.EditorPort, Params);
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleCreate(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FCreateBlueprintParams Params;
	Params.PackagePath = ReadMemberString(Arguments, TEXT("PackagePath"), TEXT("InPackagePath"));
	Params.AssetName = ReadMemberString(Arguments, TEXT("AssetName"), TEXT("InAssetName"));
	Params.ParentClassPath = ReadMemberString(Arguments, TEXT("ParentClassPath"), TEXT("InParentClassPath"));
	return RunMemberTool(Context, TEXT("blueprint_create"), Params, &ZorvekMCPBridgeBlueprintMembers::CreateBlueprint);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleCreateInterface(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FCreateInterfaceParams Params;
	Params.PackagePath = ReadMemberString(Arguments, TEXT("PackagePath"), TEXT("InPackagePath"));
	Params.AssetName = ReadMemberString(Arguments, TEXT("AssetName"), TEXT("InAssetName"));
	return RunMemberTool(Context, TEXT("blueprint_create_interface"), Params, &ZorvekMCPBridgeBlueprintMembers::CreateBlueprintInterface);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleAddVariable(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FAddVariableParams Params;
	Params.BlueprintNameOrPath = ReadMemberString(Arguments, TEXT("BlueprintNameOrPath"));
	Params.VarName = ReadMemberString(Arguments, TEXT("VarName"));
	Params.Type = ReadMemberString(Arguments, TEXT("Type"));
	Params.ObjectClassPath = ReadMemberString(Arguments, TEXT("ObjectClassPath"));
	Params.DefaultValue = ReadMemberString(Arguments, TEXT("DefaultValue"));
	Params.Category = ReadMemberString(Arguments, TEXT("Category"));
	return RunMemberTool(Context, TEXT("blueprint_add_variable"), Params, &ZorvekMCPBridgeBlueprintMembers::AddVariable);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleCreateFunction(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FCreateFunctionParams Params;
	Params.BlueprintNameOrPath = ReadMemberString(Arguments, TEXT("BlueprintNameOrPath"));
	Params.FunctionName = ReadMemberString(Arguments, TEXT("FunctionName"));
	Params.Request = Arguments;
	return RunMemberTool(Context, TEXT("blueprint_create_function"), Params, &ZorvekMCPBridgeBlueprintMembers::CreateFunction);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleCreateEventGraph(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FCreateEventGraphParams Params;
	Params.BlueprintNameOrPath = ReadMemberString(Arguments, TEXT("BlueprintNameOrPath"));
	Params.GraphName = ReadMemberString(Arguments, TEXT("GraphName"));
	return RunMemberTool(Context, TEXT("blueprint_create_event_graph"), Params, &ZorvekMCPBridgeBlueprintMembers::CreateEventGraph);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleAddCustomEvent(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FAddCustomEventParams Params;
	Params.BlueprintNameOrPath = ReadMemberString(Arguments, TEXT("BlueprintNameOrPath"));
	Params.GraphName = ReadMemberString(Arguments, TEXT("GraphName"));
	Params.EventName = ReadMemberString(Arguments, TEXT("EventName"));
	Params.bCallInEditor = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("CallInEditor"), false);
	Params.Request = Arguments;
	return RunMemberTool(Context, TEXT("blueprint_add_custom_event"), Params, &ZorvekMCPBridgeBlueprintMembers::AddCustomEvent);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleImplementInterface(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FImplementInterfaceParams Params;
	Params.BlueprintNameOrPath = ReadMemberString(Arguments, TEXT("BlueprintNameOrPath"));
	Params.InterfaceNameOrPath = ReadMemberString(Arguments, TEXT("InterfaceNameOrPath"));
	return RunMemberTool(Context, TEXT("blueprint_implement_interface"), Params, &ZorvekMCPBridgeBlueprintMembers::ImplementInterface);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleAddInterfaceEvent(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FAddInterfaceEventParams Params;
	Params.BlueprintNameOrPath = ReadMemberString(Arguments, TEXT("BlueprintNameOrPath"));
	Params.GraphName = ReadMemberString(Arguments, TEXT("GraphName"));
	Params.InterfaceNameOrPath = ReadMemberString(Arguments, TEXT("InterfaceNameOrPath"));
	Params.FunctionName = ReadMemberString(Arguments, TEXT("FunctionName"));
	Params.NodePosX = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("NodePosX"), 0);
	Params.NodePosY = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("NodePosY"), 0);
	return RunMemberTool(Context, TEXT("blueprint_add_interface_event"), Params, &ZorvekMCPBridgeBlueprintMembers::AddInterfaceEvent);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMemberTools::HandleAddComponent(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	ZorvekMCPBridgeBlueprintMembers::FAddComponentParams Params;
	Params.BlueprintNameOrPath = ReadMemberString(Arguments, TEXT("BlueprintNameOrPath"));
	Params.ComponentName = ReadMemberString(Arguments, TEXT("ComponentName"));
	Params.ComponentClassPath = ReadMemberString(Arguments, TEXT("ComponentClassPath"), TEXT("ComponentClassName"));
	Params.ParentComponentName = ReadMemberString(Arguments, TEXT("ParentComponentName"));
	Params.Properties = ReadMemberObject(Arguments, TEXT("Properties"));
	Params.PrimitiveShape = ReadMemberString(Arguments, TEXT("PrimitiveShape"));
	Params.StaticMeshPath = ReadMemberString(Arguments, TEXT("StaticMeshPath"));
	Params.MaterialPath = ReadMemberString(Arguments, TEXT("MaterialPath"));
	return RunMemberTool(Context, TEXT("blueprint_add_component"), Params, &ZorvekMCPBridgeBlueprintMembers::AddComponent);
}
