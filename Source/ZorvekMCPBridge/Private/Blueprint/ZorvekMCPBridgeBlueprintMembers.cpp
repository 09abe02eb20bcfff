#include "Blueprint/ZorvekMCPBridgeBlueprintMembers.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintMemberSupport.h"
#include "Blueprint/ZorvekMCPBridgePinTypes.h"
#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "EditorPort/ZorvekMCPBridgePortTypeLookup.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"


const TCHAR* const ZorvekMCPBridgeBlueprintMembers::DefaultParentClassPath = TEXT("/Script/Engine.Actor");

namespace
{
	const TCHAR* const BlueprintMemberInterfaceParentPath = TEXT("/Script/CoreUObject.Interface");

	// What the asset creation steps of blueprint_create and blueprint_create_interface share.
	struct FBlueprintMemberNewAsset
	{
		const TCHAR* RequiredMessage;
		// "Blueprint" or "Blueprint Interface", in the creation failure message.
		const TCHAR* AssetKind;
		FString PackagePath;
		FString AssetName;
		FString ParentClassPath;
		EZorvekMCPBridgeBlueprintType BlueprintType = EZorvekMCPBridgeBlueprintType::Normal;
	};

	struct FBlueprintMemberCreatedAsset
	{
		FZorvekMCPBridgeObjectHandle Blueprint;
		FString PackageName;
		FString ObjectPath;
		FString ParentClassPath;
	};

