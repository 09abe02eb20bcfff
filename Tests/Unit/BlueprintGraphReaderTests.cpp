// The graph reader on hand-built snapshots: the text dump byte for byte, the key orders of the
// structured form, links listed once, and the spawner id of every node kind. The reader sees only
// snapshots, so these pin its formatting independently of any editor.
#include "AssetTestSupport.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintGraphReader.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"

using namespace ZorvekAssetTests;

namespace
{
	typedef EZorvekMCPBridgePinDirection EDir;
	typedef EZorvekMCPBridgeNodeKind EKind;

	const FName ExecCategory(TEXT("exec"));
	const FName BoolCategory(TEXT("bool"));
	const FName RealCategory(TEXT("real"));

	std::vector<std::string> Keys(const TSharedPtr<FJsonObject>& Object)
	{
		std::vector<std::string> Result;
		for (const TPair<FString, TSharedPtr<FJsonValue>>& Pair : Object->Values)
		{
			Result.push_back(UECompatToUtf8(Pair.Key));
		}
		return Result;
	}

	FZorvekMCPBridgeGraphPinSnapshot MakePin(const TCHAR* Name, EDir Direction, const FName& Category, const TCHAR* Default = TEXT(""))
	{
		FZorvekMCPBridgeGraphPinSnapshot Pin;
		Pin.Pin.PinName = FName(Name);
		Pin.Pin.Direction = Direction;
		Pin.Pin.PinType.PinCategory = Category;
		if (Category == RealCategory)
		{
			Pin.Pin.PinType.PinSubCategory = FName(TEXT("float"));
		}
		Pin.Pin.DefaultValue = Default;
		return Pin;
	}

	FZorvekMCPBridgeNodeSnapshot MakeNode(const TCHAR* Guid, const TCHAR* NodeClass, EKind Kind, const TCHAR* Title)
	{
		FZorvekMCPBridgeNodeSnapshot Node;
		Node.NodeGuid = Guid;
		Node.NodeClass = NodeClass;
		Node.Kind = Kind;
		Node.Title = Title;
		return Node;
	}

	void Link(FZorvekMCPBridgeNodeSnapshot& From, int32 FromPin, FZorvekMCPBridgeNodeSnapshot& To, int32 ToPin)
	{
		From.Pins[FromPin].LinkedTo.Add({To.NodeGuid, To.Pins[ToPin].Pin.PinName});
		To.Pins[ToPin].LinkedTo.Add({From.NodeGuid, From.Pins[FromPin].Pin.PinName});
	}

	FZorvekMCPBridgeUserPinInfo MakeUserPin(const TCHAR* Name, const FName& Category)
	{
		FZorvekMCPBridgeUserPinInfo UserPin;
		UserPin.PinName = FName(Name);
		UserPin.PinType.PinCategory = Category;
		return UserPin;
	}

