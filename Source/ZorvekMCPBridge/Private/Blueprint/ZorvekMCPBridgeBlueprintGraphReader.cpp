#include "Blueprint/ZorvekMCPBridgeBlueprintGraphReader.h"

#include "Assets/ZorvekMCPBridgeAssetReaders.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	// Component templates export fewer properties than a whole asset, as the other readers'
	// sub-objects do.
	constexpr int32 GraphReaderComponentPropertyLimit = 40;

	const FName GraphReaderDelegateCategory(TEXT("delegate"));

	typedef TArray<TSharedPtr<FJsonValue>> FReaderJsonArray;

	void AddReaderObject(FReaderJsonArray& Array, const TSharedPtr<FJsonObject>& Object)
	{
		Array.Add(MakeShared<FJsonValueObject>(Object));
	}

	FReaderJsonArray MakeReaderStringArray(const TArray<FString>& Texts)
	{
		FReaderJsonArray Values;
		for (const FString& Text : Texts)
		{
			Values.Add(MakeShared<FJsonValueString>(Text));
		}
		return Values;
	}

	FReaderJsonArray MakeUserPinsJson(const TArray<FZorvekMCPBridgeUserPinInfo>& UserPins)
	{
		FReaderJsonArray Values;
		for (const FZorvekMCPBridgeUserPinInfo& UserPin : UserPins)
		{
			AddReaderObject(Values, ZorvekMCPBridgePinTypes::MakeUserPinJson(UserPin));
		}
		return Values;
	}

	bool IsEventParameterPin(const FZorvekMCPBridgePinSnapshot& Pin)
	{
		return Pin.Direction == EZorvekMCPBridgePinDirection::Output && Pin.PinType.PinCategory != FZorvekMCPBridgePinCategories::PC_Exec
			&& Pin.PinType.PinCategory != GraphReaderDelegateCategory;
	}

	// "Name" or "Name='Default'": how a pin reads in the text dump and in "pins".
	FString MakePinToken(const FZorvekMCPBridgePinSnapshot& Pin)
	{
		if (Pin.DefaultValue.IsEmpty())
		{
			return Pin.PinName.ToString();
		}
		return FString::Printf(TEXT("%s='%s'"), *Pin.PinName.ToString(), *Pin.DefaultValue);
	}

	bool IsSameReaderPinType(const FZorvekMCPBridgePinType& A, const FZorvekMCPBridgePinType& B)
	{
		return A.ContainerType == B.ContainerType && A.PinCategory == B.PinCategory && A.PinSubCategory == B.PinSubCategory
			&& A.PinSubCategoryObject.PathName == B.PinSubCategoryObject.PathName && A.PinValueType.TerminalCategory == B.PinValueType.TerminalCategory
			&& A.PinValueType.TerminalSubCategory == B.PinValueType.TerminalSubCategory && A.PinValueType.TerminalSubCategoryObject.PathName == B.PinValueType.TerminalSubCategoryObject.PathName;
	}

	// A graph has few distinct pin types but thousands of pins: each type's "type" object and
	// text are made once and the object shared by every pin of that type (the reply is only
	// written, never changed).
	class FReaderPinTypeCache
	{
	public:
		struct FEntry
		{
			FZorvekMCPBridgePinType PinType;
			TSharedPtr<FJsonObject> TypeJson;
			FString TypeString;
			FString ContainerWord;
		};

		const FEntry& Find(const FZorvekMCPBridgePinType& PinType)
		{
			for (const FEntry& Entry : Entries)
			{
				if (IsSameReaderPinType(Entry.PinType, PinType))
				{
					return Entry;
				}
			}
			FEntry& Entry = Entries[Entries.AddDefaulted()];
			Entry.PinType = PinType;
			Entry.TypeJson = ZorvekMCPBridgePinTypes::MakePinTypeJson(PinType);
			Entry.TypeString = ZorvekMCPBridgePinTypes::DescribePinType(PinType);
			Entry.ContainerWord = ZorvekMCPBridgePinTypes::GetContainerTypeWord(PinType.ContainerType);
			return Entry;
		}

	private:
		TArray<FEntry> Entries;
	};

	// The graph being read, its Blueprint, and the pin types met so far.
	struct FGraphReaderContext
	{
		const FZorvekMCPBridgeBlueprintSnapshot& Blueprint;
		const FZorvekMCPBridgeGraphSnapshot& Graph;
		FReaderPinTypeCache& PinTypes;
	};

	// Where an interface function or event is implemented: the interface, the node and its graph.
	struct FInterfaceImplementation
	{
		const FZorvekMCPBridgeImplementedInterfaceSnapshot* Interface = nullptr;
		const FZorvekMCPBridgeGraphSnapshot* Graph = nullptr;
		const FZorvekMCPBridgeNodeSnapshot* Node = nullptr;
		FString FunctionName;
		bool bFunctionEntry = false;
	};

	FString GetInterfaceAssetPath(const FZorvekMCPBridgeImplementedInterfaceSnapshot& Interface)
	{
		// What a client passes back as InterfaceNameOrPath: the interface Blueprint, or the class
		// itself for native interfaces.
		return Interface.InterfaceBlueprintPath.IsEmpty() ? Interface.InterfaceClassPath : Interface.InterfaceBlueprintPath;
	}

	void AddInterfaceIdentityKeys(FJsonObject& Json, const FZorvekMCPBridgeImplementedInterfaceSnapshot& Interface)
	{
		Json.SetStringField(TEXT("interface_class_path"), Interface.InterfaceClassPath);
		Json.SetStringField(TEXT("interface_class_name"), Interface.InterfaceClassName);
		Json.SetStringField(TEXT("interface_blueprint_path"), Interface.InterfaceBlueprintPath);
		Json.SetStringField(TEXT("interface_asset_path"), GetInterfaceAssetPath(Interface));
	}

	int32 CountInterfaceParameters(const FInterfaceImplementation& Implementation)
	{
		return ZorvekMCPBridgeBlueprintGraphReader::CountEventParameters(*Implementation.Node);
	}

	// The interface implementation object; bWithSpawnerId for the Blueprint-wide section, where
	// the id stands in the object rather than on the node.
	TSharedPtr<FJsonObject> MakeInterfaceImplementationJson(const FInterfaceImplementation& Implementation, bool bWithSpawnerId)
	{
		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		AddInterfaceIdentityKeys(*Json, *Implementation.Interface);
		Json->SetStringField(TEXT("function_name"), Implementation.FunctionName);
		Json->SetStringField(TEXT("graph"), Implementation.Graph->Name);
		Json->SetStringField(TEXT("node_guid"), Implementation.Node->NodeGuid);
		if (Implementation.bFunctionEntry)
		{
			Json->SetStringField(TEXT("implementation_kind"), TEXT("function_entry"));
		}
		if (bWithSpawnerId)
		{
			const FString& InterfaceClassPath = Implementation.Interface->InterfaceClassPath;
			Json->SetStringField(TEXT("spawner_id"), Implementation.bFunctionEntry ? ZorvekMCPBridgeSpawnerIds::MakeInterfaceFunctionId(InterfaceClassPath, Implementation.FunctionName)
																					: ZorvekMCPBridgeSpawnerIds::MakeInterfaceEventId(InterfaceClassPath, Implementation.FunctionName));
		}
		Json->SetArrayField(TEXT("parameters"), ZorvekMCPBridgeBlueprintGraphReader::MakeEventParametersJson(*Implementation.Node));
		return Json;
	}

	// The interface a node implements, when it is an interface event or an interface function's
	// entry; false otherwise.
	bool FindNodeInterfaceImplementation(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeGraphSnapshot& Graph, const FZorvekMCPBridgeNodeSnapshot& Node,
		FInterfaceImplementation& OutImplementation)
	{
		if (Node.Kind == EZorvekMCPBridgeNodeKind::Event)
		{
			OutImplementation.Interface = ZorvekMCPBridgeSpawnerIds::FindImplementedInterface(Blueprint, Node.Data.EventOwnerClassPath);
			OutImplementation.FunctionName = Node.Data.EventName;
		}
		else if (Node.Kind == EZorvekMCPBridgeNodeKind::FunctionEntry && Graph.Kind == EZorvekMCPBridgeGraphKind::InterfaceImplementation)
		{
			OutImplementation.Interface = ZorvekMCPBridgeSpawnerIds::FindImplementedInterface(Blueprint, Graph.InterfaceClassPath);
			OutImplementation.FunctionName = Node.Data.FunctionName.IsEmpty() ? Graph.Name : Node.Data.FunctionName;
			OutImplementation.bFunctionEntry = true;
		}
		OutImplementation.Graph = &Graph;
		OutImplementation.Node = &Node;
		return OutImplementation.Interface != nullptr;
	}

	TSharedPtr<FJsonObject> MakeCommentColorJson(const FZorvekMCPBridgeNodeKindData& Data)
	{
		TSharedPtr<FJsonObject> Color = MakeShared<FJsonObject>();
		Color->SetNumberField(TEXT("r"), Data.CommentColor[0]);
		Color->SetNumberField(TEXT("g"), Data.CommentColor[1]);
		Color->SetNumberField(TEXT("b"), Data.CommentColor[2]);
		Color->SetNumberField(TEXT("a"), Data.CommentColor[3]);
		// FLinearColor::ToString's form. Not in the reference notes; check against the engine
		// (Core's Math/Color.h).
		Color->SetStringField(TEXT("rgba"), FString::Printf(TEXT("(R=%f,G=%f,B=%f,A=%f)"), Data.CommentColor[0], Data.CommentColor[1], Data.CommentColor[2], Data.CommentColor[3]));
		return Color;
	}

	// The node's "comment" sub-object (with colour and bubble) or the comments-section object,
	// which lists the size before the font size.
	void AddCommentBoxKeys(FJsonObject& Json, const FZorvekMCPBridgeNodeSnapshot& Node, bool bNodeSubObject)
	{
		const FZorvekMCPBridgeNodeKindData& Data = Node.Data;
		Json.SetStringField(TEXT("text"), Node.Title);
		if (bNodeSubObject)
		{
			Json.SetNumberField(TEXT("font_size"), Data.CommentFontSize);
			Json.SetNumberField(TEXT("width"), Node.Width);
			Json.SetNumberField(TEXT("height"), Node.Height);
		}
		else
		{
			Json.SetNumberField(TEXT("width"), Node.Width);
			Json.SetNumberField(TEXT("height"), Node.Height);
			Json.SetNumberField(TEXT("font_size"), Data.CommentFontSize);
		}
		Json.SetStringField(TEXT("comment"), Node.Comment);
		Json.SetBoolField(TEXT("group_movement"), Data.CommentMoveMode == TEXT("GroupMovement"));
		Json.SetStringField(TEXT("move_mode"), Data.CommentMoveMode);
		if (bNodeSubObject)
		{
			Json.SetObjectField(TEXT("color"), MakeCommentColorJson(Data));
		}
		Json.SetArrayField(TEXT("contained_node_guids"), MakeReaderStringArray(Data.ContainedNodeGuids));
		if (bNodeSubObject)
		{
			Json.SetBoolField(TEXT("comment_bubble_visible"), Data.bCommentBubbleVisible);
		}
	}

	TSharedPtr<FJsonObject> MakeEventReferenceJson(const FZorvekMCPBridgeNodeSnapshot& Node, bool bInterfaceEvent)
	{
		const FZorvekMCPBridgeNodeKindData& Data = Node.Data;
		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		Json->SetStringField(TEXT("event_name"), Data.EventName);
		Json->SetStringField(TEXT("owner_class_path"), Data.EventOwnerClassPath);
		Json->SetStringField(TEXT("owner_class_name"), Data.EventOwnerClassName);
		Json->SetBoolField(TEXT("is_interface_event"), bInterfaceEvent);
		Json->SetBoolField(TEXT("override_function"), Data.bOverrideFunction);
		Json->SetBoolField(TEXT("internal_event"), Data.bInternalEvent);
		Json->SetStringField(TEXT("custom_function_name"), Data.CustomFunctionName);
		Json->SetArrayField(TEXT("parameters"), ZorvekMCPBridgeBlueprintGraphReader::MakeEventParametersJson(Node));
		return Json;
	}

	TSharedPtr<FJsonObject> MakeFunctionReferenceJson(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		const bool bOwnFunction = ZorvekMCPBridgeSpawnerIds::IsOwnFunctionCall(Blueprint, Node);
		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		Json->SetStringField(TEXT("class_path"), bOwnFunction ? Blueprint.GeneratedClassPath : ZorvekMCPBridgeSpawnerIds::GetCalledFunctionClassPath(Node));
		Json->SetStringField(TEXT("function_name"), Node.Data.MemberName);
		Json->SetStringField(TEXT("path"), bOwnFunction ? FString::Printf(TEXT("self:%s"), *Node.Data.MemberName) : Node.Data.FunctionPath);
		Json->SetBoolField(TEXT("self"), bOwnFunction);
		return Json;
	}

	TSharedPtr<FJsonObject> MakeVariableReferenceJson(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		const FZorvekMCPBridgeNodeKindData& Data = Node.Data;
		const ZorvekMCPBridgeSpawnerIds::EVariableScope Scope = ZorvekMCPBridgeSpawnerIds::GetVariableScope(Blueprint, Node);
		const bool bOwnUnresolved = Scope == ZorvekMCPBridgeSpawnerIds::EVariableScope::Self && Data.VariableOwnerClassPath.IsEmpty();
		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		Json->SetStringField(TEXT("variable_name"), Data.VariableName);
		Json->SetStringField(TEXT("scope"), ZorvekMCPBridgeSpawnerIds::GetVariableScopeWord(Scope));
		Json->SetStringField(TEXT("member_guid"), Data.VariableGuid);
		Json->SetStringField(TEXT("owner_class_path"), bOwnUnresolved ? Blueprint.GeneratedClassPath : Data.VariableOwnerClassPath);
		Json->SetStringField(TEXT("owner_class_name"), Data.VariableOwnerClassName);
		Json->SetStringField(TEXT("owner_blueprint_path"), bOwnUnresolved ? Blueprint.Path : Data.VariableOwnerBlueprintPath);
		return Json;
	}

	TSharedPtr<FJsonObject> MakeMacroReferenceJson(const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		Json->SetStringField(TEXT("macro_name"), Node.Data.MacroGraphName);
		Json->SetStringField(TEXT("macro_graph_path"), Node.Data.MacroGraphPath);
		Json->SetStringField(TEXT("blueprint_path"), Node.Data.MacroBlueprintPath);
		Json->SetBoolField(TEXT("standard_flow_control"), ZorvekMCPBridgeSpawnerIds::IsStandardFlowControlMacro(Node));
		return Json;
	}

	TSharedPtr<FJsonObject> MakeInputEventJson(const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		const FZorvekMCPBridgeNodeKindData& Data = Node.Data;
		const bool bAxisEvent = Node.Kind == EZorvekMCPBridgeNodeKind::InputAxisKeyEvent;
		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		Json->SetStringField(TEXT("event_type"), bAxisEvent ? TEXT("input_axis_key") : TEXT("input_key"));
		if (bAxisEvent)
		{
			Json->SetStringField(TEXT("axis_key"), Data.KeyName);
		}
		Json->SetStringField(TEXT("axis"), Data.KeyName);
		Json->SetBoolField(TEXT("consume_input"), Data.bConsumeInput);
		Json->SetBoolField(TEXT("execute_when_paused"), Data.bExecuteWhenPaused);
		Json->SetBoolField(TEXT("override_parent_binding"), Data.bOverrideParentBinding);
		if (!bAxisEvent)
		{
			Json->SetBoolField(TEXT("control"), Data.bControl);
			Json->SetBoolField(TEXT("shift"), Data.bShift);
			Json->SetBoolField(TEXT("command"), Data.bCommand);
		}
		return Json;
	}

	int32 CountThenPins(const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		int32 Count = 0;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			Count += (Pin.Pin.Direction == EZorvekMCPBridgePinDirection::Output && Pin.Pin.PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_Exec) ? 1 : 0;
		}
		return Count;
	}

	const TCHAR* GetNodeKindWord(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		switch (Node.Kind)
		{
		case EZorvekMCPBridgeNodeKind::Comment:
			return TEXT("comment");
		case EZorvekMCPBridgeNodeKind::CustomEvent:
			return TEXT("custom_event");
		case EZorvekMCPBridgeNodeKind::Event:
			return ZorvekMCPBridgeSpawnerIds::FindImplementedInterface(Blueprint, Node.Data.EventOwnerClassPath) ? TEXT("interface_event") : TEXT("event");
		case EZorvekMCPBridgeNodeKind::FunctionEntry:
			return TEXT("function_entry");
		case EZorvekMCPBridgeNodeKind::FunctionResult:
			return TEXT("function_result");
		case EZorvekMCPBridgeNodeKind::DynamicCast:
			return TEXT("dynamic_cast");
		case EZorvekMCPBridgeNodeKind::FunctionCall:
			return TEXT("function_call");
		case EZorvekMCPBridgeNodeKind::VariableGet:
			return TEXT("variable_get");
		case EZorvekMCPBridgeNodeKind::VariableSet:
			return TEXT("variable_set");
		case EZorvekMCPBridgeNodeKind::Branch:
			return TEXT("branch");
		case EZorvekMCPBridgeNodeKind::Sequence:
			return TEXT("sequence");
		case EZorvekMCPBridgeNodeKind::MacroInstance:
			return TEXT("macro_instance");
		case EZorvekMCPBridgeNodeKind::InputAxisKeyEvent:
			return TEXT("input_axis_key_event");
		case EZorvekMCPBridgeNodeKind::InputKey:
			return TEXT("input_key_event");
		default:
			return TEXT("unknown");
		}
	}

	// The keys of the node's kind, in the order the reply lists them.
	void AddNodeKindKeys(FJsonObject& Json, const FGraphReaderContext& Context, const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		const FZorvekMCPBridgeBlueprintSnapshot& Blueprint = Context.Blueprint;
		const FString SpawnerId = ZorvekMCPBridgeSpawnerIds::GetNodeSpawnerId(Blueprint, Context.Graph, Node);
		switch (Node.Kind)
		{
		case EZorvekMCPBridgeNodeKind::Comment:
		{
			TSharedPtr<FJsonObject> Comment = MakeShared<FJsonObject>();
			AddCommentBoxKeys(*Comment, Node, true);
			Json.SetObjectField(TEXT("comment"), Comment);
			break;
		}
		case EZorvekMCPBridgeNodeKind::CustomEvent:
		{
			TSharedPtr<FJsonObject> CustomEvent = MakeShared<FJsonObject>();
			CustomEvent->SetStringField(TEXT("event_name"), Node.Data.CustomFunctionName);
			CustomEvent->SetBoolField(TEXT("call_in_editor"), Node.Data.bCallInEditor);
			CustomEvent->SetArrayField(TEXT("parameters"), MakeUserPinsJson(Node.Data.UserPins));
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			Json.SetObjectField(TEXT("custom_event"), CustomEvent);
			break;
		}
		case EZorvekMCPBridgeNodeKind::Event:
		{
			FInterfaceImplementation Implementation;
			const bool bInterfaceEvent = FindNodeInterfaceImplementation(Blueprint, Context.Graph, Node, Implementation);
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			Json.SetObjectField(TEXT("event_reference"), MakeEventReferenceJson(Node, bInterfaceEvent));
			if (bInterfaceEvent)
			{
				Json.SetObjectField(TEXT("interface_implementation"), MakeInterfaceImplementationJson(Implementation, false));
			}
			break;
		}
		case EZorvekMCPBridgeNodeKind::FunctionEntry:
		{
			FInterfaceImplementation Implementation;
			const bool bInterfaceFunction = FindNodeInterfaceImplementation(Blueprint, Context.Graph, Node, Implementation);
			Json.SetStringField(TEXT("function_name"), Node.Data.FunctionName.IsEmpty() ? Context.Graph.Name : Node.Data.FunctionName);
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			if (bInterfaceFunction)
			{
				Json.SetObjectField(TEXT("interface_implementation"), MakeInterfaceImplementationJson(Implementation, false));
			}
			break;
		}
		case EZorvekMCPBridgeNodeKind::FunctionResult:
			Json.SetStringField(TEXT("function_name"), Node.Data.FunctionName.IsEmpty() ? Context.Graph.Name : Node.Data.FunctionName);
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			break;
		case EZorvekMCPBridgeNodeKind::DynamicCast:
		{
			TSharedPtr<FJsonObject> Cast = MakeShared<FJsonObject>();
			Cast->SetStringField(TEXT("target_class_path"), Node.Data.CastTargetClassPath);
			Cast->SetStringField(TEXT("target_class_name"), Node.Data.CastTargetClassName);
			Cast->SetStringField(TEXT("target_blueprint_path"), Node.Data.CastTargetBlueprintPath);
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			Json.SetObjectField(TEXT("cast_reference"), Cast);
			break;
		}
		case EZorvekMCPBridgeNodeKind::FunctionCall:
			Json.SetObjectField(TEXT("function_reference"), MakeFunctionReferenceJson(Blueprint, Node));
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			break;
		case EZorvekMCPBridgeNodeKind::VariableGet:
		case EZorvekMCPBridgeNodeKind::VariableSet:
			Json.SetObjectField(TEXT("variable_reference"), MakeVariableReferenceJson(Blueprint, Node));
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			break;
		case EZorvekMCPBridgeNodeKind::Branch:
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			break;
		case EZorvekMCPBridgeNodeKind::Sequence:
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			Json.SetNumberField(TEXT("then_pin_count"), CountThenPins(Node));
			break;
		case EZorvekMCPBridgeNodeKind::MacroInstance:
			Json.SetBoolField(TEXT("flow_control_macro"), ZorvekMCPBridgeSpawnerIds::IsStandardFlowControlMacro(Node));
			Json.SetObjectField(TEXT("macro_reference"), MakeMacroReferenceJson(Node));
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			break;
		case EZorvekMCPBridgeNodeKind::InputAxisKeyEvent:
		case EZorvekMCPBridgeNodeKind::InputKey:
			Json.SetStringField(TEXT("spawner_id"), SpawnerId);
			Json.SetObjectField(TEXT("input_event"), MakeInputEventJson(Node));
			break;
		default:
			break;
		}
	}

	TSharedPtr<FJsonObject> MakePinDetailJson(FReaderPinTypeCache& PinTypes, const FZorvekMCPBridgeGraphPinSnapshot& GraphPin)
	{
		const FZorvekMCPBridgePinSnapshot& Pin = GraphPin.Pin;
		const FReaderPinTypeCache::FEntry& Type = PinTypes.Find(Pin.PinType);
		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		Json->SetStringField(TEXT("name"), Pin.PinName.ToString());
		Json->SetStringField(TEXT("direction"), Pin.Direction == EZorvekMCPBridgePinDirection::Output ? TEXT("output") : TEXT("input"));
		Json->SetStringField(TEXT("category"), Pin.PinType.PinCategory.ToString());
		Json->SetStringField(TEXT("subcategory"), Pin.PinType.PinSubCategory.ToString());
		Json->SetStringField(TEXT("subcategory_object"), Pin.PinType.PinSubCategoryObject.PathName);
		Json->SetStringField(TEXT("container_type"), Type.ContainerWord);
		Json->SetStringField(TEXT("type_string"), Type.TypeString);
		Json->SetObjectField(TEXT("type"), Type.TypeJson);
		Json->SetStringField(TEXT("default_value"), Pin.DefaultValue);
		Json->SetBoolField(TEXT("has_default_value"), !Pin.DefaultValue.IsEmpty());
		FReaderJsonArray LinkedTo;
		for (const FZorvekMCPBridgePinLink& Link : GraphPin.LinkedTo)
		{
			TSharedPtr<FJsonObject> LinkJson = MakeShared<FJsonObject>();
			LinkJson->SetStringField(TEXT("node_guid"), Link.NodeGuid);
			LinkJson->SetStringField(TEXT("pin_name"), Link.PinName.ToString());
			AddReaderObject(LinkedTo, LinkJson);
		}
		Json->SetArrayField(TEXT("linked_to"), LinkedTo);
		return Json;
	}

	// One node: its text line and its object.
	void ReadGraphNode(const FGraphReaderContext& Context, const FZorvekMCPBridgeNodeSnapshot& Node, FString& Text, FReaderJsonArray& Nodes)
	{
		TArray<FString> PinTokens;
		FReaderJsonArray PinDetails;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			PinTokens.Add(MakePinToken(Pin.Pin));
			AddReaderObject(PinDetails, MakePinDetailJson(Context.PinTypes, Pin));
		}
		const FString JoinedTokens = FString::Join(PinTokens, TEXT(","));
		Text += FString::Printf(TEXT("%s\t%s\t%s\n"), *Node.NodeGuid, *Node.Title, *JoinedTokens);

		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		Json->SetStringField(TEXT("graph"), Context.Graph.Name);
		Json->SetStringField(TEXT("node_guid"), Node.NodeGuid);
		Json->SetStringField(TEXT("node_class"), Node.NodeClass);
		Json->SetStringField(TEXT("title"), Node.Title);
		Json->SetNumberField(TEXT("node_pos_x"), Node.PosX);
		Json->SetNumberField(TEXT("node_pos_y"), Node.PosY);
		Json->SetNumberField(TEXT("node_width"), Node.Width);
		Json->SetNumberField(TEXT("node_height"), Node.Height);
		Json->SetStringField(TEXT("node_comment"), Node.Comment);
		Json->SetStringField(TEXT("node_kind"), GetNodeKindWord(Context.Blueprint, Node));
		AddNodeKindKeys(*Json, Context, Node);
		Json->SetArrayField(TEXT("pins"), MakeReaderStringArray(PinTokens));
		Json->SetArrayField(TEXT("pin_details"), PinDetails);
		AddReaderObject(Nodes, Json);
	}

	void ReadGraphConnections(const FGraphReaderContext& Context, FString& Text, FReaderJsonArray& Connections)
	{
		FString Lines;
		for (const FZorvekMCPBridgeNodeSnapshot& Node : Context.Graph.Nodes)
		{
			for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
			{
				if (Pin.Pin.Direction != EZorvekMCPBridgePinDirection::Output)
				{
					continue;
				}
				const FString SourcePin = Pin.Pin.PinName.ToString();
				for (const FZorvekMCPBridgePinLink& Link : Pin.LinkedTo)
				{
					const FString TargetPin = Link.PinName.ToString();
					Lines += FString::Printf(TEXT("%s\t%s\t%s\t%s\n"), *Node.NodeGuid, *SourcePin, *Link.NodeGuid, *TargetPin);
					TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
					Json->SetStringField(TEXT("graph"), Context.Graph.Name);
					Json->SetStringField(TEXT("source_node_guid"), Node.NodeGuid);
					Json->SetStringField(TEXT("source_pin"), SourcePin);
					Json->SetStringField(TEXT("target_node_guid"), Link.NodeGuid);
					Json->SetStringField(TEXT("target_pin"), TargetPin);
					AddReaderObject(Connections, Json);
				}
			}
		}
		Text += FString::Printf(TEXT("\n# CONNECTIONS %s %d\n"), *Context.Graph.Name, Connections.Num());
		Text += Lines;
	}

	void ReadBlueprintVariables(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, FString& Text, FReaderJsonArray& Variables)
	{
		Text += FString::Printf(TEXT("\n# VARIABLES %d\n"), Blueprint.Variables.Num());
		for (const FZorvekMCPBridgeVariableSnapshot& Variable : Blueprint.Variables)
		{
			const FZorvekMCPBridgePinType& Type = Variable.VarType;
			const FString Name = Variable.VarName.ToString();
			const FString Category = Type.PinCategory.ToString();
			const FString SubCategory = Type.PinSubCategory.ToString();
			const FString TypeString = ZorvekMCPBridgePinTypes::DescribePinType(Type);
			Text += FString::Printf(TEXT("%s\t%s\t%s\t%s\t%s\t%s\n"), *Name, *Category, *SubCategory, *Type.PinSubCategoryObject.PathName, *TypeString, *Variable.DefaultValue);

			TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
			Json->SetStringField(TEXT("name"), Name);
			Json->SetStringField(TEXT("guid"), Variable.VarGuid);
			Json->SetStringField(TEXT("category"), Variable.Category);
			Json->SetStringField(TEXT("default_value"), Variable.DefaultValue);
			Json->SetBoolField(TEXT("has_default_value"), !Variable.DefaultValue.IsEmpty());
			Json->SetStringField(TEXT("class_default_value"), Variable.ClassDefaultValue);
			Json->SetBoolField(TEXT("has_class_default_value"), Variable.bHasClassDefaultValue);
			Json->SetStringField(TEXT("pin_category"), Category);
			Json->SetStringField(TEXT("pin_subcategory"), SubCategory);
			Json->SetStringField(TEXT("pin_subcategory_object"), Type.PinSubCategoryObject.PathName);
			Json->SetStringField(TEXT("container_type"), ZorvekMCPBridgePinTypes::GetContainerTypeWord(Type.ContainerType));
			Json->SetStringField(TEXT("type_string"), TypeString);
			Json->SetObjectField(TEXT("type"), ZorvekMCPBridgePinTypes::MakePinTypeJson(Type));
			Json->SetBoolField(TEXT("is_array"), Type.IsArray());
			Json->SetBoolField(TEXT("is_set"), Type.IsSet());
			Json->SetBoolField(TEXT("is_map"), Type.IsMap());
			AddReaderObject(Variables, Json);
		}
	}

	FString GetReferencedObjectPath(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePropertyCursor& Value)
	{
		if (!Value.IsValid() || Value.GetKind() != EZorvekMCPBridgePropertyKind::ObjectReference)
		{
			return FString();
		}
		return Port.GetObjects().GetIdentity(Value.GetReferencedObject()).ObjectPath;
	}

	void ReadBlueprintComponents(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, FString& Text, FReaderJsonArray& Components)
	{
		Text += FString::Printf(TEXT("\n# COMPONENTS %d\n"), Blueprint.Components.Num());
		IZorvekMCPBridgeReflection& Reflection = Port.GetReflection();
		for (const FZorvekMCPBridgeComponentSnapshot& Component : Blueprint.Components)
		{
			FString StaticMesh;
			TArray<FString> Materials;
			TSharedPtr<FJsonObject> Properties = MakeShared<FJsonObject>();
			FReaderJsonArray PartialFailures;
			if (Component.Template.IsValid())
			{
				// StaticMeshComponent::StaticMesh and MeshComponent::OverrideMaterials, by name.
				StaticMesh = GetReferencedObjectPath(Port, Reflection.FindProperty(Component.Template, TEXT("StaticMesh")));
				const FZorvekMCPBridgePropertyCursor OverrideMaterials = Reflection.FindProperty(Component.Template, TEXT("OverrideMaterials"));
				if (OverrideMaterials.IsValid() && OverrideMaterials.GetKind() == EZorvekMCPBridgePropertyKind::Array)
				{
					for (int32 Index = 0; Index < OverrideMaterials.GetArrayNum(); ++Index)
					{
						Materials.Add(GetReferencedObjectPath(Port, OverrideMaterials.GetArrayElement(Index)));
					}
				}
				FReaderJsonArray IgnoredReferences;
				Properties = ZorvekMCPBridgeAssets::ExportObjectProperties(Port, Component.Template, GraphReaderComponentPropertyLimit, IgnoredReferences, PartialFailures);
			}
			Text += FString::Printf(TEXT("%s\t%s\tmesh=%s\tparent=%s\n"), *Component.Name, *Component.ComponentClassPath, *StaticMesh, *Component.ParentComponentName);

			TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
			Json->SetStringField(TEXT("name"), Component.Name);
			Json->SetStringField(TEXT("component_class"), Component.ComponentClassPath);
			Json->SetStringField(TEXT("template_path"), Component.TemplatePath);
			Json->SetStringField(TEXT("parent_component"), Component.ParentComponentName);
			Json->SetStringField(TEXT("static_mesh"), StaticMesh);
			// The material slot "material" reports; the component tools assign slot 0.
			Json->SetNumberField(TEXT("slot"), 0);
			Json->SetStringField(TEXT("material"), Materials.IsEmpty() ? FString() : Materials[0]);
			Json->SetArrayField(TEXT("materials"), MakeReaderStringArray(Materials));
			Json->SetObjectField(TEXT("properties"), Properties);
			if (!PartialFailures.IsEmpty())
			{
				Json->SetArrayField(TEXT("partial_failures"), PartialFailures);
			}
			AddReaderObject(Components, Json);
		}
	}

	void ReadGraphComments(const FGraphReaderContext& Context, FString& Text, FReaderJsonArray& Comments)
	{
		FString Lines;
		for (const FZorvekMCPBridgeNodeSnapshot& Node : Context.Graph.Nodes)
		{
			if (Node.Kind != EZorvekMCPBridgeNodeKind::Comment)
			{
				continue;
			}
			Lines += FString::Printf(TEXT("%s\t%s\t%d,%d,%d,%d\tcontained=%d\n"), *Node.NodeGuid, *Node.Title, Node.PosX, Node.PosY, Node.Width, Node.Height, Node.Data.ContainedNodeGuids.Num());
			TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
			Json->SetStringField(TEXT("node_guid"), Node.NodeGuid);
			AddCommentBoxKeys(*Json, Node, false);
			AddReaderObject(Comments, Json);
		}
		Text += FString::Printf(TEXT("\n# COMMENTS %d\n"), Comments.Num());
		Text += Lines;
	}

	void ReadBlueprintCustomEvents(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, FString& Text, FReaderJsonArray& CustomEvents)
	{
		FString Lines;
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				if (Node.Kind != EZorvekMCPBridgeNodeKind::CustomEvent)
				{
					continue;
				}
				const FString& Name = Node.Data.CustomFunctionName;
				Lines += FString::Printf(TEXT("%s\t%s\tparameters=%d\n"), *Name, *Graph.Name, Node.Data.UserPins.Num());
				TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
				Json->SetStringField(TEXT("name"), Name);
				Json->SetStringField(TEXT("graph"), Graph.Name);
				Json->SetStringField(TEXT("spawner_id"), ZorvekMCPBridgeSpawnerIds::MakeCustomEventId(Name));
				Json->SetStringField(TEXT("node_guid"), Node.NodeGuid);
				Json->SetBoolField(TEXT("call_in_editor"), Node.Data.bCallInEditor);
				Json->SetArrayField(TEXT("parameters"), MakeUserPinsJson(Node.Data.UserPins));
				AddReaderObject(CustomEvents, Json);
			}
		}
		Text += FString::Printf(TEXT("\n# CUSTOM_EVENTS %d\n"), CustomEvents.Num());
		Text += Lines;
	}

	void ReadImplementedInterfaces(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, FString& Text, FReaderJsonArray& Interfaces)
	{
		Text += FString::Printf(TEXT("\n# IMPLEMENTED_INTERFACES %d\n"), Blueprint.ImplementedInterfaces.Num());
		for (const FZorvekMCPBridgeImplementedInterfaceSnapshot& Interface : Blueprint.ImplementedInterfaces)
		{
			Text += FString::Printf(TEXT("%s\tgraphs=%d\n"), *Interface.InterfaceClassName, Interface.GraphNames.Num());
			TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
			AddInterfaceIdentityKeys(*Json, Interface);
			Json->SetArrayField(TEXT("graphs"), MakeReaderStringArray(Interface.GraphNames));
			AddReaderObject(Interfaces, Json);
		}
	}

	void ReadInterfaceImplementations(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, FString& Text, FReaderJsonArray& Implementations)
	{
		FString Lines;
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				FInterfaceImplementation Implementation;
				if (!FindNodeInterfaceImplementation(Blueprint, Graph, Node, Implementation))
				{
					continue;
				}
				Lines += FString::Printf(TEXT("%s\t%s\t%s\tparameters=%d\n"), *Implementation.Interface->InterfaceClassName, *Implementation.FunctionName, *Graph.Name,
					CountInterfaceParameters(Implementation));
				AddReaderObject(Implementations, MakeInterfaceImplementationJson(Implementation, true));
			}
		}
		Text += FString::Printf(TEXT("\n# INTERFACE_IMPLEMENTATIONS %d\n"), Implementations.Num());
		Text += Lines;
	}

	void ReadBlueprintFunctions(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, FString& Text, FReaderJsonArray& Functions)
	{
		FString Lines;
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			if (Graph.Kind != EZorvekMCPBridgeGraphKind::Function)
			{
				continue;
			}
			FString FunctionName = Graph.Name;
			TArray<FZorvekMCPBridgeUserPinInfo> Inputs;
			TArray<FZorvekMCPBridgeUserPinInfo> Outputs;
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				if (Node.Kind == EZorvekMCPBridgeNodeKind::FunctionEntry)
				{
					FunctionName = Node.Data.FunctionName.IsEmpty() ? Graph.Name : Node.Data.FunctionName;
					Inputs = Node.Data.UserPins;
				}
				else if (Node.Kind == EZorvekMCPBridgeNodeKind::FunctionResult)
				{
					Outputs = Node.Data.UserPins;
				}
			}
			Lines += FString::Printf(TEXT("%s\t%s\tinputs=%d\toutputs=%d\n"), *FunctionName, *Graph.Name, Inputs.Num(), Outputs.Num());
			TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
			Json->SetStringField(TEXT("name"), FunctionName);
			Json->SetStringField(TEXT("graph"), Graph.Name);
			Json->SetStringField(TEXT("spawner_id"), ZorvekMCPBridgeSpawnerIds::MakeBlueprintFunctionId(FunctionName));
			Json->SetArrayField(TEXT("inputs"), MakeUserPinsJson(Inputs));
			Json->SetArrayField(TEXT("outputs"), MakeUserPinsJson(Outputs));
			AddReaderObject(Functions, Json);
		}
		Text += FString::Printf(TEXT("\n# FUNCTIONS %d\n"), Functions.Num());
		Text += Lines;
	}
}

