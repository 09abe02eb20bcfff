// The simulated action catalogue and spawning through the port: menu names, categories, keywords
// and purity of known library functions, a Blueprint's own actions, template pins that touch
// nothing, event spawners reusing or replacing nodes, and refused spawns that leave the graph as
// it was.
#include "SimulatedBlueprintEditTestSupport.h"

using namespace ZorvekBlueprintEditTests;

namespace
{
	const FZorvekMCPBridgeNodeAction* FindAction(const TArray<FZorvekMCPBridgeNodeAction>& Actions, EZorvekMCPBridgeNodeSpawnKind Kind, const TCHAR* Name, const TCHAR* ClassPath = nullptr)
	{
		for (const FZorvekMCPBridgeNodeAction& Action : Actions)
		{
			const FZorvekMCPBridgeNodeSpawnRequest& Request = Action.Request;
			const FString Named = !Request.FunctionName.IsEmpty() ? Request.FunctionName
				: (!Request.VariableName.IsEmpty() ? Request.VariableName : (!Request.EventName.IsEmpty() ? Request.EventName : (!Request.KeyName.IsEmpty() ? Request.KeyName : (!Request.MacroName.IsEmpty() ? Request.MacroName : Request.ClassPath))));
			if (Request.Kind == Kind && Named == Name && (!ClassPath || Request.ClassPath == ClassPath))
			{
				return &Action;
			}
		}
		return nullptr;
	}

	std::string Describe(const FZorvekMCPBridgeNodeAction* Action)
	{
		if (!Action)
		{
			return "missing";
		}
		return S(Action->Title + TEXT(" | ") + Action->Category + TEXT(" | ") + Action->Keywords) + (Action->bPure ? " pure" : "") + (Action->bLatent ? " latent" : "")
			+ (Action->bFromBlueprint ? " own" : "");
	}

	FZorvekMCPBridgeNodeSpawnRequest Request(EZorvekMCPBridgeNodeSpawnKind Kind)
	{
		FZorvekMCPBridgeNodeSpawnRequest Result;
		Result.Kind = Kind;
		return Result;
	}

	size_t CountNodes(const FEditFixture& Fixture)
	{
		FZorvekMCPBridgeBlueprintSnapshot Snapshot;
		EXPECT_TRUE(Fixture.Blueprints().ReadBlueprint(Fixture.Handle(), Snapshot));
		size_t Count = 0;
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
		{
			Count += (size_t)Graph.Nodes.Num();
		}
		return Count;
	}
}