	// BP_Door: BeginPlay into a branch, a custom event with one parameter, a comment box around the
	// event, one variable and a function with an input and an output.
	FZorvekMCPBridgeBlueprintSnapshot MakeDoorBlueprint()
	{
		FZorvekMCPBridgeBlueprintSnapshot Blueprint;
		Blueprint.Name = TEXT("BP_Door");
		Blueprint.Path = TEXT("/Game/Doors/BP_Door.BP_Door");
		Blueprint.ParentClassPath = TEXT("/Script/Engine.Actor");
		Blueprint.ParentClassName = TEXT("Actor");
		Blueprint.GeneratedClassPath = TEXT("/Game/Doors/BP_Door.BP_Door_C");
		Blueprint.SkeletonClassPath = TEXT("/Game/Doors/BP_Door.SKEL_BP_Door_C");

		FZorvekMCPBridgeGraphSnapshot Function;
		Function.Name = TEXT("OpenDoor");
		Function.Kind = EZorvekMCPBridgeGraphKind::Function;
		FZorvekMCPBridgeNodeSnapshot Entry = MakeNode(TEXT("E0000000000000000000000000000001"), TEXT("K2Node_FunctionEntry"), EKind::FunctionEntry, TEXT("Open Door"));
		Entry.Data.FunctionName = TEXT("OpenDoor");
		Entry.Data.UserPins.Add(MakeUserPin(TEXT("Speed"), RealCategory));
		Entry.Pins.Add(MakePin(TEXT("then"), EDir::Output, ExecCategory));
		Entry.Pins.Add(MakePin(TEXT("Speed"), EDir::Output, RealCategory));
		FZorvekMCPBridgeNodeSnapshot Result = MakeNode(TEXT("E0000000000000000000000000000002"), TEXT("K2Node_FunctionResult"), EKind::FunctionResult, TEXT("Return Node"));
		Result.Data.FunctionName = TEXT("OpenDoor");
		Result.Data.UserPins.Add(MakeUserPin(TEXT("bOpened"), BoolCategory));
		Function.Nodes = {Entry, Result};

		FZorvekMCPBridgeGraphSnapshot EventGraph;
		EventGraph.Name = TEXT("EventGraph");
		EventGraph.Kind = EZorvekMCPBridgeGraphKind::Ubergraph;
		FZorvekMCPBridgeNodeSnapshot BeginPlay = MakeNode(TEXT("A0000000000000000000000000000001"), TEXT("K2Node_Event"), EKind::Event, TEXT("Event BeginPlay"));
		BeginPlay.Data.EventName = TEXT("ReceiveBeginPlay");
		BeginPlay.Data.EventOwnerClassPath = TEXT("/Script/Engine.Actor");
		BeginPlay.Data.EventOwnerClassName = TEXT("Actor");
		BeginPlay.Data.bOverrideFunction = true;
		BeginPlay.Pins.Add(MakePin(TEXT("OutputDelegate"), EDir::Output, FName(TEXT("delegate"))));
		BeginPlay.Pins.Add(MakePin(TEXT("then"), EDir::Output, ExecCategory));
		FZorvekMCPBridgeNodeSnapshot Branch = MakeNode(TEXT("B0000000000000000000000000000002"), TEXT("K2Node_IfThenElse"), EKind::Branch, TEXT("Branch"));
		Branch.PosX = 300;
		Branch.Pins.Add(MakePin(TEXT("execute"), EDir::Input, ExecCategory));
		Branch.Pins.Add(MakePin(TEXT("Condition"), EDir::Input, BoolCategory, TEXT("true")));
		Branch.Pins.Add(MakePin(TEXT("then"), EDir::Output, ExecCategory));
		Branch.Pins.Add(MakePin(TEXT("else"), EDir::Output, ExecCategory));
		Link(BeginPlay, 1, Branch, 0);
		FZorvekMCPBridgeNodeSnapshot Knock = MakeNode(TEXT("C0000000000000000000000000000003"), TEXT("K2Node_CustomEvent"), EKind::CustomEvent, TEXT("Knock\nCustom Event"));
		Knock.Data.EventName = TEXT("Knock");
		Knock.Data.CustomFunctionName = TEXT("Knock");
		Knock.Data.UserPins.Add(MakeUserPin(TEXT("Loudness"), RealCategory));
		Knock.Pins.Add(MakePin(TEXT("OutputDelegate"), EDir::Output, FName(TEXT("delegate"))));
		Knock.Pins.Add(MakePin(TEXT("then"), EDir::Output, ExecCategory));
		Knock.Pins.Add(MakePin(TEXT("Loudness"), EDir::Output, RealCategory));
		FZorvekMCPBridgeNodeSnapshot Comment = MakeNode(TEXT("D0000000000000000000000000000004"), TEXT("EdGraphNode_Comment"), EKind::Comment, TEXT("Door logic"));
		Comment.Comment = TEXT("Door logic");
		Comment.PosX = -16;
		Comment.PosY = -32;
		Comment.Width = 400;
		Comment.Height = 100;
		Comment.Data.CommentFontSize = 18;
		Comment.Data.CommentMoveMode = TEXT("GroupMovement");
		Comment.Data.ContainedNodeGuids = {BeginPlay.NodeGuid};
		EventGraph.Nodes = {BeginPlay, Branch, Knock, Comment};

		Blueprint.Graphs = {Function, EventGraph};

		FZorvekMCPBridgeVariableSnapshot Variable;
		Variable.VarName = FName(TEXT("bLocked"));
		Variable.VarGuid = TEXT("F0000000000000000000000000000005");
		Variable.Category = TEXT("Door");
		Variable.VarType.PinCategory = BoolCategory;
		Variable.DefaultValue = TEXT("false");
		Blueprint.Variables.Add(Variable);
		return Blueprint;
	}