const TCHAR* ZorvekMCPBridgeBlueprintGraphReader::GetReaderGraphType(const FZorvekMCPBridgeGraphSnapshot& Graph)
{
	return Graph.Kind == EZorvekMCPBridgeGraphKind::Function ? TEXT("function") : TEXT("ubergraph");
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintGraphReader::MakeEventParameterJson(const FZorvekMCPBridgePinSnapshot& Pin)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("name"), Pin.PinName.ToString());
	Json->SetStringField(TEXT("pin_category"), Pin.PinType.PinCategory.ToString());
	Json->SetStringField(TEXT("pin_subcategory"), Pin.PinType.PinSubCategory.ToString());
	Json->SetStringField(TEXT("pin_subcategory_object"), Pin.PinType.PinSubCategoryObject.PathName);
	Json->SetStringField(TEXT("container_type"), ZorvekMCPBridgePinTypes::GetContainerTypeWord(Pin.PinType.ContainerType));
	Json->SetStringField(TEXT("type_string"), ZorvekMCPBridgePinTypes::DescribePinType(Pin.PinType));
	Json->SetObjectField(TEXT("type"), ZorvekMCPBridgePinTypes::MakePinTypeJson(Pin.PinType));
	return Json;
}

TArray<TSharedPtr<FJsonValue>> ZorvekMCPBridgeBlueprintGraphReader::MakeEventParametersJson(const FZorvekMCPBridgeNodeSnapshot& Node)
{
	FReaderJsonArray Parameters;
	for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
	{
		if (IsEventParameterPin(Pin.Pin))
		{
			AddReaderObject(Parameters, MakeEventParameterJson(Pin.Pin));
		}
	}
	return Parameters;
}