// unreal-behaviour-blueprints.md §9.2, §9.4, §8, §7.3
TEST(SimulatedBlueprintActions, LibraryActionsCarryTheSpawnersMenuData)
{
	FEditFixture Fixture;
	TArray<FZorvekMCPBridgeNodeAction> Actions;
	Fixture.Blueprints().GetNodeActions(FZorvekMCPBridgeObjectHandle(), Actions);
	using EKind = EZorvekMCPBridgeNodeSpawnKind;
	EXPECT_EQ(Describe(FindAction(Actions, EKind::CallFunction, TEXT("PrintString"))), "Print String | Development | log print");
	EXPECT_EQ(Describe(FindAction(Actions, EKind::CallFunction, TEXT("Add_IntInt"))), "int + int | Math|Integer | + add plus pure");
	EXPECT_EQ(Describe(FindAction(Actions, EKind::CallFunction, TEXT("Delay"))), "Delay | Utilities|FlowControl | sleep latent");
	// No Keywords metadata gives " ", as GetKeywordsForFunction does.
	EXPECT_EQ(Describe(FindAction(Actions, EKind::CallFunction, TEXT("Jump"))), "Jump | Character |  ");
	EXPECT_EQ(Describe(FindAction(Actions, EKind::Event, TEXT("ReceiveBeginPlay"), TEXT("/Script/Engine.Actor"))), "Event BeginPlay | Add Event |  ");
	EXPECT_EQ(Describe(FindAction(Actions, EKind::Event, TEXT("ReceiveActorBeginOverlap"))), "Event ActorBeginOverlap | Add Event|Collision |  ");
	EXPECT_EQ(FindAction(Actions, EKind::Event, TEXT("UserConstructionScript")), nullptr) << "internal-use functions are no actions";
	EXPECT_EQ(Describe(FindAction(Actions, EKind::DynamicCast, TEXT("/Script/Engine.Character"))), "Cast To Character | Utilities|Casting |  ");
	EXPECT_EQ(FindAction(Actions, EKind::DynamicCast, TEXT("/Script/Engine.KismetSystemLibrary")), nullptr) << "function libraries are not cast targets";
	EXPECT_EQ(Describe(FindAction(Actions, EKind::VariableSet, TEXT("MaxWalkSpeed"))), "Set Max Walk Speed | Variables |  ");
	EXPECT_EQ(FindAction(Actions, EKind::VariableSet, TEXT("Mesh")), nullptr) << "read-only properties have no Set action";
	EXPECT_EQ(Describe(FindAction(Actions, EKind::MacroInstance, TEXT("DoOnce"))), "Do Once | Utilities|Flow Control |  ");
	EXPECT_EQ(FindAction(Actions, EKind::MacroInstance, TEXT("ForLoop")), nullptr) << "only the flow-control macros the node tools place";
	// Keys: digital bindable keys get InputKey, 1D axes the axis event, 2D axes neither.
	EXPECT_NE(FindAction(Actions, EKind::InputKey, TEXT("SpaceBar")), nullptr);
	EXPECT_EQ(FindAction(Actions, EKind::InputKey, TEXT("MouseX")), nullptr);
	EXPECT_NE(FindAction(Actions, EKind::InputAxisKeyEvent, TEXT("MouseX")), nullptr);
	EXPECT_EQ(FindAction(Actions, EKind::InputAxisKeyEvent, TEXT("Gamepad_Left2D")), nullptr);
	EXPECT_EQ(FindAction(Actions, EKind::InputKey, TEXT("Gamepad_Left2D")), nullptr);
	for (const FZorvekMCPBridgeNodeAction& Action : Actions)
	{
		ASSERT_FALSE(Action.bFromBlueprint) << S(Action.Title);
	}
}

// unreal-behaviour-blueprints.md §9.1, §9.4
TEST(SimulatedBlueprintActions, ScopedBlueprintAddsItsOwnMembers)
{
	FEditFixture Fixture;
	Fixture.AddVariable(TEXT("Health"), Fixture.Type(TEXT("int")));
	Fixture.Model->AddFunctionGraph(*Fixture.Blueprint, Fixture.Model->CreateNewGraph(*Fixture.Blueprint, TEXT("OpenDoor")));
	Fixture.Model->AddCustomEventNode(*Fixture.Graph, TEXT("OnHit"), 0, 0);
	Fixture.Model->MarkStructurallyModified(*Fixture.Blueprint);
	TArray<FZorvekMCPBridgeNodeAction> Actions;
	Fixture.Blueprints().GetNodeActions(Fixture.Handle(), Actions);
	using EKind = EZorvekMCPBridgeNodeSpawnKind;
	EXPECT_EQ(Describe(FindAction(Actions, EKind::VariableGet, TEXT("Health"))), "Get Health | Variables|Default |   pure own");
	EXPECT_EQ(Describe(FindAction(Actions, EKind::VariableSet, TEXT("Health"))), "Set Health | Variables|Default |   own");
	EXPECT_EQ(Describe(FindAction(Actions, EKind::CallBlueprintFunction, TEXT("OpenDoor"))), "Open Door | Call Function |   own");
	EXPECT_EQ(Describe(FindAction(Actions, EKind::CustomEventCall, TEXT("OnHit"))), "On Hit | Call Function |   own");
	EXPECT_EQ(Describe(FindAction(Actions, EKind::VariableGet, TEXT("DefaultSceneRoot"))), "Get Default Scene Root | Variables|Default |   pure own");
	EXPECT_EQ(FindAction(Actions, EKind::CallBlueprintFunction, TEXT("UserConstructionScript")), nullptr);
	// The Blueprint's own class is not listed again as another class's members.
	EXPECT_EQ(FindAction(Actions, EKind::CallFunction, TEXT("OpenDoor")), nullptr);
}