	ZorvekMCPBridgeBlueprintGraphReader::FGraphReading ReadDoorGraph(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const TCHAR* GraphName)
	{
		static TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
		const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Blueprint, GraphName);
		EXPECT_NE(Graph, nullptr);
		return ZorvekMCPBridgeBlueprintGraphReader::ReadGraph(*Port, Blueprint, *Graph);
	}

	TSharedPtr<FJsonObject> FindNode(const TSharedPtr<FJsonObject>& Parsed, const TCHAR* Guid)
	{
		for (const TSharedPtr<FJsonValue>& Node : Parsed->GetArrayField(TEXT("nodes")))
		{
			if (Node->AsObject()->GetStringField(TEXT("node_guid")) == Guid)
			{
				return Node->AsObject();
			}
		}
		ADD_FAILURE() << "no node " << UECompatToUtf8(Guid);
		return MakeShared<FJsonObject>();
	}
}

TEST(BlueprintGraphReader, TextDumpOfASmallGraphIsExact)
{
	const FString Raw = ReadDoorGraph(MakeDoorBlueprint(), TEXT("eventgraph")).RawResult;
	const FString Expected = FString(TEXT("# BLUEPRINT: BP_Door\nParent Class: Actor\n# GRAPH EventGraph type=ubergraph 4\n"))
		+ TEXT("A0000000000000000000000000000001\tEvent BeginPlay\tOutputDelegate,then\n")
		+ TEXT("B0000000000000000000000000000002\tBranch\texecute,Condition='true',then,else\n")
		+ TEXT("C0000000000000000000000000000003\tKnock\nCustom Event\tOutputDelegate,then,Loudness\n")
		+ TEXT("D0000000000000000000000000000004\tDoor logic\t\n")
		+ TEXT("\n# CONNECTIONS EventGraph 1\n")
		+ TEXT("A0000000000000000000000000000001\tthen\tB0000000000000000000000000000002\texecute\n")
		+ TEXT("\n# VARIABLES 1\n")
		+ TEXT("bLocked\tbool\tNone\t\tbool\tfalse\n")
		+ TEXT("\n# COMPONENTS 0\n")
		+ TEXT("\n# COMMENTS 1\n")
		+ TEXT("D0000000000000000000000000000004\tDoor logic\t-16,-32,400,100\tcontained=1\n")
		+ TEXT("\n# CUSTOM_EVENTS 1\n")
		+ TEXT("Knock\tEventGraph\tparameters=1\n")
		+ TEXT("\n# IMPLEMENTED_INTERFACES 0\n")
		+ TEXT("\n# INTERFACE_IMPLEMENTATIONS 0\n")
		+ TEXT("\n# FUNCTIONS 1\n")
		+ TEXT("OpenDoor\tOpenDoor\tinputs=1\toutputs=1\n");
	EXPECT_EQ(S(Raw), S(Expected));
}

TEST(BlueprintGraphReader, FunctionGraphsAreFunctionsAndAMissingParentReadsNone)
{
	FZorvekMCPBridgeBlueprintSnapshot Blueprint = MakeDoorBlueprint();
	Blueprint.ParentClassPath.Reset();
	Blueprint.ParentClassName.Reset();
	const ZorvekMCPBridgeBlueprintGraphReader::FGraphReading Reading = ReadDoorGraph(Blueprint, TEXT("OpenDoor"));
	EXPECT_TRUE(Reading.RawResult.StartsWith(TEXT("# BLUEPRINT: BP_Door\nParent Class: None\n# GRAPH OpenDoor type=function 2\n"), ESearchCase::CaseSensitive)) << S(Reading.RawResult);
	EXPECT_EQ(S(Reading.ParsedGraph->GetStringField(TEXT("graph_type"))), "function");
}

