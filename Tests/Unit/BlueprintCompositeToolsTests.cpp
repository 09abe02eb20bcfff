// blueprint_add_component_motion and blueprint_add_dynamic_material_parameter_update on the
// simulated editor: the graphs they build read back node by node and compile to up_to_date, the
// ghost events they replace, events that already run something keep their chain, a second call
// reuses its variables, every refusal leaves the Blueprint as it was, and a step the editor refuses
// halfway takes back what the call had added.
#include "BlueprintNodeTestSupport.h"
#include "SimulatedBlueprintPort.h"

using namespace ZorvekAssetTests;
using namespace ZorvekBlueprintNodeTests;

namespace
{
	const TCHAR* const CompositeMotionTool = TEXT("blueprint_add_component_motion");
	const TCHAR* const CompositeMaterialTool = TEXT("blueprint_add_dynamic_material_parameter_update");
	const TCHAR* const CompositeHeroPath = TEXT("/Game/NodeTests/BP_Hero.BP_Hero");

	// A Blueprint port that refuses every link into one pin name, to make a step fail after the
	// call has begun changing the Blueprint.
	class FCompositeRefusingBlueprints : public FSimulatedBlueprintPort
	{
	public:
		using FSimulatedBlueprintPort::FSimulatedBlueprintPort;

		FZorvekMCPBridgeConnectResult TryCreateConnection(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName, const FZorvekMCPBridgePinReference& PinA,
			const FZorvekMCPBridgePinReference& PinB) override
		{
			if (PinB.PinName == RefusedTargetPin)
			{
				return FZorvekMCPBridgeConnectResult();
			}
			return FSimulatedBlueprintPort::TryCreateConnection(Blueprint, GraphName, PinA, PinB);
		}

		FName RefusedTargetPin;
	};

	class FCompositeRefusingPort : public FSimulatedEditorPort
	{
	public:
		explicit FCompositeRefusingPort(const TSharedPtr<FSimulatedEditor>& InEditor)
			: FSimulatedEditorPort(InEditor)
			, Refusing(GetEditor(), GetSimulatedAssetAuthoring())
		{
		}

		IZorvekMCPBridgeBlueprints& GetBlueprints() override { return Refusing; }

		FCompositeRefusingBlueprints Refusing;
	};
}

class FBlueprintCompositeToolsTest : public FBlueprintNodeToolsTest
{
protected:
	void SetUp() override
	{
		FBlueprintNodeToolsTest::SetUp();
		AddBody();
	}

	// A cube 50 above the root: the base location of bob and orbit.
	void AddBody()
	{
		Ok(CallOn(FreshPath, TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ComponentClassPath"), Text(TEXT("StaticMeshComponent"))},
			{TEXT("PrimitiveShape"), Text(TEXT("Cube"))}, {TEXT("Properties"), MakeShared<FJsonValueObject>(Arguments({{TEXT("RelativeLocation"), Text(TEXT("(X=0,Y=0,Z=50)"))}}))}}));
	}

	TSharedPtr<FJsonObject> Motion(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields, const TCHAR* Blueprint = FreshPath)
	{
		return CallOn(Blueprint, CompositeMotionTool, Fields);
	}

	TSharedPtr<FJsonObject> Material(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields, const TCHAR* Blueprint = FreshPath)
	{
		return CallOn(Blueprint, CompositeMaterialTool, Fields);
	}

	// The GUID of the answer's node under the plan's key.
	static FString NodeOf(const TSharedPtr<FJsonObject>& Answer, const TCHAR* Key)
	{
		for (const TSharedPtr<FJsonValue>& Node : Answer->GetArrayField(TEXT("nodes")))
		{
			if (Node->AsObject()->GetStringField(TEXT("key")) == Key)
			{
				return Node->AsObject()->GetStringField(TEXT("node_guid"));
			}
		}
		ADD_FAILURE() << "no node " << S(Key);
		return FString();
	}

	static std::string StatusOf(const TSharedPtr<FJsonObject>& Answer)
	{
		return S(Answer->GetObjectField(TEXT("compile"))->GetStringField(TEXT("status")));
	}

	// The enabled and disabled event nodes of one event function in the Blueprint.
	std::vector<bool> EventNodes(const TCHAR* Blueprint, const TCHAR* EventName) const
	{
		std::vector<bool> Enabled;
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Read(Blueprint).Graphs)
		{
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				if (Node.Kind == EZorvekMCPBridgeNodeKind::Event && Node.Data.EventName == EventName)
				{
					Enabled.push_back(Node.bEnabled);
				}
			}
		}
		return Enabled;
	}

	std::string VariableDefault(const TCHAR* Blueprint, const TCHAR* Name) const
	{
		for (const FZorvekMCPBridgeVariableSnapshot& Variable : Read(Blueprint).Variables)
		{
			if (Variable.VarName == FName(Name))
			{
				return S(Variable.DefaultValue);
			}
		}
		return "<missing>";
	}

	std::string PinDefault(const TCHAR* Blueprint, const FString& NodeGuid, const TCHAR* PinName) const
	{
		const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(Blueprint);
		const FZorvekMCPBridgeNodeSnapshot* Node = FindNode(Snapshot, NodeGuid);
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node ? Node->Pins : TArray<FZorvekMCPBridgeGraphPinSnapshot>())
		{
			if (Pin.Pin.PinName == FName(PinName))
			{
				return S(Pin.Pin.DefaultValue);
			}
		}
		return "<no pin>";
	}

	// Refused with the message, and the Blueprint read back as it was, status included.
	void ExpectRefusedUnchanged(const TCHAR* Tool, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields, const std::string& Message,
		const TCHAR* Blueprint = FreshPath)
	{
		const std::string Before = Describe(Blueprint);
		const int32 VariablesBefore = Read(Blueprint).Variables.Num();
		const EZorvekMCPBridgeBlueprintStatus StatusBefore = Read(Blueprint).Status;
		EXPECT_EQ(ErrorText(CallOn(Blueprint, Tool, Fields)), Message);
		EXPECT_EQ(Describe(Blueprint), Before) << Message;
		EXPECT_EQ(Read(Blueprint).Variables.Num(), VariablesBefore) << Message;
		EXPECT_EQ(Read(Blueprint).Status, StatusBefore) << Message;
	}
};