// unreal-behaviour-blueprints.md §2.5, §9.4
TEST(SimulatedBlueprintActions, TemplatePinsMatchThePlacedNodeAndTouchNothing)
{
	FEditFixture Fixture;
	FZorvekMCPBridgeNodeSpawnRequest Print = Request(EZorvekMCPBridgeNodeSpawnKind::CallFunction);
	Print.ClassPath = TEXT("/Script/Engine.KismetSystemLibrary");
	Print.FunctionName = TEXT("PrintString");
	const size_t NodesBefore = CountNodes(Fixture);
	TArray<FZorvekMCPBridgeGraphPinSnapshot> TemplatePins;
	ASSERT_TRUE(Fixture.Blueprints().GetNodeActionPins(Fixture.Handle(), Print, TemplatePins));
	EXPECT_EQ(CountNodes(Fixture), NodesBefore);
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);

	const FZorvekMCPBridgeNodeSpawnResult Placed = Fixture.Blueprints().SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Print, 10, 20, {});
	ASSERT_EQ(Placed.Failure, EZorvekMCPBridgeNodeSpawnFailure::None);
	ASSERT_EQ(TemplatePins.Num(), Placed.Node.Pins.Num());
	for (int32 Index = 0; Index < TemplatePins.Num(); ++Index)
	{
		EXPECT_EQ(TemplatePins[Index].Pin.PinName, Placed.Node.Pins[Index].Pin.PinName);
		EXPECT_EQ(TemplatePins[Index].Pin.DefaultValue, Placed.Node.Pins[Index].Pin.DefaultValue);
		EXPECT_EQ(TemplatePins[Index].bHidden, Placed.Node.Pins[Index].bHidden);
	}
	// The template consumed no GUID: a node placed after it gets the next one a fresh editor gives.
	FEditFixture Fresh;
	EXPECT_EQ(Placed.Node.NodeGuid, Fresh.Blueprints().SpawnNode(Fresh.Handle(), TEXT("EventGraph"), Print, 0, 0, {}).Node.NodeGuid);
	FZorvekMCPBridgeNodeSpawnRequest Unknown = Print;
	Unknown.FunctionName = TEXT("PrintBanana");
	EXPECT_FALSE(Fixture.Blueprints().GetNodeActionPins(Fixture.Handle(), Unknown, TemplatePins));
}