TEST(BlueprintGraphReader, StructuredFormListsItsKeysInOrder)
{
	const TSharedPtr<FJsonObject> Parsed = ReadDoorGraph(MakeDoorBlueprint(), TEXT("EventGraph")).ParsedGraph;
	EXPECT_EQ(Keys(Parsed), (std::vector<std::string>{"graph", "graph_type", "nodes", "connections", "variables", "components", "comments", "custom_events",
								"implemented_interfaces", "interface_implementations", "functions", "node_count", "connection_count", "variable_count", "component_count",
								"comment_count", "custom_event_count", "implemented_interface_count", "interface_implementation_count", "function_count"}));

	const TSharedPtr<FJsonObject> Branch = FindNode(Parsed, TEXT("B0000000000000000000000000000002"));
	EXPECT_EQ(Keys(Branch), (std::vector<std::string>{"graph", "node_guid", "node_class", "title", "node_pos_x", "node_pos_y", "node_width", "node_height", "node_comment",
								"node_kind", "spawner_id", "pins", "pin_details"}));
	const TSharedPtr<FJsonObject> Condition = Branch->GetArrayField(TEXT("pin_details"))[1]->AsObject();
	EXPECT_EQ(Keys(Condition), (std::vector<std::string>{"name", "direction", "category", "subcategory", "subcategory_object", "container_type", "type_string", "type",
								   "default_value", "has_default_value", "linked_to"}));

	const TSharedPtr<FJsonObject> BeginPlay = FindNode(Parsed, TEXT("A0000000000000000000000000000001"));
	EXPECT_EQ(Keys(BeginPlay->GetObjectField(TEXT("event_reference"))), (std::vector<std::string>{"event_name", "owner_class_path", "owner_class_name", "is_interface_event",
																	 "override_function", "internal_event", "custom_function_name", "parameters"}));
	// The delegate and exec outputs of an event are not its parameters.
	EXPECT_EQ(BeginPlay->GetObjectField(TEXT("event_reference"))->GetArrayField(TEXT("parameters")).Num(), 0);

	const TSharedPtr<FJsonObject> Knock = FindNode(Parsed, TEXT("C0000000000000000000000000000003"));
	EXPECT_EQ(Keys(Knock->GetObjectField(TEXT("custom_event"))), (std::vector<std::string>{"event_name", "call_in_editor", "parameters"}));
	const TSharedPtr<FJsonObject> Comment = FindNode(Parsed, TEXT("D0000000000000000000000000000004"));
	EXPECT_EQ(Keys(Comment), (std::vector<std::string>{"graph", "node_guid", "node_class", "title", "node_pos_x", "node_pos_y", "node_width", "node_height", "node_comment",
								 "node_kind", "comment", "pins", "pin_details"}));
	EXPECT_EQ(Keys(Comment->GetObjectField(TEXT("comment"))), (std::vector<std::string>{"text", "font_size", "width", "height", "comment", "group_movement", "move_mode", "color",
																  "contained_node_guids", "comment_bubble_visible"}));

	EXPECT_EQ(Keys(Parsed->GetArrayField(TEXT("variables"))[0]->AsObject()),
		(std::vector<std::string>{"name", "guid", "category", "default_value", "has_default_value", "class_default_value", "has_class_default_value", "pin_category", "pin_subcategory",
			"pin_subcategory_object", "container_type", "type_string", "type", "is_array", "is_set", "is_map"}));
	EXPECT_EQ(Keys(Parsed->GetArrayField(TEXT("comments"))[0]->AsObject()),
		(std::vector<std::string>{"node_guid", "text", "width", "height", "font_size", "comment", "group_movement", "move_mode", "contained_node_guids"}));
	EXPECT_EQ(Keys(Parsed->GetArrayField(TEXT("custom_events"))[0]->AsObject()), (std::vector<std::string>{"name", "graph", "spawner_id", "node_guid", "call_in_editor", "parameters"}));
	const TSharedPtr<FJsonObject> Function = Parsed->GetArrayField(TEXT("functions"))[0]->AsObject();
	EXPECT_EQ(Keys(Function), (std::vector<std::string>{"name", "graph", "spawner_id", "inputs", "outputs"}));
	EXPECT_EQ(S(Function->GetStringField(TEXT("spawner_id"))), "bp_func::OpenDoor");
	EXPECT_EQ(S(Function->GetArrayField(TEXT("outputs"))[0]->AsObject()->GetStringField(TEXT("name"))), "bOpened");
}

