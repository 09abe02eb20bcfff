// The Blueprint asset and member tools on the simulated editor: what each adds, the legacy keys,
// the messages of bad input, and for every refused call a read-back showing the Blueprint as it was.
#include "BlueprintMemberTestSupport.h"

using namespace ZorvekAssetTests;
using namespace ZorvekBlueprintMemberTests;

// ---- Creating Blueprints ----

TEST_F(FBlueprintMemberToolsTest, CreateAnswersWithPathsAndDefaultsToAnActorParent)
{
	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("blueprint_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/MemberTests/"))},
		{TEXT("AssetName"), Text(TEXT("BP_Plain"))}})));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"asset_path", "object_path", "parent_class"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("asset_path"))), "/Game/MemberTests/BP_Plain");
	EXPECT_EQ(S(Result->GetStringField(TEXT("object_path"))), "/Game/MemberTests/BP_Plain.BP_Plain");
	EXPECT_EQ(S(Result->GetStringField(TEXT("parent_class"))), "/Script/Engine.Actor");

	EXPECT_EQ(S(Read(TEXT("/Game/MemberTests/BP_Plain.BP_Plain")).ParentClassPath), "/Script/Engine.Actor");
}

TEST_F(FBlueprintMemberToolsTest, CreateReadsLegacyKeysOnlyAsFallbacks)
{
	const TSharedPtr<FJsonObject> Legacy = Ok(Call(TEXT("blueprint_create"), Arguments({{TEXT("InPackagePath"), Text(TEXT("/Game/Legacy"))},
		{TEXT("InAssetName"), Text(TEXT("BP_Pawnish"))}, {TEXT("InParentClassPath"), Text(TEXT("/Script/Engine.Pawn"))}})));
	EXPECT_EQ(S(Legacy->GetStringField(TEXT("object_path"))), "/Game/Legacy/BP_Pawnish.BP_Pawnish");
	EXPECT_EQ(S(Legacy->GetStringField(TEXT("parent_class"))), "/Script/Engine.Pawn");

	const TSharedPtr<FJsonObject> Both = Ok(Call(TEXT("blueprint_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Chosen"))},
		{TEXT("InPackagePath"), Text(TEXT("/Game/Ignored"))}, {TEXT("AssetName"), Text(TEXT("BP_Chosen"))}, {TEXT("InAssetName"), Text(TEXT("BP_Ignored"))},
		{TEXT("ParentClassPath"), Text(TEXT("/Script/Engine.Character"))}, {TEXT("InParentClassPath"), Text(TEXT("/Script/Engine.Pawn"))}})));
	EXPECT_EQ(S(Both->GetStringField(TEXT("object_path"))), "/Game/Chosen/BP_Chosen.BP_Chosen");
	EXPECT_EQ(S(Both->GetStringField(TEXT("parent_class"))), "/Script/Engine.Character");
	EXPECT_FALSE(Port->GetObjects().FindObject(TEXT("/Game/Ignored/BP_Ignored.BP_Ignored")).IsValid());
}

TEST_F(FBlueprintMemberToolsTest, CreateRefusesBadInputBeforeMakingAnything)
{
	const TSharedPtr<FJsonObject> NotText = Arguments({{TEXT("PackagePath"), Object(MakeShared<FJsonObject>())}, {TEXT("AssetName"), Text(TEXT("BP_X"))}});
	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_create"), NotText)), "blueprint_create requires PackagePath and AssetName.");
	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_create_interface"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/I"))}}))),
		"blueprint_create_interface requires PackagePath and AssetName.");

	const std::string Before = Describe();
	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/MemberTests"))}, {TEXT("AssetName"), Text(TEXT("BP_Hero"))},
		{TEXT("ParentClassPath"), Text(TEXT("/Script/Engine.Pawn"))}}))), "Blueprint asset already exists: /Game/MemberTests/BP_Hero.BP_Hero");
	EXPECT_EQ(Describe(), Before);
	EXPECT_EQ(S(Read().ParentClassPath), "/Script/Engine.Actor");

	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/New"))}, {TEXT("AssetName"), Text(TEXT("BP_New"))},
		{TEXT("ParentClassPath"), Text(TEXT("/Script/Engine.NoSuchActor"))}}))), "Could not load parent class: /Script/Engine.NoSuchActor");
	EXPECT_FALSE(Port->GetObjects().FindObject(TEXT("/Game/New/BP_New.BP_New")).IsValid());
	EXPECT_FALSE(Port->GetObjects().FindObject(TEXT("/Game/New/BP_New")).IsValid());
}