// ---- blueprint_add_component_motion ----

TEST_F(FBlueprintCompositeToolsTest, RotateReplacesTheGhostTickAndCompilesUpToDate)
{
	// A new Actor Blueprint's Tick is a disabled ghost (unreal-behaviour-blueprints.md §1.3).
	EXPECT_EQ(EventNodes(FreshPath, TEXT("ReceiveTick")), std::vector<bool>{false});
	const TSharedPtr<FJsonObject> Answer = Ok(Motion({{TEXT("ComponentName"), Text(TEXT("body"))}}));
	EXPECT_EQ(S(Answer->GetStringField(TEXT("component_name"))), "Body");
	EXPECT_EQ(S(Answer->GetStringField(TEXT("motion_type"))), "Rotate");
	EXPECT_EQ(StatusOf(Answer), "up_to_date");
	EXPECT_EQ(Read(FreshPath).Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
	// Placing the event from the action menu deletes the ghost (§9.5): one enabled Tick remains.
	EXPECT_EQ(EventNodes(FreshPath, TEXT("ReceiveTick")), std::vector<bool>{true});
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyRotationSpeed")), "90.000000");

	const FString Tick = NodeOf(Answer, TEXT("Tick"));
	const FString Step = NodeOf(Answer, TEXT("Step"));
	const FString Rotator = NodeOf(Answer, TEXT("Rotator"));
	const FString Move = NodeOf(Answer, TEXT("Move"));
	EXPECT_EQ(LinksOf(FreshPath, Move, TEXT("execute")), std::vector<std::string>{S(Tick + TEXT(".then"))});
	EXPECT_EQ(LinksOf(FreshPath, Step, TEXT("B")), std::vector<std::string>{S(Tick + TEXT(".DeltaSeconds"))});
	// Z turns the yaw; the other two stay at their defaults.
	EXPECT_EQ(LinksOf(FreshPath, Rotator, TEXT("Yaw")), std::vector<std::string>{S(Step + TEXT(".ReturnValue"))});
	EXPECT_TRUE(LinksOf(FreshPath, Rotator, TEXT("Roll")).empty());
	EXPECT_EQ(LinksOf(FreshPath, Move, TEXT("self")), std::vector<std::string>{S(NodeOf(Answer, TEXT("Component")) + TEXT(".Body"))});

	const TSharedPtr<FJsonObject> Next = Answer->GetArrayField(TEXT("recommended_next_tools"))[0]->AsObject();
	EXPECT_EQ(S(Next->GetStringField(TEXT("tool"))), "blueprint_read_graph");
	EXPECT_EQ(S(Next->GetObjectField(TEXT("arguments"))->GetStringField(TEXT("BlueprintNameOrPath"))), S(FreshPath));
	EXPECT_EQ(S(Next->GetObjectField(TEXT("arguments"))->GetStringField(TEXT("GraphName"))), "EventGraph");
}

TEST_F(FBlueprintCompositeToolsTest, BobAndOrbitShareTheBaseLocationAndChainThroughASequence)
{
	const TSharedPtr<FJsonObject> Bob = Ok(Motion({{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("MotionType"), Text(TEXT("bob"))},
		{TEXT("Amplitude"), Number(35)}}));
	EXPECT_EQ(StatusOf(Bob), "up_to_date");
	// The template's relative location, in the form a vector variable keeps its default.
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyBaseLocation")), "0.000000,0.000000,50.000000");
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyBobAmplitude")), "35.000000");
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyBobSpeed")), "0.500000");
	const FString BobOffset = NodeOf(Bob, TEXT("Offset"));
	EXPECT_EQ(LinksOf(FreshPath, BobOffset, TEXT("Z")), std::vector<std::string>{S(NodeOf(Bob, TEXT("Height")) + TEXT(".ReturnValue"))});
	EXPECT_EQ(PinDefault(FreshPath, NodeOf(Bob, TEXT("Angle")), TEXT("B")), "6.283185");

	// The second line on the same Tick: its exec output already runs the bob, so a Sequence keeps
	// the bob on then_0 and runs the orbit on then_1.
	const TSharedPtr<FJsonObject> Orbit = Ok(Motion({{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("MotionType"), Text(TEXT("Orbit"))},
		{TEXT("Axis"), Text(TEXT("x"))}, {TEXT("Speed"), Text(TEXT("-30"))}}));
	EXPECT_EQ(StatusOf(Orbit), "up_to_date");
	const TArray<TSharedPtr<FJsonValue>> Variables = Orbit->GetArrayField(TEXT("variables"));
	ASSERT_EQ(Variables.Num(), 3);
	EXPECT_EQ(S(Variables[2]->AsObject()->GetStringField(TEXT("name"))), "BodyBaseLocation");
	EXPECT_FALSE(Variables[2]->AsObject()->GetBoolField(TEXT("created")));
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyOrbitSpeed")), "-30.000000");
	int32 BaseLocations = 0;
	for (const FZorvekMCPBridgeVariableSnapshot& Variable : Read(FreshPath).Variables)
	{
		BaseLocations += Variable.VarName == FName(TEXT("BodyBaseLocation")) ? 1 : 0;
	}
	EXPECT_EQ(BaseLocations, 1);

	const TSharedPtr<FJsonObject> Line = Orbit->GetArrayField(TEXT("event_lines"))[0]->AsObject();
	EXPECT_TRUE(Line->GetBoolField(TEXT("through_sequence")));
	const FString Tick = NodeOf(Bob, TEXT("Tick"));
	EXPECT_EQ(S(Line->GetStringField(TEXT("event_node_guid"))), S(Tick));
	const FString Sequence = Line->GetStringField(TEXT("sequence_node_guid"));
	EXPECT_EQ(LinksOf(FreshPath, Tick, TEXT("then")), std::vector<std::string>{S(Sequence + TEXT(".execute"))});
	EXPECT_EQ(LinksOf(FreshPath, Sequence, TEXT("then_0")), std::vector<std::string>{S(NodeOf(Bob, TEXT("Move")) + TEXT(".execute"))});
	EXPECT_EQ(LinksOf(FreshPath, Sequence, TEXT("then_1")), std::vector<std::string>{S(NodeOf(Orbit, TEXT("Move")) + TEXT(".execute"))});
	// About X the orbit turns in the Y-Z plane: cosine on Y, sine on Z, nothing on X.
	const FString OrbitOffset = NodeOf(Orbit, TEXT("Offset"));
	EXPECT_EQ(LinksOf(FreshPath, OrbitOffset, TEXT("Y")), std::vector<std::string>{S(NodeOf(Orbit, TEXT("CosineOffset")) + TEXT(".ReturnValue"))});
	EXPECT_EQ(LinksOf(FreshPath, OrbitOffset, TEXT("Z")), std::vector<std::string>{S(NodeOf(Orbit, TEXT("SineOffset")) + TEXT(".ReturnValue"))});
	EXPECT_TRUE(LinksOf(FreshPath, OrbitOffset, TEXT("X")).empty());
	EXPECT_EQ(PinDefault(FreshPath, NodeOf(Orbit, TEXT("Angle")), TEXT("B")), "0.017453");
}

TEST_F(FBlueprintCompositeToolsTest, AnExistingTickKeepsItsChainAndASecondCallKeepsTheVariableValue)
{
	// BP_Showcase's Tick runs a Branch.
	const FZorvekMCPBridgeBlueprintSnapshot Before = Read(ShowcasePath);
	FString TickGuid;
	FString BranchGuid;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : Before.Graphs.FindByPredicate([](const FZorvekMCPBridgeGraphSnapshot& Graph) { return Graph.Name == TEXT("EventGraph"); })->Nodes)
	{
		TickGuid = Node.Data.EventName == TEXT("ReceiveTick") ? Node.NodeGuid : TickGuid;
		BranchGuid = Node.Kind == EZorvekMCPBridgeNodeKind::Branch ? Node.NodeGuid : BranchGuid;
	}
	const TSharedPtr<FJsonObject> First = Ok(Motion({{TEXT("ComponentName"), Text(TEXT("Marker"))}, {TEXT("Speed"), Number(30)}, {TEXT("Compile"), Text(TEXT("false"))}},
		ShowcasePath));
	EXPECT_FALSE(First->GetObjectField(TEXT("compile"))->GetBoolField(TEXT("compiled")));
	EXPECT_EQ(S(First->GetArrayField(TEXT("recommended_next_tools"))[1]->AsObject()->GetStringField(TEXT("tool"))), "blueprint_compile");
	// The existing Tick is not placed again: the event line names it.
	const TSharedPtr<FJsonObject> Line = First->GetArrayField(TEXT("event_lines"))[0]->AsObject();
	EXPECT_EQ(S(Line->GetStringField(TEXT("event_node_guid"))), S(TickGuid));
	const FString Sequence = Line->GetStringField(TEXT("sequence_node_guid"));
	EXPECT_EQ(LinksOf(ShowcasePath, Sequence, TEXT("then_0")), std::vector<std::string>{S(BranchGuid + TEXT(".execute"))});
	EXPECT_EQ(LinksOf(ShowcasePath, TickGuid, TEXT("then")), std::vector<std::string>{S(Sequence + TEXT(".execute"))});

	// Again with another speed: the variable is reused as it is, not duplicated or reset.
	const TSharedPtr<FJsonObject> Second = Ok(Motion({{TEXT("ComponentName"), Text(TEXT("Marker"))}, {TEXT("Speed"), Number(45)}}, ShowcasePath));
	const TSharedPtr<FJsonObject> Speed = Second->GetArrayField(TEXT("variables"))[0]->AsObject();
	EXPECT_FALSE(Speed->GetBoolField(TEXT("created")));
	EXPECT_EQ(S(Speed->GetStringField(TEXT("default_value"))), "30.000000");
	EXPECT_EQ(Read(ShowcasePath).Variables.Num(), Before.Variables.Num() + 1);
}