TEST(BlueprintGraphReader, LinkIsListedOnceFromItsOutputButOnBothPins)
{
	const TSharedPtr<FJsonObject> Parsed = ReadDoorGraph(MakeDoorBlueprint(), TEXT("EventGraph")).ParsedGraph;
	const TArray<TSharedPtr<FJsonValue>>& Connections = Parsed->GetArrayField(TEXT("connections"));
	ASSERT_EQ(Connections.Num(), 1);
	EXPECT_EQ(Parsed->GetNumberField(TEXT("connection_count")), 1);
	const TSharedPtr<FJsonObject> Connection = Connections[0]->AsObject();
	EXPECT_EQ(Keys(Connection), (std::vector<std::string>{"graph", "source_node_guid", "source_pin", "target_node_guid", "target_pin"}));
	EXPECT_EQ(S(Connection->GetStringField(TEXT("source_node_guid"))), "A0000000000000000000000000000001");
	EXPECT_EQ(S(Connection->GetStringField(TEXT("target_pin"))), "execute");

	const TSharedPtr<FJsonObject> Then = FindNode(Parsed, TEXT("A0000000000000000000000000000001"))->GetArrayField(TEXT("pin_details"))[1]->AsObject();
	const TSharedPtr<FJsonObject> Execute = FindNode(Parsed, TEXT("B0000000000000000000000000000002"))->GetArrayField(TEXT("pin_details"))[0]->AsObject();
	ASSERT_EQ(Then->GetArrayField(TEXT("linked_to")).Num(), 1);
	ASSERT_EQ(Execute->GetArrayField(TEXT("linked_to")).Num(), 1);
	EXPECT_EQ(S(Then->GetArrayField(TEXT("linked_to"))[0]->AsObject()->GetStringField(TEXT("pin_name"))), "execute");
	EXPECT_EQ(S(Execute->GetArrayField(TEXT("linked_to"))[0]->AsObject()->GetStringField(TEXT("node_guid"))), "A0000000000000000000000000000001");
}

TEST(BlueprintGraphReader, PinTokensCarryDefaultsOnlyWhenThePinHasOne)
{
	const TSharedPtr<FJsonObject> Branch = FindNode(ReadDoorGraph(MakeDoorBlueprint(), TEXT("EventGraph")).ParsedGraph, TEXT("B0000000000000000000000000000002"));
	TArray<FString> Tokens;
	for (const TSharedPtr<FJsonValue>& Token : Branch->GetArrayField(TEXT("pins")))
	{
		Tokens.Add(Token->AsString());
	}
	EXPECT_EQ(ToStd(Tokens), (std::vector<std::string>{"execute", "Condition='true'", "then", "else"}));
	const TArray<TSharedPtr<FJsonValue>>& Details = Branch->GetArrayField(TEXT("pin_details"));
	EXPECT_FALSE(Details[0]->AsObject()->GetBoolField(TEXT("has_default_value")));
	EXPECT_EQ(S(Details[0]->AsObject()->GetStringField(TEXT("default_value"))), "");
	EXPECT_TRUE(Details[1]->AsObject()->GetBoolField(TEXT("has_default_value")));
}

namespace
{
	const TCHAR* const OpenableInterfacePath = TEXT("/Game/Doors/BPI_Openable.BPI_Openable_C");