// unreal-behaviour-blueprints.md §1.3, §9.5
TEST(SimulatedBlueprintActions, EventSpawnerReplacesTheGhostAndThenReusesTheNode)
{
	FEditFixture Fixture;
	FZorvekMCPBridgeNodeSpawnRequest BeginPlay = Request(EZorvekMCPBridgeNodeSpawnKind::Event);
	BeginPlay.FunctionName = TEXT("receivebeginplay");
	const FString GhostGuid = Fixture.Graph->Nodes.front()->NodeGuid;
	const FZorvekMCPBridgeNodeSpawnResult First = Fixture.Blueprints().SpawnNode(Fixture.Handle(), TEXT("EventGraph"), BeginPlay, 0, 0, {});
	ASSERT_EQ(First.Failure, EZorvekMCPBridgeNodeSpawnFailure::None);
	EXPECT_FALSE(First.bReusedExistingNode);
	EXPECT_TRUE(First.Node.bEnabled);
	EXPECT_EQ(S(First.Node.Title), "Event BeginPlay");
	EXPECT_EQ(S(First.Node.Data.EventName), "ReceiveBeginPlay") << "the engine's spelling";
	EXPECT_EQ(Fixture.Graph->FindNodeByGuid(GhostGuid), nullptr);
	EXPECT_EQ(Fixture.Graph->Nodes.size(), 3u);

	const FZorvekMCPBridgeNodeSpawnResult Second = Fixture.Blueprints().SpawnNode(Fixture.Handle(), TEXT("EventGraph"), BeginPlay, 500, 500, {});
	EXPECT_TRUE(Second.bReusedExistingNode);
	EXPECT_EQ(Second.Node.NodeGuid, First.Node.NodeGuid);
	EXPECT_EQ(Second.Node.PosX, 0);
	EXPECT_EQ(Fixture.Graph->Nodes.size(), 3u);

	// Events belong in an event graph.
	const FZorvekMCPBridgeNodeSpawnResult InFunction = Fixture.Blueprints().SpawnNode(Fixture.Handle(), TEXT("UserConstructionScript"), BeginPlay, 0, 0, {});
	EXPECT_EQ(InFunction.Failure, EZorvekMCPBridgeNodeSpawnFailure::IncompatibleGraph);
}

// unreal-behaviour-blueprints.md §3.5, §7.1, §9.5
TEST(SimulatedBlueprintActions, RefusedSpawnsLeaveTheGraphAsItWas)
{
	FEditFixture Fixture;
	Fixture.AddVariable(TEXT("Health"), Fixture.Type(TEXT("int")));
	Fixture.Model->Compile(*Fixture.Blueprint);
	const size_t NodesBefore = CountNodes(Fixture);
	IZorvekMCPBridgeBlueprints& Port = Fixture.Blueprints();
	FZorvekMCPBridgeNodeSpawnRequest Add = Request(EZorvekMCPBridgeNodeSpawnKind::CallFunction);
	Add.ClassPath = TEXT("/Script/Engine.KismetMathLibrary");
	Add.FunctionName = TEXT("Add_IntInt");

	const FZorvekMCPBridgeNodeSpawnResult BadValue = Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Add, 0, 0, {{TEXT("B"), TEXT("2")}, {TEXT("A"), TEXT("two")}});
	EXPECT_EQ(BadValue.Failure, EZorvekMCPBridgeNodeSpawnFailure::InvalidPinDefault);
	EXPECT_EQ(S(BadValue.FailedPinName), "A");
	EXPECT_EQ(S(BadValue.FailureReason), "Expected a valid number for an integer property");
	const FZorvekMCPBridgeNodeSpawnResult BadPin = Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Add, 0, 0, {{TEXT("C"), TEXT("2")}});
	EXPECT_EQ(BadPin.Failure, EZorvekMCPBridgeNodeSpawnFailure::UnknownPin);
	EXPECT_EQ(S(FString::Join(BadPin.PinNames, TEXT(", "))), "self, A, B, ReturnValue");
	FZorvekMCPBridgeNodeSpawnRequest Key = Request(EZorvekMCPBridgeNodeSpawnKind::InputKey);
	Key.KeyName = TEXT("NoSuchKey");
	EXPECT_EQ(Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Key, 0, 0, {}).Failure, EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
	EXPECT_EQ(Port.SpawnNode(Fixture.Handle(), TEXT("NoGraph"), Add, 0, 0, {}).Failure, EZorvekMCPBridgeNodeSpawnFailure::GraphNotFound);
	FZorvekMCPBridgeNodeSpawnRequest Missing = Request(EZorvekMCPBridgeNodeSpawnKind::VariableGet);
	Missing.VariableName = TEXT("Mana");
	EXPECT_EQ(Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Missing, 0, 0, {}).Failure, EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
	EXPECT_EQ(CountNodes(Fixture), NodesBefore);
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);

	// Accepted defaults are set; names are matched without regard to case and kept in the
	// engine's spelling.
	const FZorvekMCPBridgeNodeSpawnResult Good = Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Add, 0, 0, {{TEXT("a"), TEXT("5")}});
	ASSERT_EQ(Good.Failure, EZorvekMCPBridgeNodeSpawnFailure::None);
	EXPECT_EQ(S(Good.Node.Pins[1].Pin.DefaultValue), "5");
	FZorvekMCPBridgeNodeSpawnRequest Get = Request(EZorvekMCPBridgeNodeSpawnKind::VariableGet);
	Get.VariableName = TEXT("HEALTH");
	const FZorvekMCPBridgeNodeSpawnResult Health = Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Get, 0, 0, {});
	EXPECT_EQ(S(Health.Node.Data.VariableName), "Health");
	EXPECT_EQ(S(Health.Node.Title), "Get Health");
	Key.KeyName = TEXT("spacebar");
	EXPECT_EQ(S(Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Key, 0, 0, {}).Node.Data.KeyName), "SpaceBar");
}