int32 ZorvekMCPBridgeBlueprintGraphReader::CountEventParameters(const FZorvekMCPBridgeNodeSnapshot& Node)
{
	int32 Count = 0;
	for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
	{
		Count += IsEventParameterPin(Pin.Pin) ? 1 : 0;
	}
	return Count;
}

ZorvekMCPBridgeBlueprintGraphReader::FGraphReading ZorvekMCPBridgeBlueprintGraphReader::ReadGraph(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint,
	const FZorvekMCPBridgeGraphSnapshot& Graph)
{
	FReaderPinTypeCache PinTypes;
	const FGraphReaderContext Context{Blueprint, Graph, PinTypes};
	const TCHAR* GraphType = GetReaderGraphType(Graph);
	const FString ParentClassName = Blueprint.ParentClassPath.IsEmpty() ? FString(TEXT("None")) : Blueprint.ParentClassName;

	FString Text = FString::Printf(TEXT("# BLUEPRINT: %s\nParent Class: %s\n# GRAPH %s type=%s %d\n"), *Blueprint.Name, *ParentClassName, *Graph.Name, GraphType, Graph.Nodes.Num());
	FReaderJsonArray Nodes;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
	{
		ReadGraphNode(Context, Node, Text, Nodes);
	}
	FReaderJsonArray Connections;
	ReadGraphConnections(Context, Text, Connections);
	FReaderJsonArray Variables;
	ReadBlueprintVariables(Blueprint, Text, Variables);
	FReaderJsonArray Components;
	ReadBlueprintComponents(Port, Blueprint, Text, Components);
	FReaderJsonArray Comments;
	ReadGraphComments(Context, Text, Comments);
	FReaderJsonArray CustomEvents;
	ReadBlueprintCustomEvents(Blueprint, Text, CustomEvents);
	FReaderJsonArray Interfaces;
	ReadImplementedInterfaces(Blueprint, Text, Interfaces);
	FReaderJsonArray Implementations;
	ReadInterfaceImplementations(Blueprint, Text, Implementations);
	FReaderJsonArray Functions;
	ReadBlueprintFunctions(Blueprint, Text, Functions);

	TSharedPtr<FJsonObject> Parsed = MakeShared<FJsonObject>();
	Parsed->SetStringField(TEXT("graph"), Graph.Name);
	Parsed->SetStringField(TEXT("graph_type"), GraphType);
	Parsed->SetArrayField(TEXT("nodes"), Nodes);
	Parsed->SetArrayField(TEXT("connections"), Connections);
	Parsed->SetArrayField(TEXT("variables"), Variables);
	Parsed->SetArrayField(TEXT("components"), Components);
	Parsed->SetArrayField(TEXT("comments"), Comments);
	Parsed->SetArrayField(TEXT("custom_events"), CustomEvents);
	Parsed->SetArrayField(TEXT("implemented_interfaces"), Interfaces);
	Parsed->SetArrayField(TEXT("interface_implementations"), Implementations);
	Parsed->SetArrayField(TEXT("functions"), Functions);
	Parsed->SetNumberField(TEXT("node_count"), Nodes.Num());
	Parsed->SetNumberField(TEXT("connection_count"), Connections.Num());
	Parsed->SetNumberField(TEXT("variable_count"), Variables.Num());
	Parsed->SetNumberField(TEXT("component_count"), Components.Num());
	Parsed->SetNumberField(TEXT("comment_count"), Comments.Num());
	Parsed->SetNumberField(TEXT("custom_event_count"), CustomEvents.Num());
	Parsed->SetNumberField(TEXT("implemented_interface_count"), Interfaces.Num());
	Parsed->SetNumberField(TEXT("interface_implementation_count"), Implementations.Num());
	Parsed->SetNumberField(TEXT("function_count"), Functions.Num());

	FGraphReading Reading;
	Reading.RawResult = MoveTemp(Text);
	Reading.ParsedGraph = Parsed;
	return Reading;
}
