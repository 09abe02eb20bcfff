// blueprint_add_node: every spawner id form and the node it makes (read back through the graph
// reader under the same id), the refusals with their messages and a graph left as it was, event
// spawners that reuse an existing node, PinDefaults and the answer's keys.
#include "BlueprintNodeTestSupport.h"

using namespace ZorvekAssetTests;
using namespace ZorvekBlueprintNodeTests;

namespace
{
	const TCHAR* const InteractableClass = TEXT("/Game/Interfaces/BPI_Interactable.BPI_Interactable_C");

	struct FSpawnCase
	{
		const TCHAR* SpawnerId;
		const TCHAR* GraphName;
		const TCHAR* CanonicalId;
		// Empty where the engine's exact title is not pinned down by the reference notes.
		const TCHAR* Title;
	};
}

TEST_F(FBlueprintNodeToolsTest, EveryIdFormMakesTheNodeTheReaderNamesAlike)
{
	// Prefixes ignore case; names are looked up as the engine's FName lookups do (without regard to
	// case) and reported in the engine's spelling. Titles: unreal-behaviour-blueprints.md §2.
	const FSpawnCase Cases[] = {
		{TEXT("NODE::Branch"), TEXT("EventGraph"), TEXT("node::branch"), TEXT("Branch")},
		{TEXT("node::SEQUENCE"), TEXT("EventGraph"), TEXT("node::sequence"), TEXT("Sequence")},
		{TEXT("Macro::/Engine/EditorBlueprintResources/StandardMacros:doonce"), TEXT("EventGraph"), TEXT("macro::/Engine/EditorBlueprintResources/StandardMacros:DoOnce"), TEXT("Do Once")},
		{TEXT("macro::/Engine/EditorBlueprintResources/StandardMacros:FlipFlop"), TEXT("EventGraph"), TEXT("macro::/Engine/EditorBlueprintResources/StandardMacros:FlipFlop"), TEXT("Flip Flop")},
		{TEXT("CAST::/Script/Engine.Character"), TEXT("EventGraph"), TEXT("cast::/Script/Engine.Character"), TEXT("Cast To Character")},
		{TEXT("func::/Script/Engine.KismetMathLibrary:Add_IntInt"), TEXT("EventGraph"), TEXT("func::/Script/Engine.KismetMathLibrary:Add_IntInt"), TEXT("int + int")},
		{TEXT("Func::/Script/Engine.KismetSystemLibrary:printstring"), TEXT("EventGraph"), TEXT("func::/Script/Engine.KismetSystemLibrary:PrintString"), TEXT("Print String")},
		{TEXT("bp_func::applydamage"), TEXT("EventGraph"), TEXT("bp_func::ApplyDamage"), TEXT("")},
		{TEXT("custom_event::OnLanded"), TEXT("Combat"), TEXT("custom_event::OnLanded"), TEXT("")},
		{TEXT("custom_event_call::onhit"), TEXT("EventGraph"), TEXT("custom_event_call::OnHit"), TEXT("")},
		{TEXT("var_get::health"), TEXT("EventGraph"), TEXT("var_get::Health"), TEXT("Get Health")},
		{TEXT("VAR_SET::Score"), TEXT("ApplyDamage"), TEXT("var_set::Score"), TEXT("Set Score")},
		{TEXT("var_get::cameraboom"), TEXT("EventGraph"), TEXT("var_get::CameraBoom"), TEXT("Get CameraBoom")},
		{TEXT("var_get::bcanbedamaged:/Script/Engine.Actor"), TEXT("EventGraph"), TEXT("var_get::bCanBeDamaged:/Script/Engine.Actor"), TEXT("Get bCanBeDamaged")},
		{TEXT("Input_Key::spacebar"), TEXT("Combat"), TEXT("input_key::SpaceBar"), TEXT("Space Bar")},
		{TEXT("input_axis_key::MouseY"), TEXT("Combat"), TEXT("input_axis_key::MouseY"), TEXT("Mouse Y")},
	};
	for (const FSpawnCase& Case : Cases)
	{
		const TSharedPtr<FJsonObject> Answer = Ok(AddNode(ShowcasePath, Case.SpawnerId, {{TEXT("GraphName"), Text(Case.GraphName)}, {TEXT("NodePosX"), Number(64)}, {TEXT("NodePosY"), Text(TEXT("-32"))}}));
		const TSharedPtr<FJsonObject> AddResult = Answer->GetObjectField(TEXT("add_result"));
		EXPECT_EQ(S(AddResult->GetStringField(TEXT("spawner_id"))), S(Case.CanonicalId)) << S(Case.SpawnerId);
		if (*Case.Title)
		{
			EXPECT_EQ(S(AddResult->GetStringField(TEXT("title"))), S(Case.Title)) << S(Case.SpawnerId);
		}
		EXPECT_EQ(Answer->GetNumberField(TEXT("node_pos_x")), 64) << S(Case.SpawnerId);
		EXPECT_EQ(Answer->GetNumberField(TEXT("node_pos_y")), -32) << S(Case.SpawnerId);

		// The reader names the node it finds under the same id, so a graph can be copied node by node.
		const TSharedPtr<FJsonObject> Graph = Ok(CallOn(ShowcasePath, TEXT("blueprint_read_graph"), {{TEXT("GraphName"), Text(Case.GraphName)}}))->GetObjectField(TEXT("parsed_graph"));
		FString ReadId = TEXT("<node missing>");
		for (const TSharedPtr<FJsonValue>& Node : Graph->GetArrayField(TEXT("nodes")))
		{
			if (Node->AsObject()->GetStringField(TEXT("node_guid")) == Answer->GetStringField(TEXT("node_guid")))
			{
				ReadId = Node->AsObject()->GetStringField(TEXT("spawner_id"));
			}
		}
		EXPECT_EQ(S(ReadId), S(Case.CanonicalId)) << S(Case.SpawnerId);
	}
}

