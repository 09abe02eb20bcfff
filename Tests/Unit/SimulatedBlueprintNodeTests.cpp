// The simulated node library: pins, pin order, defaults, hidden pins and titles of every node
// kind as the engine's K2 nodes make them, and links kept on both ends.
#include "AssetTestSupport.h"
#include "SimulatedBlueprint.h"

using namespace ZorvekAssetTests;

namespace
{
	struct FNodeFixture
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		FSimulatedBlueprints* Model = nullptr;
		FSimulatedBlueprint* Blueprint = nullptr;
		FSimulatedGraph* Graph = nullptr;

		FNodeFixture()
		{
			Port = LoadInlineProject(TEXT("\"include\": [\"BlueprintEngineTypes.json\"]"), nullptr, false);
			FSimulatedEditor& Editor = Port->GetEditor();
			Model = &Editor.GetBlueprints();
			FString Error;
			Blueprint = Model->CreateBlueprint(Editor.FindOrCreatePackage(TEXT("/Game/Tests/BP_Nodes")), TEXT("BP_Nodes"), Editor.FindTypeByPath(TEXT("/Script/Engine.Actor")),
				EZorvekMCPBridgeBlueprintType::Normal, Error);
			EXPECT_NE(Blueprint, nullptr) << S(Error);
			Graph = Blueprint->UbergraphPages[0].get();
		}

		const FSimulatedFunction& Function(const TCHAR* ClassPath, const TCHAR* Name) const
		{
			static const FSimulatedFunction Missing;
			const FSimulatedType* Class = Port->GetEditor().FindTypeByPath(ClassPath);
			const FSimulatedFunction* Found = Class ? Class->FindFunction(Name) : nullptr;
			EXPECT_NE(Found, nullptr) << S(Name);
			return Found ? *Found : Missing;
		}

		// The node as the port reports it.
		FZorvekMCPBridgeNodeSnapshot Read(const FSimulatedNode& Node) const
		{
			FZorvekMCPBridgeBlueprintSnapshot Snapshot;
			EXPECT_TRUE(Port->GetBlueprints().ReadBlueprint(FSimulatedEditorPort::ToHandle(Blueprint->Object), Snapshot));
			for (const FZorvekMCPBridgeGraphSnapshot& GraphSnapshot : Snapshot.Graphs)
			{
				for (const FZorvekMCPBridgeNodeSnapshot& NodeSnapshot : GraphSnapshot.Nodes)
				{
					if (NodeSnapshot.NodeGuid == Node.NodeGuid)
					{
						return NodeSnapshot;
					}
				}
			}
			ADD_FAILURE() << "node not read back";
			return FZorvekMCPBridgeNodeSnapshot();
		}
	};

	// "name dir" per pin, with " hidden" / " adv" and "=default" where they apply.
	std::vector<std::string> Describe(const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		std::vector<std::string> Pins;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			FString Text = Pin.Pin.PinName.ToString() + (Pin.Pin.Direction == EZorvekMCPBridgePinDirection::Input ? TEXT(" in") : TEXT(" out"));
			Text += Pin.bHidden ? TEXT(" hidden") : TEXT("");
			Text += Pin.bAdvancedView ? TEXT(" adv") : TEXT("");
			Text += Pin.Pin.DefaultValue.IsEmpty() ? FString() : TEXT("=") + Pin.Pin.DefaultValue;
			Pins.push_back(S(Text));
		}
		return Pins;
	}

	using FPins = std::vector<std::string>;
}