TEST_F(FBlueprintMemberToolsTest, CreateInterfaceMakesAnInterfaceBlueprintWithItsClass)
{
	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("blueprint_create_interface"), Arguments({{TEXT("InPackagePath"), Text(TEXT("/Game/MemberTests"))},
		{TEXT("InAssetName"), Text(TEXT("BPI_Usable"))}})));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"asset_path", "object_path", "blueprint_type", "generated_class_path"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("blueprint_type"))), "interface");
	EXPECT_EQ(S(Result->GetStringField(TEXT("generated_class_path"))), "/Game/MemberTests/BPI_Usable.BPI_Usable_C");
	EXPECT_EQ(Read(TEXT("/Game/MemberTests/BPI_Usable.BPI_Usable")).BlueprintType, EZorvekMCPBridgeBlueprintType::Interface);
}

// ---- Variables ----

TEST_F(FBlueprintMemberToolsTest, AddVariableEchoesTheTextAndNormalisesTheType)
{
	const TSharedPtr<FJsonObject> Result = Ok(CallOnHero(TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("Speeds"))},
		{TEXT("Type"), Text(TEXT("array<Float>"))}, {TEXT("Category"), Text(TEXT("Movement"))}}));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"asset_path", "variable", "type", "requested_type"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("asset_path"))), S(HeroPath));
	EXPECT_EQ(S(Result->GetStringField(TEXT("type"))), "float[]");
	EXPECT_EQ(S(Result->GetStringField(TEXT("requested_type"))), "array<Float>");
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read();
	ASSERT_EQ(Snapshot.Variables.Num(), 1);
	EXPECT_EQ(DescribePinType(Snapshot.Variables[0].VarType), "array<float>");
	EXPECT_EQ(S(Snapshot.Variables[0].Category), "Movement");
}

TEST_F(FBlueprintMemberToolsTest, AddVariableTwiceKeepsTheFirstType)
{
	Ok(CallOnHero(TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("Health"))}, {TEXT("Type"), Text(TEXT("float"))},
		{TEXT("DefaultValue"), Text(TEXT("100.0"))}}));
	const TSharedPtr<FJsonObject> Again = Ok(CallOnHero(TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("health"))},
		{TEXT("Type"), Text(TEXT("int"))}}));
	EXPECT_EQ(S(Again->GetStringField(TEXT("type"))), "int");
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read();
	ASSERT_EQ(Snapshot.Variables.Num(), 1);
	EXPECT_EQ(DescribePinType(Snapshot.Variables[0].VarType), "float");
	EXPECT_EQ(S(Snapshot.Variables[0].DefaultValue), "100.0");
	// unreal-behaviour-blueprints.md §5.3: a new variable's category is "Default".
	EXPECT_EQ(S(Snapshot.Variables[0].Category), "Default");
}

TEST_F(FBlueprintMemberToolsTest, AddVariableRefusalsChangeNothing)
{
	ExpectRefusedUnchanged(TEXT("blueprint_add_variable"), {{TEXT("VarName"), MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>())},
		{TEXT("Type"), Text(TEXT("float"))}}, "blueprint_add_variable requires VarName and Type.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("Lookup"))}, {TEXT("Type"), Text(TEXT("map<name,int[]>"))}},
		"Nested Blueprint containers are not supported for variable type 'map<name,int[]>'.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("Target"))}, {TEXT("Type"), Text(TEXT("object"))},
		{TEXT("ObjectClassPath"), Text(TEXT("/Script/Engine.Nothing"))}}, "Could not load allowable object variable class: /Script/Engine.Nothing");
	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_add_variable"), Arguments({{TEXT("BlueprintNameOrPath"), Number(7)}, {TEXT("VarName"), Text(TEXT("A"))},
		{TEXT("Type"), Text(TEXT("int"))}}))), "Could not load Blueprint: 7");
	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_add_variable"), Arguments({{TEXT("VarName"), Text(TEXT("A"))}, {TEXT("Type"), Text(TEXT("int"))}}))),
		"Blueprint asset path is empty.");
}