TEST_F(FBlueprintCompositeToolsTest, InheritedComponentsMoveAndOtherKindsAreRefused)
{
	Ok(Runner->Call(TEXT("blueprint_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/NodeTests"))}, {TEXT("AssetName"), Text(TEXT("BP_Hero"))},
		{TEXT("ParentClassPath"), Text(TEXT("/Script/Engine.Character"))}})));
	const TSharedPtr<FJsonObject> Answer = Ok(Motion({{TEXT("ComponentName"), Text(TEXT("Mesh"))}, {TEXT("MotionType"), Text(TEXT("Bob"))}}, CompositeHeroPath));
	EXPECT_EQ(StatusOf(Answer), "up_to_date");
	const TArray<TSharedPtr<FJsonValue>> Nodes = Answer->GetArrayField(TEXT("nodes"));
	const TSharedPtr<FJsonValue>* Component = Nodes.FindByPredicate([](const TSharedPtr<FJsonValue>& Node) { return Node->AsObject()->GetStringField(TEXT("key")) == TEXT("Component"); });
	ASSERT_NE(Component, nullptr);
	EXPECT_EQ(S((*Component)->AsObject()->GetStringField(TEXT("spawner_id"))), "var_get::Mesh:/Script/Engine.Character");
	// An inherited component has no template here: the base location starts at zero.
	EXPECT_EQ(VariableDefault(CompositeHeroPath, TEXT("MeshBaseLocation")), "0.000000,0.000000,0.000000");

	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("CharacterMovement"))}},
		"Component 'CharacterMovement' is a /Script/Engine.CharacterMovementComponent, not a scene component (only scene components have a transform to move).", CompositeHeroPath);
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("CameraBoom"))}, {TEXT("ParameterName"), Text(TEXT("Glow"))}},
		"Component 'CameraBoom' is a /Script/Engine.SpringArmComponent, not a primitive component (only primitive components have material slots).", ShowcasePath);
}