// unreal-behaviour-blueprints.md §2.1, §2.2, §2.11
TEST(SimulatedBlueprintNodes, FlowControlAndCommentNodes)
{
	FNodeFixture Fixture;
	const FZorvekMCPBridgeNodeSnapshot Branch = Fixture.Read(*Fixture.Model->AddBranchNode(*Fixture.Graph, 10, 20));
	EXPECT_EQ(Branch.Title, TEXT("Branch"));
	EXPECT_EQ(Branch.NodeClass, TEXT("K2Node_IfThenElse"));
	EXPECT_EQ(Describe(Branch), (FPins{"execute in", "Condition in=true", "then out", "else out"}));
	EXPECT_EQ(Branch.Width, 0);

	const FZorvekMCPBridgeNodeSnapshot Sequence = Fixture.Read(*Fixture.Model->AddSequenceNode(*Fixture.Graph, 0, 0, 3));
	EXPECT_EQ(Sequence.Title, TEXT("Sequence"));
	EXPECT_EQ(Describe(Sequence), (FPins{"execute in", "then_0 out", "then_1 out", "then_2 out"}));

	const FZorvekMCPBridgeNodeSnapshot Comment = Fixture.Read(*Fixture.Model->AddCommentNode(*Fixture.Graph, TEXT("Door logic"), -50, -40, 600, 300));
	EXPECT_EQ(Comment.Title, TEXT("Door logic"));
	EXPECT_TRUE(Comment.Pins.IsEmpty());
	EXPECT_EQ(Comment.Width, 600);
	EXPECT_EQ(Comment.Height, 300);
	EXPECT_EQ(Comment.Data.CommentFontSize, 18);
	EXPECT_EQ(Comment.Data.CommentMoveMode, TEXT("GroupMovement"));
}