// ---- Functions and event graphs ----

TEST_F(FBlueprintMemberToolsTest, CreateFunctionBuildsTypedEntryAndResultPins)
{
	const TSharedPtr<FJsonObject> Result = Ok(CallOnHero(TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Text(TEXT("ApplyDamage"))},
		{TEXT("Inputs"), Descriptors({{TEXT("Amount"), TEXT("float")}, {TEXT("Tags"), TEXT("set<name>")}})},
		{TEXT("Outputs"), Descriptors({{TEXT("bKilled"), TEXT("bool")}})}}));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"asset_path", "function_name", "graph_name", "spawner_id", "inputs", "outputs"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("spawner_id"))), "bp_func::ApplyDamage");
	EXPECT_EQ(S(Result->GetStringField(TEXT("graph_name"))), "ApplyDamage");
	const TArray<TSharedPtr<FJsonValue>> Inputs = Result->GetArrayField(TEXT("inputs"));
	ASSERT_EQ(Inputs.Num(), 2);
	EXPECT_EQ(S(Inputs[1]->AsObject()->GetStringField(TEXT("type_string"))), "set<name>");

	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read();
	const FZorvekMCPBridgeGraphSnapshot* Graph = FindGraph(Snapshot, TEXT("ApplyDamage"));
	ASSERT_NE(Graph, nullptr);
	EXPECT_EQ(Graph->Kind, EZorvekMCPBridgeGraphKind::Function);
	std::vector<std::string> Pins;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph->Nodes)
	{
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			Pins.push_back(S(Node.NodeClass) + ":" + S(Pin.Pin.PinName.ToString()) + ":" + DescribePinType(Pin.Pin.PinType));
		}
	}
	// unreal-behaviour-blueprints.md §2.8: the entry's outputs are the inputs, the result's inputs the outputs.
	EXPECT_EQ(Pins, (std::vector<std::string>{"K2Node_FunctionEntry:then:exec", "K2Node_FunctionEntry:Amount:float", "K2Node_FunctionEntry:Tags:set<name>",
		"K2Node_FunctionResult:execute:exec", "K2Node_FunctionResult:bKilled:bool"}));
}

TEST_F(FBlueprintMemberToolsTest, CreateFunctionValidatesEveryDescriptorAndNameFirst)
{
	ExpectRefusedUnchanged(TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Text(TEXT("Heal"))},
		{TEXT("Inputs"), Descriptors({{TEXT("Amount"), TEXT("float")}, {TEXT("amount"), TEXT("int")}})}}, "Duplicate Inputs pin name: amount");
	ExpectRefusedUnchanged(TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Text(TEXT("Heal"))},
		{TEXT("Inputs"), Descriptors({{TEXT("Amount"), TEXT("float")}})}, {TEXT("Outputs"), Descriptors({{TEXT("Result"), TEXT("double")}})}},
		"Unsupported Blueprint variable type 'double'. Supported types: bool, int, float, string, name, text, vector, rotator, transform, object, class, arrays like float[] or array<float>, sets like set<name>, and maps like map<name,string>.");
	TArray<TSharedPtr<FJsonValue>> NotObjects = {Text(TEXT("Amount"))};
	ExpectRefusedUnchanged(TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Text(TEXT("Heal"))},
		{TEXT("Outputs"), MakeShared<FJsonValueArray>(NotObjects)}}, "Outputs entries must be objects with Name and Type.");
	ExpectRefusedUnchanged(TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Object(MakeShared<FJsonObject>())}}, "blueprint_create_function requires FunctionName.");
	// unreal-behaviour-blueprints.md §5.2: graph names are unique without regard to case.
	ExpectRefusedUnchanged(TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Text(TEXT("eventgraph"))}}, "Blueprint graph/function already exists: eventgraph");
}