TEST_F(FBlueprintCompositeToolsTest, MotionRefusalsLeaveTheBlueprintAsItWas)
{
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("MotionType"), Text(TEXT("Spin"))}},
		"MotionType 'Spin' is not known; use Rotate, Bob or Orbit.");
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("Axis"), Text(TEXT("W"))}}, "Axis 'W' is not known; use X, Y or Z.");
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("Speed"), Text(TEXT("fast"))}}, "Speed must be a number.");
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("Speed"), Text(TEXT("inf"))}}, "Speed must be a finite number.");
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("MotionType"), Text(TEXT("Bob"))}, {TEXT("Amplitude"), Number(-5)}},
		"Amplitude must not be negative.");
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Wheel"))}},
		"Component 'Wheel' was not found in /Game/NodeTests/BP_Fresh.BP_Fresh. Its components: Body");
	Ok(CallOn(FreshPath, TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Text(TEXT("Helper"))}}));
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("GraphName"), Text(TEXT("Helper"))}},
		"Graph 'Helper' in /Game/NodeTests/BP_Fresh.BP_Fresh is not an event graph; events can only be added to event graphs.");
	// A variable of the name the motion needs but of another type.
	Ok(CallOn(FreshPath, TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("BodyRotationSpeed"))}, {TEXT("Type"), Text(TEXT("bool"))}}));
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}},
		"Variable 'BodyRotationSpeed' already exists as bool; this call needs it as double. Rename or remove it, or pick another component.");
	// Tick lives in EventGraph; a line in another event graph could not be wired to it.
	Ok(Motion({{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("MotionType"), Text(TEXT("Bob"))}}));
	Ok(CallOn(FreshPath, TEXT("blueprint_create_event_graph"), {{TEXT("GraphName"), Text(TEXT("Motion"))}}));
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("MotionType"), Text(TEXT("Orbit"))}, {TEXT("GraphName"), Text(TEXT("Motion"))}},
		"The Event Tick event of /Game/NodeTests/BP_Fresh.BP_Fresh is in graph 'EventGraph'; call again with GraphName 'EventGraph'.");
	ExpectRefusedUnchanged(CompositeMotionTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}}, "/Game/Interfaces/BPI_Interactable.BPI_Interactable is not an Actor Blueprint; only Actor Blueprints have components to work on.",
		TEXT("/Game/Interfaces/BPI_Interactable.BPI_Interactable"));
}