	// One node of every kind in one graph, plus an interface function graph, on BP_Door.
	FZorvekMCPBridgeBlueprintSnapshot MakeBlueprintWithEveryNodeKind()
	{
		FZorvekMCPBridgeBlueprintSnapshot Blueprint = MakeDoorBlueprint();
		FZorvekMCPBridgeImplementedInterfaceSnapshot Openable;
		Openable.InterfaceClassPath = OpenableInterfacePath;
		Openable.InterfaceClassName = TEXT("BPI_Openable_C");
		Openable.InterfaceBlueprintPath = TEXT("/Game/Doors/BPI_Openable.BPI_Openable");
		Openable.GraphNames = {TEXT("GetState")};
		Blueprint.ImplementedInterfaces.Add(Openable);

		FZorvekMCPBridgeGraphSnapshot& Graph = Blueprint.Graphs[1];
		Graph.Nodes.Reset();
		int32 Counter = 0;
		auto Add = [&Graph, &Counter](EKind Kind, const TCHAR* NodeClass) -> FZorvekMCPBridgeNodeKindData&
		{
			Graph.Nodes.Add(MakeNode(*FString::Printf(TEXT("%032d"), ++Counter), NodeClass, Kind, NodeClass));
			return Graph.Nodes.Last().Data;
		};
		Add(EKind::Branch, TEXT("K2Node_IfThenElse"));
		Add(EKind::Sequence, TEXT("K2Node_ExecutionSequence"));
		FZorvekMCPBridgeNodeKindData& Print = Add(EKind::FunctionCall, TEXT("K2Node_CallFunction"));
		Print.MemberName = TEXT("PrintString");
		Print.MemberParentClassPath = TEXT("/Script/Engine.KismetSystemLibrary");
		Print.FunctionPath = TEXT("/Script/Engine.KismetSystemLibrary:PrintString");
		// A self call of an inherited native function names the class that declares it.
		FZorvekMCPBridgeNodeKindData& Location = Add(EKind::FunctionCall, TEXT("K2Node_CallFunction"));
		Location.MemberName = TEXT("K2_GetActorLocation");
		Location.bSelfContext = true;
		Location.MemberParentClassPath = Blueprint.GeneratedClassPath;
		Location.FunctionPath = TEXT("/Script/Engine.Actor:K2_GetActorLocation");
		FZorvekMCPBridgeNodeKindData& Own = Add(EKind::FunctionCall, TEXT("K2Node_CallFunction"));
		Own.MemberName = TEXT("OpenDoor");
		Own.bSelfContext = true;
		Own.MemberParentClassPath = Blueprint.GeneratedClassPath;
		Own.FunctionPath = TEXT("/Game/Doors/BP_Door.BP_Door_C:OpenDoor");
		Add(EKind::DynamicCast, TEXT("K2Node_DynamicCast")).CastTargetClassPath = TEXT("/Script/Engine.Pawn");
		FZorvekMCPBridgeNodeKindData& Custom = Add(EKind::CustomEvent, TEXT("K2Node_CustomEvent"));
		Custom.CustomFunctionName = TEXT("Knock");
		FZorvekMCPBridgeNodeKindData& Tick = Add(EKind::Event, TEXT("K2Node_Event"));
		Tick.EventName = TEXT("ReceiveTick");
		Tick.EventOwnerClassPath = TEXT("/Script/Engine.Actor");
		FZorvekMCPBridgeNodeKindData& Open = Add(EKind::Event, TEXT("K2Node_Event"));
		Open.EventName = TEXT("Open");
		Open.EventOwnerClassPath = OpenableInterfacePath;
		FZorvekMCPBridgeNodeKindData& GetOwn = Add(EKind::VariableGet, TEXT("K2Node_VariableGet"));
		GetOwn.VariableName = TEXT("bLocked");
		GetOwn.bVariableSelfContext = true;
		GetOwn.VariableOwnerClassPath = Blueprint.GeneratedClassPath;
		FZorvekMCPBridgeNodeKindData& SetExternal = Add(EKind::VariableSet, TEXT("K2Node_VariableSet"));
		SetExternal.VariableName = TEXT("bHidden");
		SetExternal.VariableOwnerClassPath = TEXT("/Script/Engine.Actor");
		FZorvekMCPBridgeNodeKindData& GetLocal = Add(EKind::VariableGet, TEXT("K2Node_VariableGet"));
		GetLocal.VariableName = TEXT("Counter");
		GetLocal.bLocalVariable = true;
		FZorvekMCPBridgeNodeKindData& Macro = Add(EKind::MacroInstance, TEXT("K2Node_MacroInstance"));
		Macro.MacroGraphName = TEXT("DoOnce");
		Macro.MacroGraphPath = TEXT("/Engine/EditorBlueprintResources/StandardMacros.StandardMacros:DoOnce");
		Macro.MacroBlueprintPath = TEXT("/Engine/EditorBlueprintResources/StandardMacros.StandardMacros");
		Add(EKind::InputKey, TEXT("K2Node_InputKey")).KeyName = TEXT("SpaceBar");
		Add(EKind::InputAxisKeyEvent, TEXT("K2Node_InputAxisKeyEvent")).KeyName = TEXT("MouseX");
		Add(EKind::Comment, TEXT("EdGraphNode_Comment"));
		Add(EKind::Unknown, TEXT("K2Node_Knot"));

		FZorvekMCPBridgeGraphSnapshot InterfaceGraph;
		InterfaceGraph.Name = TEXT("GetState");
		InterfaceGraph.Kind = EZorvekMCPBridgeGraphKind::InterfaceImplementation;
		InterfaceGraph.InterfaceClassPath = OpenableInterfacePath;
		FZorvekMCPBridgeNodeSnapshot InterfaceEntry = MakeNode(TEXT("99999999999999999999999999999999"), TEXT("K2Node_FunctionEntry"), EKind::FunctionEntry, TEXT("Get State"));
		InterfaceEntry.Data.FunctionName = TEXT("GetState");
		InterfaceGraph.Nodes.Add(InterfaceEntry);
		Blueprint.Graphs.Add(InterfaceGraph);
		return Blueprint;
	}