// unreal-behaviour-blueprints.md §3.1, §4.1, §4.3
TEST(SimulatedBlueprintActions, PortConnectsAndCompilesWithSeverityWords)
{
	FEditFixture Fixture;
	IZorvekMCPBridgeBlueprints& Port = Fixture.Blueprints();
	FZorvekMCPBridgeNodeSpawnRequest BeginPlay = Request(EZorvekMCPBridgeNodeSpawnKind::Event);
	BeginPlay.FunctionName = TEXT("ReceiveBeginPlay");
	FZorvekMCPBridgeNodeSpawnRequest Cast = Request(EZorvekMCPBridgeNodeSpawnKind::DynamicCast);
	Cast.ClassPath = TEXT("/Script/Engine.Pawn");
	const FString EventGuid = Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), BeginPlay, 0, 0, {}).Node.NodeGuid;
	const FString CastGuid = Port.SpawnNode(Fixture.Handle(), TEXT("EventGraph"), Cast, 300, 0, {}).Node.NodeGuid;
	const FZorvekMCPBridgeConnectResult Refused = Port.TryCreateConnection(Fixture.Handle(), TEXT("EventGraph"),
		{EventGuid, FName(TEXT("then")), EZorvekMCPBridgePinDirection::Output}, {CastGuid, FName(TEXT("Object")), EZorvekMCPBridgePinDirection::Input});
	EXPECT_FALSE(Refused.bConnected);
	EXPECT_EQ(Refused.Response, EZorvekMCPBridgeConnectResponse::Disallow);
	EXPECT_EQ(S(Refused.Message), "You can only cast objects/interfaces.");
	const FZorvekMCPBridgeConnectResult Made = Port.TryCreateConnection(Fixture.Handle(), TEXT("EventGraph"),
		{EventGuid, FName(TEXT("then")), EZorvekMCPBridgePinDirection::Output}, {CastGuid, FName(TEXT("execute")), EZorvekMCPBridgePinDirection::Input});
	EXPECT_TRUE(Made.bConnected);
	EXPECT_EQ(Made.Response, EZorvekMCPBridgeConnectResponse::Make);

	const FZorvekMCPBridgeCompileResult Compiled = Port.Compile(Fixture.Handle(), 32);
	EXPECT_EQ(Compiled.NumErrors, 1);
	ASSERT_EQ(Compiled.Messages.Num(), 1);
	EXPECT_EQ(S(Compiled.Messages[0].SeverityText), "Error");
	EXPECT_EQ(Compiled.Messages[0].Severity, EZorvekMCPBridgeCompileSeverity::Error);
	FZorvekMCPBridgeBlueprintSnapshot Snapshot;
	ASSERT_TRUE(Port.ReadBlueprint(Fixture.Handle(), Snapshot));
	EXPECT_EQ(Snapshot.Status, EZorvekMCPBridgeBlueprintStatus::Error);
}