TEST_F(FBlueprintMemberToolsTest, CreateEventGraphAddsAnEmptyUbergraphOnce)
{
	const TSharedPtr<FJsonObject> Result = Ok(CallOnHero(TEXT("blueprint_create_event_graph"), {{TEXT("GraphName"), Text(TEXT("Combat"))}}));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"asset_path", "graph_name", "graph_type"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("graph_type"))), "ubergraph");
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read();
	const FZorvekMCPBridgeGraphSnapshot* Graph = FindGraph(Snapshot, TEXT("Combat"));
	ASSERT_NE(Graph, nullptr);
	EXPECT_EQ(Graph->Kind, EZorvekMCPBridgeGraphKind::Ubergraph);
	EXPECT_TRUE(Graph->Nodes.IsEmpty());

	ExpectRefusedUnchanged(TEXT("blueprint_create_event_graph"), {{TEXT("GraphName"), Text(TEXT("COMBAT"))}}, "Blueprint graph already exists: COMBAT");
	ExpectRefusedUnchanged(TEXT("blueprint_create_event_graph"), {{TEXT("GraphName"), Text(TEXT("UserConstructionScript"))}},
		"Blueprint graph already exists: UserConstructionScript");
	ExpectRefusedUnchanged(TEXT("blueprint_create_event_graph"), {{TEXT("GraphName"), MakeShared<FJsonValueNull>()}}, "blueprint_create_event_graph requires GraphName.");
}

// ---- Custom events ----

TEST_F(FBlueprintMemberToolsTest, CustomEventsStackInFreeRowsBelowTheGraph)
{
	const TSharedPtr<FJsonObject> First = Ok(CallOnHero(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Text(TEXT("OnHit"))},
		{TEXT("Parameters"), Descriptors({{TEXT("Damage"), TEXT("float")}, {TEXT("Instigator"), TEXT("object")}})}, {TEXT("CallInEditor"), Text(TEXT("true"))}}));
	EXPECT_EQ(Keys(First), (std::vector<std::string>{"asset_path", "graph_name", "event_name", "spawner_id", "node_guid", "call_in_editor", "parameters"}));
	EXPECT_EQ(S(First->GetStringField(TEXT("graph_name"))), "EventGraph");
	EXPECT_EQ(S(First->GetStringField(TEXT("spawner_id"))), "custom_event::OnHit");
	EXPECT_TRUE(First->GetBoolField(TEXT("call_in_editor")));
	const TSharedPtr<FJsonObject> Second = Ok(CallOnHero(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Text(TEXT("OnHeal"))}}));
	EXPECT_FALSE(Second->GetBoolField(TEXT("call_in_editor")));

	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read();
	const FZorvekMCPBridgeGraphSnapshot* Graph = FindGraph(Snapshot, TEXT("EventGraph"));
	ASSERT_NE(Graph, nullptr);
	std::vector<std::string> Placed;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph->Nodes)
	{
		Placed.push_back(S(Node.Title) + "@" + std::to_string(Node.PosX) + "," + std::to_string(Node.PosY));
		if (Node.NodeGuid == First->GetStringField(TEXT("node_guid")))
		{
			EXPECT_TRUE(Node.Data.bCallInEditor);
			ASSERT_EQ(Node.Data.UserPins.Num(), 2);
			EXPECT_EQ(DescribePinType(Node.Data.UserPins[1].PinType), "Actor");
		}
	}
	// The default events sit at 0, 208 and 416 (unreal-behaviour-blueprints.md §1.3); each new
	// event goes 200 below the lowest node, on the 16 grid.
	EXPECT_EQ(Placed, (std::vector<std::string>{"Event BeginPlay@0,0", "Event ActorBeginOverlap@0,208", "Event Tick@0,416",
		"OnHit\nCustom Event@0,624", "OnHeal\nCustom Event@0,832"}));
}