	std::vector<std::string> ReadKindsAndIds(const TSharedPtr<FJsonObject>& Parsed)
	{
		std::vector<std::string> Lines;
		for (const TSharedPtr<FJsonValue>& Value : Parsed->GetArrayField(TEXT("nodes")))
		{
			const TSharedPtr<FJsonObject> Node = Value->AsObject();
			FString SpawnerId;
			Lines.push_back(S(Node->GetStringField(TEXT("node_kind")) + TEXT(" ") + (Node->TryGetStringField(TEXT("spawner_id"), SpawnerId) ? SpawnerId : FString(TEXT("-")))));
		}
		return Lines;
	}
}

TEST(BlueprintGraphReader, EveryNodeKindCarriesTheIdThatMakesItAgain)
{
	const FZorvekMCPBridgeBlueprintSnapshot Blueprint = MakeBlueprintWithEveryNodeKind();
	EXPECT_EQ(ReadKindsAndIds(ReadDoorGraph(Blueprint, TEXT("EventGraph")).ParsedGraph), (std::vector<std::string>{
		"branch node::branch",
		"sequence node::sequence",
		"function_call func::/Script/Engine.KismetSystemLibrary:PrintString",
		"function_call func::/Script/Engine.Actor:K2_GetActorLocation",
		"function_call bp_func::OpenDoor",
		"dynamic_cast cast::/Script/Engine.Pawn",
		"custom_event custom_event::Knock",
		"event event::ReceiveTick",
		"interface_event interface_event::/Game/Doors/BPI_Openable.BPI_Openable_C:Open",
		"variable_get var_get::bLocked",
		"variable_set var_set::bHidden:/Script/Engine.Actor",
		"variable_get var_get::Counter",
		"macro_instance macro::/Engine/EditorBlueprintResources/StandardMacros:DoOnce",
		"input_key_event input_key::SpaceBar",
		"input_axis_key_event input_axis_key::MouseX",
		"comment -",
		"unknown -",
	}));
	EXPECT_EQ(ReadKindsAndIds(ReadDoorGraph(Blueprint, TEXT("OpenDoor")).ParsedGraph), (std::vector<std::string>{
		"function_entry bp_func_entry::OpenDoor",
		"function_result bp_func_result::OpenDoor",
	}));
	EXPECT_EQ(ReadKindsAndIds(ReadDoorGraph(Blueprint, TEXT("GetState")).ParsedGraph), (std::vector<std::string>{
		"function_entry interface_function::/Game/Doors/BPI_Openable.BPI_Openable_C:GetState",
	}));
}

TEST(BlueprintGraphReader, ReferencesTellOwnMembersFromOtherClasses)
{
	const TSharedPtr<FJsonObject> Parsed = ReadDoorGraph(MakeBlueprintWithEveryNodeKind(), TEXT("EventGraph")).ParsedGraph;
	const TArray<TSharedPtr<FJsonValue>>& Nodes = Parsed->GetArrayField(TEXT("nodes"));
	const TSharedPtr<FJsonObject> OwnCall = Nodes[4]->AsObject()->GetObjectField(TEXT("function_reference"));
	EXPECT_EQ(Keys(OwnCall), (std::vector<std::string>{"class_path", "function_name", "path", "self"}));
	EXPECT_EQ(S(OwnCall->GetStringField(TEXT("path"))), "self:OpenDoor");
	EXPECT_TRUE(OwnCall->GetBoolField(TEXT("self")));
	const TSharedPtr<FJsonObject> SelfNativeCall = Nodes[3]->AsObject()->GetObjectField(TEXT("function_reference"));
	EXPECT_EQ(S(SelfNativeCall->GetStringField(TEXT("class_path"))), "/Script/Engine.Actor");
	EXPECT_FALSE(SelfNativeCall->GetBoolField(TEXT("self")));

	EXPECT_EQ(S(Nodes[9]->AsObject()->GetObjectField(TEXT("variable_reference"))->GetStringField(TEXT("scope"))), "self");
	EXPECT_EQ(S(Nodes[10]->AsObject()->GetObjectField(TEXT("variable_reference"))->GetStringField(TEXT("scope"))), "external");
	EXPECT_EQ(S(Nodes[11]->AsObject()->GetObjectField(TEXT("variable_reference"))->GetStringField(TEXT("scope"))), "local");
	EXPECT_TRUE(Nodes[12]->AsObject()->GetBoolField(TEXT("flow_control_macro")));

	// The interface event names its implementation; the Blueprint-wide section lists it with the
	// interface graph's entry, each with the id the node tools take.
	const TSharedPtr<FJsonObject> Open = Nodes[8]->AsObject();
	EXPECT_TRUE(Open->GetObjectField(TEXT("event_reference"))->GetBoolField(TEXT("is_interface_event")));
	EXPECT_EQ(Keys(Open->GetObjectField(TEXT("interface_implementation"))), (std::vector<std::string>{"interface_class_path", "interface_class_name", "interface_blueprint_path",
																			 "interface_asset_path", "function_name", "graph", "node_guid", "parameters"}));
	EXPECT_EQ(ToStd(Collect(Parsed->GetArrayField(TEXT("interface_implementations")), TEXT("spawner_id"))),
		(std::vector<std::string>{"interface_event::/Game/Doors/BPI_Openable.BPI_Openable_C:Open", "interface_function::/Game/Doors/BPI_Openable.BPI_Openable_C:GetState"}));
	EXPECT_EQ(S(Parsed->GetArrayField(TEXT("interface_implementations"))[1]->AsObject()->GetStringField(TEXT("implementation_kind"))), "function_entry");
}