	// The checks before anything is created: the names, an asset already there, the parent class
	// and the package name. Null when a Blueprint could be created; OutParentClass is the loaded
	// parent class, OutPackageName the new package's name.
	TSharedPtr<FJsonObject> CheckBlueprintMemberAsset(IZorvekMCPBridgeEditorPort& Port, const FBlueprintMemberNewAsset& Request, FString& OutPackageName, FZorvekMCPBridgeTypeInfo& OutParentClass)
	{
		if (Request.PackagePath.IsEmpty() || Request.AssetName.IsEmpty())
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Request.RequiredMessage);
		}
		FString PackagePath = Request.PackagePath;
		while (PackagePath.Len() > 1 && PackagePath.EndsWith(TEXT("/")))
		{
			PackagePath.LeftChopInline(1);
		}
		const FString PackageName = PackagePath + TEXT("/") + Request.AssetName;
		const FString ObjectPath = PackageName + TEXT(".") + Request.AssetName;
		IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
		// The engine asserts on a Blueprint whose name is already taken in the package
		// (unreal-behaviour-blueprints.md §1.1), so an object there, in memory or on disk, stops here.
		if (Objects.LoadObject(ObjectPath).IsValid())
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Blueprint asset already exists: %s"), *ObjectPath));
		}
		if (!Objects.LoadClass(Request.ParentClassPath, OutParentClass))
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not load parent class: %s"), *Request.ParentClassPath));
		}
		// A name the editor refuses is caught before the package exists.
		FString Reason;
		if (!Port.GetAssetAuthoring().IsValidLongPackageName(PackageName, Reason))
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not create or load package: %s"), *PackageName));
		}
		OutPackageName = PackageName;
		return nullptr;
	}

	// Every check first, then the package and the Blueprint. Empty Failure on success.
	TSharedPtr<FJsonObject> CreateBlueprintMemberAsset(IZorvekMCPBridgeEditorPort& Port, const FBlueprintMemberNewAsset& Request, FBlueprintMemberCreatedAsset& OutCreated)
	{
		FString PackageName;
		FZorvekMCPBridgeTypeInfo ParentClass;
		if (const TSharedPtr<FJsonObject> Failure = CheckBlueprintMemberAsset(Port, Request, PackageName, ParentClass))
		{
			return Failure;
		}
		const FString ObjectPath = PackageName + TEXT(".") + Request.AssetName;
		IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
		IZorvekMCPBridgeAssetAuthoring& Authoring = Port.GetAssetAuthoring();
		const FZorvekMCPBridgeObjectHandle Package = Authoring.CreateOrFindPackage(PackageName);
		if (!Package.IsValid())
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not create or load package: %s"), *PackageName));
		}
		const FZorvekMCPBridgeObjectHandle Blueprint = Port.GetBlueprints().CreateBlueprint(Package, Request.AssetName, ParentClass.Path, Request.BlueprintType);
		if (!Blueprint.IsValid())
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not create %s: %s"), Request.AssetKind, *ObjectPath));
		}
		Authoring.NotifyAssetCreated(Blueprint);
		Authoring.MarkPackageDirty(Blueprint);
		OutCreated.Blueprint = Blueprint;
		OutCreated.PackageName = PackageName;
		OutCreated.ObjectPath = Objects.GetIdentity(Blueprint).ObjectPath;
		OutCreated.ParentClassPath = ParentClass.Path;
		return nullptr;
	}

	bool IsBlueprintMemberEventGraph(const FZorvekMCPBridgeGraphSnapshot& Graph)
	{
		return Graph.Kind == EZorvekMCPBridgeGraphKind::Ubergraph;
	}

	// The graph events go to: it must exist and be an event graph (event nodes do not compile in
	// function or macro graphs). Null with the message otherwise.
	const FZorvekMCPBridgeGraphSnapshot* FindBlueprintMemberEventGraph(const ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FString& GraphName, FString& OutError)
	{
		const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, GraphName);
		if (!Graph)
		{
			OutError = ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(GraphName, Loaded.AssetPath);
			return nullptr;
		}
		if (!IsBlueprintMemberEventGraph(*Graph))
		{
			OutError = FString::Printf(TEXT("Graph '%s' in %s is not an event graph; events can only be added to event graphs."), *Graph->Name, *Loaded.AssetPath);
			return nullptr;
		}
		return Graph;
	}

	// The first free row below the graph's nodes, at X 0: under the lowest node by the gap the
	// editor leaves between its default events, on its grid. (0, 0) in an empty graph.
	void GetBlueprintMemberFreeEventRow(const FZorvekMCPBridgeGraphSnapshot& Graph, int32& OutX, int32& OutY)
	{
		using namespace ZorvekMCPBridgeBlueprintMembers;
		OutX = 0;
		OutY = 0;
		if (Graph.Nodes.IsEmpty())
		{
			return;
		}
		int32 Bottom = Graph.Nodes[0].PosY + Graph.Nodes[0].Height;
		for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
		{
			Bottom = FMath::Max(Bottom, Node.PosY + Node.Height);
		}
		const int32 Wanted = Bottom + EventRowGap;
		// Rounded to the nearest grid line, as the editor snaps a node's position.
		OutY = FMath::FloorToInt((static_cast<float>(Wanted) / EventRowGrid) + 0.5f) * EventRowGrid;
	}

	bool HasBlueprintMemberCustomEvent(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& EventName)
	{
		const FName Wanted(EventName);
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				if (Node.Kind == EZorvekMCPBridgeNodeKind::CustomEvent && FName(Node.Data.CustomFunctionName) == Wanted)
				{
					return true;
				}
			}
		}
		return false;
	}

	bool HasBlueprintMemberVariable(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FName& VarName)
	{
		for (const FZorvekMCPBridgeVariableSnapshot& Variable : Blueprint.Variables)
		{
			if (Variable.VarName == VarName)
			{
				return true;
			}
		}
		return false;
	}

	bool ImplementsBlueprintMemberInterface(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& InterfaceClassPath)
	{
		return ZorvekMCPBridgeSpawnerIds::FindImplementedInterface(Blueprint, InterfaceClassPath) != nullptr;
	}

	const FZorvekMCPBridgeNodeSnapshot* FindBlueprintMemberNode(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& NodeGuid)
	{
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				if (Node.NodeGuid.Equals(NodeGuid, ESearchCase::IgnoreCase))
				{
					return &Node;
				}
			}
		}
		return nullptr;
	}

	// An interface by what the client typed: a loaded or loadable interface class path, else a
	// Blueprint Interface asset found by the common Blueprint steps, which gives its generated
	// class. False when neither names an interface.
	bool ResolveBlueprintMemberInterface(IZorvekMCPBridgeEditorPort& Port, const FString& InterfaceNameOrPath, FZorvekMCPBridgeTypeInfo& OutClass)
	{
		IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
		const auto AcceptInterface = [&Objects, &OutClass](const FString& ClassPath)
		{
			FZorvekMCPBridgeTypeInfo Class;
			if (ClassPath.IsEmpty() || !Objects.LoadClass(ClassPath, Class) || (Class.ClassFlags & ZorvekMCPBridgeClassFlags::Interface) == 0)
			{
				return false;
			}
			OutClass = Class;
			return true;
		};
		if (InterfaceNameOrPath.StartsWith(TEXT("/")) && AcceptInterface(InterfaceNameOrPath))
		{
			return true;
		}
		ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint InterfaceBlueprint;
		FString Ignored;
		if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, InterfaceNameOrPath, InterfaceBlueprint, Ignored))
		{
			return false;
		}
		return AcceptInterface(Port.GetBlueprints().GetGeneratedInterfaceClassPath(InterfaceBlueprint.Blueprint));
	}

	// The parameters of an event node: its output pins other than the exec pin and the event's
	// own delegate pin, each as name, category, sub-category, sub-category object, container,
	// type text and type.
	TArray<TSharedPtr<FJsonValue>> MakeBlueprintMemberEventParameters(const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		static const TCHAR* const ParameterKeys[] = {
			TEXT("name"), TEXT("pin_category"), TEXT("pin_subcategory"), TEXT("pin_subcategory_object"), TEXT("container_type"), TEXT("type_string"), TEXT("type")
		};
		TArray<TSharedPtr<FJsonValue>> Parameters;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			if (Pin.Pin.Direction != EZorvekMCPBridgePinDirection::Output || Pin.Pin.PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_Exec
				|| Pin.Pin.PinName == FName(TEXT("OutputDelegate")))
			{
				continue;
			}
			const TSharedPtr<FJsonObject> Full = ZorvekMCPBridgePinTypes::MakePinJson(Pin.Pin);
			TSharedPtr<FJsonObject> Parameter = MakeShared<FJsonObject>();
			for (const TCHAR* Key : ParameterKeys)
			{
				Parameter->SetField(Key, Full->TryGetField(Key));
			}
			Parameters.Add(MakeShared<FJsonValueObject>(Parameter));
		}
		return Parameters;
	}

	FString DescribeBlueprintMemberFunctionFailure(const FZorvekMCPBridgeFunctionGraphResult& Result)
	{
		return Result.FailureReason.IsEmpty() ? FString(TEXT("the editor did not create the pin")) : Result.FailureReason;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::CreateBlueprint(IZorvekMCPBridgeEditorPort& Port, const FCreateBlueprintParams& Params)
{
	FBlueprintMemberNewAsset Request;
	Request.RequiredMessage = TEXT("blueprint_create requires PackagePath and AssetName.");
	Request.AssetKind = TEXT("Blueprint");
	Request.PackagePath = Params.PackagePath;
	Request.AssetName = Params.AssetName;
	Request.ParentClassPath = Params.ParentClassPath.IsEmpty() ? FString(DefaultParentClassPath) : Params.ParentClassPath;
	Request.BlueprintType = EZorvekMCPBridgeBlueprintType::Normal;
	FBlueprintMemberCreatedAsset Created;
	if (const TSharedPtr<FJsonObject> Failure = CreateBlueprintMemberAsset(Port, Request, Created))
	{
		return Failure;
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Created.PackageName);
	Result->SetStringField(TEXT("object_path"), Created.ObjectPath);
	Result->SetStringField(TEXT("parent_class"), Created.ParentClassPath);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::CheckCreateBlueprint(IZorvekMCPBridgeEditorPort& Port, const FCreateBlueprintParams& Params, const TCHAR* RequiredMessage,
	FString& OutPackageName, FString& OutParentClassPath)
{
	FBlueprintMemberNewAsset Request;
	Request.RequiredMessage = RequiredMessage;
	Request.AssetKind = TEXT("Blueprint");
	Request.PackagePath = Params.PackagePath;
	Request.AssetName = Params.AssetName;
	Request.ParentClassPath = Params.ParentClassPath.IsEmpty() ? FString(DefaultParentClassPath) : Params.ParentClassPath;
	FZorvekMCPBridgeTypeInfo ParentClass;
	const TSharedPtr<FJsonObject> Failure = CheckBlueprintMemberAsset(Port, Request, OutPackageName, ParentClass);
	OutParentClassPath = ParentClass.Path;
	return Failure;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::CreateBlueprintInterface(IZorvekMCPBridgeEditorPort& Port, const FCreateInterfaceParams& Params)
{
	FBlueprintMemberNewAsset Request;
	Request.RequiredMessage = TEXT("blueprint_create_interface requires PackagePath and AssetName.");
	Request.AssetKind = TEXT("Blueprint Interface");
	Request.PackagePath = Params.PackagePath;
	Request.AssetName = Params.AssetName;
	Request.ParentClassPath = BlueprintMemberInterfaceParentPath;
	Request.BlueprintType = EZorvekMCPBridgeBlueprintType::Interface;
	FBlueprintMemberCreatedAsset Created;
	if (const TSharedPtr<FJsonObject> Failure = CreateBlueprintMemberAsset(Port, Request, Created))
	{
		return Failure;
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Created.PackageName);
	Result->SetStringField(TEXT("object_path"), Created.ObjectPath);
	Result->SetStringField(TEXT("blueprint_type"), TEXT("interface"));
	Result->SetStringField(TEXT("generated_class_path"), Port.GetBlueprints().GetGeneratedInterfaceClassPath(Created.Blueprint));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::AddVariable(IZorvekMCPBridgeEditorPort& Port, const FAddVariableParams& Params)
{
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	FString Error;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	if (Params.VarName.IsEmpty() || Params.Type.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("blueprint_add_variable requires VarName and Type."));
	}
	const FZorvekMCPBridgePortTypeLookup TypeLookup(Port.GetObjects());
	FZorvekMCPBridgePinType PinType;
	FString TypeString;
	if (!ZorvekMCPBridgePinTypes::ParseBlueprintVariableType(TypeLookup, Params.Type, Params.ObjectClassPath, PinType, TypeString, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	const FName VarName(Params.VarName);
	// A variable of that name stays as it is, type included: adding is idempotent.
	if (!HasBlueprintMemberVariable(Loaded.Snapshot, VarName) && !Blueprints.AddMemberVariable(Loaded.Blueprint, VarName, PinType, Params.DefaultValue))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not add Blueprint variable '%s'."), *Params.VarName));
	}
	if (!Params.Category.IsEmpty())
	{
		Blueprints.SetVariableCategory(Loaded.Blueprint, VarName, Params.Category);
	}
	Blueprints.MarkStructurallyModified(Loaded.Blueprint);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetStringField(TEXT("variable"), Params.VarName);
	Result->SetStringField(TEXT("type"), TypeString);
	Result->SetStringField(TEXT("requested_type"), Params.Type);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::CreateFunction(IZorvekMCPBridgeEditorPort& Port, const FCreateFunctionParams& Params)
{
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	FString Error;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	if (Params.FunctionName.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("blueprint_create_function requires FunctionName."));
	}
	const FZorvekMCPBridgePortTypeLookup TypeLookup(Port.GetObjects());
	TArray<FBlueprintParamSpec> Inputs;
	TArray<FBlueprintParamSpec> Outputs;
	if (!ZorvekMCPBridgePinTypes::ParseParamSpecArray(TypeLookup, Params.Request, TEXT("Inputs"), Inputs, Error)
		|| !ZorvekMCPBridgePinTypes::ParseParamSpecArray(TypeLookup, Params.Request, TEXT("Outputs"), Outputs, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	if (!Blueprints.IsGraphNameUnique(Loaded.Blueprint, Params.FunctionName))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Blueprint graph/function already exists: %s"), *Params.FunctionName));
	}

	const FZorvekMCPBridgeFunctionGraphResult Created = Blueprints.CreateFunctionGraph(Loaded.Blueprint, Params.FunctionName, Inputs, Outputs);
	const FString FailedPin = Created.FailedPinName.ToString();
	switch (Created.Failure)
	{
	case EZorvekMCPBridgeFunctionGraphFailure::None:
		break;
	case EZorvekMCPBridgeFunctionGraphFailure::GraphNotCreated:
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not create function graph: %s"), *Params.FunctionName));
	case EZorvekMCPBridgeFunctionGraphFailure::NoEntryNode:
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Function graph has no entry node: %s"), *Params.FunctionName));
	case EZorvekMCPBridgeFunctionGraphFailure::NoResultNode:
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Function graph has no result node: %s"), *Params.FunctionName));
	case EZorvekMCPBridgeFunctionGraphFailure::InputPinNotCreated:
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not add input pin '%s' to function '%s': %s"), *FailedPin, *Params.FunctionName,
			*DescribeBlueprintMemberFunctionFailure(Created)));
	case EZorvekMCPBridgeFunctionGraphFailure::OutputPinNotCreated:
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not add output pin '%s' to function '%s': %s"), *FailedPin, *Params.FunctionName,
			*DescribeBlueprintMemberFunctionFailure(Created)));
	}
	Blueprints.MarkStructurallyModified(Loaded.Blueprint);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetStringField(TEXT("function_name"), Params.FunctionName);
	Result->SetStringField(TEXT("graph_name"), Created.GraphName.IsEmpty() ? Params.FunctionName : Created.GraphName);
	Result->SetStringField(TEXT("spawner_id"), ZorvekMCPBridgeSpawnerIds::MakeBlueprintFunctionId(Params.FunctionName));
	Result->SetArrayField(TEXT("inputs"), ZorvekMCPBridgePinTypes::MakeParamSpecJson(Inputs));
	Result->SetArrayField(TEXT("outputs"), ZorvekMCPBridgePinTypes::MakeParamSpecJson(Outputs));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::CreateEventGraph(IZorvekMCPBridgeEditorPort& Port, const FCreateEventGraphParams& Params)
{
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	FString Error;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	if (Params.GraphName.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("blueprint_create_event_graph requires GraphName."));
	}
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	if (!Blueprints.IsGraphNameUnique(Loaded.Blueprint, Params.GraphName))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Blueprint graph already exists: %s"), *Params.GraphName));
	}
	if (!Blueprints.CreateEventGraph(Loaded.Blueprint, Params.GraphName))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not create event graph: %s"), *Params.GraphName));
	}
	Blueprints.MarkStructurallyModified(Loaded.Blueprint);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetStringField(TEXT("graph_name"), Params.GraphName);
	Result->SetStringField(TEXT("graph_type"), TEXT("ubergraph"));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::AddCustomEvent(IZorvekMCPBridgeEditorPort& Port, const FAddCustomEventParams& Params)
{
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	FString Error;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	const FString GraphName = Params.GraphName.IsEmpty() ? FString(ZorvekMCPBridgeBlueprintLoading::DefaultGraphName) : Params.GraphName;
	if (Params.EventName.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("blueprint_add_custom_event requires EventName."));
	}
	if (HasBlueprintMemberCustomEvent(Loaded.Snapshot, Params.EventName))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Blueprint custom event already exists: %s"), *Params.EventName));
	}
	const FZorvekMCPBridgePortTypeLookup TypeLookup(Port.GetObjects());
	TArray<FBlueprintParamSpec> Parameters;
	if (!ZorvekMCPBridgePinTypes::ParseParamSpecArray(TypeLookup, Params.Request, TEXT("Parameters"), Parameters, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	const FZorvekMCPBridgeGraphSnapshot* Graph = FindBlueprintMemberEventGraph(Loaded, GraphName, Error);
	if (!Graph)
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	int32 PosX = 0;
	int32 PosY = 0;
	GetBlueprintMemberFreeEventRow(*Graph, PosX, PosY);

	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	FName FailedParameter = NAME_None;
	const FString NodeGuid = Blueprints.AddCustomEvent(Loaded.Blueprint, Graph->Name, Params.EventName, Params.bCallInEditor, Parameters, PosX, PosY, FailedParameter);
	if (NodeGuid.IsEmpty())
	{
		if (FailedParameter != NAME_None)
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not add parameter pin '%s' to custom event '%s'."), *FailedParameter.ToString(), *Params.EventName));
		}
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not add custom event '%s' to graph '%s'."), *Params.EventName, *Graph->Name));
	}
	Blueprints.MarkStructurallyModified(Loaded.Blueprint);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetStringField(TEXT("graph_name"), Graph->Name);
	Result->SetStringField(TEXT("event_name"), Params.EventName);
	Result->SetStringField(TEXT("spawner_id"), ZorvekMCPBridgeSpawnerIds::MakeCustomEventId(Params.EventName));
	Result->SetStringField(TEXT("node_guid"), NodeGuid);
	Result->SetBoolField(TEXT("call_in_editor"), Params.bCallInEditor);
	Result->SetArrayField(TEXT("parameters"), ZorvekMCPBridgePinTypes::MakeParamSpecJson(Parameters));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::ImplementInterface(IZorvekMCPBridgeEditorPort& Port, const FImplementInterfaceParams& Params)
{
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	FString Error;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	if (Params.InterfaceNameOrPath.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("blueprint_implement_interface requires InterfaceNameOrPath."));
	}
	FZorvekMCPBridgeTypeInfo Interface;
	if (!ResolveBlueprintMemberInterface(Port, Params.InterfaceNameOrPath, Interface))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not resolve Blueprint Interface class: %s"), *Params.InterfaceNameOrPath));
	}
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	const bool bAlreadyImplemented = ImplementsBlueprintMemberInterface(Loaded.Snapshot, Interface.Path);
	if (!bAlreadyImplemented)
	{
		if (!Blueprints.ImplementInterface(Loaded.Blueprint, Interface.Path))
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not implement interface '%s' on %s."), *Interface.Path, *Loaded.AssetPath));
		}
		Blueprints.MarkStructurallyModified(Loaded.Blueprint);
		ZorvekMCPBridgeBlueprintLoading::RefreshSnapshot(Port, Loaded);
	}

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetStringField(TEXT("interface_class_path"), Interface.Path);
	Result->SetStringField(TEXT("interface_class_name"), Interface.Name);
	Result->SetBoolField(TEXT("already_implemented"), bAlreadyImplemented);
	Result->SetArrayField(TEXT("available_graphs"), ZorvekMCPBridgeBlueprintLoading::MakeGraphSummaries(Loaded.Snapshot, Loaded.AssetPath));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::AddInterfaceEvent(IZorvekMCPBridgeEditorPort& Port, const FAddInterfaceEventParams& Params)
{
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	FString Error;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	const FString GraphName = Params.GraphName.IsEmpty() ? FString(ZorvekMCPBridgeBlueprintLoading::DefaultGraphName) : Params.GraphName;
	if (Params.InterfaceNameOrPath.IsEmpty() || Params.FunctionName.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("blueprint_add_interface_event requires InterfaceNameOrPath and FunctionName."));
	}
	FZorvekMCPBridgeTypeInfo Interface;
	if (!ResolveBlueprintMemberInterface(Port, Params.InterfaceNameOrPath, Interface))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not resolve Blueprint Interface class: %s"), *Params.InterfaceNameOrPath));
	}
	if (!ImplementsBlueprintMemberInterface(Loaded.Snapshot, Interface.Path))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("%s does not implement interface %s."), *Loaded.AssetPath, *Interface.Path));
	}
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	TArray<FZorvekMCPBridgeInterfaceFunction> Functions;
	Blueprints.GetInterfaceFunctions(Interface.Path, Functions);
	const FZorvekMCPBridgeInterfaceFunction* Function = Functions.FindByPredicate([&Params](const FZorvekMCPBridgeInterfaceFunction& Candidate)
	{
		return FName(Candidate.Name) == FName(Params.FunctionName);
	});
	if (!Function)
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Interface function does not exist: %s.%s"), *Interface.Path, *Params.FunctionName));
	}
	// A function with outputs is implemented in the graph of its own that implementing the
	// interface made (unreal-behaviour-blueprints.md §5.4); an event node for it would not compile.
	if (!Function->bImplementedAsEvent)
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Interface function %s.%s has outputs and is implemented in its own graph '%s', not as an event."),
			*Interface.Path, *Function->Name, *Function->Name));
	}
	for (const FZorvekMCPBridgeGraphSnapshot& Graph : Loaded.Snapshot.Graphs)
	{
		for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
		{
			if (Node.Kind == EZorvekMCPBridgeNodeKind::Event && Node.Data.EventOwnerClassPath.Equals(Interface.Path, ESearchCase::IgnoreCase)
				&& FName(Node.Data.EventName) == FName(Function->Name))
			{
				return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Blueprint interface event already exists: %s.%s"), *Interface.Path, *Function->Name));
			}
		}
	}
	const FZorvekMCPBridgeGraphSnapshot* Graph = FindBlueprintMemberEventGraph(Loaded, GraphName, Error);
	if (!Graph)
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	const FString GraphNameUsed = Graph->Name;

	const FString NodeGuid = Blueprints.AddInterfaceEvent(Loaded.Blueprint, GraphNameUsed, Interface.Path, Function->Name, Params.NodePosX, Params.NodePosY);
	if (NodeGuid.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not add interface event %s.%s to graph '%s'."), *Interface.Path, *Function->Name, *GraphNameUsed));
	}
	Blueprints.MarkStructurallyModified(Loaded.Blueprint);
	ZorvekMCPBridgeBlueprintLoading::RefreshSnapshot(Port, Loaded);
	const FZorvekMCPBridgeNodeSnapshot* Node = FindBlueprintMemberNode(Loaded.Snapshot, NodeGuid);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetStringField(TEXT("graph_name"), GraphNameUsed);
	Result->SetStringField(TEXT("node_guid"), NodeGuid);
	Result->SetStringField(TEXT("interface_class_path"), Interface.Path);
	Result->SetStringField(TEXT("interface_class_name"), Interface.Name);
	Result->SetStringField(TEXT("function_name"), Function->Name);
	Result->SetStringField(TEXT("spawner_id"), ZorvekMCPBridgeSpawnerIds::MakeInterfaceEventId(Interface.Path, Function->Name));
	Result->SetArrayField(TEXT("parameters"), Node ? MakeBlueprintMemberEventParameters(*Node) : TArray<TSharedPtr<FJsonValue>>());
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}