TEST_F(FBlueprintCompositeToolsTest, ARefusedLinkTakesBackEveryNodeAndVariableTheCallAdded)
{
	// The same fixture on an editor whose port refuses links into DeltaRotation.
	TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
	FString LoadError;
	ASSERT_TRUE(Editor->LoadProjectFile(GetSimulatedSampleProjectFile(), LoadError)) << S(LoadError);
	TSharedPtr<FCompositeRefusingPort> Refusing = MakeShared<FCompositeRefusingPort>(Editor);
	Refusing->Refusing.RefusedTargetPin = FName(TEXT("DeltaRotation"));
	Port = Refusing;
	Runner = MakeUnique<FToolRunner>(Port);
	Ok(Runner->Call(TEXT("blueprint_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/NodeTests"))}, {TEXT("AssetName"), Text(TEXT("BP_Fresh"))}})));
	AddBody();
	// An enabled Tick that runs something: after the refusal it runs the same node again.
	const FString Tick = AddNodeGuid(FreshPath, TEXT("event::ReceiveTick"));
	const FString Print = AddNodeGuid(FreshPath, TEXT("func::/Script/Engine.KismetSystemLibrary:PrintString"));
	Ok(Connect(FreshPath, Tick, TEXT("then"), Print, TEXT("execute")));
	const std::string Before = Describe(FreshPath);
	const int32 VariablesBefore = Read(FreshPath).Variables.Num();

	TSharedPtr<FJsonObject> Args = Arguments({{TEXT("BlueprintNameOrPath"), Text(FreshPath)}, {TEXT("ComponentName"), Text(TEXT("Body"))}});
	const TSharedPtr<FJsonObject> Result = Runner->Call(CompositeMotionTool, Args);
	EXPECT_TRUE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Answer = FToolRunner::Payload(Result);
	ASSERT_TRUE(Answer.IsValid());
	EXPECT_EQ(S(Answer->GetStringField(TEXT("failed_step"))), "connect");
	EXPECT_TRUE(Answer->GetBoolField(TEXT("blueprint_unchanged")));
	EXPECT_EQ(Describe(FreshPath), Before);
	EXPECT_EQ(Read(FreshPath).Variables.Num(), VariablesBefore);
	int32 RollBacks = 0;
	for (const TSharedPtr<FJsonValue>& Step : Answer->GetArrayField(TEXT("steps")))
	{
		RollBacks += Step->AsObject()->GetStringField(TEXT("step")) == TEXT("roll_back") && Step->AsObject()->GetBoolField(TEXT("success")) ? 1 : 0;
	}
	// Speed, multiply, Make Rotator, AddLocalRotation and the component Get, then the variable.
	EXPECT_EQ(RollBacks, 6);
}