// Pins share one type object per distinct type; types that differ only in precision, struct or
// map value must still read as themselves.
TEST(BlueprintGraphReader, PinsOfNearlyEqualTypesKeepTheirOwnTypes)
{
	FZorvekMCPBridgeBlueprintSnapshot Blueprint = MakeDoorBlueprint();
	FZorvekMCPBridgeNodeSnapshot& Node = Blueprint.Graphs[1].Nodes[1];
	const FName StructCategory(TEXT("struct"));
	const FName NameCategory(TEXT("name"));
	Node.Pins.Reset();
	Node.Pins.Add(MakePin(TEXT("Single"), EDir::Input, RealCategory));
	Node.Pins.Add(MakePin(TEXT("Double"), EDir::Input, RealCategory));
	Node.Pins.Last().Pin.PinType.PinSubCategory = FName(TEXT("double"));
	Node.Pins.Add(MakePin(TEXT("Location"), EDir::Input, StructCategory));
	Node.Pins.Last().Pin.PinType.PinSubCategoryObject = FZorvekMCPBridgeTypeIdentity(TEXT("/Script/CoreUObject.Vector"), TEXT("Vector"));
	Node.Pins.Add(MakePin(TEXT("Facing"), EDir::Input, StructCategory));
	Node.Pins.Last().Pin.PinType.PinSubCategoryObject = FZorvekMCPBridgeTypeIdentity(TEXT("/Script/CoreUObject.Rotator"), TEXT("Rotator"));
	Node.Pins.Add(MakePin(TEXT("Counts"), EDir::Input, NameCategory));
	Node.Pins.Last().Pin.PinType.ContainerType = EZorvekMCPBridgePinContainerType::Map;
	Node.Pins.Last().Pin.PinType.PinValueType.TerminalCategory = FName(TEXT("int"));
	Node.Pins.Add(MakePin(TEXT("Labels"), EDir::Input, NameCategory));
	Node.Pins.Last().Pin.PinType.ContainerType = EZorvekMCPBridgePinContainerType::Map;
	Node.Pins.Last().Pin.PinType.PinValueType.TerminalCategory = FName(TEXT("string"));
	Node.Pins.Add(MakePin(TEXT("Again"), EDir::Input, RealCategory));

	const TSharedPtr<FJsonObject> Read = FindNode(ReadDoorGraph(Blueprint, TEXT("EventGraph")).ParsedGraph, TEXT("B0000000000000000000000000000002"));
	TArray<FString> TypeStrings;
	TArray<FString> TypeObjectStrings;
	for (const TSharedPtr<FJsonValue>& Pin : Read->GetArrayField(TEXT("pin_details")))
	{
		TypeStrings.Add(Pin->AsObject()->GetStringField(TEXT("type_string")));
		TypeObjectStrings.Add(Pin->AsObject()->GetObjectField(TEXT("type"))->GetStringField(TEXT("type_string")));
	}
	const std::vector<std::string> Expected{"float", "double", "Vector", "Rotator", "map<name,int>", "map<name,string>", "float"};
	EXPECT_EQ(ToStd(TypeStrings), Expected);
	EXPECT_EQ(ToStd(TypeObjectStrings), Expected);
}