TEST_F(FBlueprintNodeToolsTest, RefusedIdsNameTheProblemAndLeaveTheGraphAsItWas)
{
	const std::pair<const TCHAR*, const char*> Cases[] = {
		{TEXT(""), "SpawnerId is required."},
		{TEXT("node::branchy"), "Unsupported native spawner id: node::branchy"},
		{TEXT("bp_func_entry::ApplyDamage"), "Unsupported native spawner id: bp_func_entry::ApplyDamage"},
		{TEXT("macro::/Game/MyMacros:DoOnce"), "Unsupported macro spawner library: /Game/MyMacros"},
		{TEXT("macro::/Engine/EditorBlueprintResources/StandardMacros:IsValid"), "Unsupported StandardMacros flow-control macro: IsValid"},
		{TEXT("cast::/Script/Engine.NoSuchClass"), "Could not resolve dynamic cast spawner: cast::/Script/Engine.NoSuchClass"},
		{TEXT("func::/Script/Engine.KismetMathLibrary:Add_IntIntInt"), "Could not resolve function spawner: func::/Script/Engine.KismetMathLibrary:Add_IntIntInt"},
		// The engine finds functions by their exact name; only the catalogue search forgives K2_.
		{TEXT("func::/Script/Engine.Actor:SetActorLocation"), "Could not resolve function spawner: func::/Script/Engine.Actor:SetActorLocation"},
		{TEXT("func::/Script/Engine.NoSuchLibrary:PrintString"), "Could not resolve function spawner: func::/Script/Engine.NoSuchLibrary:PrintString"},
		{TEXT("bp_func::"), "Invalid Blueprint function spawner id: bp_func::"},
		{TEXT("bp_func::Missing"), "Blueprint function does not exist for spawner id: bp_func::Missing"},
		{TEXT("custom_event::"), "Invalid custom event spawner id: custom_event::"},
		{TEXT("custom_event::onhit"), "Blueprint custom event already exists: onhit"},
		{TEXT("custom_event_call::"), "Invalid custom event call spawner id: custom_event_call::"},
		{TEXT("custom_event_call::OnMiss"), "Blueprint custom event does not exist for call spawner id: custom_event_call::OnMiss"},
		{TEXT("event::ReceiveNothing"), "Could not resolve event spawner: event::ReceiveNothing"},
		// A callable function is not an event a Blueprint can implement.
		{TEXT("event::K2_SetActorLocation"), "Could not resolve event spawner: event::K2_SetActorLocation"},
		{TEXT("var_get::Stamina"), "Blueprint variable does not exist for spawner id: var_get::Stamina"},
		// An inherited member is not one of the Blueprint's own variables.
		{TEXT("var_set::bCanBeDamaged"), "Blueprint variable does not exist for spawner id: var_set::bCanBeDamaged"},
		{TEXT("var_set::Nope:/Script/Engine.Actor"), "Could not resolve external variable spawner id: var_set::Nope:/Script/Engine.Actor"},
		{TEXT("var_get::Tags:/Script/Engine.NoSuchClass"), "Could not resolve external variable spawner id: var_get::Tags:/Script/Engine.NoSuchClass"},
		// unreal-behaviour-blueprints.md §7.2, §7.3: 1D axis, analog and bindable verdicts.
		{TEXT("input_axis_key::NoSuchKey"), "Could not resolve input axis key spawner: input_axis_key::NoSuchKey"},
		{TEXT("input_axis_key::SpaceBar"), "Input axis key spawner is not a 1D axis: input_axis_key::SpaceBar"},
		{TEXT("input_axis_key::Gamepad_Left2D"), "Input axis key spawner is not a 1D axis: input_axis_key::Gamepad_Left2D"},
		{TEXT("input_axis_key::Vive_Left_Trigger_Axis"), "Input axis key spawner is not bindable in Blueprints: input_axis_key::Vive_Left_Trigger_Axis"},
		{TEXT("input_key::NoSuchKey"), "Could not resolve input key spawner: input_key::NoSuchKey"},
		{TEXT("input_key::Gamepad_LeftX"), "Input key spawner is analog and must use input_axis_key instead: input_key::Gamepad_LeftX"},
		{TEXT("input_key::Mouse2D"), "Input key spawner is analog and must use input_axis_key instead: input_key::Mouse2D"},
		{TEXT("input_action::Jump"), "Unsupported input event spawner id: input_action::Jump. Native input event node creation is not supported yet; use a dedicated input event helper or an explicit future input-event spawner."},
	};
	for (const auto& Case : Cases)
	{
		ExpectAddRefused(ShowcasePath, Case.first, Case.second);
	}

	const std::string Before = Describe(ShowcasePath);
	const std::string Missing = ErrorText(AddNode(ShowcasePath, TEXT("macro::/Engine/EditorBlueprintResources/StandardMacros:NoSuchMacro")));
	EXPECT_EQ(Missing.rfind("StandardMacros macro graph 'NoSuchMacro' was not found. Available macros: ", 0), 0u) << Missing;
	EXPECT_NE(Missing.find("DoOnce"), std::string::npos) << Missing;
	EXPECT_EQ(Describe(ShowcasePath), Before);
}