TEST_F(FBlueprintMemberToolsTest, CustomEventRefusalsChangeNothing)
{
	Ok(CallOnHero(TEXT("blueprint_create_event_graph"), {{TEXT("GraphName"), Text(TEXT("Combat"))}}));
	Ok(CallOnHero(TEXT("blueprint_add_custom_event"), {{TEXT("GraphName"), Text(TEXT("Combat"))}, {TEXT("EventName"), Text(TEXT("OnHit"))}}));
	Ok(CallOnHero(TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Text(TEXT("Helper"))}}));

	ExpectRefusedUnchanged(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Text(TEXT("onhit"))}}, "Blueprint custom event already exists: onhit");
	ExpectRefusedUnchanged(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Text(TEXT("OnMiss"))},
		{TEXT("Parameters"), Descriptors({{TEXT("A"), TEXT("int")}, {TEXT("a"), TEXT("int")}})}}, "Duplicate Parameters pin name: a");
	TArray<TSharedPtr<FJsonValue>> Nameless = {Object(Arguments({{TEXT("Type"), Text(TEXT("int"))}}))};
	ExpectRefusedUnchanged(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Text(TEXT("OnMiss"))},
		{TEXT("Parameters"), MakeShared<FJsonValueArray>(Nameless)}}, "Parameters entries require Name and Type.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Text(TEXT("OnMiss"))}, {TEXT("GraphName"), Text(TEXT("Nowhere"))}},
		"Could not find graph 'Nowhere' in /Game/MemberTests/BP_Hero.BP_Hero.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Text(TEXT("OnMiss"))}, {TEXT("GraphName"), Text(TEXT("Helper"))}},
		"Graph 'Helper' in /Game/MemberTests/BP_Hero.BP_Hero is not an event graph; events can only be added to event graphs.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Object(MakeShared<FJsonObject>())}}, "blueprint_add_custom_event requires EventName.");
}

// ---- Interfaces ----