// unreal-behaviour-blueprints.md §2.5
TEST(SimulatedBlueprintNodes, CallsTakeTheirPinsFromTheFunction)
{
	FNodeFixture Fixture;
	// Static, world context, advanced display and development-only.
	const FZorvekMCPBridgeNodeSnapshot Print = Fixture.Read(*Fixture.Model->AddCallFunctionNode(*Fixture.Graph, Fixture.Function(TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("PrintString")), 0, 0));
	EXPECT_EQ(Print.Title, TEXT("Print String"));
	EXPECT_EQ(Describe(Print), (FPins{"execute in", "then out", "self in hidden", "WorldContextObject in hidden", "InString in=Hello", "bPrintToScreen in adv=true",
		"bPrintToLog in adv=true", "TextColor in adv=(R=0.000000,G=0.660000,B=1.000000,A=1.000000)", "Duration in adv=2.000000", "Key in adv=None"}));
	EXPECT_EQ(Print.Pins[4].Pin.PinType.PinCategory, FName(TEXT("string")));
	EXPECT_FALSE(Print.bEnabled);
	EXPECT_EQ(Print.Data.MemberName, TEXT("PrintString"));
	EXPECT_EQ(Print.Data.FunctionPath, TEXT("/Script/Engine.KismetSystemLibrary:PrintString"));
	EXPECT_FALSE(Print.Data.bSelfContext);

	// An impure member call on the Blueprint's own class shows its target; the out param is an
	// output and the return value comes last.
	const FZorvekMCPBridgeNodeSnapshot SetLocation = Fixture.Read(*Fixture.Model->AddCallFunctionNode(*Fixture.Graph, Fixture.Function(TEXT("/Script/Engine.Actor"), TEXT("K2_SetActorLocation")), 0, 0));
	EXPECT_EQ(SetLocation.Title, TEXT("Set Actor Location\nTarget is Actor"));
	EXPECT_EQ(Describe(SetLocation), (FPins{"execute in", "then out", "self in", "NewLocation in=0, 0, 0", "bSweep in=false", "SweepHitResult out", "bTeleport in=false", "ReturnValue out"}));
	EXPECT_TRUE(SetLocation.Data.bSelfContext);
	EXPECT_EQ(SetLocation.Data.MemberParentClassPath, TEXT("/Game/Tests/BP_Nodes.BP_Nodes_C"));
	EXPECT_EQ(SetLocation.Data.FunctionPath, TEXT("/Script/Engine.Actor:K2_SetActorLocation"));
	EXPECT_EQ(SetLocation.Pins[2].Pin.PinType.PinSubCategory, FName(TEXT("self")));

	// A const getter is pure but keeps its target; a static pure operator hides it.
	const FZorvekMCPBridgeNodeSnapshot GetLocation = Fixture.Read(*Fixture.Model->AddCallFunctionNode(*Fixture.Graph, Fixture.Function(TEXT("/Script/Engine.Actor"), TEXT("K2_GetActorLocation")), 0, 0));
	EXPECT_EQ(Describe(GetLocation), (FPins{"self in", "ReturnValue out"}));
	EXPECT_EQ(GetLocation.Title, TEXT("Get Actor Location\nTarget is Actor"));
	const FZorvekMCPBridgeNodeSnapshot Add = Fixture.Read(*Fixture.Model->AddCallFunctionNode(*Fixture.Graph, Fixture.Function(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Add_IntInt")), 0, 0));
	EXPECT_EQ(Add.Title, TEXT("int + int"));
	EXPECT_EQ(Describe(Add), (FPins{"self in hidden", "A in=0", "B in=1", "ReturnValue out"}));
	EXPECT_TRUE(Add.bEnabled);

	// Latent: the latent info is hidden.
	const FZorvekMCPBridgeNodeSnapshot Delay = Fixture.Read(*Fixture.Model->AddCallFunctionNode(*Fixture.Graph, Fixture.Function(TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("Delay")), 0, 0));
	EXPECT_EQ(Describe(Delay), (FPins{"execute in", "then out", "self in hidden", "WorldContextObject in hidden", "Duration in=0.2", "LatentInfo in hidden"}));
}

// unreal-behaviour-blueprints.md §2.4, §2.9
TEST(SimulatedBlueprintNodes, CastsAndVariableNodes)
{
	FNodeFixture Fixture;
	FSimulatedEditor& Editor = Fixture.Port->GetEditor();
	const FZorvekMCPBridgeNodeSnapshot Cast = Fixture.Read(*Fixture.Model->AddCastNode(*Fixture.Graph, Editor.FindTypeByPath(TEXT("/Script/Engine.PlayerController")), 0, 0));
	EXPECT_EQ(Cast.Title, TEXT("Cast To PlayerController"));
	EXPECT_EQ(Describe(Cast), (FPins{"execute in", "then out", "CastFailed out", "Object in", "AsPlayer Controller out"}));
	EXPECT_EQ(Cast.Pins[3].Pin.PinType.PinCategory, FName(TEXT("wildcard")));
	EXPECT_TRUE(Cast.Data.CastTargetBlueprintPath.IsEmpty());
	const FZorvekMCPBridgeNodeSnapshot PureCast = Fixture.Read(*Fixture.Model->AddCastNode(*Fixture.Graph, Editor.FindTypeByPath(TEXT("/Script/Engine.Pawn")), 0, 0, true));
	EXPECT_EQ(Describe(PureCast), (FPins{"Object in", "AsPawn out", "bSuccess out"}));
	// A Blueprint class is named after its Blueprint.
	const FZorvekMCPBridgeNodeSnapshot OwnCast = Fixture.Read(*Fixture.Model->AddCastNode(*Fixture.Graph, Fixture.Blueprint->GeneratedClass, 0, 0));
	EXPECT_EQ(OwnCast.Title, TEXT("Cast To BP_Nodes"));
	EXPECT_EQ(OwnCast.Pins.Last().Pin.PinName, FName(TEXT("AsBP Nodes")));
	EXPECT_EQ(OwnCast.Data.CastTargetBlueprintPath, TEXT("/Game/Tests/BP_Nodes.BP_Nodes"));

	FZorvekMCPBridgePinType IntType;
	IntType.PinCategory = FZorvekMCPBridgePinCategories::PC_Int;
	ASSERT_TRUE(Fixture.Model->AddMemberVariable(*Fixture.Blueprint, FName(TEXT("Health")), IntType, TEXT("100")));
	const FZorvekMCPBridgeNodeSnapshot Get = Fixture.Read(*Fixture.Model->AddVariableGetNode(*Fixture.Graph, TEXT("Health"), 0, 0));
	EXPECT_EQ(Get.Title, TEXT("Get Health"));
	EXPECT_EQ(Describe(Get), (FPins{"Health out", "self in hidden"}));
	EXPECT_EQ(Get.Data.VariableGuid, Fixture.Blueprint->NewVariables[0].VarGuid);
	EXPECT_EQ(Get.Data.VariableOwnerBlueprintPath, TEXT("/Game/Tests/BP_Nodes.BP_Nodes"));
	const FZorvekMCPBridgeNodeSnapshot Set = Fixture.Read(*Fixture.Model->AddVariableSetNode(*Fixture.Graph, TEXT("Health"), 0, 0));
	EXPECT_EQ(Set.Title, TEXT("Set Health"));
	EXPECT_EQ(Describe(Set), (FPins{"execute in", "then out", "Health in=0", "Output_Get out", "self in hidden"}));
	// An inherited property belongs to the class that declares it.
	const FZorvekMCPBridgeNodeSnapshot Tags = Fixture.Read(*Fixture.Model->AddVariableGetNode(*Fixture.Graph, TEXT("Tags"), 0, 0));
	EXPECT_EQ(Tags.Data.VariableOwnerClassPath, TEXT("/Script/Engine.Actor"));
	EXPECT_EQ(Tags.Pins[0].Pin.PinType.ContainerType, EZorvekMCPBridgePinContainerType::Array);
	EXPECT_EQ(Fixture.Model->AddVariableGetNode(*Fixture.Graph, TEXT("Missing"), 0, 0), nullptr);

	// Once the variable is gone its nodes name no owner; the reference itself stays.
	FSimulatedNode* GetNode = Fixture.Model->AddVariableGetNode(*Fixture.Graph, TEXT("Health"), 0, 0);
	Fixture.Blueprint->NewVariables.clear();
	Fixture.Model->MarkStructurallyModified(*Fixture.Blueprint);
	const FZorvekMCPBridgeNodeSnapshot Orphan = Fixture.Read(*GetNode);
	EXPECT_TRUE(Orphan.Data.VariableOwnerClassPath.IsEmpty());
	EXPECT_EQ(Orphan.Data.VariableName, TEXT("Health"));
}

// unreal-behaviour-blueprints.md §2.3, §2.7, §2.10, §8
TEST(SimulatedBlueprintNodes, EventsMacrosAndInputNodes)
{
	FNodeFixture Fixture;
	FSimulatedNode* Custom = Fixture.Model->AddCustomEventNode(*Fixture.Graph, TEXT("OnOpened"), 0, 0);
	FZorvekMCPBridgePinType FloatType;
	FloatType.PinCategory = FZorvekMCPBridgePinCategories::PC_Real;
	FloatType.PinSubCategory = FZorvekMCPBridgePinCategories::PC_Float;
	Fixture.Model->CreateUserDefinedPin(*Custom, FName(TEXT("Angle")), FloatType, EZorvekMCPBridgePinDirection::Output);
	const FZorvekMCPBridgeNodeSnapshot CustomSnapshot = Fixture.Read(*Custom);
	EXPECT_EQ(CustomSnapshot.Title, TEXT("OnOpened\nCustom Event"));
	EXPECT_EQ(Describe(CustomSnapshot), (FPins{"OutputDelegate out", "then out", "Angle out"}));
	EXPECT_EQ(CustomSnapshot.Data.CustomFunctionName, TEXT("OnOpened"));
	EXPECT_FALSE(CustomSnapshot.Data.bOverrideFunction);
	ASSERT_EQ(CustomSnapshot.Data.UserPins.Num(), 1);

	// Macro pins mirror the macro graph's tunnels; the title is the spaced graph name.
	const FSimulatedObject* MacrosObject = Fixture.Port->GetEditor().FindObject(TEXT("/Engine/EditorBlueprintResources/StandardMacros.StandardMacros"));
	FSimulatedBlueprint* Macros = Fixture.Model->FindBlueprint(MacrosObject);
	ASSERT_NE(Macros, nullptr);
	FSimulatedGraph* DoOnce = Macros->FindGraph(TEXT("DoOnce"));
	ASSERT_NE(DoOnce, nullptr);
	const FZorvekMCPBridgeNodeSnapshot Macro = Fixture.Read(*Fixture.Model->AddMacroInstanceNode(*Fixture.Graph, *DoOnce, 0, 0));
	EXPECT_EQ(Macro.Title, TEXT("Do Once"));
	EXPECT_EQ(Describe(Macro), (FPins{"execute in", "Reset in", "Start Closed in=false", "Completed out"}));
	EXPECT_EQ(Macro.Data.MacroGraphPath, TEXT("/Engine/EditorBlueprintResources/StandardMacros.StandardMacros:DoOnce"));

	const FZorvekMCPBridgeNodeSnapshot Key = Fixture.Read(*Fixture.Model->AddInputKeyNode(*Fixture.Graph, TEXT("SpaceBar"), 0, 0));
	EXPECT_EQ(Key.Title, TEXT("Space Bar"));
	EXPECT_EQ(Describe(Key), (FPins{"Pressed out", "Released out", "Key out"}));
	EXPECT_TRUE(Key.Data.bConsumeInput);
	FSimulatedNode* AxisNode = Fixture.Model->AddInputAxisKeyNode(*Fixture.Graph, TEXT("MouseX"), 0, 0);
	const FZorvekMCPBridgeNodeSnapshot Axis = Fixture.Read(*AxisNode);
	EXPECT_EQ(Axis.Title, TEXT("Mouse X"));
	EXPECT_EQ(Describe(Axis), (FPins{"OutputDelegate out", "then out", "AxisValue out"}));
	EXPECT_EQ(Axis.Data.CustomFunctionName, TEXT("InpAxisKeyEvt_MouseX_") + AxisNode->ObjectName);
	EXPECT_TRUE(Axis.Data.bInternalEvent);
}

// Links as UEdGraphPin::MakeLinkTo keeps them (unreal-behaviour-blueprints.md §3.1).
TEST(SimulatedBlueprintNodes, LinksAreKeptOnBothEnds)
{
	FNodeFixture Fixture;
	FSimulatedNode* Branch = Fixture.Model->AddBranchNode(*Fixture.Graph, 0, 0);
	FSimulatedNode* Sequence = Fixture.Model->AddSequenceNode(*Fixture.Graph, 0, 0);
	FSimulatedPin& Then = *Branch->FindPin(TEXT("THEN"));
	FSimulatedPin& Execute = *Sequence->FindPin(TEXT("execute"));
	EXPECT_TRUE(FSimulatedBlueprints::MakeLink(Then, Execute));
	EXPECT_TRUE(FSimulatedBlueprints::MakeLink(Execute, Then));
	EXPECT_FALSE(FSimulatedBlueprints::MakeLink(*Branch->FindPin(TEXT("execute")), Then));
	EXPECT_FALSE(FSimulatedBlueprints::MakeLink(Execute, *Branch->FindPin(TEXT("execute"))));
	const FZorvekMCPBridgeNodeSnapshot BranchSnapshot = Fixture.Read(*Branch);
	ASSERT_EQ(BranchSnapshot.Pins[2].LinkedTo.Num(), 1);
	EXPECT_EQ(BranchSnapshot.Pins[2].LinkedTo[0].NodeGuid, Sequence->NodeGuid);
	EXPECT_EQ(Fixture.Read(*Sequence).Pins[0].LinkedTo[0].PinName, FName(TEXT("then")));

	// Removing a node leaves no dangling link behind.
	Fixture.Model->RemoveNode(*Fixture.Graph, *Sequence);
	EXPECT_TRUE(Then.LinkedTo.empty());
	EXPECT_TRUE(Fixture.Read(*Branch).Pins[2].LinkedTo.IsEmpty());
}

// unreal-behaviour-blueprints.md §2.5: the target line names the function's authoritative class,
// so a call bound to the skeleton class (a function added since the last compile) reads the same
// as one bound to the generated class.
TEST(SimulatedBlueprintNodes, OwnFunctionCallsNameTheBlueprintNotItsSkeleton)
{
	FNodeFixture Fixture;
	Fixture.Model->AddFunctionGraph(*Fixture.Blueprint, Fixture.Model->CreateNewGraph(*Fixture.Blueprint, TEXT("OpenDoor")));
	const FSimulatedFunction* OnSkeleton = Fixture.Blueprint->SkeletonClass->FindFunction(TEXT("OpenDoor"));
	ASSERT_NE(OnSkeleton, nullptr);
	EXPECT_EQ(Fixture.Blueprint->GeneratedClass->FindFunction(TEXT("OpenDoor")), nullptr);
	const FZorvekMCPBridgeNodeSnapshot Call = Fixture.Read(*Fixture.Model->AddCallFunctionNode(*Fixture.Graph, *OnSkeleton, 0, 0));
	EXPECT_EQ(Call.Title, TEXT("Open Door\nTarget is BP Nodes"));
}