TEST_F(FBlueprintNodeToolsTest, NodesTheGraphCannotHoldAreRefusedBeforeTheyExist)
{
	// Input events only in an actor's event graph (unreal-behaviour-blueprints.md §2.10).
	ExpectAddRefused(ShowcasePath, TEXT("input_key::SpaceBar"), "Input key event 'SpaceBar' is not compatible with graph 'ApplyDamage'.", {{TEXT("GraphName"), Text(TEXT("ApplyDamage"))}});
	ExpectAddRefused(ShowcasePath, TEXT("input_axis_key::mousex"), "Input axis key event 'MouseX' is not compatible with graph 'ApplyDamage'.", {{TEXT("GraphName"), Text(TEXT("ApplyDamage"))}});
	ExpectAddRefused(ShowcasePath, TEXT("custom_event::OnLanded"),
		"Graph 'ApplyDamage' in /Game/Blueprints/BP_Showcase.BP_Showcase is not an event graph; events can only be added to event graphs.", {{TEXT("GraphName"), Text(TEXT("ApplyDamage"))}});
	ExpectAddRefused(ShowcasePath, TEXT("node::branch"), "Could not find graph 'NoSuchGraph' in /Game/Blueprints/BP_Showcase.BP_Showcase.", {{TEXT("GraphName"), Text(TEXT("NoSuchGraph"))}});
}