class FBlueprintMemberInterfaceTest : public FBlueprintMemberToolsTest
{
protected:
	void SetUp() override
	{
		FBlueprintMemberToolsTest::SetUp();
		Ok(Call(TEXT("blueprint_create_interface"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/MemberTests"))}, {TEXT("AssetName"), Text(TEXT("BPI_Usable"))}})));
		const TSharedPtr<FJsonObject> OnInterface = Arguments({{TEXT("BlueprintNameOrPath"), Text(TEXT("/Game/MemberTests/BPI_Usable"))}});
		// An event (no outputs) and a function with an output.
		OnInterface->SetStringField(TEXT("FunctionName"), TEXT("Use"));
		OnInterface->SetField(TEXT("Inputs"), Descriptors({{TEXT("User"), TEXT("object")}}));
		Ok(Call(TEXT("blueprint_create_function"), OnInterface));
		OnInterface->SetStringField(TEXT("FunctionName"), TEXT("CanUse"));
		OnInterface->SetField(TEXT("Outputs"), Descriptors({{TEXT("bUsable"), TEXT("bool")}}));
		Ok(Call(TEXT("blueprint_create_function"), OnInterface));
		// The generated interface class gets its functions at the next full compile
		// (unreal-behaviour-blueprints.md §5.1); implementing reads them from that class.
		Compile(TEXT("/Game/MemberTests/BPI_Usable.BPI_Usable"));
	}

	const TCHAR* const InterfaceClass = TEXT("/Game/MemberTests/BPI_Usable.BPI_Usable_C");
};

TEST_F(FBlueprintMemberInterfaceTest, ImplementingTwiceAnswersAlreadyImplemented)
{
	const TSharedPtr<FJsonObject> First = Ok(CallOnHero(TEXT("blueprint_implement_interface"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Usable"))}}));
	EXPECT_EQ(Keys(First), (std::vector<std::string>{"asset_path", "interface_class_path", "interface_class_name", "already_implemented", "available_graphs"}));
	EXPECT_EQ(S(First->GetStringField(TEXT("interface_class_path"))), S(InterfaceClass));
	EXPECT_EQ(S(First->GetStringField(TEXT("interface_class_name"))), "BPI_Usable_C");
	EXPECT_FALSE(First->GetBoolField(TEXT("already_implemented")));
	// unreal-behaviour-blueprints.md §5.4: the function with an output gets a graph, the event none.
	EXPECT_EQ(ToStd(Collect(First->GetArrayField(TEXT("available_graphs")), TEXT("name"))),
		(std::vector<std::string>{"UserConstructionScript", "EventGraph", "CanUse"}));

	const std::string Before = Describe();
	const TSharedPtr<FJsonObject> Second = Ok(CallOnHero(TEXT("blueprint_implement_interface"), {{TEXT("InterfaceNameOrPath"), Text(InterfaceClass)}}));
	EXPECT_TRUE(Second->GetBoolField(TEXT("already_implemented")));
	EXPECT_EQ(Describe(), Before);
}

TEST_F(FBlueprintMemberInterfaceTest, InterfaceEventBindsTheFunctionOnce)
{
	Ok(CallOnHero(TEXT("blueprint_implement_interface"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("/Game/MemberTests/BPI_Usable"))}}));
	const TSharedPtr<FJsonObject> Result = Ok(CallOnHero(TEXT("blueprint_add_interface_event"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Usable"))},
		{TEXT("FunctionName"), Text(TEXT("use"))}, {TEXT("NodePosX"), Text(TEXT("320"))}, {TEXT("NodePosY"), Number(-48)}}));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"asset_path", "graph_name", "node_guid", "interface_class_path", "interface_class_name", "function_name",
		"spawner_id", "parameters"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("function_name"))), "Use");
	EXPECT_EQ(S(Result->GetStringField(TEXT("spawner_id"))), "interface_event::/Game/MemberTests/BPI_Usable.BPI_Usable_C:Use");
	const TArray<TSharedPtr<FJsonValue>> Parameters = Result->GetArrayField(TEXT("parameters"));
	ASSERT_EQ(Parameters.Num(), 1);
	EXPECT_EQ(Keys(Parameters[0]->AsObject()), (std::vector<std::string>{"name", "pin_category", "pin_subcategory", "pin_subcategory_object", "container_type",
		"type_string", "type"}));
	EXPECT_EQ(S(Parameters[0]->AsObject()->GetStringField(TEXT("name"))), "User");

	bool bFound = false;
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read();
	for (const FZorvekMCPBridgeNodeSnapshot& Node : FindGraph(Snapshot, TEXT("EventGraph"))->Nodes)
	{
		if (Node.NodeGuid == Result->GetStringField(TEXT("node_guid")))
		{
			bFound = true;
			EXPECT_EQ(Node.Kind, EZorvekMCPBridgeNodeKind::Event);
			EXPECT_EQ(Node.PosX, 320);
			EXPECT_EQ(Node.PosY, -48);
		}
	}
	EXPECT_TRUE(bFound);

	ExpectRefusedUnchanged(TEXT("blueprint_add_interface_event"), {{TEXT("InterfaceNameOrPath"), Text(InterfaceClass)}, {TEXT("FunctionName"), Text(TEXT("Use"))}},
		"Blueprint interface event already exists: /Game/MemberTests/BPI_Usable.BPI_Usable_C.Use");
}

TEST_F(FBlueprintMemberInterfaceTest, InterfaceRefusalsChangeNothing)
{
	ExpectRefusedUnchanged(TEXT("blueprint_implement_interface"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("/Script/Engine.Actor"))}},
		"Could not resolve Blueprint Interface class: /Script/Engine.Actor");
	ExpectRefusedUnchanged(TEXT("blueprint_implement_interface"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Nothing"))}},
		"Could not resolve Blueprint Interface class: BPI_Nothing");
	ExpectRefusedUnchanged(TEXT("blueprint_implement_interface"), {}, "blueprint_implement_interface requires InterfaceNameOrPath.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_interface_event"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Usable"))}, {TEXT("FunctionName"), Text(TEXT("Use"))}},
		"/Game/MemberTests/BP_Hero.BP_Hero does not implement interface /Game/MemberTests/BPI_Usable.BPI_Usable_C.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_interface_event"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Usable"))}},
		"blueprint_add_interface_event requires InterfaceNameOrPath and FunctionName.");

	Ok(CallOnHero(TEXT("blueprint_implement_interface"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Usable"))}}));
	ExpectRefusedUnchanged(TEXT("blueprint_add_interface_event"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Usable"))}, {TEXT("FunctionName"), Text(TEXT("Drop"))}},
		"Interface function does not exist: /Game/MemberTests/BPI_Usable.BPI_Usable_C.Drop");
	ExpectRefusedUnchanged(TEXT("blueprint_add_interface_event"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Usable"))}, {TEXT("FunctionName"), Text(TEXT("CanUse"))}},
		"Interface function /Game/MemberTests/BPI_Usable.BPI_Usable_C.CanUse has outputs and is implemented in its own graph 'CanUse', not as an event.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_interface_event"), {{TEXT("InterfaceNameOrPath"), Text(TEXT("BPI_Usable"))}, {TEXT("FunctionName"), Text(TEXT("Use"))},
		{TEXT("GraphName"), Text(TEXT("CanUse"))}}, "Graph 'CanUse' in /Game/MemberTests/BP_Hero.BP_Hero is not an event graph; events can only be added to event graphs.");
}