// ---- blueprint_add_dynamic_material_parameter_update ----

TEST_F(FBlueprintCompositeToolsTest, VariableModeSetsTheParameterAtBeginPlay)
{
	EXPECT_EQ(EventNodes(FreshPath, TEXT("ReceiveBeginPlay")), std::vector<bool>{false});
	const TSharedPtr<FJsonObject> Answer = Ok(Material({{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Glow Amount"))},
		{TEXT("ElementIndex"), Number(1)}, {TEXT("DefaultValue"), Text(TEXT("2.5"))}}));
	EXPECT_EQ(StatusOf(Answer), "up_to_date");
	EXPECT_EQ(EventNodes(FreshPath, TEXT("ReceiveBeginPlay")), std::vector<bool>{true});
	EXPECT_EQ(S(Answer->GetStringField(TEXT("value_variable"))), "BodyGlowAmount");
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyGlowAmount")), "2.500000");
	const FString BeginPlay = NodeOf(Answer, TEXT("BeginPlay"));
	const FString Create = NodeOf(Answer, TEXT("Create"));
	const FString Keep = NodeOf(Answer, TEXT("Keep"));
	const FString Set = NodeOf(Answer, TEXT("SetParameter"));
	EXPECT_EQ(LinksOf(FreshPath, Create, TEXT("execute")), std::vector<std::string>{S(BeginPlay + TEXT(".then"))});
	EXPECT_EQ(PinDefault(FreshPath, Create, TEXT("ElementIndex")), "1");
	EXPECT_EQ(LinksOf(FreshPath, Keep, TEXT("BodyDynamicMaterial")), std::vector<std::string>{S(Create + TEXT(".ReturnValue"))});
	EXPECT_EQ(LinksOf(FreshPath, Set, TEXT("execute")), std::vector<std::string>{S(Keep + TEXT(".then"))});
	EXPECT_EQ(LinksOf(FreshPath, Set, TEXT("self")), std::vector<std::string>{S(Keep + TEXT(".Output_Get"))});
	EXPECT_EQ(PinDefault(FreshPath, Set, TEXT("ParameterName")), "Glow Amount");

	// A colour parameter from an existing Linear Color variable of the name asked for is fed as is.
	const TSharedPtr<FJsonObject> Tint = Ok(Material({{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Tint"))},
		{TEXT("ParameterType"), Text(TEXT("vector"))}, {TEXT("DefaultValue"), Text(TEXT("(R=1, G=0.5, B=0)"))}, {TEXT("SourceMaterialPath"), Text(TEXT("/Game/Materials/M_Rock"))}}));
	EXPECT_EQ(StatusOf(Tint), "up_to_date");
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyTint")), "(R=1.000000,G=0.500000,B=0.000000,A=1.000000)");
	EXPECT_EQ(PinDefault(FreshPath, NodeOf(Tint, TEXT("Create")), TEXT("SourceMaterial")), "/Game/Materials/M_Rock.M_Rock");
	EXPECT_TRUE(Tint->GetArrayField(TEXT("event_lines"))[0]->AsObject()->GetBoolField(TEXT("through_sequence")));
	// The instance variable is shared by both lines.
	EXPECT_FALSE(Tint->GetArrayField(TEXT("variables"))[0]->AsObject()->GetBoolField(TEXT("created")));
}

TEST_F(FBlueprintCompositeToolsTest, TimeModePulsesOnTickBetweenMinAndMax)
{
	const TSharedPtr<FJsonObject> Answer = Ok(Material({{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Glow"))},
		{TEXT("ValueSource"), Text(TEXT("time"))}, {TEXT("Min"), Number(0.2)}, {TEXT("Max"), Text(TEXT("4"))}}));
	EXPECT_EQ(StatusOf(Answer), "up_to_date");
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyGlowPulseMin")), "0.200000");
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyGlowPulseMax")), "4.000000");
	EXPECT_EQ(VariableDefault(FreshPath, TEXT("BodyGlowPulseSpeed")), "0.500000");
	const TArray<TSharedPtr<FJsonValue>> Lines = Answer->GetArrayField(TEXT("event_lines"));
	ASSERT_EQ(Lines.Num(), 2);
	EXPECT_EQ(S(Lines[1]->AsObject()->GetStringField(TEXT("event"))), "ReceiveTick");
	const FString Range = NodeOf(Answer, TEXT("Range"));
	const FString Set = NodeOf(Answer, TEXT("SetParameter"));
	EXPECT_EQ(LinksOf(FreshPath, Set, TEXT("execute")), std::vector<std::string>{S(NodeOf(Answer, TEXT("Tick")) + TEXT(".then"))});
	EXPECT_EQ(LinksOf(FreshPath, Set, TEXT("Value")), std::vector<std::string>{S(Range + TEXT(".ReturnValue"))});
	EXPECT_EQ(LinksOf(FreshPath, Range, TEXT("Value")), std::vector<std::string>{S(NodeOf(Answer, TEXT("Sine")) + TEXT(".ReturnValue"))});
	EXPECT_EQ(PinDefault(FreshPath, Range, TEXT("InRangeA")), "-1.0");
	EXPECT_EQ(LinksOf(FreshPath, Set, TEXT("self")), std::vector<std::string>{S(NodeOf(Answer, TEXT("Instance")) + TEXT(".BodyDynamicMaterial"))});
}

TEST_F(FBlueprintCompositeToolsTest, MaterialRefusalsLeaveTheBlueprintAsItWas)
{
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}}, "blueprint_add_dynamic_material_parameter_update requires ParameterName.");
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Tint"))},
		{TEXT("ParameterType"), Text(TEXT("Vector"))}, {TEXT("ValueSource"), Text(TEXT("Time"))}},
		"ValueSource Time pulses Scalar parameters only; use ValueSource Variable for a Vector parameter.");
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Tint"))},
		{TEXT("ParameterType"), Text(TEXT("Colour"))}}, "ParameterType 'Colour' is not known; use Scalar or Vector.");
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Glow"))},
		{TEXT("ElementIndex"), Text(TEXT("first"))}}, "ElementIndex must be a whole number of 0 or more.");
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Glow"))},
		{TEXT("ElementIndex"), Number(-1)}}, "ElementIndex must be a whole number of 0 or more.");
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Tint"))},
		{TEXT("ParameterType"), Text(TEXT("Vector"))}, {TEXT("DefaultValue"), Text(TEXT("red"))}}, "DefaultValue 'red' is not a colour; write it as (R=1,G=0.5,B=0,A=1).");
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Glow"))},
		{TEXT("SourceMaterialPath"), Text(TEXT("/Game/Materials/M_Missing"))}}, "Could not resolve Material asset: /Game/Materials/M_Missing");
	// A Blueprint is an asset but not a material.
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Glow"))},
		{TEXT("SourceMaterialPath"), Text(ShowcasePath)}}, S(FString(TEXT("Could not resolve Material asset: ")) + ShowcasePath));
	// The value variable exists as another type.
	Ok(CallOn(FreshPath, TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("Shine"))}, {TEXT("Type"), Text(TEXT("vector"))}}));
	ExpectRefusedUnchanged(CompositeMaterialTool, {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ParameterName"), Text(TEXT("Glow"))},
		{TEXT("VariableName"), Text(TEXT("Shine"))}}, "Variable 'Shine' already exists as Vector; this call needs it as double. Rename or remove it, or pick another component.");
}