TEST_F(FBlueprintNodeToolsTest, EventSpawnersReturnAnEnabledEventAndReplaceAGhost)
{
	// unreal-behaviour-blueprints.md §9.5: an enabled node for the event is returned, not doubled.
	const FZorvekMCPBridgeBlueprintSnapshot Showcase = Read(ShowcasePath);
	const std::string Before = Describe(ShowcasePath);
	const TSharedPtr<FJsonObject> Reused = Ok(AddNode(ShowcasePath, TEXT("event::receivebeginplay")))->GetObjectField(TEXT("add_result"));
	EXPECT_TRUE(Reused->GetBoolField(TEXT("reused_existing_node")));
	EXPECT_EQ(S(Reused->GetStringField(TEXT("spawner_id"))), "event::ReceiveBeginPlay");
	const FZorvekMCPBridgeNodeSnapshot* Existing = FindNode(Showcase, Reused->GetStringField(TEXT("node_guid")));
	ASSERT_NE(Existing, nullptr);
	EXPECT_EQ(Existing->Data.EventName, TEXT("ReceiveBeginPlay"));
	EXPECT_EQ(Describe(ShowcasePath), Before);

	const TSharedPtr<FJsonObject> Interface = Ok(AddNode(ShowcasePath, FString(TEXT("interface_event::")) + InteractableClass + TEXT(":interact")))->GetObjectField(TEXT("add_result"));
	EXPECT_TRUE(Interface->GetBoolField(TEXT("reused_existing_node")));
	EXPECT_EQ(S(Interface->GetStringField(TEXT("spawner_id"))), S(FString(TEXT("interface_event::")) + InteractableClass + TEXT(":Interact")));
	ExpectAddRefused(ShowcasePath, FString(TEXT("interface_event::")) + InteractableClass + TEXT(":GetInteractionText"),
		S(FString(TEXT("Blueprint event is already implemented as a function graph: interface_event::")) + InteractableClass + TEXT(":GetInteractionText")));
	ExpectAddRefused(ShowcasePath, TEXT("interface_event::/Game/Interfaces/BPI_Other.BPI_Other_C:Interact"),
		"Could not resolve event spawner: interface_event::/Game/Interfaces/BPI_Other.BPI_Other_C:Interact");

	// A new Actor Blueprint holds a disabled ghost BeginPlay (§1.3); the spawner places a real one.
	const TSharedPtr<FJsonObject> Placed = Ok(AddNode(FreshPath, TEXT("event::ReceiveBeginPlay")))->GetObjectField(TEXT("add_result"));
	EXPECT_FALSE(Placed->GetBoolField(TEXT("reused_existing_node")));
	int32 BeginPlayNodes = 0;
	const FZorvekMCPBridgeBlueprintSnapshot Fresh = Read(FreshPath);
	for (const FZorvekMCPBridgeGraphSnapshot& Graph : Fresh.Graphs)
	{
		for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
		{
			if (Node.Kind == EZorvekMCPBridgeNodeKind::Event && Node.Data.EventName == TEXT("ReceiveBeginPlay"))
			{
				++BeginPlayNodes;
				EXPECT_TRUE(Node.bEnabled);
				EXPECT_EQ(Node.NodeGuid, Placed->GetStringField(TEXT("node_guid")));
			}
		}
	}
	EXPECT_EQ(BeginPlayNodes, 1);
}

TEST_F(FBlueprintNodeToolsTest, PinDefaultsAreWrittenAsTextOrRefuseTheWholeCall)
{
	const TSharedPtr<FJsonObject> Defaults = Arguments({{TEXT("InString"), Text(TEXT("Hello there"))}, {TEXT("bprinttoscreen"), Bool(false)}, {TEXT("Duration"), Number(5)}});
	const FString PrintGuid = AddNodeGuid(ShowcasePath, TEXT("func::/Script/Engine.KismetSystemLibrary:PrintString"), {{TEXT("PinDefaults"), MakeShared<FJsonValueObject>(Defaults)}});
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(ShowcasePath);
	const FZorvekMCPBridgeNodeSnapshot* Print = FindNode(Snapshot, PrintGuid);
	ASSERT_NE(Print, nullptr);
	TMap<FString, FString> Values;
	for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Print->Pins)
	{
		Values.Add(Pin.Pin.PinName.ToString(), Pin.Pin.DefaultValue);
	}
	EXPECT_EQ(S(Values.FindRef(TEXT("InString"))), "Hello there");
	EXPECT_EQ(S(Values.FindRef(TEXT("bPrintToScreen"))), "false");
	EXPECT_EQ(S(Values.FindRef(TEXT("Duration"))), "5");

	const TSharedPtr<FJsonObject> UnknownPin = Arguments({{TEXT("InString"), Text(TEXT("x"))}, {TEXT("Volume"), Text(TEXT("11"))}});
	ExpectAddRefused(ShowcasePath, TEXT("func::/Script/Engine.KismetSystemLibrary:PrintString"),
		"Pin default 'Volume' does not name a pin of the new node. Pins: execute, then, self, WorldContextObject, InString, bPrintToScreen, bPrintToLog, TextColor, Duration, Key",
		{{TEXT("PinDefaults"), MakeShared<FJsonValueObject>(UnknownPin)}});

	// unreal-behaviour-blueprints.md §3.5: the schema's validation text is the reason.
	const std::string Before = Describe(ShowcasePath);
	const TSharedPtr<FJsonObject> NotANumber = Arguments({{TEXT("Duration"), Text(TEXT("soon"))}});
	const std::string Refused = ErrorText(AddNode(ShowcasePath, TEXT("func::/Script/Engine.KismetSystemLibrary:PrintString"), {{TEXT("PinDefaults"), MakeShared<FJsonValueObject>(NotANumber)}}));
	EXPECT_EQ(Refused.rfind("Pin default 'Duration' was refused: ", 0), 0u) << Refused;
	EXPECT_GT(Refused.size(), std::string("Pin default 'Duration' was refused: ").size()) << Refused;
	EXPECT_EQ(Describe(ShowcasePath), Before);

	const TSharedPtr<FJsonObject> Nested = Arguments({{TEXT("InString"), MakeShared<FJsonValueObject>(MakeShared<FJsonObject>())}});
	ExpectAddRefused(ShowcasePath, TEXT("node::branch"), "PinDefaults value for 'InString' must be a string, number or boolean.", {{TEXT("PinDefaults"), MakeShared<FJsonValueObject>(Nested)}});
	ExpectAddRefused(ShowcasePath, TEXT("node::branch"), "PinDefaults must be an object of pin default values keyed by pin name.",
		{{TEXT("PinDefaults"), MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>{Text(TEXT("Condition"))})}});
}

TEST_F(FBlueprintNodeToolsTest, AnswersCarryTheHelperPinsOfCastsAndVariables)
{
	const TSharedPtr<FJsonObject> Answer = Ok(AddNode(ShowcasePath, TEXT("cast::/Script/Engine.Pawn"), {{TEXT("NodeName"), Text(TEXT("PawnCheck"))}}));
	EXPECT_EQ(Keys(Answer), (std::vector<std::string>{"asset_path", "node_guid", "node_pos_x", "node_pos_y", "add_result", "node_name"}));
	EXPECT_EQ(S(Answer->GetStringField(TEXT("asset_path"))), S(ShowcasePath));
	EXPECT_EQ(S(Answer->GetStringField(TEXT("node_name"))), "PawnCheck");
	const TSharedPtr<FJsonObject> Cast = Answer->GetObjectField(TEXT("add_result"));
	EXPECT_EQ(Keys(Cast), (std::vector<std::string>{"success", "node_guid", "title", "spawner_id", "node_pos_x", "node_pos_y", "cast_result_pin", "cast_source_pin",
		"valid_cast_pin", "invalid_cast_pin"}));
	// unreal-behaviour-blueprints.md §2.4: then, CastFailed, Object, As<display name>.
	EXPECT_EQ(S(Cast->GetStringField(TEXT("cast_result_pin"))), "AsPawn");
	EXPECT_EQ(S(Cast->GetStringField(TEXT("cast_source_pin"))), "Object");
	EXPECT_EQ(S(Cast->GetStringField(TEXT("valid_cast_pin"))), "then");
	EXPECT_EQ(S(Cast->GetStringField(TEXT("invalid_cast_pin"))), "CastFailed");
	EXPECT_EQ(S(Ok(AddNode(ShowcasePath, TEXT("node::branch")))->GetStringField(TEXT("node_name"))), "MCPAddedNode");

	const TSharedPtr<FJsonObject> Set = Ok(AddNode(ShowcasePath, TEXT("var_set::health")))->GetObjectField(TEXT("add_result"));
	EXPECT_EQ(Keys(Set), (std::vector<std::string>{"success", "node_guid", "title", "spawner_id", "node_pos_x", "node_pos_y", "variable_name", "variable_scope",
		"variable_owner_class_path", "variable_value_pin", "variable_target_pin", "variable_exec_input_pin", "variable_exec_output_pin"}));
	EXPECT_EQ(S(Set->GetStringField(TEXT("variable_name"))), "Health");
	EXPECT_EQ(S(Set->GetStringField(TEXT("variable_scope"))), "self");
	EXPECT_EQ(S(Set->GetStringField(TEXT("variable_value_pin"))), "Health");
	EXPECT_EQ(S(Set->GetStringField(TEXT("variable_target_pin"))), "self");
	EXPECT_EQ(S(Set->GetStringField(TEXT("variable_exec_input_pin"))), "execute");
	EXPECT_EQ(S(Set->GetStringField(TEXT("variable_exec_output_pin"))), "then");

	const TSharedPtr<FJsonObject> External = Ok(AddNode(ShowcasePath, TEXT("var_get::Tags:/Script/Engine.Actor")))->GetObjectField(TEXT("add_result"));
	EXPECT_EQ(S(External->GetStringField(TEXT("variable_scope"))), "external");
	EXPECT_EQ(S(External->GetStringField(TEXT("variable_owner_class_path"))), "/Script/Engine.Actor");
	EXPECT_EQ(S(External->GetStringField(TEXT("variable_exec_input_pin"))), "");
	EXPECT_FALSE(External->HasField(TEXT("component_reference")));

	// Construction-script components are the Blueprint's own variables too.
	const TSharedPtr<FJsonObject> Boom = Ok(AddNode(ShowcasePath, TEXT("var_get::CameraBoom")))->GetObjectField(TEXT("add_result"));
	EXPECT_EQ(S(Boom->GetStringField(TEXT("variable_value_pin"))), "CameraBoom");
	const TSharedPtr<FJsonObject> Component = Boom->GetObjectField(TEXT("component_reference"));
	EXPECT_EQ(S(Component->GetStringField(TEXT("component_name"))), "CameraBoom");
	EXPECT_EQ(S(Component->GetStringField(TEXT("component_class_path"))), "/Script/Engine.SpringArmComponent");
	EXPECT_TRUE(Component->GetBoolField(TEXT("construction_script_component")));
}

TEST_F(FBlueprintNodeToolsTest, AddNodeReadsBadArgumentTypesAsTheirDefaults)
{
	// A number where a text is expected is read as its text; an object as absent.
	ExpectAddRefused(ShowcasePath, TEXT("5"), "Unsupported native spawner id: 5");
	const TSharedPtr<FJsonObject> Args = Arguments({{TEXT("BlueprintNameOrPath"), Text(ShowcasePath)}, {TEXT("SpawnerId"), MakeShared<FJsonValueObject>(MakeShared<FJsonObject>())}});
	EXPECT_EQ(ErrorText(Runner->Call(TEXT("blueprint_add_node"), Args)), "SpawnerId is required.");
	EXPECT_EQ(ErrorText(AddNode(TEXT(""), TEXT("node::branch"))), "Blueprint asset path is empty.");
	EXPECT_EQ(ErrorText(AddNode(TEXT("/Game/Nowhere/BP_Nothing"), TEXT("node::branch"))), "Could not load Blueprint: /Game/Nowhere/BP_Nothing.BP_Nothing");

	const TSharedPtr<FJsonObject> Placed = Ok(AddNode(ShowcasePath, TEXT("node::branch"), {{TEXT("NodePosX"), MakeShared<FJsonValueObject>(MakeShared<FJsonObject>())}, {TEXT("NodePosY"), Text(TEXT("abc"))}}));
	EXPECT_EQ(Placed->GetNumberField(TEXT("node_pos_x")), 0);
	EXPECT_EQ(Placed->GetNumberField(TEXT("node_pos_y")), 0);
}
